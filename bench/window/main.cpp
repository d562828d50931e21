// window_bench: the rows of the real window, which is measured where it is at home: a Windows program, run under Wine
// with the embedded database. Prints them below those of kv_bench.
#include "bare_odbc.h"
#include "editor/frmHeadings.h"
#include "table.h"
#include "window/plain_window.h"
#include "window/register.h"
#include "window/shown_editor.h"

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

namespace
{

double Time(const std::function<void()> &act)
{
    const auto start = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The three lists of formats and headings anew, until they are painted.
void FillTheLists()
{
    bench::Row row{"fill the three lists, real window", "30000+5000", {.seconds = 0.2}};
    if (!bench::IsWanted(row.what, row.size))
        return;
    bench::ShownSite site("lists-10000", 1);
    site.Open(
        [&](editor::frmHeadings &form)
        {
            const auto window = static_cast<HWND>(form.Handle());
            form.SSTab1.ClickTab(2);
            for (int i = 0; i < 7; ++i)
            {
                UpdateWindow(window);
                row.component.push_back(Time(
                    [&]
                    {
                        form.FillFormatLists(true, true);
                        form.FillHeadingList(true);
                        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
                    }));
            }
            row.size = std::to_string(form.lvwHeadings.Count()) + "+" + std::to_string(form.lvwFormats.Count());
        });
    bench::Print(row);
}

// From the host's call to the window that has been painted, where the component is loaded and connected.
void ShowForm(const std::string &name, int partition, bench::Goal goal)
{
    bench::Row row{"ShowForm to the painted window", name, goal};
    if (!bench::IsWanted(row.what, row.size))
        return;
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
    for (int i = 0; i < 7; ++i)
    {
        row.component.push_back(site.Open());
        row.bare.push_back(Time([&] { bare.Fetch(queries); }));
    }
    bench::Print(row);
}

// The same, beside a window with the same controls and contents that is made and painted by plain calls.
void ShowFormBesidePlainControls()
{
    bench::Row row{"ShowForm, beside its controls made plainly", "sample", {.ratio = 1.5}};
    if (!bench::IsWanted(row.what, row.size))
        return;
    bench::ShownSite site("sample", 3);
    std::optional<bench::PlainWindow> plain;
    site.Open([&](editor::frmHeadings &form) { plain.emplace(static_cast<HWND>(form.Handle())); });
    plain->Open();
    for (int i = 0; i < 9; ++i)
    {
        row.component.push_back(site.Open());
        row.bare.push_back(plain->Open());
    }
    bench::Print(row);
}

} // namespace

int main()
{
    window::Register();
    editor::RegisterForms();
    FillTheLists();
    ShowForm("sample", 3, {.beyond = 0.15});
    ShowFormBesidePlainControls();
    ShowForm("lists-10000", 1, {});
}
