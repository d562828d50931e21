// The statement log: what clients sent, as it arrived, for tests that look over the component's shoulder.
#pragma once

#include <string>
#include <string_view>

namespace driver
{

// Appends lines to a file that several processes may share; each line is written whole with one call. Lines are fields
// separated by tabs: KIND, ID, APP and a text in which \r, \n, \t, \" and \\ stand escaped.
//   connect     the database and server the client asked for, behind a successful log-in
//   statement   the text as it arrived, written before it runs
//   error       "STATE: text" of the statement last logged under the same ID, at once or while its rows are read
//   disconnect  empty
// The ID is PROCESS.CONNECTION; APP is what the connection string said.
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
