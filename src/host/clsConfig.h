// The configuration object: what a host creates, fills and calls ShowForm on.
#pragma once

#include "runtime/ref.h"

#include <cstdint>
#include <string>

namespace host
{

// Every property writes to and reads from one module-level value (modGlobalVariables); a second instance shares and
// overwrites the same ones. No setter validates or trims.
class clsConfig : public runtime::RefCounted<clsConfig>
{
public:
    // Resets the partition to -1 and the connected flag to false, and becomes the instance in use (gConfig).
    clsConfig();

    void SetUser_ID(std::int16_t value);
    std::int16_t User_ID() const;
    void SetPartitionID(std::int32_t value);
    std::int32_t PartitionID() const;
    void SetDebugMode(std::int16_t value); // stored, without effect
    std::int16_t DebugMode() const;
    void SetLogFile(const std::string &value); // stored, without effect
    std::string LogFile() const;
    void SetSqlServerName(const std::string &value);
    std::string SqlServerName() const;
    void SetPassword(const std::string &value);
    std::string Password() const;
    void SetSqlUserName(const std::string &value);
    std::string SqlUserName() const;
    void SetSqlDbName(const std::string &value);
    std::string SqlDbName() const;
    void SetSQLDSN(const std::string &value);
    std::string SQLDSN() const;
    void SetSqlTimeout(std::int16_t seconds);
    std::int16_t SqlTimeout() const;
    void SetZentra_INIFile(const std::string &path);
    std::string Zentra_INIFile() const;

    // "major.minor.revision" of this build.
    std::string Version() const;

    // Connects, reads the site INI file, shows the editor modally and waits until it is unloaded. Returns 0 in every
    // case; a connection that cannot be made is shown to the user, and nothing else happens then. Meanwhile the
    // host's windows of the calling thread do not answer. A call while the editor is open brings it to the front and
    // waits for it too; one while another call is connecting or loading returns at once.
    std::uint8_t ShowForm();
};

} // namespace host
