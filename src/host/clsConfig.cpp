// The configuration object: its properties are the module-level values.
#include "host/clsConfig.h"

#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "host/modMisc.h"
#include "host/modReadZentraINI.h"
#include "platform/desktop.h"
#include "platform/version.h"
#include "runtime/handler.h"

#include <optional>

namespace host
{

namespace
{

constexpr char kEditor[] = "frmHeadings";

// What comes before the window: connects and reads the site INI file. False: there is to be no window, as a message has
// told.
bool Start()
{
    const runtime::HandlerScope opening;
    const platform::WaitCursor wait;
    try
    {
        if (!Connect())
        {
            platform::MsgBox("Connection to the Corvane database cannot be established.", platform::kOkOnly,
                             "Connection Error");
            return false;
        }
        ReadSiteIni();
        return true;
    }
    catch (const runtime::HandlerCancelled &)
    {
        return false; // the host has destroyed a window that was open already
    }
}

} // namespace

clsConfig::clsConfig()
{
    gPartitionID = -1;
    gConnected = false;
    gConfig = runtime::Ref<clsConfig>(this);
}

void clsConfig::SetUser_ID(std::int16_t value)
{
    gUserID = value;
}

std::int16_t clsConfig::User_ID() const
{
    return gUserID;
}

void clsConfig::SetPartitionID(std::int32_t value)
{
    gPartitionID = value;
}

std::int32_t clsConfig::PartitionID() const
{
    return gPartitionID;
}

void clsConfig::SetDebugMode(std::int16_t value)
{
    gDebugMode = value;
}

std::int16_t clsConfig::DebugMode() const
{
    return gDebugMode;
}

void clsConfig::SetLogFile(const std::string &value)
{
    gLogFile = value;
}

std::string clsConfig::LogFile() const
{
    return gLogFile;
}

void clsConfig::SetSqlServerName(const std::string &value)
{
    gSqlServerName = value;
}

std::string clsConfig::SqlServerName() const
{
    return gSqlServerName;
}

void clsConfig::SetPassword(const std::string &value)
{
    gPassword = value;
}

std::string clsConfig::Password() const
{
    return gPassword;
}

void clsConfig::SetSqlUserName(const std::string &value)
{
    gSqlUserName = value;
}

std::string clsConfig::SqlUserName() const
{
    return gSqlUserName;
}

void clsConfig::SetSqlDbName(const std::string &value)
{
    gSqlDbName = value;
}

std::string clsConfig::SqlDbName() const
{
    return gSqlDbName;
}

void clsConfig::SetSQLDSN(const std::string &value)
{
    gSQLDSN = value;
}

std::string clsConfig::SQLDSN() const
{
    return gSQLDSN;
}

void clsConfig::SetSqlTimeout(std::int16_t seconds)
{
    gSqlTimeout = seconds;
}

std::int16_t clsConfig::SqlTimeout() const
{
    return gSqlTimeout;
}

void clsConfig::SetZentra_INIFile(const std::string &path)
{
    gZentraINIFile = path;
}

std::string clsConfig::Zentra_INIFile() const
{
    return gZentraINIFile;
}

std::string clsConfig::Version() const
{
    const platform::Version version = platform::ComponentVersion();
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." + std::to_string(version.revision);
}

std::uint8_t clsConfig::ShowForm()
{
    // A nested call from the opening or a handler cannot wait for the window: these continue only after the call.
    if (runtime::HandlerRunning())
        return 0;
    // The host does not answer until the window has gone. Where the window is open already, it does not anyway.
    std::optional<platform::ModalToHost> modal;
    if (!IsFormLoaded(kEditor))
        modal.emplace();
    if (!Start())
        return 0;
    DefaultForm(kEditor).ShowModal();
    while (IsFormLoaded(kEditor))
    {
        platform::CurrentDesktop().Sleep(10);
        platform::CurrentDesktop().DoEvents();
    }
    ReleaseDefaultForm(kEditor);
    return 0;
}

} // namespace host
