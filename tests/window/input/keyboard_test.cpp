// The editor from the keyboard alone.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

// Presses a key as often as there are names, and waits each time for the next control to have the keyboard.
void Walk(const RealInput &user, const std::string &key, const Lines &names)
{
    for (const std::string &name : names)
    {
        user.Press(key);
        ASSERT_EQ(Until(name, [&] { return user.Focused(); }), name) << "by " << key;
    }
}

TEST_F(Editor, TabWalksTheVisiblePageAndNothingElse)
{
    const RealInput &user = Open();
    Walk(user, "Tab", {"chkTagKnown", "chkTagMixed", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
    Walk(user, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "chkTagMixed"});
    user.Press("alt+f");
    SEES(1, user.Tab());
    SEES("SSTab1", user.Focused());
    Walk(user, "Tab",
         {"lvwFormats", "btnAdd", "btnDelete", "SSCheck1(0)", "SSCheck1(1)", "SSCheck1(2)", "SSCheck1(3)",
          "SSCheck1(4)", "SSCheck1(5)", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
    Walk(user, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "SSCheck1(5)"});
    user.Press("alt+h");
    SEES(2, user.Tab());
    SEES("SSTab1", user.Focused());
    // Nothing can be deleted before a heading has been picked.
    Walk(user, "Tab",
         {"lvwHeadings", "btnAddHead", "cmbAccList", "lvwReportType", "cmbFormats", "btnAllReports", "btnAllAccounts",
          "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
    Walk(user, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "btnAllAccounts", "btnAllReports"});
}

TEST_F(Editor, TabPassesOverWhatAReadOnlyFormatDisables)
{
    const RealInput &user = Open();
    user.Press("alt+f Tab");
    SEES("lvwFormats", user.Focused());
    user.Type("net"); // Network Bold, of another partition
    SEES("Network Bold", user.SelectedText("lvwFormats"));
    SEES(false, user.Enabled("SSCheck1(0)"));
    Walk(user, "Tab", {"btnAdd", "btnSave"});
}

TEST_F(Editor, PagesAreTurnedByTheirAccessKeysAndByControl)
{
    const RealInput &user = Open();
    for (const auto &[keys, page] : std::vector<std::pair<const char *, int>>{{"alt+h", 2},
                                                                              {"alt+g", 0},
                                                                              {"alt+f", 1},
                                                                              {"ctrl+Tab", 2},
                                                                              {"ctrl+Next", 0},
                                                                              {"ctrl+Prior", 2},
                                                                              {"ctrl+shift+Tab", 1},
                                                                              {"Left", 0}})
    {
        user.Press(keys);
        SEES(page, user.Tab());
        SEES("SSTab1", user.Focused());
    }
}

TEST_F(Editor, AddAndDeleteActOnTheVisiblePage)
{
    const RealInput &user = Open();
    // On the first page they act on nothing: the walk goes on behind them.
    user.Press("alt+a alt+d Tab");
    SEES("chkTagKnown", user.Focused());
    EXPECT_EQ(user.Box(), nullptr);
    user.Press("alt+f");
    SEES(1, user.Tab());
    user.Press("alt+a");
    SEES("Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    user.Press("Escape");
    SEES("(none)", user.Edited("lvwFormats"));
    user.Press("alt+d");
    SEES("Are you sure you want to delete the format Copy of Bold with Line (1)?", user.BoxText());
    user.Press("n");
    SEES("lvwFormats", user.Focused());
    EXPECT_EQ(user.SelectedText("lvwFormats"), "Copy of Bold with Line (1)");
    user.Press("alt+h");
    SEES(2, user.Tab());
    user.Press("alt+d alt+a"); // no Delete yet
    SEES("Copy of ABDOMEN", user.Edited("lvwHeadings"));
    user.Press("Escape");
    SEES("(none)", user.Edited("lvwHeadings"));
    user.Press("alt+d");
    SEES("Are you sure you want to delete the heading Copy of ABDOMEN?", user.BoxText());
    user.Press("y");
    SEES("ABDOMEN", user.SelectedText("lvwHeadings"));
}

TEST_F(Editor, ArrowKeysMoveAndTheApplyingFormatFollows)
{
    const RealInput &user = Open();
    user.Press("alt+h Tab");
    SEES("lvwHeadings", user.Focused());
    user.Press("Down");
    SEES("ABDOMEN AND PELVIS", user.SelectedText("lvwHeadings"));
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("Up");
    SEES("ABDOMEN", user.SelectedText("lvwHeadings"));
    SEES("Impression \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("Down Tab Tab Tab Tab"); // over Add, Delete and the accounts
    SEES("lvwReportType", user.Focused());
    user.Press("Down");
    SEES("Chest X-Ray", user.SelectedText("lvwReportType"));
    SEES("Indented List \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("Down");
    SEES("Consultation", user.SelectedText("lvwReportType"));
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("End");
    SEES("Ultrasound", user.SelectedText("lvwReportType"));
    // Another account: its first report type, and what applies there.
    user.Press("shift+Tab");
    SEES("cmbAccList", user.Focused());
    user.Press("Down");
    SEES("Lakeside Orthopedics", user.TextOf("cmbAccList"));
    SEES("<All New>", user.SelectedText("lvwReportType"));
    SEES("Default \\ Northfield Health Network", user.TextOf("cmbFormats"));
    user.Press("Home");
    SEES("<All New>", user.TextOf("cmbAccList"));
    SEES(false, user.Enabled("lvwReportType"));
}

TEST_F(Editor, DropDownsOpenByF4AndAltDown)
{
    const RealInput &user = Open();
    user.Press("alt+h Tab Down");
    SEES("ABDOMEN AND PELVIS", user.SelectedText("lvwHeadings"));
    SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("Tab Tab Tab Tab Tab");
    SEES("cmbFormats", user.Focused());
    for (const char *const key : {"F4", "alt+Down"})
    {
        user.Press(key);
        SEES(true, user.Dropped("cmbFormats"));
        user.Press("Down Escape"); // looked at, and not taken; the window stays
        SEES(false, user.Dropped("cmbFormats"));
        SEES("Physician's Choice \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    }
    user.Press("F4");
    SEES(true, user.Dropped("cmbFormats"));
    user.Press("Down Return");
    SEES(false, user.Dropped("cmbFormats"));
    SEES("Trailing Blanks   \\ Lakeside Hospital", user.TextOf("cmbFormats"));
    user.Press("alt+s");
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(
        site.Query("SELECT format_id FROM Report_header_settings WHERE heading_id = 87 AND hosp_acct_id = 101 AND "
                   "report_type_nbr = 0"),
        Lines{"19"});
}

TEST_F(Editor, AddingTypingAndSaving)
{
    const RealInput &user = Open();
    user.Press("space"); // on the tabs: nothing
    user.Press("Tab");
    SEES("chkTagKnown", user.Focused());
    const bool before = user.Checked("chkTagKnown");
    user.Press("space");
    SEES(!before, user.Checked("chkTagKnown"));
    user.Press("space");
    SEES(before, user.Checked("chkTagKnown"));

    // A format: typed at once, then one of its boxes.
    user.Press("alt+f");
    SEES(1, user.Tab());
    user.Press("alt+a");
    SEES("Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    user.Type("Plain & Small");
    SEES("Plain & Small", user.Edited("lvwFormats"));
    user.Press("Return");
    SEES("(none)", user.Edited("lvwFormats"));
    SEES("Plain & Small", user.SelectedText("lvwFormats"));
    Walk(user, "Tab", {"btnAdd", "btnDelete", "SSCheck1(0)"});
    EXPECT_TRUE(user.Checked("SSCheck1(0)"));
    user.Press("space");
    SEES(false, user.Checked("SSCheck1(0)"));

    // F2 names it again; Escape leaves it.
    Walk(user, "shift+Tab", {"btnDelete", "btnAdd", "lvwFormats"});
    user.Press("F2");
    SEES("Plain & Small", user.Edited("lvwFormats"));
    user.Type("Other");
    SEES("Other", user.Edited("lvwFormats"));
    user.Press("Escape");
    SEES("(none)", user.Edited("lvwFormats"));
    EXPECT_EQ(user.SelectedText("lvwFormats"), "Plain & Small");
    EXPECT_EQ(user.Box(), nullptr);

    // A heading, typed and left by a click on nothing but Save.
    user.Press("alt+h");
    SEES(2, user.Tab());
    user.Press("alt+a");
    SEES("Copy of ABDOMEN", user.Edited("lvwHeadings"));
    user.Type("O'NEILL");
    SEES("O'NEILL", user.Edited("lvwHeadings"));
    user.Press("alt+s");
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(
        site.Query("SELECT insert_empty_line_before, insert_carriage_return_after, flag1 FROM Report_header_formats "
                   "WHERE format_name = 'Plain & Small'"),
        Lines{"0 | 1 | 3"});
    EXPECT_EQ(site.Query("SELECT flag1 FROM Report_headers WHERE heading = 'O''NEILL'"), Lines{"3"});
}

TEST_F(Editor, EscapeAsksBeforeEditsAreLost)
{
    const RealInput &user = Open();
    user.Press("Tab");
    SEES("chkTagKnown", user.Focused());
    user.Press("space");
    SEES(false, user.Checked("chkTagKnown"));
    user.Press("Escape");
    SEES("Are you sure you want to cancel all changes?", user.BoxText());
    user.Press("n");
    SEES("chkTagKnown", user.Focused());
    EXPECT_TRUE(user.Open());
    user.Press("alt+c");
    SEES("Are you sure you want to cancel all changes?", user.BoxText());
    user.Press("Return"); // Yes
    SEES(false, user.Open());
    Close();
    EXPECT_EQ(site.Query("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND partition_id = "
                         "3 AND user_id = -1 "
                         "AND application_id = 1"),
              Lines{"True"});
}

TEST_F(Editor, EscapeClosesAtOnceWhereNothingHasChanged)
{
    const RealInput &user = Open();
    user.Press("Escape");
    SEES(false, user.Open());
}

} // namespace
} // namespace input_tests
