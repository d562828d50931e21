// The table of the benchmarks: a line a row, with what the component takes, the bare limit, and what is to be reached.
#pragma once

#include <string>
#include <vector>

namespace bench
{

// What a row is to reach. The middle of its runs is compared; what is 0 is no goal.
struct Goal
{
    double ratio = 0;   // at most this often the bare limit
    double seconds = 0; // at most
    double beyond = 0;  // at most so many seconds more than the bare limit
    double bytes = 0;   // at most
};

struct Row
{
    std::string what;
    std::string size;
    Goal goal = {};
    bool bytes = false; // its figures are bytes; seconds otherwise
    // A figure a run, at least one.
    std::vector<double> component = {};
    // One beside each of them, or none: there is no bare limit.
    std::vector<double> bare = {};
};

// True when KV_BENCH_ONLY is not set, or is a regular expression that is found in "what/size".
bool IsWanted(const std::string &what, const std::string &size);

void PrintHead();
void Print(const Row &row);

} // namespace bench
