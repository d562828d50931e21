// Which setting is found for a heading, an account and a report type, and what a click on a heading shows.
#include "site.h"

namespace
{

class Showing : public HeadingSite
{
protected:
    void Open()
    {
        Show(partition, {7, 8});
        form.SSTab1.SetTab(2);
    }
    // The letter of the format shown for heading 20, and the position of the setting.
    std::string Shown(std::int16_t account, std::int16_t reportType)
    {
        form.ShowSetting(account, reportType, 20);
        return FormatShown().substr(0, 1) + " " + std::to_string(form.m_intSettingIndex);
    }
};

TEST_F(Showing, GoesFromTheMostSpecificToTheMostGeneral)
{
    Open();
    Setting(99, 7, 4, 11, 0); // another heading's
    auto &all = Setting(20, -1, 0, 10, 3);
    EXPECT_EQ("A 0", Shown(7, 4)) << "a real account's choice must not change the default of all";
    EXPECT_EQ("A 2", Shown(-1, 0)) << "asked for all accounts it is the setting itself";
    auto &account = Setting(20, 7, 0, 11, 0);
    EXPECT_EQ("B 0", Shown(7, 4)) << "inherited from the account's default";
    EXPECT_EQ("B 3", Shown(7, 0));
    EXPECT_EQ("A 0", Shown(8, 4));
    auto &type = Setting(20, 7, 4, 12, 0);
    EXPECT_EQ("C 4", Shown(7, 4));
    EXPECT_EQ("B 0", Shown(7, 5));
    type.RemoveSetting = true;
    EXPECT_EQ("B 0", Shown(7, 4)) << "the next level shows through";
    account.RemoveSetting = true;
    EXPECT_EQ("A 0", Shown(7, 4));
    all.RemoveSetting = true;
    form.m_intSettingIndex = 77;
    EXPECT_EQ("A 77", Shown(7, 4)) << "nothing found and no fallback: all is left as it is";
}

TEST_F(Showing, PassesOverASettingWhoseFormatIsNotInTheList)
{
    Open();
    Setting(20, 7, 4, 99, 0);
    Setting(20, 7, 4, 11, 0);
    EXPECT_EQ("B 2", Shown(7, 4));
    Setting(20, 8, 4, 99, 0);
    Setting(20, -1, 0, 10, 3);
    EXPECT_EQ("A 0", Shown(8, 4)) << "the next level";
}

TEST_F(Showing, ForgetsTheIndexOfAMissingFormatInTheSecondPass)
{
    Open();
    Setting(20, 7, 4, 99, 0);
    form.m_intSettingIndex = 55;
    form.ShowSetting(7, 4, 20);
    EXPECT_EQ(0, form.m_intSettingIndex);
    EXPECT_EQ(-1, form.m_intFormatIndex);
}

TEST_F(Showing, FallsBackToTheFormatOfId0)
{
    Format(partition, 0, "Default");
    Open();
    form.m_intSettingIndex = 55;
    form.ShowSetting(7, 4, 20);
    EXPECT_EQ("Default \\ Here", FormatShown());
    EXPECT_EQ(0, form.m_intSettingIndex);
    EXPECT_EQ(3, form.m_intFormatIndex);
}

TEST_F(Showing, TakesTheFirstEntryOfAFormatId)
{
    Partition(1, "Top", "/", true);
    Format(*model::gPartitions->m_colPartitions->Item("1"), 10, "Twin");
    partition.m_strLineage = "/1/";
    Open();
    Setting(20, 7, 0, 10, 0);
    EXPECT_EQ("A 1", Shown(7, 0));
}

TEST_F(Showing, LetsMessagesThroughBeforeEachLevel)
{
    Open();
    Setting(20, 7, 0, 10, 0);
    desktop.eventRounds = 0;
    form.ShowSetting(7, 4, 20);
    EXPECT_EQ(2, desktop.eventRounds) << "found at the second level";
    desktop.eventRounds = 0;
    form.ShowSetting(8, 4, 20);
    EXPECT_EQ(6, desktop.eventRounds) << "found nowhere";
}

TEST_F(Showing, ChangesNothingAndRunsNoChoice)
{
    Open();
    Setting(20, 7, 0, 12, 0);
    const Lines before = Settings();
    form.ShowSetting(7, 0, 20);
    EXPECT_EQ(before, Settings());
    EXPECT_FALSE(form.m_blnChanged);
    EXPECT_FALSE(form.m_blnCheckClick);
    EXPECT_FALSE(form.m_blnLoading);
}

TEST_F(Showing, OverflowsAtAPartitionBeyond16BitsAndStopsLoading)
{
    model::clsPartition &big = Partition(40000, "Big");
    Heading(big, 30, "X");
    Show(big, {7});
    EXPECT_THROW(form.ShowSetting(7, 0, 30), runtime::Error);
    EXPECT_FALSE(form.m_blnLoading);
}

TEST_F(Showing, APickedHeadingIsShown)
{
    Open();
    Setting(21, -1, 0, 11, 3);
    form.m_blnCheckClick = true;
    ASSERT_TRUE(PickHeading("Key21-3"));
    EXPECT_EQ(21, form.m_intHeadID);
    EXPECT_EQ(3, form.m_lngHeadPartitionID);
    EXPECT_EQ(2, form.m_intHeadingIndex);
    EXPECT_FALSE(form.m_blnCheckClick);
    EXPECT_FALSE(form.m_blnReadOnly);
    EXPECT_TRUE(form.btnDeleteHead.Enabled());
    EXPECT_EQ("B \\ Here", FormatShown());
    EXPECT_EQ(1, form.m_intFormatIndex);
    EXPECT_EQ(1, form.m_intSettingIndex);
    ASSERT_TRUE(PickHeading("Key20-3"));
    EXPECT_EQ(support::EditorForm::kHeadingPicked, form.m_intFormatIndex) << "nothing applies to it";
    EXPECT_EQ(0, form.m_intSettingIndex);
    EXPECT_EQ("B \\ Here", FormatShown()) << "the drop-down is left as it is";
}

TEST_F(Showing, ClicksWhileListsAreFilledChangeNothing)
{
    Open();
    form.m_blnLoading = true;
    form.lvwReportType.Add("Key0", "<All New>");
    form.lvwReportType.Add("Key4", "Notes");
    EXPECT_TRUE(PickHeading("Key21-3"));
    EXPECT_TRUE(form.lvwReportType.Select(2));
    EXPECT_TRUE(form.cmbAccList.Choose(2));
    EXPECT_EQ(20, form.m_intHeadID);
    EXPECT_EQ(0, form.m_intReportType);
    EXPECT_EQ(0, form.m_intAccountIndex);
}

TEST_F(Showing, AHeadingPickedMeanwhileIsShownAfterwards)
{
    Open();
    Setting(20, -1, 0, 10, 3);
    Setting(21, -1, 0, 11, 3);
    Lines shown;
    desktop.onEvents = [&]
    {
        shown.push_back(form.lvwHeadings.SelectedItem().text + " " + FormatShown());
        if (shown.size() == 1)
            PickHeading("Key21-3");
    };
    ASSERT_TRUE(PickHeading("Key20-3"));
    EXPECT_EQ((Lines{"HISTORY ", "HISTORY ", "HISTORY ", "PLAN A \\ Here", "PLAN A \\ Here", "PLAN A \\ Here"}), shown);
    EXPECT_EQ(21, form.m_intHeadID);
    EXPECT_EQ("B \\ Here", FormatShown());
    EXPECT_EQ("Key21-3", form.lvwHeadings.SelectedItem().key);
}

TEST_F(Showing, APickedReportTypeIsShown)
{
    Open();
    ChooseAccount(1);
    form.lvwReportType.Add("Key0", "<All New>");
    form.lvwReportType.Add("Key4", "Notes");
    form.lvwReportType.Add("Key70000", "Too far");
    Setting(20, 7, 4, 12, 0);
    ASSERT_TRUE(form.lvwReportType.Select(2));
    EXPECT_EQ(4, form.m_intReportType);
    EXPECT_EQ("C \\ Here", FormatShown());
    EXPECT_EQ(1, form.m_intSettingIndex);
    ASSERT_TRUE(form.lvwReportType.Select(3));
    EXPECT_EQ(4, form.m_intReportType) << "a number that does not fit ends the click";
}

} // namespace
