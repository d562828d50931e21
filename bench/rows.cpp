// Running the rows with Google Benchmark.
#include "rows.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace bench
{

namespace
{

struct Planned
{
    Row row;
    Measure component;
    Measure bare;
    int runs;
};

std::vector<Planned> &Plan()
{
    static std::vector<Planned> plan;
    return plan;
}

// The rows whose runs are through and which have not been printed yet.
std::vector<const Row *> &Measured()
{
    static std::vector<const Row *> rows;
    return rows;
}

// An iteration is a run of the component and one of the bare limit beside it.
void RunRow(benchmark::State &state, Planned &planned)
{
    Row &row = planned.row;
    for (auto _ : state)
    {
        row.component.push_back(planned.component());
        if (planned.bare)
            row.bare.push_back(planned.bare());
        state.SetIterationTime(row.bytes ? 1e-9 : row.component.back());
    }
    if (row.component[0] > 0)
        Measured().push_back(&row);
}

// Prints each line of the table when it is known.
class TableReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override
    {
        PrintHead();
        return true;
    }
    void ReportRuns(const std::vector<Run> &) override
    {
        for (const Row *const row : Measured())
            Print(*row);
        Measured().clear();
    }
};

} // namespace

void AddRow(const std::string &what, const std::string &size, Goal goal, Measure component, Measure bare, int runs)
{
    Plan().push_back({{what, size, goal, false}, std::move(component), std::move(bare), runs});
}

void AddBytesRow(const std::string &what, const std::string &size, Goal goal, Measure component)
{
    Plan().push_back({{what, size, goal, true}, std::move(component), {}, 1});
}

void RunAll(int &argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    const char *const runsWanted = std::getenv("KV_BENCH_RUNS");
    for (Planned &planned : Plan())
    {
        if (!IsWanted(planned.row.what, planned.row.size))
            continue;
        const int runs = runsWanted ? std::max(1, std::atoi(runsWanted)) : planned.runs;
        benchmark::RegisterBenchmark((planned.row.what + "/" + planned.row.size).c_str(),
                                     [&planned](benchmark::State &state) { RunRow(state, planned); })
            ->Iterations(runs)
            ->UseManualTime();
    }
    TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
}

} // namespace bench
