// The formats tab: boxes, read-only formats, sorting, renaming and deleting.
#include "site.h"

using editor::frmHeadings;
using platform::Answer;
using support::Box;

namespace
{

class Formats : public Site
{
protected:
    Formats() : top(Partition(1, "Top", "/", true)), partition(Partition(3, "Here", "/1/"))
    {
        Format(partition, 9, "System", true);
        Format(partition, 10, "Bold").Bold = true;
        Format(partition, 11, "Plain");
        Format(top, 12, "Inherited");
        Heading(partition, 20, "HISTORY");
        Show(partition);
        form.SSTab1.SetTab(1);
    }
    std::string Boxes() const
    {
        std::string values;
        for (const auto *box : form.SSCheck1)
            values += std::to_string(box->Value());
        return values;
    }
    bool Rename(const std::string &text)
    {
        return form.lvwFormats.BeginLabelEdit() && form.lvwFormats.EndLabelEdit(text, editor::controls::EditEnd::Enter);
    }
    model::clsFormats &Record(const char *id) { return *partition.m_objcolFormats->ColFormatInfo->Item(id); }

    model::clsPartition &top;
    model::clsPartition &partition;
};

TEST_F(Formats, EachBoxSwitchesItsAttribute)
{
    PickFormat("Key11-3");
    model::clsFormats &record = Record("11");
    bool *const attributes[] = {&record.InsertBefore, &record.InsertAfter, &record.InsertColon,
                                &record.Bold,         &record.Underline,   &record.Indent};
    for (std::size_t i = 0; i < 6; ++i)
    {
        record.HasChanged = false;
        form.m_blnChanged = false;
        ASSERT_TRUE(form.SSCheck1[i]->Toggle());
        for (std::size_t j = 0; j < 6; ++j)
            EXPECT_EQ(i == j, *attributes[j]) << i << " " << j;
        EXPECT_TRUE(record.HasChanged);
        EXPECT_TRUE(form.m_blnChanged);
        EXPECT_FALSE(form.m_blnCheckClick);
        form.m_blnChanged = false;
        ASSERT_TRUE(form.SSCheck1[i]->Toggle());
        EXPECT_FALSE(*attributes[i]);
        EXPECT_TRUE(form.m_blnChanged);
    }
    EXPECT_FALSE(Record("10").HasChanged);
}

TEST_F(Formats, ABoxThatDoesNotExistChangesNothingButTheFlags)
{
    PickFormat("Key11-3");
    form.SSCheck1_Click(6, -1);
    form.SSCheck1_Click(-1, -1);
    EXPECT_EQ("000000", Boxes());
    EXPECT_TRUE(Record("11").HasChanged);
}

TEST_F(Formats, BoxesSetWhileLoadingChangeNothing)
{
    PickFormat("Key11-3");
    form.m_blnLoading = true;
    form.SSCheck1[0]->SetValue(1);
    EXPECT_FALSE(Record("11").InsertBefore);
    EXPECT_FALSE(form.m_blnChanged);
}

// The number of a format cannot be read from its key when it is below 0: the click on it fails.
TEST_F(Formats, NothingIsDoneToAnotherOneThanTheSelectedOne)
{
    Format(partition, -6, "Odd");
    form.FillFormatLists(true, true);
    PickFormat("Key10-3");
    PickFormat("Key-6-3");
    desktop.WillAnswer({platform::Answer::Yes});
    ASSERT_TRUE(form.SSCheck1[0]->Toggle());
    ASSERT_TRUE(form.btnDelete.Click());
    EXPECT_FALSE(form.lvwFormats.BeginLabelEdit());
    EXPECT_FALSE(Record("10").HasChanged);
    EXPECT_FALSE(form.m_blnChanged);
}

TEST_F(Formats, TheItemEditedDecidesWhetherItMayBe)
{
    form.m_blnReadOnly = true; // of another item
    form.lvwFormats.SetSelectedItem("Key11-3");
    EXPECT_TRUE(form.lvwFormats.BeginLabelEdit());
    EXPECT_FALSE(form.m_blnReadOnly);
    form.lvwFormats.SetSelectedItem("Key9-3");
    EXPECT_FALSE(form.lvwFormats.BeginLabelEdit());
    EXPECT_TRUE(form.m_blnReadOnly);
}

TEST_F(Formats, AnErrorOfTheSelectionStopsLoading)
{
    form.lvwFormats.Add("Key99-3", "Ghost");
    EXPECT_TRUE(PickFormat("Key99-3"));
    EXPECT_FALSE(form.m_blnLoading);
}

// --- Renaming

// Of the partition above, which is in the host's scope too: its names count, those of the current one do not.
TEST_F(Formats, AreComparedWithThoseOfTheirOwner)
{
    model::clsPartition &below = Partition(4, "Below", "/1/3/");
    Format(below, 20, "Taken below");
    Show(below);
    PickFormat("Key11-3");
    desktop.WillAnswerOk();
    EXPECT_FALSE(Rename("bold"));
    EXPECT_EQ("Plain", Record("11").FormatName);
    EXPECT_TRUE(Rename("Taken below"));
    EXPECT_EQ("Taken below", Record("11").FormatName);
}

TEST_F(Formats, ARenameIsNeverTakenForAnAttribute)
{
    PickFormat("Key11-3");
    form.m_blnCheckClick = true; // left behind by a choice in cmbFormats
    ASSERT_TRUE(Rename("Plainer"));
    EXPECT_EQ("Plainer", Record("11").FormatName);
    EXPECT_FALSE(Record("11").InsertBefore);
}

TEST_F(Formats, TakesNamesOfRemovedFormatsAndOfOtherPartitions)
{
    Record("10").RemoveFormat = true;
    PickFormat("Key11-3");
    EXPECT_TRUE(Rename("Bold"));
    EXPECT_TRUE(Rename("Inherited"));
}

TEST_F(Formats, AnEmptyNameFallsBackToTheListsText)
{
    PickFormat("Key11-3");
    Record("11").FormatName = "stale";
    form.ApplyFormatEdit(0, 0, "");
    EXPECT_EQ("Plain", Record("11").FormatName);
}

// --- Deleting

TEST_F(Formats, ADeletionAsksAndNoChangesNothing)
{
    PickFormat("Key10-3");
    desktop.WillAnswer({Answer::No});
    ASSERT_TRUE(form.btnDelete.Click());
    EXPECT_EQ((Lines{Box(36, "Confirm Format Deletion", "Are you sure you want to delete the format Bold?", "No")}),
              desktop.boxes);
    EXPECT_FALSE(Record("10").RemoveFormat);
    EXPECT_FALSE(form.m_blnChanged);
    EXPECT_EQ(10, form.m_intFormatID);
}

} // namespace
