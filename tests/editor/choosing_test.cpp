// Choosing a format for a heading, and one format for all accounts or report types.
#include "site.h"

#include <sstream>

namespace
{

// What is pressed, or the position of the entry that is chosen.
constexpr int kAllAccounts = -1;
constexpr int kAllReports = -2;

struct Case
{
    const char *name;
    std::vector<std::string> settings; // as Site::Settings gives them; R: removed
    struct
    {
        int account; // position in the list of accounts, 0: all of them
        std::int16_t reportType;
        std::int16_t setting; // the position of the one shown for heading 20, 0: none that may be changed
    } selected;
    std::vector<int> acts;
    std::vector<std::string> expected;
};

void PrintTo(const Case &c, std::ostream *out)
{
    *out << c.name;
}

class Choosing : public HeadingSite
{
protected:
    void Open(int account, std::int16_t reportType = 0)
    {
        Show(partition, {7, 8, 9});
        form.SSTab1.SetTab(2);
        ChooseAccount(account, reportType);
        ASSERT_TRUE(PickHeading("Key20-3"));
    }
    bool Choose(int position) { return form.cmbFormats.Choose(position); }
    bool Act(int act)
    {
        if (act == kAllAccounts)
            return form.btnAllAccounts.Click();
        return act == kAllReports ? form.btnAllReports.Click() : Choose(act);
    }
};

class ChoosingRecords : public Choosing, public testing::WithParamInterface<Case>
{
};

TEST_P(ChoosingRecords, Settings)
{
    const Case &c = GetParam();
    for (const std::string &line : c.settings)
    {
        std::istringstream fields(line);
        std::int16_t heading, account, reportType, format;
        std::int32_t owner;
        fields >> heading >> account >> reportType >> format >> owner;
        Setting(heading, account, reportType, format, owner).RemoveSetting = line.ends_with("R");
    }
    Open(c.selected.account, c.selected.reportType);
    EXPECT_EQ(c.selected.setting, form.m_intSettingIndex);
    for (const int act : c.acts)
        ASSERT_TRUE(Act(act));
    EXPECT_EQ(c.expected, Settings());
    EXPECT_EQ(c.settings != c.expected, form.m_blnChanged);
}

const Case kCases[] = {
    {"TheSettingThatIsShown", {"20 7 4 10 0"}, {1, 4, 1}, {1}, {"20 7 4 11 0 C"}},
    {"OneOfTheAccountBesideAnInheritedOne", {"20 -1 0 10 3"}, {1, 4, 0}, {2}, {"20 -1 0 10 3", "20 7 4 12 0 NC"}},
    {"ForAllAccountsOneThatCarriesThePartition", {}, {0, 0, 0}, {1}, {"20 -1 0 11 3 NC"}},
    {"ForAllAccountsTheirSetting", {"20 -1 0 10 3"}, {0, 0, 1}, {1}, {"20 -1 0 11 3 C"}},
    {"NothingForTheSameEntryAgain", {"20 7 0 10 0"}, {1, 0, 1}, {0}, {"20 7 0 10 0"}},
    {"TwiceAndLeavesTheLastOneLive", {}, {1, 4, 0}, {1, 2}, {"20 7 4 11 0 NCR", "20 7 4 12 0 NC"}},
    // The removal of one would take them all from the database.
    {"InPlaceOfAllSettingsOfItsKeyWhenThereAreSeveral",
     {"20 7 4 10 0", "20 7 4 12 0"},
     {1, 4, 1},
     {1},
     {"20 7 4 10 0 CR", "20 7 4 12 0 CR", "20 7 4 11 0 NC"}},
    {"InPlaceOfALiveSettingBesideAFlaggedOneOfItsKey",
     {"20 7 4 10 0 R", "20 7 4 12 0"},
     {1, 4, 2},
     {1},
     {"20 7 4 10 0 R", "20 7 4 12 0 CR", "20 7 4 11 0 NC"}},
    // A copy, with partition 0, is the one shown; the second is another partition's.
    {"ForAllAccountsInPlaceOfCopiesToo",
     {"20 -1 0 10 0", "20 -1 0 12 4", "20 7 0 12 0"},
     {0, 0, 1},
     {1},
     {"20 -1 0 10 0 CR", "20 -1 0 12 4", "20 7 0 12 0", "20 -1 0 11 3 NC"}},
    {"AtAllAccountsInPlaceOfCopiesToo",
     {"20 -1 0 11 0"},
     {0, 0, 1},
     {kAllAccounts},
     {"20 -1 0 11 0 CR", "20 -1 0 11 3 NC"}},
    // The last account of the list is left out, as are another partition's setting and an account that is not listed.
    {"AtAllAccountsForAllButTheLastOne",
     {"20 -1 0 10 3", "20 7 4 10 0", "20 8 0 11 0", "20 9 0 12 0", "21 7 0 10 0", "20 -1 5 10 4", "20 99 0 10 0"},
     {2, 0, 3},
     {kAllAccounts},
     {"20 -1 0 10 3 CR", "20 7 4 10 0 CR", "20 8 0 11 0 CR", "20 9 0 12 0", "21 7 0 10 0", "20 -1 5 10 4",
      "20 99 0 10 0", "20 -1 0 11 3 NC"}},
    {"AtAllAccountsTwiceAndFlagsTheFirst",
     {"20 7 0 11 0"},
     {1, 0, 1},
     {kAllAccounts, kAllAccounts},
     {"20 7 0 11 0 CR", "20 -1 0 11 3 NCR", "20 -1 0 11 3 NC"}},
    // Whatever the partition.
    {"AtAllReportTypesInPlaceOfThoseOfTheAccount",
     {"20 8 4 11 0", "20 8 0 10 3", "20 7 4 10 0", "21 8 4 10 0"},
     {2, 4, 1},
     {kAllReports},
     {"20 8 4 11 0 CR", "20 8 0 10 3 CR", "20 7 4 10 0", "21 8 4 10 0", "20 8 0 11 0 NC"}},
};
INSTANTIATE_TEST_SUITE_P(Each, ChoosingRecords, testing::ValuesIn(kCases),
                         [](const auto &info) { return std::string(info.param.name); });

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

} // namespace
