// The editor from the keyboard alone.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

using Names = std::vector<std::string>;

// Presses a key as often as there are names, and waits each time for the next control to have the keyboard.
void Walk(const Person &person, const std::string &key, const Names &names)
{
    for (const std::string &name : names)
    {
        person.Press(key);
        ASSERT_EQ(Person::Until(name, [&] { return person.Focused(); }), name) << "by " << key;
    }
}

TEST_F(Editor, TabWalksTheVisiblePageAndNothingElse)
{
    At(
        [&](Person &person)
        {
            Walk(person, "Tab",
                 {"chkTagKnown", "chkTagMixed", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
            Walk(person, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "chkTagMixed"});
            person.Press("alt+f");
            SEES(1, person.Tab());
            SEES(std::string("SSTab1"), person.Focused());
            Walk(person, "Tab",
                 {"lvwFormats", "btnAdd", "btnDelete", "SSCheck1(0)", "SSCheck1(1)", "SSCheck1(2)", "SSCheck1(3)",
                  "SSCheck1(4)", "SSCheck1(5)", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
            Walk(person, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "SSCheck1(5)"});
            person.Press("alt+h");
            SEES(2, person.Tab());
            SEES(std::string("SSTab1"), person.Focused());
            // Nothing can be deleted before a heading has been picked.
            Walk(person, "Tab",
                 {"lvwHeadings", "btnAddHead", "cmbAccList", "lvwReportType", "cmbFormats", "btnAllReports",
                  "btnAllAccounts", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
            Walk(person, "shift+Tab",
                 {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "btnAllAccounts", "btnAllReports"});
        });
}

TEST_F(Editor, TabPassesOverWhatAReadOnlyFormatDisables)
{
    At(
        [&](Person &person)
        {
            person.Press("alt+f Tab");
            SEES(std::string("lvwFormats"), person.Focused());
            person.Type("net"); // Network Bold, of another partition
            SEES(std::wstring(L"Network Bold"), person.SelectedText("lvwFormats"));
            SEES(false, person.Enabled("SSCheck1(0)"));
            Walk(person, "Tab", {"btnAdd", "btnSave"});
        });
}

TEST_F(Editor, PagesAreTurnedByTheirAccessKeysAndByControl)
{
    At(
        [&](Person &person)
        {
            for (const auto &[keys, page] : std::vector<std::pair<const char *, int>>{{"alt+h", 2},
                                                                                      {"alt+g", 0},
                                                                                      {"alt+f", 1},
                                                                                      {"ctrl+Tab", 2},
                                                                                      {"ctrl+Next", 0},
                                                                                      {"ctrl+Prior", 2},
                                                                                      {"ctrl+shift+Tab", 1},
                                                                                      {"Left", 0}})
            {
                person.Press(keys);
                SEES(page, person.Tab());
                SEES(std::string("SSTab1"), person.Focused());
            }
        });
}

TEST_F(Editor, AddAndDeleteActOnTheVisiblePage)
{
    At(
        [&](Person &person)
        {
            // On the first page they act on nothing: the walk goes on behind them.
            person.Press("alt+a alt+d Tab");
            SEES(std::string("chkTagKnown"), person.Focused());
            EXPECT_EQ(person.Box(), nullptr);
            person.Press("alt+f");
            SEES(1, person.Tab());
            person.Press("alt+a");
            SEES(std::wstring(L"Copy of Bold with Line (1)"), person.Edited("lvwFormats"));
            person.Press("Escape");
            SEES(std::wstring(L"(none)"), person.Edited("lvwFormats"));
            person.Press("alt+d");
            SEES(std::wstring(L"Are you sure you want to delete the format Copy of Bold with Line (1)?"),
                 person.BoxText());
            person.Press("n");
            SEES(std::string("lvwFormats"), person.Focused());
            EXPECT_EQ(person.SelectedText("lvwFormats"), L"Copy of Bold with Line (1)");
            person.Press("alt+h");
            SEES(2, person.Tab());
            person.Press("alt+d alt+a"); // no Delete yet
            SEES(std::wstring(L"Copy of ABDOMEN"), person.Edited("lvwHeadings"));
            person.Press("Escape");
            SEES(std::wstring(L"(none)"), person.Edited("lvwHeadings"));
            person.Press("alt+d");
            SEES(std::wstring(L"Are you sure you want to delete the heading Copy of ABDOMEN?"), person.BoxText());
            person.Press("y");
            SEES(std::wstring(L"ABDOMEN"), person.SelectedText("lvwHeadings"));
        });
}

TEST_F(Editor, ArrowKeysMoveAndTheApplyingFormatFollows)
{
    At(
        [&](Person &person)
        {
            person.Press("alt+h Tab");
            SEES(std::string("lvwHeadings"), person.Focused());
            person.Press("Down");
            SEES(std::wstring(L"ABDOMEN AND PELVIS"), person.SelectedText("lvwHeadings"));
            SEES(std::wstring(L"Physician's Choice \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("Up");
            SEES(std::wstring(L"ABDOMEN"), person.SelectedText("lvwHeadings"));
            SEES(std::wstring(L"Impression \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("Down Tab Tab Tab Tab"); // over Add, Delete and the accounts
            SEES(std::string("lvwReportType"), person.Focused());
            person.Press("Down");
            SEES(std::wstring(L"Chest X-Ray"), person.SelectedText("lvwReportType"));
            SEES(std::wstring(L"Indented List \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("Down");
            SEES(std::wstring(L"Consultation"), person.SelectedText("lvwReportType"));
            SEES(std::wstring(L"Physician's Choice \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("End");
            SEES(std::wstring(L"Ultrasound"), person.SelectedText("lvwReportType"));
            // Another account: its first report type, and what applies there.
            person.Press("shift+Tab");
            SEES(std::string("cmbAccList"), person.Focused());
            person.Press("Down");
            SEES(std::wstring(L"Lakeside Orthopedics"), person.TextOf("cmbAccList"));
            SEES(std::wstring(L"<All New>"), person.SelectedText("lvwReportType"));
            SEES(std::wstring(L"Default \\ Northfield Health Network"), person.TextOf("cmbFormats"));
            person.Press("Home");
            SEES(std::wstring(L"<All New>"), person.TextOf("cmbAccList"));
            SEES(false, person.Enabled("lvwReportType"));
        });
}

TEST_F(Editor, DropDownsOpenByF4AndAltDown)
{
    At(
        [&](Person &person)
        {
            person.Press("alt+h Tab Down");
            SEES(std::wstring(L"ABDOMEN AND PELVIS"), person.SelectedText("lvwHeadings"));
            SEES(std::wstring(L"Physician's Choice \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("Tab Tab Tab Tab Tab");
            SEES(std::string("cmbFormats"), person.Focused());
            for (const char *const key : {"F4", "alt+Down"})
            {
                person.Press(key);
                SEES(true, person.Dropped("cmbFormats"));
                person.Press("Down Escape"); // looked at, and not taken; the window stays
                SEES(false, person.Dropped("cmbFormats"));
                SEES(std::wstring(L"Physician's Choice \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            }
            person.Press("F4");
            SEES(true, person.Dropped("cmbFormats"));
            person.Press("Down Return");
            SEES(false, person.Dropped("cmbFormats"));
            SEES(std::wstring(L"Trailing Blanks   \\ Lakeside Hospital"), person.TextOf("cmbFormats"));
            person.Press("alt+s");
            SEES(false, person.Open());
        });
    EXPECT_EQ(
        site.Query("SELECT format_id FROM Report_header_settings WHERE heading_id = 87 AND hosp_acct_id = 101 AND "
                   "report_type_nbr = 0"),
        std::vector<std::string>{"19"});
}

TEST_F(Editor, AddingTypingAndSaving)
{
    At(
        [&](Person &person)
        {
            person.Press("space"); // on the tabs: nothing
            person.Press("Tab");
            SEES(std::string("chkTagKnown"), person.Focused());
            const bool before = person.Checked("chkTagKnown");
            person.Press("space");
            SEES(!before, person.Checked("chkTagKnown"));
            person.Press("space");
            SEES(before, person.Checked("chkTagKnown"));

            // A format: typed at once, then one of its boxes.
            person.Press("alt+f");
            SEES(1, person.Tab());
            person.Press("alt+a");
            SEES(std::wstring(L"Copy of Bold with Line (1)"), person.Edited("lvwFormats"));
            person.Type("Plain & Small");
            SEES(std::wstring(L"Plain & Small"), person.Edited("lvwFormats"));
            person.Press("Return");
            SEES(std::wstring(L"(none)"), person.Edited("lvwFormats"));
            SEES(std::wstring(L"Plain & Small"), person.SelectedText("lvwFormats"));
            Walk(person, "Tab", {"btnAdd", "btnDelete", "SSCheck1(0)"});
            EXPECT_TRUE(person.Checked("SSCheck1(0)"));
            person.Press("space");
            SEES(false, person.Checked("SSCheck1(0)"));

            // F2 names it again; Escape leaves it.
            Walk(person, "shift+Tab", {"btnDelete", "btnAdd", "lvwFormats"});
            person.Press("F2");
            SEES(std::wstring(L"Plain & Small"), person.Edited("lvwFormats"));
            person.Type("Other");
            SEES(std::wstring(L"Other"), person.Edited("lvwFormats"));
            person.Press("Escape");
            SEES(std::wstring(L"(none)"), person.Edited("lvwFormats"));
            EXPECT_EQ(person.SelectedText("lvwFormats"), L"Plain & Small");
            EXPECT_EQ(person.Box(), nullptr);

            // A heading, typed and left by a click on nothing but Save.
            person.Press("alt+h");
            SEES(2, person.Tab());
            person.Press("alt+a");
            SEES(std::wstring(L"Copy of ABDOMEN"), person.Edited("lvwHeadings"));
            person.Type("O'NEILL");
            SEES(std::wstring(L"O'NEILL"), person.Edited("lvwHeadings"));
            person.Press("alt+s");
            SEES(false, person.Open());
        });
    EXPECT_EQ(
        site.Query("SELECT insert_empty_line_before, insert_carriage_return_after, flag1 FROM Report_header_formats "
                   "WHERE format_name = 'Plain & Small'"),
        std::vector<std::string>{"0 | 1 | 3"});
    EXPECT_EQ(site.Query("SELECT flag1 FROM Report_headers WHERE heading = 'O''NEILL'"), std::vector<std::string>{"3"});
}

TEST_F(Editor, EscapeAsksBeforeEditsAreLost)
{
    At(
        [&](Person &person)
        {
            person.Press("Tab");
            SEES(std::string("chkTagKnown"), person.Focused());
            person.Press("space");
            SEES(false, person.Checked("chkTagKnown"));
            person.Press("Escape");
            SEES(std::wstring(L"Are you sure you want to cancel all changes?"), person.BoxText());
            person.Press("n");
            SEES(std::string("chkTagKnown"), person.Focused());
            EXPECT_TRUE(person.Open());
            person.Press("alt+c");
            SEES(std::wstring(L"Are you sure you want to cancel all changes?"), person.BoxText());
            person.Press("Return"); // Yes
            SEES(false, person.Open());
        });
    EXPECT_EQ(site.Query("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND partition_id = "
                         "3 AND user_id = -1 "
                         "AND application_id = 1"),
              std::vector<std::string>{"True"});
}

TEST_F(Editor, EscapeClosesAtOnceWhereNothingHasChanged)
{
    At(
        [&](Person &person)
        {
            person.Press("Escape");
            SEES(false, person.Open());
        });
}

} // namespace
} // namespace input_tests
