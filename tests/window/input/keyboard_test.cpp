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
    THEN(user.Press("alt+f"), 1, user.Tab());
    SEES("SSTab1", user.Focused());
    Walk(user, "Tab",
         {"lvwFormats", "btnAdd", "btnDelete", "SSCheck1(0)", "SSCheck1(1)", "SSCheck1(2)", "SSCheck1(3)",
          "SSCheck1(4)", "SSCheck1(5)", "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
    Walk(user, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "SSCheck1(5)"});
    // A format of another partition is read-only: its boxes and Delete are passed over.
    THEN(user.Press("alt+f Tab"), "lvwFormats", user.Focused());
    THEN(user.Type("net"), "Network Bold", user.SelectedText("lvwFormats"));
    SEES(false, user.Enabled("SSCheck1(0)"));
    Walk(user, "Tab", {"btnAdd", "btnSave"});
    THEN(user.Press("alt+h"), 2, user.Tab());
    SEES("SSTab1", user.Focused());
    // Nothing can be deleted before a heading has been picked.
    Walk(user, "Tab",
         {"lvwHeadings", "btnAddHead", "cmbAccList", "lvwReportType", "cmbFormats", "btnAllReports", "btnAllAccounts",
          "btnSave", "btnCancel", "btnPrint", "cmbPartition", "SSTab1"});
    Walk(user, "shift+Tab", {"cmbPartition", "btnPrint", "btnCancel", "btnSave", "btnAllAccounts", "btnAllReports"});
}

TEST_F(Editor, AddAndDeleteActOnTheVisiblePage)
{
    const RealInput &user = Open();
    // On the first page they act on nothing: the walk goes on behind them.
    THEN(user.Press("alt+a alt+d Tab"), "chkTagKnown", user.Focused());
    EXPECT_EQ(user.Box(), nullptr);
    THEN(user.Press("alt+f"), 1, user.Tab());
    THEN(user.Press("alt+a"), "Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    THEN(user.Press("Escape"), "(none)", user.Edited("lvwFormats"));
    THEN(user.Press("alt+d"), "Are you sure you want to delete the format Copy of Bold with Line (1)?", user.BoxText());
    THEN(user.Press("n"), "lvwFormats", user.Focused());
    EXPECT_EQ(user.SelectedText("lvwFormats"), "Copy of Bold with Line (1)");
    THEN(user.Press("alt+h"), 2, user.Tab());
    THEN(user.Press("alt+d alt+a"), "Copy of ABDOMEN", user.Edited("lvwHeadings")); // no Delete yet
    THEN(user.Press("Escape"), "(none)", user.Edited("lvwHeadings"));
    THEN(user.Press("alt+d"), "Are you sure you want to delete the heading Copy of ABDOMEN?", user.BoxText());
    THEN(user.Press("y"), "ABDOMEN", user.SelectedText("lvwHeadings"));
}

TEST_F(Editor, AddingTypingAndSaving)
{
    const RealInput &user = Open();
    user.Press("space"); // on the tabs: nothing
    THEN(user.Press("Tab"), "chkTagKnown", user.Focused());
    const bool before = user.Checked("chkTagKnown");
    THEN(user.Press("space"), !before, user.Checked("chkTagKnown"));
    THEN(user.Press("space"), before, user.Checked("chkTagKnown"));

    // A format: typed at once, then one of its boxes.
    THEN(user.Press("alt+f"), 1, user.Tab());
    THEN(user.Press("alt+a"), "Copy of Bold with Line (1)", user.Edited("lvwFormats"));
    THEN(user.Type("Plain & Small"), "Plain & Small", user.Edited("lvwFormats"));
    THEN(user.Press("Return"), "(none)", user.Edited("lvwFormats"));
    SEES("Plain & Small", user.SelectedText("lvwFormats"));
    Walk(user, "Tab", {"btnAdd", "btnDelete", "SSCheck1(0)"});
    EXPECT_TRUE(user.Checked("SSCheck1(0)"));
    THEN(user.Press("space"), false, user.Checked("SSCheck1(0)"));

    // A heading, typed and left by a click on nothing but Save.
    THEN(user.Press("alt+h"), 2, user.Tab());
    THEN(user.Press("alt+a"), "Copy of ABDOMEN", user.Edited("lvwHeadings"));
    THEN(user.Type("O'NEILL"), "O'NEILL", user.Edited("lvwHeadings"));
    THEN(user.Press("alt+s"), false, user.Open());
    Close();
    ExpectStored("0 | 1 | 3", "SELECT insert_empty_line_before, insert_carriage_return_after, flag1 FROM "
                              "Report_header_formats WHERE format_name = 'Plain & Small'");
    ExpectStored("3", "SELECT flag1 FROM Report_headers WHERE heading = 'O''NEILL'");
}

TEST_F(Editor, EscapeAsksBeforeEditsAreLost)
{
    const RealInput &user = Open();
    THEN(user.Press("Tab"), "chkTagKnown", user.Focused());
    THEN(user.Press("space"), false, user.Checked("chkTagKnown"));
    THEN(user.Press("Escape"), "Are you sure you want to cancel all changes?", user.BoxText());
    THEN(user.Press("n"), "chkTagKnown", user.Focused());
    EXPECT_TRUE(user.Open());
    THEN(user.Press("alt+c"), "Are you sure you want to cancel all changes?", user.BoxText());
    THEN(user.Press("Return"), false, user.Open()); // Yes
    Close();
    ExpectStored("True", "SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND partition_id = "
                         "3 AND user_id = -1 AND application_id = 1");
}

} // namespace
} // namespace input_tests
