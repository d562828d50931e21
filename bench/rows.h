// The rows of the table: what is measured, on which size, against what.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace bench
{

// Seconds of one run; called as often as the benchmark asks.
using Measure = std::function<double()>;

// What a row is to reach.
struct Goal
{
    double ratio = 0;   // at most this often the bare limit; 0: no such goal
    double seconds = 0; // at most; 0: no such goal
    double bytes = 0;   // at most
};

// Registers a row. `bare` may be empty.
void AddRow(const std::string &what, const std::string &size, Goal goal, Measure component, Measure bare = {},
            int runs = 5);
// A row whose figure is a number of bytes.
void AddBytesRow(const std::string &what, const std::string &size, Goal goal, std::function<double()> component);

// Registers the rows of each subject.
void AddOpeningRows();
void AddClickRows();
void AddSavingRows();
void AddReportRows();
void AddEmbeddedRows();

// Runs what was registered and prints the table.
void RunAll(int &argc, char **argv);

} // namespace bench
