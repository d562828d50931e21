// The statement log: what clients sent, as it arrived, for tests that look over the component's shoulder. Its form is
// described in docs/embedded-database.md.
#pragma once

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
    ~StatementLog();
    StatementLog(const StatementLog &) = delete;
    StatementLog &operator=(const StatementLog &) = delete;

    void Write(std::string_view kind, std::string_view text);

private:
    int m_file = -1;
    std::string m_prefix; // TAB ID TAB APP TAB
};

} // namespace driver
