// The state of controls as a transcript prints it.
#include "play/control_state.h"

#include "script/failure.h"

#include <gtest/gtest.h>

namespace
{

using namespace scenario;

ListState Formats()
{
    ListState list;
    list.enabled = true;
    list.hasSecondColumn = true;
    list.items = {{"Key1-3", "Bold", "Site"}, {"Key2-1", "A \"b\"\t", "Network"}};
    list.selected = 1;
    return list;
}

TEST(ScenarioDump, OfAListMarksTheSelectedItem)
{
    EXPECT_EQ(Dump("lvwFormats", Formats()), "lvwFormats enabled sort=none\n"
                                             "  Key1-3 | Bold | Site\n"
                                             "* Key2-1 | A \\\"b\\\"\\t | Network\n");
}

TEST(ScenarioDump, OfAListNamesItsOrder)
{
    ListState list;
    list.sorted = true;
    EXPECT_EQ(Dump("lvwFormats", list), "lvwFormats disabled sort=asc:0\n");
    list.descending = true;
    list.sortKey = 1;
    EXPECT_EQ(Dump("lvwFormats", list), "lvwFormats disabled sort=desc:1\n");
}

TEST(ScenarioDump, OfAListWithoutASecondColumnLeavesItOut)
{
    ListState list;
    list.enabled = true;
    list.items = {{"Key0", "<All New>", ""}};
    list.selected = 0;
    EXPECT_EQ(Dump("lvwReportType", list), "lvwReportType enabled sort=none\n* Key0 | <All New>\n");
}

TEST(ScenarioDump, OfAComboBoxShowsItemData)
{
    ComboState combo;
    combo.enabled = true;
    combo.entries = {{"<All New>", -1}, {"Lakeside", 7}};
    EXPECT_EQ(Dump("cmbAccList", combo), "cmbAccList enabled\n  <All New> {-1}\n  Lakeside {7}\n");
    combo.selected = 0;
    EXPECT_EQ(Dump("cmbAccList", combo), "cmbAccList enabled\n* <All New> {-1}\n  Lakeside {7}\n");
}

TEST(ScenarioDump, OfBoxesButtonsAndTheWindowIsOneLine)
{
    EXPECT_EQ(Dump("chkTagKnown", BoxState{true, true}), "chkTagKnown 1 enabled\n");
    EXPECT_EQ(Dump("SSCheck1(3)", BoxState{false, false}), "SSCheck1(3) 0 disabled\n");
    EXPECT_EQ(Dump("btnAdd", ButtonState{true, "&Add"}), "btnAdd \"&Add\" enabled\n");
    EXPECT_EQ(Dump("frmHeadings", WindowState{true}), "frmHeadings topmost\n");
    EXPECT_EQ(Dump("frmHeadings", WindowState{false}), "frmHeadings normal\n");
}

TEST(ScenarioDump, OfTheSelectionAloneIsOneLine)
{
    EXPECT_EQ(DumpSelected("lvwFormats", Formats()), "lvwFormats Key2-1 | A \\\"b\\\"\\t | Network\n");
    ComboState combo;
    combo.entries = {{"<All New>", -1}, {"Lakeside", 7}};
    EXPECT_EQ(DumpSelected("cmbAccList", combo), "cmbAccList -\n");
    combo.selected = 1;
    EXPECT_EQ(DumpSelected("cmbAccList", combo), "cmbAccList Lakeside {7}\n");
    EXPECT_THROW(DumpSelected("btnAdd", ButtonState{true, "&Add"}), Refusal);
}

TEST(ScenarioDump, FindsTheFirstItem)
{
    EXPECT_EQ(FindKey(Formats(), "Key2-1"), 1);
    EXPECT_EQ(FindKey(Formats(), "Bold"), -1);
    EXPECT_EQ(FindText(Formats(), "Bold"), 0);
    EXPECT_EQ(FindText(Formats(), "bold"), -1);
    ComboState combo;
    combo.entries = {{"a", 0}, {"b", 1}, {"b", 2}};
    EXPECT_EQ(FindText(combo, "b"), 1);
    EXPECT_EQ(FindText(combo, "c"), -1);
}

} // namespace
