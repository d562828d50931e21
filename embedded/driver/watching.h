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

// What to do with a statement, or with a call of an ODBC function, that a line of the list names.
struct Fault
{
    enum Time
    {
        Before, // nothing is done
        After,  // it takes effect, then the answer is lost
        AtRow,  // a statement succeeds, and the fetch of one of its rows fails
        AtEnd   // the call fails, and the rows that are left are lost
    };
    Time time = Before;
    bool cut = false;  // the connection is cut as well
    long long row = 0; // from 1
    DiagnosticRecord record;
};

// The list of failures. Its file is read anew every time, so that lines may be added while clients run; the counts in
// it are lowered where they stand. An empty path orders nothing.
class FaultList
{
public:
    enum Event
    {
        Statement, // whose text contains the line's
        Call       // of the ODBC function whose name is the line's, or of any when that is empty
    };

    explicit FaultList(std::string path) : m_path(std::move(path)) {}

    // What the first line with a count above 0 orders for this event. Waits as the delays in front of it say.
    std::optional<Fault> Take(Event event, std::string_view text) const;
    // The number of the last cut of idle connections; 0 when there was none.
    long long LastCut() const;
    // A cut of idle connections with a greater number than `seen`.
    std::optional<Fault> TakeCut(long long seen) const;

private:
    std::string m_path;
};

} // namespace driver
