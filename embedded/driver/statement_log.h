// The log of what clients send, described in docs/embedded-database.md.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace driver
{

// Appends lines to a file that several processes may share; each line is written whole with one call.
class StatementLog
{
public:
    // An empty path logs nothing.
    StatementLog(const std::string &path, std::string_view application);
    void Write(std::string_view kind, std::string_view text);

private:
    std::filebuf m_file;
    std::string m_prefix; // TAB ID TAB APP TAB
};

} // namespace driver
