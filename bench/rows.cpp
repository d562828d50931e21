// Running the rows one by one.
#include "rows.h"

#include <algorithm>
#include <cstdlib>
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

} // namespace

void AddRow(const std::string &what, const std::string &size, Goal goal, Measure component, Measure bare, int runs)
{
    Plan().push_back({{what, size, goal, false}, std::move(component), std::move(bare), runs});
}

void AddBytesRow(const std::string &what, const std::string &size, Goal goal, Measure component)
{
    Plan().push_back({{what, size, goal, true}, std::move(component), {}, 1});
}

void RunAll()
{
    const char *const runsWanted = std::getenv("KV_BENCH_RUNS");
    PrintHead();
    for (Planned &planned : Plan())
    {
        Row &row = planned.row;
        if (!IsWanted(row.what, row.size))
            continue;
        const int runs = runsWanted ? std::max(1, std::atoi(runsWanted)) : planned.runs;
        for (int run = 0; run < runs; ++run)
        {
            row.component.push_back(planned.component());
            if (planned.bare)
                row.bare.push_back(planned.bare());
        }
        if (row.component[0] > 0)
            Print(row);
    }
}

} // namespace bench
