// The layout table, and the controls made from it.
#include "editor/layout.h"

#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"
#include "editor/make_controls.h"
#include "runtime/error.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace editor;
using controls::Kind;

namespace
{

TEST(Layout, NamesEachControlOnceAndContainersFirst)
{
    std::set<std::string_view> names;
    std::set<int> tabIndexes;
    for (const LayoutEntry &entry : Layout())
    {
        EXPECT_TRUE(entry.container.empty() || names.count(entry.container)) << entry.name;
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        if (entry.tabIndex >= 0)
        {
            EXPECT_TRUE(tabIndexes.insert(entry.tabIndex).second) << entry.name;
        }
    }
    EXPECT_EQ(34u, names.size());
}

TEST(Layout, LabelsBesideThePartitionAreBold)
{
    for (const LayoutEntry &entry : Layout())
        EXPECT_EQ(entry.kind == Kind::Label && entry.name != "labPartition" && entry.name != "lblSSCheck(2)",
                  entry.bold)
            << entry.name;
}

TEST(Layout, KeepsEveryControlInsideItsContainer)
{
    for (const LayoutEntry &entry : Layout())
    {
        int width = kClientWidth;
        int height = kClientHeight;
        if (!entry.container.empty())
        {
            const controls::Place &around = LayoutOf(entry.container).place;
            width = around.width;
            height = around.height;
        }
        EXPECT_LE(entry.place.left + entry.place.width, width) << entry.name;
        EXPECT_LE(entry.place.top + entry.place.height, height) << entry.name;
    }
}

TEST(Layout, GivesAControlByName)
{
    EXPECT_EQ("Cancel changes and exit", LayoutOf("btnCancel").toolTip);
    EXPECT_EQ(Picture::Cancel, LayoutOf("btnCancel").picture);
    EXPECT_EQ(12, LayoutOf("SSCheck1(5)").tabIndex);
    EXPECT_THROW(LayoutOf("none"), runtime::Error);
}

TEST(Layout, BecomesControls)
{
    controls::ControlSet set;
    MakeControls(set);
    ASSERT_EQ(Layout().size(), set.All().size());
    for (std::size_t i = 0; i < Layout().size(); ++i)
    {
        const LayoutEntry &entry = Layout()[i];
        const controls::Control &control = *set.All()[i];
        EXPECT_EQ(entry.name, control.Name());
        EXPECT_EQ(entry.kind, control.GetKind()) << entry.name;
        EXPECT_EQ(entry.toolTip, control.ToolTip()) << entry.name;
        EXPECT_EQ(entry.place, control.GetPlace()) << entry.name;
        EXPECT_TRUE(control.Enabled()) << entry.name;
        EXPECT_EQ(entry.name != "labPartition" && entry.name != "cmbPartition", control.Visible()) << entry.name;
        EXPECT_EQ(entry.container, control.Container() ? control.Container()->Name() : "") << entry.name;
        EXPECT_EQ(entry.page, control.Page()) << entry.name;
        if (entry.kind != Kind::TabControl)
        {
            EXPECT_EQ(entry.caption, control.Caption()) << entry.name;
        }
    }
    EXPECT_EQ((std::vector<std::string>{"&General Settings", "Heading &Formats", "&Headings"}),
              set.Get<controls::TabControl>("SSTab1").TabCaptions());
}

TEST(Layout, ListsStartWithOneColumn)
{
    controls::ControlSet set;
    MakeControls(set);
    struct Case
    {
        const char *name;
        const char *column;
        bool hidden;
        bool editable;
    };
    for (const Case &c : {Case{"lvwFormats", "Format Name", true, true}, Case{"lvwHeadings", "Heading", true, true},
                          Case{"lvwReportType", "columns1", false, false}})
    {
        const auto &list = set.Get<controls::ListView>(c.name);
        ASSERT_EQ(1u, list.Columns().size()) << c.name;
        EXPECT_EQ(c.column, list.Columns()[0].text);
        EXPECT_EQ(c.hidden, list.HideColumnHeaders()) << c.name;
        EXPECT_EQ(c.editable, list.LabelsEditable()) << c.name;
    }
}

} // namespace
