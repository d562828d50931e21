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

TEST_F(Lists, RefilledDropDownKeepsItsFormatAndRecordsNothing)
{
    Show(bottom);
    form.m_blnLoading = true;
    form.cmbFormats.SetListIndex(2);
    form.m_blnLoading = false;
    form.m_intFormatIndex = 2;
    bottom.m_objcolFormats->ColFormatInfo->Item("13")->RemoveFormat = true;
    form.FillFormatLists(true, false);
    EXPECT_EQ("Bold \\ Top", FormatShown());
    EXPECT_EQ(1, form.m_intFormatIndex) << "moved with its entry";
    EXPECT_FALSE(form.m_blnChanged);
    EXPECT_EQ(Lines{}, Settings());
}

TEST_F(Lists, RefilledDropDownWhoseFormatIsGoneSelectsNothing)
{
    Show(bottom);
    form.m_blnLoading = true;
    form.cmbFormats.SetListIndex(0);
    form.m_blnLoading = false;
    form.m_intFormatIndex = 0;
    bottom.m_objcolFormats->ColFormatInfo->Item("13")->RemoveFormat = true;
    form.FillFormatLists(true, false);
    EXPECT_EQ("", FormatShown());
    EXPECT_EQ(-1, form.m_intFormatIndex);
}

TEST_F(Lists, RefilledDropDownWithNothingSelectedStaysSo)
{
    Show(bottom);
    form.m_intFormatIndex = 3;
    form.FillFormatLists(true, false);
    EXPECT_EQ("", FormatShown());
    EXPECT_EQ(-1, form.m_intFormatIndex);
}

TEST_F(Lists, TheMarkOfAPickedHeadingOutlivesARefill)
{
    Show(bottom);
    form.m_blnLoading = true;
    form.cmbFormats.SetListIndex(2);
    form.m_blnLoading = false;
    form.m_intFormatIndex = support::EditorForm::kHeadingPicked;
    form.FillFormatLists(true, false);
    EXPECT_EQ("Bold \\ Top", FormatShown());
    EXPECT_EQ(support::EditorForm::kHeadingPicked, form.m_intFormatIndex);
    EXPECT_FALSE(form.m_blnChanged);
    EXPECT_EQ(Lines{}, Settings());
}

TEST_F(Lists, AnEqualIdInAnAncestorTakesTheSelectionOver)
{
    Format(top, 13, "Ancestor's");
    Show(bottom);
    form.m_blnLoading = true;
    form.cmbFormats.SetListIndex(0);
    form.m_blnLoading = false;
    form.m_intFormatIndex = 0;
    form.FillFormatLists(true, false);
    EXPECT_EQ("Ancestor's \\ Top", FormatShown());
    EXPECT_EQ(form.cmbFormats.ListIndex(), form.m_intFormatIndex);
    EXPECT_FALSE(form.m_blnChanged);
}

} // namespace
