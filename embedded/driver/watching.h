// What tests of the component look over its shoulder with: the log of what clients sent, and the list of failures that
// are ordered for statements to come. Both are described in docs/embedded-database.md and shared by several processes.
#pragma once

#include "handles.h"

#include <optional>

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

// What to do with a statement that a line of the list names.
struct Fault
{
    bool cut = false;   // the connection is cut as well
    bool after = false; // the statement runs first
    long long row = 0;  // above 0: the fetch of this row (from 1) fails, the statement itself succeeds
    DiagnosticRecord record;
};

// The first line of the list with a count above 0 whose text occurs in the statement; its count is lowered in the file.
// The file is read anew every time, so that lines may be added while clients run; an empty path orders nothing.
std::optional<Fault> TakeFault(const std::string &path, std::string_view statement);

} // namespace driver
