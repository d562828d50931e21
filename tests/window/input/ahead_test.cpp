// A user who goes on working while the database is slow: all ends as if they had waited.
#include "window/input/sample_site.h"

#include <vector>

namespace input_tests
{
namespace
{

using Lines = std::vector<std::string>;

class Ahead : public Editor
{
protected:
    // Statements with the text take this long from now on; many keys are pressed meanwhile.
    void Slow(const char *text) { site.Delay(text, 1500); }
    Lines Events() { return site.Query("SELECT error_code, msg1 FROM System_log"); }
    Lines Headings() { return site.Query("SELECT heading FROM Report_headers WHERE flag1 = 3 ORDER BY heading_id"); }
};

TEST_F(Ahead, AddAndTheNewName)
{
    Lines expected = Headings();
    expected.push_back("impressions");
    At(
        [&](Person &person)
        {
            Slow("NextSRHeaderID");
            person.Press("alt+h");
            person.Press("alt+a");
            person.Type("impressions"); // begins as another heading does
            person.Press("Return");
            person.Press("alt+s");
            SEES(false, person.Open());
        });
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, AddAndAClickOnAnotherHeading)
{
    Lines expected = Headings();
    expected.push_back("Copy of ABDOMEN");
    At(
        [&](Person &person)
        {
            person.Press("alt+h");
            SEES(2, person.Tab());
            const HWND list = person.Of("lvwHeadings");
            const POINT row = person.PlaceOfRow("lvwHeadings", 3);
            Slow("NextSRHeaderID");
            person.Press("alt+a");
            person.ClickAt(list, row);
            person.Type("x"); // moves to a heading, renames none
            SEES(std::wstring(L"(none)"), person.Edited("lvwHeadings"));
            person.Press("alt+s");
            SEES(false, person.Open());
        });
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, DeleteTheAnswerAndLetters)
{
    const Lines expected = Headings();
    At(
        [&](Person &person)
        {
            person.Press("alt+h");
            SEES(2, person.Tab());
            Slow("NextSRHeaderID");
            // What is added is what is deleted.
            person.Press("alt+a Escape alt+d");
            person.Type("y");
            person.Press("Tab shift+Tab");
            person.Type("zz");
            SEES(std::wstring(L"ABDOMEN"), person.SelectedText("lvwHeadings"));
            EXPECT_EQ(person.Box(), nullptr);
            person.Press("alt+s");
            SEES(false, person.Open());
        });
    EXPECT_EQ(Headings(), expected);
}

TEST_F(Ahead, APartitionAndSave)
{
    const Lines before = Events();
    At(
        [&](Person &person)
        {
            person.Press("Tab");
            SEES(std::string("chkTagKnown"), person.Focused());
            person.Press("space");
            SEES(false, person.Checked("chkTagKnown"));
            person.Press("shift+Tab shift+Tab");
            SEES(std::string("cmbPartition"), person.Focused());
            const HWND save = person.Of("btnSave");
            Slow("FROM account_info WHERE is_deleted");
            person.Press("Down");
            person.ClickAt(save, {20, 10});
            SEES(false, person.Open());
        });
    EXPECT_EQ(site.Query("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND "
                         "partition_id = 3 AND user_id = -1 AND application_id = 1"),
              Lines{"False"});
    EXPECT_EQ(Events(), before);
}

TEST_F(Ahead, TwoPartitions)
{
    At(
        [&](Person &person)
        {
            const auto seen = [&person]
            {
                std::wstring all;
                for (const char *const combo : {"cmbPartition", "cmbAccList", "cmbFormats"})
                    all += person.TextOf(combo) + L" | ";
                for (const char *const list : {"lvwFormats", "lvwHeadings", "lvwReportType"})
                    all += person.SelectedText(list) + L" | ";
                return all;
            };
            person.Press("alt+h shift+Tab");
            SEES(std::string("cmbPartition"), person.Focused());
            for (const wchar_t *const partition : {L"Lakeside Imaging Center", L"Lakeside Heart Institute"})
            {
                person.Press("Down");
                SEES(std::wstring(partition), person.TextOf("cmbPartition"));
                SEES(false, person.Busy());
            }
            const std::wstring waited = seen();
            EXPECT_NE(waited.find(L"Heart Institute Cath Lab"), waited.npos);
            person.Press("Up");
            person.Press("Up");
            SEES(std::wstring(L"Lakeside Medical Group"), person.TextOf("cmbAccList"));
            SEES(false, person.Busy());
            Slow("FROM account_info WHERE is_deleted");
            person.Press("Down");
            person.Press("Down");
            SEES(waited, seen());
            SEES(false, person.Busy());
            EXPECT_EQ(seen(), waited);
        });
}

} // namespace
} // namespace input_tests
