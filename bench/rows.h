// The rows of the table: what is measured, on which size, against what.
#pragma once

#include "table.h"

#include <functional>
#include <string>

namespace bench
{

// Seconds (or bytes) of one run.
using Measure = std::function<double()>;

// Registers a row. `bare`, which may be empty, is run in turn with `component`, so that a machine that is busy for a
// while is busy for both. KV_BENCH_RUNS overrides the number of runs.
void AddRow(const std::string &what, const std::string &size, Goal goal, Measure component, Measure bare = {},
            int runs = 5);
// A row whose figure is a number of bytes. 0 means that it cannot be told here: the row is left out.
void AddBytesRow(const std::string &what, const std::string &size, Goal goal, Measure component);

// Registers the rows of each subject.
void AddOpeningRows();
void AddClickRows();
void AddSavingRows();
void AddReportRows();
void AddSizeRows();
void AddEmbeddedRows();

// Runs the rows that are wanted and prints each line of the table when it is known. Takes Google Benchmark's arguments.
void RunAll(int &argc, char **argv);

} // namespace bench
