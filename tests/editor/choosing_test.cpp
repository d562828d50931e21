// Choosing a format for a heading, and one format for all accounts or report types.
#include "site.h"

namespace
{

class Choosing : public Site
{
protected:
    Choosing() : partition(Partition(3, "Here"))
    {
        Format(partition, 10, "A");
        Format(partition, 11, "B");
        Format(partition, 12, "C");
        Heading(partition, 20, "HISTORY");
        Heading(partition, 21, "PLAN");
    }
    void Open(int account, std::int16_t reportType = 0)
    {
        Show(partition, {7, 8, 9});
        form.SSTab1.SetTab(2);
        ChooseAccount(account, reportType);
        ASSERT_TRUE(PickHeading("Key20-3"));
    }
    bool Choose(int position) { return form.cmbFormats.Choose(position); }
    model::clsPartition &partition;
};

TEST_F(Choosing, ChangesTheSettingThatIsShown)
{
    Setting(20, 7, 4, 10, 0);
    Open(1, 4);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 7 4 11 0 C"}), Settings());
    EXPECT_TRUE(form.m_blnChanged);
    EXPECT_EQ(1, form.m_intFormatIndex);
    EXPECT_EQ(1, form.m_intSettingIndex);
}

TEST_F(Choosing, OfAnInheritedSettingMakesOneOfTheAccount)
{
    Setting(20, -1, 0, 10, 3);
    Open(1, 4);
    ASSERT_TRUE(Choose(2));
    EXPECT_EQ((Lines{"20 -1 0 10 3", "20 7 4 12 0 NC"}), Settings());
    EXPECT_EQ(0, form.m_intSettingIndex) << "the new one is not the one shown yet";
}

TEST_F(Choosing, ForAllAccountsCarriesThePartition)
{
    Open(0);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 -1 0 11 3 NC"}), Settings());
}

TEST_F(Choosing, ForAllAccountsChangesTheirSetting)
{
    Setting(20, -1, 0, 10, 3);
    Open(0);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 -1 0 11 3 C"}), Settings());
}

TEST_F(Choosing, TheSameEntryAgainDoesNothing)
{
    Setting(20, 7, 0, 10, 0);
    Open(1);
    ASSERT_TRUE(Choose(0));
    EXPECT_EQ((Lines{"20 7 0 10 0"}), Settings());
    EXPECT_FALSE(form.m_blnChanged);
}

TEST_F(Choosing, AfterAHeadingWithoutSettingCountsWhicheverItIs)
{
    Setting(21, 7, 0, 10, 0);
    Open(1);
    PickHeading("Key21-3");
    PickHeading("Key20-3");
    ASSERT_EQ(0, form.cmbFormats.ListIndex()) << "still the other heading's format";
    ASSERT_TRUE(Choose(0));
    EXPECT_EQ((Lines{"21 7 0 10 0", "20 7 0 10 0 NC"}), Settings());
    EXPECT_TRUE(form.m_blnChanged);
}

TEST_F(Choosing, TwiceLeavesTheLastOneLive)
{
    Open(1, 4);
    Choose(1);
    Choose(2);
    EXPECT_EQ((Lines{"20 7 4 11 0 NCR", "20 7 4 12 0 NC"}), Settings());
    form.ShowSetting(7, 4, 20);
    EXPECT_EQ("C \\ Here", FormatShown());
    EXPECT_EQ(2, form.m_intSettingIndex);
}

// The removal of one would take them all from the database.
TEST_F(Choosing, ReplacesAllSettingsOfItsKeyWhenThereAreSeveral)
{
    Setting(20, 7, 4, 10, 0);
    Setting(20, 7, 4, 12, 0);
    Open(1, 4);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 7 4 10 0 CR", "20 7 4 12 0 CR", "20 7 4 11 0 NC"}), Settings());
}

TEST_F(Choosing, LeavesALiveSettingBesideAFlaggedOneOfItsKeyToBeReplaced)
{
    Setting(20, 7, 4, 10, 0).RemoveSetting = true;
    Setting(20, 7, 4, 12, 0);
    Open(1, 4);
    ASSERT_EQ(2, form.m_intSettingIndex);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 7 4 10 0 R", "20 7 4 12 0 CR", "20 7 4 11 0 NC"}), Settings());
}

TEST_F(Choosing, ForAllAccountsReplacesCopiesToo)
{
    Setting(20, -1, 0, 10, 0);
    Setting(20, -1, 0, 12, 4); // another partition's
    Setting(20, 7, 0, 12, 0);
    Open(0);
    ASSERT_EQ(1, form.m_intSettingIndex) << "the copy is the one shown";
    ASSERT_TRUE(Choose(1));
    const Lines chosen{"20 -1 0 10 0 CR", "20 -1 0 12 4", "20 7 0 12 0", "20 -1 0 11 3 NC"};
    EXPECT_EQ(chosen, Settings());
    form.ShowSetting(-1, 0, 20);
    EXPECT_EQ("B \\ Here", FormatShown());
}

TEST_F(Choosing, ForAllAccountsAtOnceReplacesCopiesToo)
{
    Setting(20, -1, 0, 11, 0);
    Open(0);
    ASSERT_TRUE(form.btnAllAccounts.Click());
    EXPECT_EQ((Lines{"20 -1 0 11 0 CR", "20 -1 0 11 3 NC"}), Settings());
}

TEST_F(Choosing, NeverChangesAnotherHeadingsSetting)
{
    Setting(21, 7, 0, 10, 0);
    Open(1);
    form.m_intSettingIndex = 1;
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"21 7 0 10 0", "20 7 0 11 0 NC"}), Settings());
}

TEST_F(Choosing, NeverChangesARemovedSetting)
{
    Setting(20, 7, 0, 10, 0);
    Open(1);
    model::gSettings->ColSettingInfo->Item(1)->RemoveSetting = true;
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ((Lines{"20 7 0 10 0 R", "20 7 0 11 0 NC"}), Settings());
}

TEST_F(Choosing, WithoutAHeadingRecordsNothing)
{
    Open(1);
    for (const auto &heading : *partition.m_objcolHeadings->ColHeadingInfo)
        heading->RemoveHeader = true;
    form.FillHeadingList(true);
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ(Lines{}, Settings());
    EXPECT_FALSE(form.m_blnChanged);
}

TEST_F(Choosing, WhileListsAreSetDoesNothing)
{
    Open(1);
    form.m_blnLoading = true;
    ASSERT_TRUE(Choose(1));
    EXPECT_EQ(Lines{}, Settings());
    EXPECT_FALSE(form.m_blnChanged);
}

TEST_F(Choosing, MarksTheAttributeBranchToo)
{
    Open(1);
    ASSERT_TRUE(Choose(1));
    EXPECT_TRUE(form.m_blnCheckClick);
}

// --- All accounts

TEST_F(Choosing, ForAllAccountsAtOnceLeavesOutTheLastOne)
{
    Setting(20, -1, 0, 10, 3);
    Setting(20, 7, 4, 10, 0);
    Setting(20, 8, 0, 11, 0);
    Setting(20, 9, 0, 12, 0);
    Setting(21, 7, 0, 10, 0);
    Setting(20, -1, 5, 10, 4); // another partition's
    Setting(20, 99, 0, 10, 0); // an account that is not in the list
    Open(2);
    ASSERT_EQ("B \\ Here", FormatShown());
    ASSERT_TRUE(form.btnAllAccounts.Click());
    EXPECT_EQ((Lines{"20 -1 0 10 3 CR", "20 7 4 10 0 CR", "20 8 0 11 0 CR", "20 9 0 12 0", "21 7 0 10 0",
                     "20 -1 5 10 4", "20 99 0 10 0", "20 -1 0 11 3 NC"}),
              Settings());
    EXPECT_TRUE(form.m_blnChanged);
    EXPECT_EQ("B \\ Here", FormatShown()) << "what is shown is not refreshed";
}

TEST_F(Choosing, ForAllAccountsTwiceFlagsTheFirst)
{
    Setting(20, 7, 0, 11, 0);
    Open(1);
    form.btnAllAccounts.Click();
    form.btnAllAccounts.Click();
    EXPECT_EQ((Lines{"20 7 0 11 0 CR", "20 -1 0 11 3 NCR", "20 -1 0 11 3 NC"}), Settings());
}

TEST_F(Choosing, ForAllAccountsWithoutAnyAccountReplacesTheDefault)
{
    Setting(20, -1, 0, 10, 3);
    Setting(20, -1, 4, 10, 3);
    Show(partition);
    form.SSTab1.SetTab(2);
    ASSERT_TRUE(PickHeading("Key20-3"));
    form.btnAllAccounts.Click();
    EXPECT_EQ((Lines{"20 -1 0 10 3 CR", "20 -1 4 10 3", "20 -1 0 10 3 NC"}), Settings());
}

// --- All report types

TEST_F(Choosing, ForAllReportTypesReplacesThoseOfTheAccount)
{
    Setting(20, 8, 4, 11, 0);
    Setting(20, 8, 0, 10, 3); // whatever the partition
    Setting(20, 7, 4, 10, 0);
    Setting(21, 8, 4, 10, 0);
    Open(2, 4);
    ASSERT_EQ("B \\ Here", FormatShown());
    ASSERT_TRUE(form.btnAllReports.Click());
    EXPECT_EQ((Lines{"20 8 4 11 0 CR", "20 8 0 10 3 CR", "20 7 4 10 0", "21 8 4 10 0", "20 8 0 11 0 NC"}), Settings());
    EXPECT_TRUE(form.m_blnChanged);
}

TEST_F(Choosing, ForAllReportTypesNeedsAnAccount)
{
    Setting(20, -1, 0, 10, 3);
    Open(0);
    desktop.WillAnswerOk();
    ASSERT_TRUE(form.btnAllReports.Click());
    EXPECT_EQ((Lines{support::Box(0, "No Account", "Please select an account")}), desktop.boxes);
    EXPECT_EQ((Lines{"20 -1 0 10 3"}), Settings());
    EXPECT_FALSE(form.m_blnChanged);
}

} // namespace
