// Choosing the rows and printing them.
#include "table.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <regex>

namespace bench
{

namespace
{

double Middle(std::vector<double> figures)
{
    std::sort(figures.begin(), figures.end());
    return figures[figures.size() / 2];
}

// How often the bare limit: the middle of what each run and the one beside it give, since a machine that is busy is
// busy for both.
double Ratio(const Row &row)
{
    std::vector<double> ratios;
    for (std::size_t run = 0; run < row.component.size(); ++run)
        ratios.push_back(row.component[run] / row.bare[run]);
    return Middle(ratios);
}

std::string Figure(double value, bool bytes)
{
    char text[32];
    if (bytes)
        std::snprintf(text, sizeof text, value < 1000 ? "%.1f bytes" : "%.0f bytes", value);
    else if (value < 1e-3)
        std::snprintf(text, sizeof text, "%.1f us", value * 1e6);
    else
        std::snprintf(text, sizeof text, "%.2f ms", value * 1e3);
    return text;
}

// From the quickest to the slowest run, in parts of the middle one.
std::string Spread(const std::vector<double> &figures)
{
    if (figures.size() < 2)
        return "-";
    const auto [lowest, highest] = std::minmax_element(figures.begin(), figures.end());
    const double middle = Middle(figures);
    char text[32];
    std::snprintf(text, sizeof text, "%+.0f..%+.0f%%", (*lowest / middle - 1) * 100, (*highest / middle - 1) * 100);
    return text;
}

std::string GoalText(const Row &row)
{
    char text[32] = "-";
    if (row.goal.ratio > 0)
        std::snprintf(text, sizeof text, "%.2f x", row.goal.ratio);
    else if (row.goal.seconds > 0)
        return Figure(row.goal.seconds, false);
    else if (row.goal.beyond > 0)
        return "+" + Figure(row.goal.beyond, false);
    else if (row.goal.bytes > 0)
        return Figure(row.goal.bytes, true);
    return text;
}

bool Reached(const Row &row)
{
    const double component = Middle(row.component);
    if (row.goal.ratio > 0)
        return Ratio(row) <= row.goal.ratio;
    if (row.goal.seconds > 0)
        return component <= row.goal.seconds;
    if (row.goal.beyond > 0)
        return component <= Middle(row.bare) + row.goal.beyond;
    return row.goal.bytes <= 0 || component <= row.goal.bytes;
}

} // namespace

bool IsWanted(const std::string &what, const std::string &size)
{
    const char *const only = std::getenv("KV_BENCH_ONLY");
    return !only || std::regex_search(what + "/" + size, std::regex(only));
}

void PrintHead()
{
    std::printf("%-42s %12s %14s %12s %12s %6s %14s\n", "what", "size", "component", "spread", "bare limit", "ratio",
                "to reach");
    std::fflush(stdout);
}

void Print(const Row &row)
{
    const double component = Middle(row.component);
    std::string bare = "-";
    char ratio[16] = "-";
    if (!row.bare.empty())
    {
        bare = Figure(Middle(row.bare), row.bytes);
        std::snprintf(ratio, sizeof ratio, "%.2f", Ratio(row));
    }
    std::printf("%-42s %12s %14s %12s %12s %6s %14s%s\n", row.what.c_str(), row.size.c_str(),
                Figure(component, row.bytes).c_str(), Spread(row.component).c_str(), bare.c_str(), ratio,
                GoalText(row).c_str(), Reached(row) ? "" : "  missed");
    std::fflush(stdout);
}

} // namespace bench
