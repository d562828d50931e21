// A user who goes on working while the database is slow: all ends as if they had waited.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

class Ahead : public Editor
{
protected:
    // Statements with the text take this long from now on; many keys are pressed meanwhile.
    void Slow(const char *text) { site.Delay(text, 800); }
    Lines Events() { return site.Query("SELECT error_code, msg1 FROM System_log"); }
    Lines Headings() { return site.Query("SELECT heading FROM Report_headers WHERE flag1 = 3 ORDER BY heading_id"); }
};

TEST_F(Ahead, AddAndTheNewName)
{
    Lines expected = Headings();
    expected.push_back("impressions");
    const RealInput &user = Open();
    Slow("NextSRHeaderID");
    user.Press("alt+h");
    user.Press("alt+a");
    user.Type("impressions"); // begins as another heading does
    user.Press("Return");
    THEN(user.Press("alt+s"), false, user.Open());
    Close();
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, AddAndAClickOnAnotherHeading)
{
    Lines expected = Headings();
    expected.push_back("Copy of ABDOMEN");
    const RealInput &user = Open();
    THEN(user.Press("alt+h"), 2, user.Tab());
    const HWND list = user.Of("lvwHeadings");
    const RECT row = user.PlaceOfRow("lvwHeadings", 3);
    Slow("NextSRHeaderID");
    user.Press("alt+a");
    user.ClickAt(list, {row.left + 10, row.top + 5});
    THEN(user.Type("x"), "(none)", user.Edited("lvwHeadings")); // moves to a heading, renames none
    THEN(user.Press("alt+s"), false, user.Open());
    Close();
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, DeleteTheAnswerAndLetters)
{
    const Lines expected = Headings();
    const RealInput &user = Open();
    THEN(user.Press("alt+h"), 2, user.Tab());
    Slow("NextSRHeaderID");
    // What is added is what is deleted.
    user.Press("alt+a Escape alt+d");
    user.Type("y");
    user.Press("Tab shift+Tab");
    THEN(user.Type("zz"), "ABDOMEN", user.SelectedText("lvwHeadings"));
    EXPECT_EQ(user.Box(), nullptr);
    THEN(user.Press("alt+s"), false, user.Open());
    Close();
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, APartitionAndSave)
{
    const Lines before = Events();
    const RealInput &user = Open();
    THEN(user.Press("Tab"), "chkTagKnown", user.Focused());
    THEN(user.Press("space"), false, user.Checked("chkTagKnown"));
    THEN(user.Press("shift+Tab shift+Tab"), "cmbPartition", user.Focused());
    const HWND save = user.Of("btnSave");
    Slow("FROM account_info WHERE is_deleted");
    user.Press("Down");
    THEN(user.ClickAt(save, {20, 10}), false, user.Open());
    Close();
    ExpectStored("False", "SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND partition_id "
                          "= 3 AND user_id = -1 AND application_id = 1");
    EXPECT_EQ(Events(), before);
}

TEST_F(Ahead, TwoPartitions)
{
    const RealInput &user = Open();
    const auto seen = [&user]
    {
        std::string all;
        for (const char *const combo : {"cmbPartition", "cmbAccList", "cmbFormats"})
            all += user.TextOf(combo) + " | ";
        for (const char *const list : {"lvwFormats", "lvwHeadings", "lvwReportType"})
            all += user.SelectedText(list) + " | ";
        return all;
    };
    THEN(user.Press("alt+h shift+Tab"), "cmbPartition", user.Focused());
    for (const char *const partition : {"Lakeside Imaging Center", "Lakeside Heart Institute"})
    {
        THEN(user.Press("Down"), partition, user.TextOf("cmbPartition"));
        SEES(false, Busy());
    }
    const std::string waited = seen();
    EXPECT_NE(waited.find("Heart Institute Cath Lab"), waited.npos);
    user.Press("Up");
    THEN(user.Press("Up"), "Lakeside Medical Group", user.TextOf("cmbAccList"));
    SEES(false, Busy());
    Slow("FROM account_info WHERE is_deleted");
    user.Press("Down");
    THEN(user.Press("Down"), waited, seen());
    SEES(false, Busy());
    EXPECT_EQ(seen(), waited);
}

} // namespace
} // namespace input_tests
