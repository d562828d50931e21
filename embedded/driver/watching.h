// What tests of the component look over its shoulder with: the log of what clients sent, and the list of failures that
// are ordered for what is to come. Both are described in docs/embedded-database.md and shared by several processes.
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

// What to do with a statement, or with a call of an ODBC function, that a line of the list names.
struct Fault
{
    enum Time
    {
        Before, // nothing is done
        After,  // it takes effect, then the answer is lost
        Row,    // a statement succeeds, and the fetch of its row `number` (from 1) fails
        End,    // the call fails, and the rows that are left are lost
        Delay,  // it waits `number` milliseconds
        Idle    // connections that are older than this are cut; `number` grows from one to the next
    };
    Time time = Before;
    long long number = 0;
    bool cut = false; // the connection is cut as well
    DiagnosticRecord record;
};

// The list of failures. Its file is read anew every time, so that lines may be added while clients run; the counts in
// it are lowered where they stand. An empty path orders nothing.
class FaultList
{
public:
    explicit FaultList(std::string path) : m_path(std::move(path)) {}

    // What the first line with a count above 0 orders for a statement whose text contains the line's, or for a call of
    // the ODBC function whose name is the line's (any, when that is empty). Waits as the delays in front of it say.
    std::optional<Fault> TakeForStatement(std::string_view text) const { return Take(false, text); }
    std::optional<Fault> TakeForCall(std::string_view function) const { return Take(true, function); }
    // The greatest number of a cut of idle connections, 0 when there is none; and one that is greater than `seen`.
    long long LastCut() const;
    std::optional<Fault> TakeCut(long long seen) const;

private:
    std::optional<Fault> Take(bool isCall, std::string_view text) const;

    std::string m_path;
};

} // namespace driver
