// The editor by the mouse alone, as far as that goes.
#include "window/input/sample_site.h"

#include <thread>
#include <vector>

namespace input_tests
{
namespace
{

TEST_F(Editor, ClicksChooseHeadingsAccountsAndFormats)
{
    const RealInput &user = Open();
    THEN(user.ClickTab(2), 2, user.Tab());
    THEN(user.ClickRow("lvwHeadings", 1), "Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    THEN(user.ClickRow("lvwReportType", 1), "Indented List \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    THEN(user.Click("cmbFormats"), true, user.Dropped("cmbFormats"));
    const HWND list = user.DropDown("cmbFormats");
    RECT entry{};
    const auto next = static_cast<WPARAM>(SendMessageW(list, LB_GETCURSEL, 0, 0) + 1);
    SendMessageW(list, LB_GETITEMRECT, next, reinterpret_cast<LPARAM>(&entry));
    THEN(user.ClickAt(list, {20, (entry.top + entry.bottom) / 2}), false, user.Dropped("cmbFormats"));
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    THEN(user.Click("btnSave"), false, user.Open());
    Close();
    ExpectStored("17", "SELECT format_id FROM Report_header_settings WHERE heading_id = 87 AND hosp_acct_id = 101 AND "
                       "report_type_nbr = 10");
}

TEST_F(Editor, ButtonsAndTheQuestionsThatTheyAsk)
{
    const RealInput &user = Open();
    const bool before = user.Checked("chkTagMixed");
    THEN(user.Click("chkTagMixed"), !before, user.Checked("chkTagMixed"));
    SEES("chkTagMixed", user.Focused());
    THEN(user.ClickTab(1), 1, user.Tab());
    THEN(user.Click("btnAdd"), "Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    THEN(user.Type("By the mouse"), "By the mouse", user.Edited("lvwFormats"));
    THEN(user.ClickRow("lvwFormats", 0), "(none)", user.Edited("lvwFormats")); // leaves the name, which counts
    SEES("Bold with Line", user.SelectedText("lvwFormats"));
    EXPECT_EQ(user.Cell("lvwFormats", 2), "By the mouse");
    THEN(user.Click("btnDelete"), "Are you sure you want to delete the format Bold with Line?", user.BoxText());
    THEN(user.ClickButtonOf(user.Box(), L"&No"), "lvwFormats", user.Focused());
    EXPECT_EQ(user.Cell("lvwFormats", 0), "Bold with Line");
    THEN(user.Click("btnDelete"), "Are you sure you want to delete the format Bold with Line?", user.BoxText());
    THEN(user.ClickButtonOf(user.Box(), L"&Yes"), "By the mouse", user.Cell("lvwFormats", 0)); // sorted anew
    THEN(user.Click("btnCancel"), "Are you sure you want to cancel all changes?", user.BoxText());
    THEN(user.ClickButtonOf(user.Box(), L"&Yes"), false, user.Open());
    Close();
    ExpectStored("0", "SELECT COUNT(*) FROM Report_header_formats WHERE format_name = 'By the mouse'");
}

TEST_F(Editor, ASecondClickOnTheSelectedLabelEditsIt)
{
    const RealInput &user = Open();
    THEN(user.ClickTab(1), 1, user.Tab());
    THEN(user.ClickRow("lvwFormats", 5), "Impression", user.SelectedText("lvwFormats"));
    std::this_thread::sleep_for(std::chrono::milliseconds(GetDoubleClickTime())); // two clicks, not a double one
    THEN(user.ClickRow("lvwFormats", 5), "Impression", user.Edited("lvwFormats"));
    THEN(user.Type("Summary"), "Summary", user.Edited("lvwFormats"));
    THEN(user.Press("Return"), "Summary", user.SelectedText("lvwFormats"));
}

} // namespace
} // namespace input_tests
