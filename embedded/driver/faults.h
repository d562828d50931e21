// The list of failures that tests order for what is to come, described in docs/embedded-database.md.
#pragma once

#include "odbc.h"

#include <exception>
#include <optional>

namespace driver
{

// What to do with a statement, or with a call of an ODBC function, that a line of the list names. Thrown to do it.
struct Fault : std::exception
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
    SqlError record = MakeRecord(0, "08S01", "Communication link failure");
};

// The list as one connection sees it. Its file is read anew every time, so that lines may be added while clients run;
// the counts in it are lowered where they stand, for all processes. An empty path orders nothing.
class FaultList
{
public:
    enum Event
    {
        Statement, // its text contains the line's
        Call,      // of an ODBC function, whose name does
        Idling     // of the connection
    };

    explicit FaultList(const std::string &path = {});

    // What the first line with a count above 0 orders for this event. Waits as the delays in front of it say.
    std::optional<Fault> Take(Event event, std::string_view text = {}) const;

private:
    std::string m_path;
    long long m_lastCut = 0; // before the connection was made
};

} // namespace driver
