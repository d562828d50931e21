// The editor by the mouse alone, as far as that goes.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

TEST_F(Editor, ClicksTurnPagesAndTickBoxes)
{
    const RealInput &user = Open();
    const bool before = user.Checked("chkTagMixed");
    user.Click("chkTagMixed");
    SEES(!before, user.Checked("chkTagMixed"));
    SEES("chkTagMixed", user.Focused());
    user.ClickTab(1);
    SEES(1, user.Tab());
    user.ClickRow("lvwFormats", 5);
    SEES("Impression", user.SelectedText("lvwFormats"));
    SEES(true, user.Checked("SSCheck1(4)"));
    user.Click("SSCheck1(4)");
    SEES(false, user.Checked("SSCheck1(4)"));
    user.ClickRow("lvwFormats", 2); // of another partition
    SEES("Default", user.SelectedText("lvwFormats"));
    SEES(false, user.Enabled("SSCheck1(4)"));
    user.Click("SSCheck1(2)"); // answers nobody
    user.ClickRow("lvwFormats", 5);
    SEES("Impression", user.SelectedText("lvwFormats"));
    EXPECT_FALSE(user.Checked("SSCheck1(4)"));
    user.ClickTab(0);
    SEES(0, user.Tab());
    user.Click("btnSave");
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(site.Query("SELECT underline FROM Report_header_formats WHERE format_id = 16"), Lines{"0"});
}

TEST_F(Editor, ColumnHeadersSort)
{
    const RealInput &user = Open();
    user.ClickTab(1);
    SEES(1, user.Tab());
    EXPECT_EQ(user.Cell("lvwFormats", 0), "Bold with Line");
    EXPECT_EQ(user.Arrow("lvwFormats", 0), 1);
    user.ClickHeader("lvwFormats", 0);
    SEES("Trailing Blanks  ", user.Cell("lvwFormats", 0));
    EXPECT_EQ(user.Arrow("lvwFormats", 0), -1);
    EXPECT_EQ(user.SelectedText("lvwFormats"), "Bold with Line");
    user.ClickHeader("lvwFormats", 1); // by partition, upwards again
    SEES("Eastern Compact", user.Cell("lvwFormats", 0));
    EXPECT_EQ(user.Arrow("lvwFormats", 0), 0);
    EXPECT_EQ(user.Arrow("lvwFormats", 1), 1);
    user.ClickTab(2);
    SEES(2, user.Tab());
    EXPECT_EQ(user.Cell("lvwHeadings", 0), "ABDOMEN");
    EXPECT_EQ(user.Arrow("lvwHeadings", 0), 0);
    user.ClickHeader("lvwHeadings", 0);
    SEES(-1, user.Arrow("lvwHeadings", 0));
    SEES(true, user.Cell("lvwHeadings", 0) > "U");
    EXPECT_EQ(user.SelectedText("lvwHeadings"), "ABDOMEN");
    EXPECT_FALSE(user.BoxText().size());
}

TEST_F(Editor, ClicksChooseHeadingsAccountsAndFormats)
{
    const RealInput &user = Open();
    user.ClickTab(2);
    SEES(2, user.Tab());
    user.ClickRow("lvwHeadings", 1);
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.ClickRow("lvwReportType", 1);
    SEES("Indented List \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Click("cmbFormats");
    SEES(true, user.Dropped("cmbFormats"));
    const HWND list = user.DropDown("cmbFormats");
    RECT entry{};
    const auto next = static_cast<WPARAM>(SendMessageW(list, LB_GETCURSEL, 0, 0) + 1);
    SendMessageW(list, LB_GETITEMRECT, next, reinterpret_cast<LPARAM>(&entry));
    user.ClickAt(list, {20, (entry.top + entry.bottom) / 2});
    SEES(false, user.Dropped("cmbFormats"));
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Click("btnSave");
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(
        site.Query("SELECT format_id FROM Report_header_settings WHERE heading_id = 87 AND hosp_acct_id = 101 AND "
                   "report_type_nbr = 10"),
        Lines{"17"});
}

TEST_F(Editor, ButtonsAndTheQuestionsThatTheyAsk)
{
    const RealInput &user = Open();
    user.ClickTab(1);
    SEES(1, user.Tab());
    user.Click("btnAdd");
    SEES("Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    user.Type("By the mouse");
    SEES("By the mouse", user.Edited("lvwFormats"));
    user.ClickRow("lvwFormats", 0); // leaves the name, which counts
    SEES("(none)", user.Edited("lvwFormats"));
    SEES("Bold with Line", user.SelectedText("lvwFormats"));
    EXPECT_EQ(user.Cell("lvwFormats", 2), "By the mouse");
    user.Click("btnDelete");
    SEES("Are you sure you want to delete the format Bold with Line?", user.BoxText());
    user.ClickButtonOf(user.Box(), L"&No");
    SEES("lvwFormats", user.Focused());
    EXPECT_EQ(user.Cell("lvwFormats", 0), "Bold with Line");
    user.Click("btnDelete");
    SEES("Are you sure you want to delete the format Bold with Line?", user.BoxText());
    user.ClickButtonOf(user.Box(), L"&Yes");
    SEES("By the mouse", user.Cell("lvwFormats", 0)); // sorted anew
    user.Click("btnCancel");
    SEES("Are you sure you want to cancel all changes?", user.BoxText());
    user.ClickButtonOf(user.Box(), L"&Yes");
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(site.Query("SELECT COUNT(*) FROM Report_header_formats WHERE format_name = 'By the mouse'"), Lines{"0"});
}

TEST_F(Editor, ASecondClickOnTheSelectedLabelEditsIt)
{
    const RealInput &user = Open();
    user.ClickTab(1);
    SEES(1, user.Tab());
    user.ClickRow("lvwFormats", 5);
    SEES("Impression", user.SelectedText("lvwFormats"));
    std::this_thread::sleep_for(std::chrono::milliseconds(GetDoubleClickTime())); // two clicks, not a double one
    user.ClickRow("lvwFormats", 5);
    SEES("Impression", user.Edited("lvwFormats"));
    user.Type("Summary");
    SEES("Summary", user.Edited("lvwFormats"));
    user.Press("Return");
    SEES("Summary", user.SelectedText("lvwFormats"));
}

} // namespace
} // namespace input_tests
