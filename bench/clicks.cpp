// What a user does at the open editor.
#include "editor_session.h"
#include "rows.h"

#include <functional>

namespace bench
{

namespace
{

using Act = std::function<double(editor::frmHeadings &)>;

// The seconds that an act at the open editor takes.
Measure AtTheEditor(const std::string &site, const Act &act)
{
    return [site, act]
    {
        Site opened(site);
        double seconds = 0;
        opened.WhileOpen([&](editor::frmHeadings &form) { seconds = act(form); });
        return seconds;
    };
}

// A click on one heading after the other, all of them once.
double ClickOnHeading(editor::frmHeadings &form)
{
    form.SSTab1.ClickTab(2);
    const int count = form.lvwHeadings.Count();
    const double seconds = Time(
        [&]
        {
            for (int position = 1; position <= count; ++position)
                form.lvwHeadings.Select(position);
        });
    return seconds / count;
}

double FillTheLists(editor::frmHeadings &form)
{
    return Time(
        [&]
        {
            form.FillFormatLists(true, true);
            form.FillHeadingList(true);
        });
}

double SortHeadings(editor::frmHeadings &form)
{
    form.SSTab1.ClickTab(2);
    return Time(
        [&]
        {
            form.lvwHeadings.ClickColumn(1);
            form.lvwHeadings.Item(1);
        });
}

double ApplyToAllAccounts(editor::frmHeadings &form)
{
    form.SSTab1.ClickTab(2);
    form.lvwHeadings.Select(form.lvwHeadings.Count() / 2);
    form.cmbFormats.Choose(0);
    return Time([&] { form.btnAllAccounts.Click(); });
}

double AddHeadingAsCopy(editor::frmHeadings &form)
{
    form.SSTab1.ClickTab(2);
    const int position = form.lvwHeadings.Count() / 2;
    const std::string name = "Copy of " + form.lvwHeadings.Item(position).text;
    auto &headings = *model::gHeadings->ColHeadingInfo;
    for (int i = 0; i < 1000; ++i)
    {
        const auto heading = runtime::MakeRef<model::clsHeadings>();
        heading->FillHeadings(static_cast<std::int16_t>(-30000 + i),
                              i == 0 ? name : name + " (" + std::to_string(i) + ")", false, false, false);
        headings.Add(heading, std::to_string(heading->HeadID));
    }
    form.lvwHeadings.Select(position);
    return Time([&] { form.btnAddHead.Click(); });
}

// The format that most settings name, made the current partition's own so that it may go.
double DeleteFormat(editor::frmHeadings &form)
{
    form.SSTab1.ClickTab(1);
    int position = 1;
    while (position < form.lvwFormats.Count() && !form.btnDelete.Enabled())
        form.lvwFormats.Select(++position);
    const std::int16_t id = editor::ParseListKey(form.lvwFormats.SelectedItem().key).id;
    auto &settings = *model::gSettings->ColSettingInfo;
    for (std::int64_t i = 1; i <= static_cast<std::int64_t>(settings.Count()) && i <= 1000000; i += 100)
        settings.Item(i)->FormatID = id;
    return Time([&] { form.btnDelete.Click(); });
}

double ChangePartition(editor::frmHeadings &form)
{
    return Time([&] { form.cmbPartition.Choose(form.cmbPartition.ListCount() - 1); });
}

} // namespace

void AddClickRows()
{
    for (const char *const size : {"10000", "100000", "1000000"})
    {
        const std::string site = std::string("settings-") + size;
        AddRow("click on a heading", size, {.seconds = 50e-6}, AtTheEditor(site, ClickOnHeading));
        AddRow("apply to all accounts", size, {.seconds = 2e-3}, AtTheEditor(site, ApplyToAllAccounts));
        AddRow("delete a format of a hundredth", size, {.seconds = 10e-3}, AtTheEditor(site, DeleteFormat));
    }
    // 30,000 headings and 5,000 formats are shown in these.
    for (const char *const size : {"10000", "100000", "1000000"})
    {
        const std::string site = std::string("lists-") + size;
        AddRow("change of partition", size, {.seconds = 30e-3}, AtTheEditor(site, ChangePartition));
        AddRow("add a heading as a copy, 1000 taken", size, {.seconds = 30e-3}, AtTheEditor(site, AddHeadingAsCopy));
    }
    AddRow("fill the three lists, headless", "30000", {}, AtTheEditor("lists-10000", FillTheLists));
    AddRow("sort the headings", "30000", {.seconds = 40e-3}, AtTheEditor("lists-10000", SortHeadings));
}

} // namespace bench
