// The benchmarks of the real window, which is measured where it is at home: a Windows program, run under Wine with the
// embedded database. Prints rows of the table of the benchmarks.
#include "bare_odbc.h"
#include "editor/frmHeadings.h"
#include "table.h"
#include "window/register.h"
#include "window/shown_editor.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

double Time(const std::function<void()> &act)
{
    const auto start = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// The three lists of formats and headings anew, until they are painted.
bench::TimeRow FillTheLists()
{
    bench::ShownSite site("lists", 1);
    std::vector<double> times;
    std::string size;
    site.Open(
        [&](editor::frmHeadings &form)
        {
            const auto window = static_cast<HWND>(form.Handle());
            form.SSTab1.ClickTab(2);
            for (int i = 0; i < 7; ++i)
            {
                UpdateWindow(window);
                times.push_back(Time(
                    [&]
                    {
                        form.FillFormatLists(true, true);
                        form.FillHeadingList(true);
                        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
                    }));
            }
            size = std::to_string(form.lvwHeadings.Count()) + "+" + std::to_string(form.lvwFormats.Count());
        });
    return {"fill the three lists, real window", size, {.seconds = 0.2}, Median(times)};
}

// From the host's call to the window that has been painted, where the component is loaded and connected.
bench::TimeRow ShowForm(const std::string &name, int partition, bench::TimeGoal goal)
{
    std::vector<std::string> queries;
    {
        bench::ShownSite site(name, partition, true);
        site.Open();
        queries = site.Sent();
    }
    bench::ShownSite site(name, partition);
    bench::BareOdbc bare(site.File());
    site.Open();
    bare.Fetch(queries);
    std::vector<double> component, limit;
    for (int i = 0; i < 7; ++i)
    {
        component.push_back(site.Open());
        limit.push_back(Time([&] { bare.Fetch(queries); }));
    }
    return {"ShowForm to the painted window", name + " site", goal, Median(component), Median(limit)};
}

} // namespace

int main()
{
    window::Register();
    editor::RegisterForms();
    bench::Print(FillTheLists());
    bench::Print(ShowForm("sample", 3, {.beyond = 0.15}));
    bench::Print(ShowForm("lists", 1, {}));
}
