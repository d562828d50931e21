// The lists of formats and headings, and what a refill remembers.
#include "site.h"

namespace
{

class Lists : public Site
{
protected:
    Lists()
        : top(Partition(1, "Top", "/", true)), middle(Partition(2, "Middle", "/1/")),
          sibling(Partition(4, "Sibling", "/1/")), bottom(Partition(3, "Bottom", "/1/2/"))
    {
        Format(top, 10, "Bold", true);
        Format(middle, 11, "Plain");
        Format(sibling, 12, "Other");
        Format(bottom, 13, "Small");
        Format(bottom, 14, "Big");
        Heading(top, 20, "HISTORY");
        Heading(middle, 21, "PLAN");
        Heading(sibling, 22, "OTHER");
        Heading(bottom, 23, "SUMMARY");
    }
    // Selects an entry of the drop-down list as the program does, and sets the index that is remembered.
    void SelectFormat(int position, int index)
    {
        form.m_blnLoading = true;
        form.cmbFormats.SetListIndex(position);
        form.m_blnLoading = false;
        form.m_intFormatIndex = index;
    }
    model::clsPartition &top;
    model::clsPartition &middle;
    model::clsPartition &sibling;
    model::clsPartition &bottom;
};

TEST_F(Lists, ShowTheAncestorsBehindThePartition)
{
    Show(bottom);
    EXPECT_EQ((Lines{"* Key13-3 | Small | Bottom", "  Key14-3 | Big | Bottom", "  Key10-1 | Bold | Top",
                     "  Key11-2 | Plain | Middle"}),
              Items(form.lvwFormats));
    EXPECT_EQ((Lines{"* Key23-3 | SUMMARY | Bottom", "  Key20-1 | HISTORY | Top", "  Key21-2 | PLAN | Middle"}),
              Items(form.lvwHeadings));
    EXPECT_EQ((Lines{"  Small \\ Bottom {0}", "  Big \\ Bottom {1}", "  Bold \\ Top {2}", "  Plain \\ Middle {3}"}),
              Entries(form.cmbFormats));
    EXPECT_EQ((Lines{"13-3", "14-3", "10-1", "11-2"}), form.m_strFormatKeys);
}

TEST_F(Lists, LeaveOutWhatIsMarkedForRemoval)
{
    bottom.m_objcolFormats->ColFormatInfo->Item("13")->RemoveFormat = true;
    top.m_objcolFormats->ColFormatInfo->Item("10")->RemoveFormat = true;
    bottom.m_objcolHeadings->ColHeadingInfo->Item("23")->RemoveHeader = true;
    Show(bottom);
    EXPECT_EQ((Lines{"* Key14-3 | Big | Bottom", "  Key11-2 | Plain | Middle"}), Items(form.lvwFormats));
    EXPECT_EQ((Lines{"  Big \\ Bottom {0}", "  Plain \\ Middle {1}"}), Entries(form.cmbFormats));
    EXPECT_EQ((Lines{"* Key20-1 | HISTORY | Top", "  Key21-2 | PLAN | Middle"}), Items(form.lvwHeadings));
}

TEST_F(Lists, SelectTheFirstHeadingAsDisplayed)
{
    form.lvwHeadings.SetSorted(true);
    Show(bottom);
    EXPECT_EQ(20, form.m_intHeadID);
    EXPECT_EQ(1, form.m_lngHeadPartitionID);
}

TEST_F(Lists, FilledAnewWithoutSelectingLeaveTheHeading)
{
    Show(bottom);
    form.btnDeleteHead.SetEnabled(true);
    form.m_intHeadID = 21;
    form.FillHeadingList(false);
    EXPECT_EQ(21, form.m_intHeadID);
    EXPECT_TRUE(form.btnDeleteHead.Enabled());
}

TEST_F(Lists, RefillOnlyWhatIsAskedFor)
{
    Show(bottom);
    form.lvwFormats.SetSelectedItem(2);
    bottom.m_objcolFormats->ColFormatInfo->Item("13")->FormatName = "Tiny";
    form.FillFormatLists(true, false);
    EXPECT_EQ("Small", form.lvwFormats.Item(1).text);
    EXPECT_EQ(2, form.lvwFormats.SelectedPosition());
    EXPECT_EQ("Tiny \\ Bottom", form.cmbFormats.List(0));
    bottom.m_objcolFormats->ColFormatInfo->Item("13")->FormatName = "Wee";
    form.FillFormatLists(false, true);
    EXPECT_EQ("Wee", form.lvwFormats.Item(1).text);
    EXPECT_EQ("Tiny \\ Bottom", form.cmbFormats.List(0));
}

// Refilled, while a format before it is removed: what is selected then, and that nothing is recorded.
TEST_F(Lists, RefilledDropDownKeepsItsFormat)
{
    constexpr int kPicked = support::EditorForm::kHeadingPicked;
    struct Case
    {
        const char *name;
        int selected, index; // before
        const char *shown;   // after
        int indexAfter;
    };
    const Case cases[] = {{"moves with its entry", 2, 2, "Bold \\ Top", 1},
                          {"gone", 0, 0, "", -1},
                          {"nothing was selected", -1, 3, "", -1},
                          {"the mark of a picked heading stays", 2, kPicked, "Bold \\ Top", kPicked}};
    for (const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        model::clsFormats &first = *bottom.m_objcolFormats->ColFormatInfo->Item("13");
        first.RemoveFormat = false;
        Show(bottom);
        SelectFormat(c.selected, c.index);
        first.RemoveFormat = true;
        form.FillFormatLists(true, false);
        EXPECT_EQ(c.shown, FormatShown());
        EXPECT_EQ(c.indexAfter, form.m_intFormatIndex);
        EXPECT_FALSE(form.m_blnChanged);
        EXPECT_EQ(Lines{}, Settings());
    }
}

TEST_F(Lists, AnEqualIdInAnAncestorTakesTheSelectionOver)
{
    Format(top, 13, "Ancestor's");
    Show(bottom);
    SelectFormat(0, 0);
    form.FillFormatLists(true, false);
    EXPECT_EQ("Ancestor's \\ Top", FormatShown());
    EXPECT_EQ(form.cmbFormats.ListIndex(), form.m_intFormatIndex);
    EXPECT_FALSE(form.m_blnChanged);
}

} // namespace
