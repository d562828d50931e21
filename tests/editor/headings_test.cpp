// Renaming and deleting headings.
#include "site.h"

using platform::Answer;
using support::Box;

namespace
{

class Headings : public Site
{
protected:
    Headings()
        : top(Partition(1, "Top", "/", true)), partition(Partition(3, "Here", "/1/")),
          sibling(Partition(4, "Sibling", "/1/"))
    {
        Heading(partition, 20, "HISTORY");
        Heading(partition, 21, "PLAN");
        Heading(top, 22, "INHERITED");
        Heading(sibling, 23, "SIBLING'S");
        Format(partition, 10, "A");
        Show(partition, {7});
        form.SSTab1.SetTab(2);
    }
    bool Rename(const std::string &text)
    {
        return form.lvwHeadings.BeginLabelEdit() &&
               form.lvwHeadings.EndLabelEdit(text, editor::controls::EditEnd::Enter);
    }
    model::clsHeadings &Record(const char *id) { return *partition.m_objcolHeadings->ColHeadingInfo->Item(id); }

    model::clsPartition &top;
    model::clsPartition &partition;
    model::clsPartition &sibling;
};

TEST_F(Headings, RefuseNamesOfThePartitionAndItsAncestors)
{
    const std::string null = Box(0, "Null Value", "You must enter a text value to change the header name.");
    const std::string duplicate =
        Box(0, "Duplicate Name", "This heading name is already being used. Please enter a unique name.");
    PickHeading("Key21-3");
    const std::pair<std::string, std::string> cases[] = {
        {"", null}, {"  ", null}, {" history", duplicate}, {"PLAN", duplicate}, {"Inherited", duplicate}};
    for (const auto &[text, box] : cases)
    {
        desktop.boxes.clear();
        desktop.WillAnswerOk();
        EXPECT_FALSE(Rename(text)) << text;
        EXPECT_EQ((Lines{box}), desktop.boxes) << text;
    }
    EXPECT_EQ("PLAN", Record("21").HeadingName);
    EXPECT_FALSE(form.m_blnChanged);
    EXPECT_TRUE(Rename("SIBLING'S")) << "a sibling partition's name is free";
}

TEST_F(Headings, AreStoredAsTyped)
{
    PickHeading("Key21-3");
    ASSERT_TRUE(Rename(" PLANS "));
    EXPECT_EQ(" PLANS ", Record("21").HeadingName);
}

// The number of a heading cannot be read from its key when it is below 0: the click on it fails.
TEST_F(Headings, NothingIsDoneToAnotherOneThanTheSelectedOne)
{
    Setting(21, 7, 0, 10, 0);
    Heading(partition, -5, "ODD");
    form.FillHeadingList(true);
    PickHeading("Key21-3");
    PickHeading("Key-5-3");
    desktop.WillAnswer({Answer::Yes});
    ASSERT_TRUE(form.btnDeleteHead.Click());
    EXPECT_EQ((Lines{Box(36, "Confirm Heading Deletion", "Are you sure you want to delete the heading ODD?", "Yes")}),
              desktop.boxes);
    EXPECT_FALSE(form.lvwHeadings.BeginLabelEdit());
    ASSERT_TRUE(form.cmbFormats.Choose(0));
    ChooseAccount(1);
    desktop.WillAnswerOk(2);
    ASSERT_TRUE(form.btnAllAccounts.Click());
    ASSERT_TRUE(form.btnAllReports.Click());
    EXPECT_EQ((Lines{"21 7 0 10 0"}), Settings());
    EXPECT_FALSE(Record("21").HasChanged);
}

TEST_F(Headings, TheItemEditedDecidesWhetherItMayBe)
{
    // Read-only was last brought up to date for another item.
    form.m_blnReadOnly = true;
    EXPECT_TRUE(form.lvwHeadings.BeginLabelEdit());
    EXPECT_FALSE(form.m_blnReadOnly);
    form.lvwHeadings.EndLabelEdit("", editor::controls::EditEnd::Escape);
    form.lvwHeadings.SetSelectedItem("Key22-1");
    EXPECT_FALSE(form.lvwHeadings.BeginLabelEdit());
    EXPECT_TRUE(form.m_blnReadOnly);
}

TEST_F(Headings, TheLastOneCanBeDeletedInPeace)
{
    model::clsPartition &other = Partition(8, "Other");
    model::clsHeadings &only = Heading(other, 30, "ONLY");
    Show(other, {7});
    ASSERT_TRUE(PickHeading("Key30-8"));
    desktop.WillAnswer({Answer::Yes});
    ASSERT_TRUE(form.btnDeleteHead.Click());
    EXPECT_TRUE(only.RemoveHeader);
    EXPECT_EQ(0, form.m_intHeadID);
    EXPECT_EQ(0, form.m_lngHeadPartitionID);
    EXPECT_FALSE(form.btnDeleteHead.Enabled());
}

} // namespace
