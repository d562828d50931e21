// The layout table, and the controls made from it.
#include "editor/layout.h"

#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"
#include "editor/editor_controls.h"
#include "runtime/error.h"
#include "support/design.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>
#include <vector>

using namespace editor;

namespace
{

TEST(Layout, IsTheDesign)
{
    ASSERT_EQ(std::size(support::kDesign), Layout().size());
    std::set<std::string_view> before;
    for (std::size_t i = 0; i < Layout().size(); ++i)
    {
        const LayoutEntry &entry = Layout()[i];
        const support::DesignedControl &design = support::kDesign[i];
        SCOPED_TRACE(design.name);
        EXPECT_EQ(design.name, entry.name);
        EXPECT_EQ(&entry, &LayoutOf(design.name));
        EXPECT_EQ(design.tabIndex, entry.tabIndex);
        EXPECT_EQ(support::IsBold(design), entry.bold);
        EXPECT_EQ(support::HasPicture(design), entry.picture != Picture::None);
        EXPECT_TRUE(entry.container.empty() || before.count(entry.container)) << "containers stand first";
        before.insert(entry.name);
    }
    EXPECT_EQ("Speech Recognition Headings Editor", kCaption);
    EXPECT_EQ(10725, kClientWidth);
    EXPECT_EQ(5520, kClientHeight);
    EXPECT_EQ(600, kStripHeight);
    EXPECT_THROW(LayoutOf("none"), runtime::Error);
}

TEST(Layout, BecomesControls)
{
    EditorControls made;
    controls::ControlSet &set = made.All();
    ASSERT_EQ(std::size(support::kDesign), set.All().size());
    for (std::size_t i = 0; i < set.All().size(); ++i)
    {
        const support::DesignedControl &design = support::kDesign[i];
        const controls::Control &control = *set.All()[i];
        SCOPED_TRACE(design.name);
        EXPECT_EQ(design.name, control.Name());
        EXPECT_EQ(design.kind, control.GetKind());
        EXPECT_EQ(design.caption, control.Caption());
        EXPECT_EQ(design.toolTip, control.ToolTip());
        EXPECT_EQ(design.place, control.Bounds());
        EXPECT_TRUE(control.Enabled());
        EXPECT_EQ(!design.name.ends_with("Partition"), control.Visible());
        std::string container = control.Container() ? control.Container()->Name() : "";
        if (container == "SSTab1")
            container += ":" + std::to_string(control.Page());
        EXPECT_EQ(design.container, container);
    }
    EXPECT_EQ((std::vector<std::string>{"&General Settings", "Heading &Formats", "&Headings"}),
              set.Get<controls::TabControl>("SSTab1").TabCaptions());
}

TEST(Layout, ListsStartWithOneColumn)
{
    EditorControls made;
    controls::ControlSet &set = made.All();
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
        auto &list = set.Get<controls::ListView>(c.name);
        ASSERT_EQ(1u, list.Columns().size()) << c.name;
        EXPECT_EQ(c.column, list.Columns()[0].text);
        EXPECT_EQ(c.hidden, list.HideColumnHeaders()) << c.name;
        list.Add("key", "text");
        list.StartLabelEdit();
        EXPECT_EQ(c.editable, list.Editing()) << c.name;
    }
}

} // namespace
