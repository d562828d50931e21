// The table of the benchmarks: one line a row, with what the component takes, the bare limit, and what is to be
// reached.
#pragma once

#include <cstdio>
#include <string>

namespace bench
{

// What a row of times is to reach.
struct TimeGoal
{
    double seconds = 0; // at most; 0: no such goal
    double beyond = 0;  // at most so many seconds more than the bare limit; 0: no such goal
};

struct TimeRow
{
    std::string what;
    std::string size;
    TimeGoal goal;
    double component = 0; // seconds
    double bare = 0;      // seconds; 0: there is no bare limit
};

inline std::string Milliseconds(double seconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f ms", seconds * 1e3);
    return text;
}

// The columns are those of the whole table.
inline void Print(const TimeRow &row)
{
    char ratio[16] = "-";
    if (row.bare > 0)
        std::snprintf(ratio, sizeof ratio, "%.2f", row.component / row.bare);
    std::string goal = "-";
    bool reached = true;
    if (row.goal.seconds > 0)
    {
        goal = Milliseconds(row.goal.seconds);
        reached = row.component <= row.goal.seconds;
    }
    if (row.goal.beyond > 0)
    {
        goal = "+" + Milliseconds(row.goal.beyond);
        reached = reached && row.component <= row.bare + row.goal.beyond;
    }
    std::printf("%-42s %12s %14s %14s %7s %12s%s\n", row.what.c_str(), row.size.c_str(),
                Milliseconds(row.component).c_str(), row.bare > 0 ? Milliseconds(row.bare).c_str() : "-", ratio,
                goal.c_str(), reached ? "" : "  missed");
}

} // namespace bench
