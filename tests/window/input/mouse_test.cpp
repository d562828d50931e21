// The editor by the mouse alone, as far as that goes.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

TEST_F(Editor, ClicksTurnPagesAndTickBoxes)
{
    At(
        [&](Person &person)
        {
            const bool before = person.Checked("chkTagMixed");
            person.Click("chkTagMixed");
            SEES(!before, person.Checked("chkTagMixed"));
            SEES(std::string("chkTagMixed"), person.Focused());
            person.ClickTab(1);
            SEES(1, person.Tab());
            person.ClickRow("lvwFormats", 5);
            SEES(std::wstring(L"Impression"), person.SelectedText("lvwFormats"));
            SEES(true, person.Checked("SSCheck1(4)"));
            person.Click("SSCheck1(4)");
            SEES(false, person.Checked("SSCheck1(4)"));
            person.ClickRow("lvwFormats", 2); // of another partition
            SEES(std::wstring(L"Default"), person.SelectedText("lvwFormats"));
            SEES(false, person.Enabled("SSCheck1(4)"));
            person.Click("SSCheck1(2)"); // answers nobody
            person.ClickRow("lvwFormats", 5);
            SEES(std::wstring(L"Impression"), person.SelectedText("lvwFormats"));
            EXPECT_FALSE(person.Checked("SSCheck1(4)"));
            person.ClickTab(0);
            SEES(0, person.Tab());
            person.Click("btnSave");
            SEES(false, person.Open());
        });
    EXPECT_EQ(site.Query("SELECT underline FROM Report_header_formats WHERE format_id = 16"),
              std::vector<std::string>{"0"});
}

TEST_F(Editor, ColumnHeadersSort)
{
    At(
        [&](Person &person)
        {
            person.ClickTab(1);
            SEES(1, person.Tab());
            EXPECT_EQ(person.Row("lvwFormats", 0), L"Bold with Line");
            EXPECT_EQ(person.Arrow("lvwFormats", 0), 1);
            person.ClickHeader("lvwFormats", 0);
            SEES(std::wstring(L"Trailing Blanks  "), person.Row("lvwFormats", 0));
            EXPECT_EQ(person.Arrow("lvwFormats", 0), -1);
            EXPECT_EQ(person.SelectedText("lvwFormats"), L"Bold with Line");
            person.ClickHeader("lvwFormats", 1); // by partition, upwards again
            SEES(std::wstring(L"Eastern Compact"), person.Row("lvwFormats", 0));
            EXPECT_EQ(person.Arrow("lvwFormats", 0), 0);
            EXPECT_EQ(person.Arrow("lvwFormats", 1), 1);
            person.ClickTab(2);
            SEES(2, person.Tab());
            EXPECT_EQ(person.Row("lvwHeadings", 0), L"ABDOMEN");
            EXPECT_EQ(person.Arrow("lvwHeadings", 0), 0);
            person.ClickHeader("lvwHeadings", 0);
            SEES(-1, person.Arrow("lvwHeadings", 0));
            SEES(true, person.Row("lvwHeadings", 0) > L"U");
            EXPECT_EQ(person.SelectedText("lvwHeadings"), L"ABDOMEN");
            EXPECT_FALSE(person.BoxText().size());
        });
}

TEST_F(Editor, ClicksChooseHeadingsAccountsAndFormats)
{
    At(
        [&](Person &person)
        {
            person.ClickTab(2);
            SEES(2, person.Tab());
            person.ClickRow("lvwHeadings", 1);
            SEES(std::wstring(L"Physician's Choice \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.ClickRow("lvwReportType", 1);
            SEES(std::wstring(L"Indented List \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Click("cmbFormats");
            SEES(true, person.Dropped("cmbFormats"));
            COMBOBOXINFO combo{};
            combo.cbSize = sizeof combo;
            ASSERT_TRUE(GetComboBoxInfo(person.Of("cmbFormats"), &combo));
            // The next entry.
            RECT entry{};
            const auto next = static_cast<WPARAM>(SendMessageW(combo.hwndList, LB_GETCURSEL, 0, 0) + 1);
            person.InWindow([&]
                            { SendMessageW(combo.hwndList, LB_GETITEMRECT, next, reinterpret_cast<LPARAM>(&entry)); });
            wchar_t text[128] = L"";
            SendMessageW(combo.hwndList, LB_GETTEXT, next, reinterpret_cast<LPARAM>(text));
            person.ClickAt(combo.hwndList, {20, (entry.top + entry.bottom) / 2});
            SEES(false, person.Dropped("cmbFormats"));
            SEES(std::wstring(text), person.TextOf("cmbFormats"));
            EXPECT_EQ(std::wstring(text), L"Physician's Choice \\ Lakeside Hospital");
            person.Click("btnSave");
            SEES(false, person.Open());
        });
    EXPECT_EQ(
        site.Query("SELECT format_id FROM Report_header_settings WHERE heading_id = 87 AND hosp_acct_id = 101 AND "
                   "report_type_nbr = 10"),
        std::vector<std::string>{"17"});
}

TEST_F(Editor, ButtonsAndTheQuestionsThatTheyAsk)
{
    At(
        [&](Person &person)
        {
            person.ClickTab(1);
            SEES(1, person.Tab());
            person.Click("btnAdd");
            SEES(std::wstring(L"Copy of Bold with Line (1)"), person.Edited("lvwFormats"));
            person.Type("By the mouse");
            SEES(std::wstring(L"By the mouse"), person.Edited("lvwFormats"));
            person.ClickRow("lvwFormats", 0); // leaves the name, which counts
            SEES(std::wstring(L"(none)"), person.Edited("lvwFormats"));
            SEES(std::wstring(L"Bold with Line"), person.SelectedText("lvwFormats"));
            EXPECT_EQ(person.Row("lvwFormats", 2), L"By the mouse");
            person.Click("btnDelete");
            SEES(std::wstring(L"Are you sure you want to delete the format Bold with Line?"), person.BoxText());
            person.ClickButtonOf(person.Box(), L"&No");
            SEES(std::string("lvwFormats"), person.Focused());
            EXPECT_EQ(person.Row("lvwFormats", 0), L"Bold with Line");
            person.Click("btnDelete");
            SEES(std::wstring(L"Are you sure you want to delete the format Bold with Line?"), person.BoxText());
            person.ClickButtonOf(person.Box(), L"&Yes");
            SEES(std::wstring(L"By the mouse"), person.Row("lvwFormats", 0)); // sorted anew
            person.Click("btnCancel");
            SEES(std::wstring(L"Are you sure you want to cancel all changes?"), person.BoxText());
            person.ClickButtonOf(person.Box(), L"&Yes");
            SEES(false, person.Open());
        });
    EXPECT_EQ(site.Query("SELECT COUNT(*) FROM Report_header_formats WHERE format_name = 'By the mouse'"),
              std::vector<std::string>{"0"});
}

TEST_F(Editor, ASecondClickOnTheSelectedLabelEditsIt)
{
    At(
        [&](Person &person)
        {
            person.ClickTab(1);
            SEES(1, person.Tab());
            person.ClickRow("lvwFormats", 5);
            SEES(std::wstring(L"Impression"), person.SelectedText("lvwFormats"));
            std::this_thread::sleep_for(
                std::chrono::milliseconds(GetDoubleClickTime())); // two clicks, not a double one
            person.ClickRow("lvwFormats", 5);
            SEES(std::wstring(L"Impression"), person.Edited("lvwFormats"));
            person.Type("Summary");
            SEES(std::wstring(L"Summary"), person.Edited("lvwFormats"));
            person.Press("Return");
            SEES(std::wstring(L"Summary"), person.SelectedText("lvwFormats"));
        });
}

} // namespace
} // namespace input_tests
