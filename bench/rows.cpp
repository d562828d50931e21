// Running the rows with Google Benchmark and printing them as one table.
#include "rows.h"

#include "editor_session.h"

#include <cstdio>
#include <map>
#include <vector>

namespace bench
{

namespace
{

struct Row
{
    std::string what;
    std::string size;
    Goal goal;
    bool bytes;
    double component = 0;
    double bare = 0;
};

std::vector<Row> &Rows()
{
    static std::vector<Row> rows;
    return rows;
}

void Register(std::size_t row, bool bare, const Measure &measure, int runs)
{
    const std::string name = Rows()[row].what + "/" + Rows()[row].size + (bare ? "/bare" : "/component");
    benchmark::RegisterBenchmark(name.c_str(),
                                 [row, bare, measure, runs](benchmark::State &state)
                                 {
                                     for (auto _ : state)
                                     {
                                         const double figure = Median(runs, measure);
                                         (bare ? Rows()[row].bare : Rows()[row].component) = figure;
                                         state.SetIterationTime(Rows()[row].bytes ? 1e-9 : figure);
                                     }
                                 })
        ->Iterations(1)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

std::string Figure(double value, bool bytes)
{
    char text[32];
    if (bytes)
        std::snprintf(text, sizeof text, "%.1f bytes", value);
    else if (value < 1e-3)
        std::snprintf(text, sizeof text, "%.1f us", value * 1e6);
    else
        std::snprintf(text, sizeof text, "%.2f ms", value * 1e3);
    return text;
}

std::string GoalText(const Row &row)
{
    char text[32] = "-";
    if (row.goal.ratio > 0)
        std::snprintf(text, sizeof text, "%.2f x", row.goal.ratio);
    else if (row.goal.seconds > 0)
        return Figure(row.goal.seconds, false);
    else if (row.goal.bytes > 0)
        return Figure(row.goal.bytes, true);
    return text;
}

bool Reached(const Row &row)
{
    if (row.goal.ratio > 0)
        return row.component <= row.goal.ratio * row.bare;
    if (row.goal.seconds > 0)
        return row.component <= row.goal.seconds;
    return row.goal.bytes <= 0 || row.component <= row.goal.bytes;
}

} // namespace

void AddRow(const std::string &what, const std::string &size, Goal goal, Measure component, Measure bare, int runs)
{
    Rows().push_back({what, size, goal, false, 0, 0});
    const std::size_t row = Rows().size() - 1;
    Register(row, false, component, runs);
    if (bare)
        Register(row, true, bare, runs);
}

void AddBytesRow(const std::string &what, const std::string &size, Goal goal, std::function<double()> component)
{
    Rows().push_back({what, size, goal, true, 0, 0});
    Register(Rows().size() - 1, false, component, 1);
}

void RunAll(int &argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::printf("\n%-42s %12s %14s %14s %7s %12s\n", "what", "size", "component", "bare limit", "ratio", "to reach");
    for (const Row &row : Rows())
    {
        if (row.component == 0)
            continue; // filtered out
        char ratio[16] = "-";
        if (row.bare > 0)
            std::snprintf(ratio, sizeof ratio, "%.2f", row.component / row.bare);
        std::printf("%-42s %12s %14s %14s %7s %12s%s\n", row.what.c_str(), row.size.c_str(),
                    Figure(row.component, row.bytes).c_str(), row.bare > 0 ? Figure(row.bare, false).c_str() : "-",
                    ratio, GoalText(row).c_str(), Reached(row) ? "" : "  missed");
    }
}

} // namespace bench
