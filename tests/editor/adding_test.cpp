// Adding formats and headings, new ones and copies.
#include "session.h"

#include "editor/records.h"
#include "model/globals.h"

#include <algorithm>

using namespace editor;
using support::ErrorBox;

namespace
{

class Adding : public Session
{
protected:
    static Lines SettingsOf(std::int16_t heading)
    {
        Lines lines;
        model::gSettings->ForHeading(
            heading,
            [&](std::int64_t, const model::clsSettings &s)
            {
                lines.push_back(std::to_string(s.HospitalID) + " " + std::to_string(s.ReportType) + " " +
                                std::to_string(s.FormatID) + " " + std::to_string(s.PartitionID) +
                                (s.NewSetting ? " N" : "") + (s.HasChanged ? "C" : "") + (s.RemoveSetting ? "R" : ""));
                return true;
            });
        return lines;
    }
    // Opens, does this, and throws the edits away.
    void Edit(const std::function<void()> &act)
    {
        Open(
            [&]
            {
                act();
                Form().m_blnChanged = false;
            });
    }
};

TEST_F(Adding, WithoutASelectedFormatANewOneIsMade)
{
    Run("DELETE FROM Report_header_formats");
    Edit(
        [&]
        {
            PickTab(1);
            // The list may have lost what the collection has.
            for (const char *name : {"New Format", "New Format (1)", "New Format (2)"})
            {
                Form().lvwFormats.Clear();
                ASSERT_TRUE(Form().btnAdd.Click());
                EXPECT_EQ(name, Form().lvwFormats.SelectedItem().text);
            }
        });
}

// It is known by its text, not by its number.
TEST_F(Adding, TheDefaultHeadingIsNotCopied)
{
    Run("INSERT INTO Report_headers VALUES (19, '<Default>', 2) "
        "INSERT INTO Report_header_settings VALUES (19, 7, 0, 11, 0) "
        "UPDATE Report_headers SET heading = 'Base' WHERE heading_id = 0");
    Edit(
        [&]
        {
            PickTab(2);
            PickHeading("Key19-2");
            ASSERT_TRUE(Form().btnAddHead.Click());
            EXPECT_EQ("New Header", HeadingOf({23, 2}).HeadingName);
            EXPECT_EQ(Lines{}, SettingsOf(23));
            PickHeading("Key0-1");
            ASSERT_TRUE(Form().btnAddHead.Click());
            EXPECT_EQ("Copy of Base", HeadingOf({24, 2}).HeadingName);
            EXPECT_EQ((Lines{"-1 0 10 0 NC"}), SettingsOf(24));
        });
}

TEST_F(Adding, SettingsThatDifferInTheirPartitionAloneAreAllCopied)
{
    Run("INSERT INTO Report_header_settings VALUES (21, -1, 0, 10, 2) "
        "INSERT INTO Report_header_settings VALUES (21, -1, 0, 11, 3)");
    Edit(
        [&]
        {
            PickTab(2);
            PickHeading("Key21-2");
            ASSERT_TRUE(Form().btnAddHead.Click());
            Lines copied = SettingsOf(23);
            std::sort(copied.begin(), copied.end());
            EXPECT_EQ((Lines{"-1 0 10 0 NC", "-1 0 11 0 NC", "7 4 10 0 NC"}), copied);
        });
}

TEST_F(Adding, AHeadingIsShownForTheReportTypeThatIsSelected)
{
    Edit(
        [&]
        {
            PickTab(2);
            ASSERT_TRUE(Form().lvwReportType.Select(Form().lvwReportType.Position("Key4")));
            PickHeading("Key21-2");
            ASSERT_TRUE(Form().btnAddHead.Click());
            EXPECT_EQ("Plain \\ Clinic", Form().cmbFormats.List(Form().cmbFormats.ListIndex()));
            EXPECT_EQ(4, Form().m_intReportType);
        });
}

// Whatever fails, and however late: only the number is used up.
TEST_F(Adding, ThatFailsLeavesNothingBehind)
{
    struct Case
    {
        const char *error;
        bool format;
        std::function<void()> prepare;
    };
    const Case cases[] = {
        {"This key is already associated with an element of this collection", false,
         [&] { Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRHeaderID', '20', NULL)"); }},
        {"Invalid property array index", false, [&] { Form().cmbAccList.Clear(); }},
        {"This key is already associated with an element of this collection", true,
         [&] { Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRFormatID', '9', NULL)"); }},
        {"Overflow", true,
         [&] { Form().lvwFormats.OnBeforeLabelEdit = [](bool &) { runtime::Raise(runtime::kOverflow); }; }},
    };
    for (const Case &c : cases)
    {
        SCOPED_TRACE(c.error);
        Run("DELETE FROM System_user_cfg");
        desktop.boxes.clear();
        Edit(
            [&]
            {
                PickTab(2);
                PickHeading("Key21-2");
                if (c.format)
                {
                    PickTab(1);
                    PickFormat("Key11-2");
                }
                const Lines formats = Texts(Form().lvwFormats), headings = Texts(Form().lvwHeadings);
                const Lines choices = Texts(Form().cmbFormats);
                const std::size_t settings = model::gSettings->ColSettingInfo->Count();
                c.prepare();
                desktop.WillAnswerOk();
                ASSERT_TRUE(c.format ? Form().btnAdd.Click() : Form().btnAddHead.Click());
                EXPECT_EQ(formats, Texts(Form().lvwFormats));
                EXPECT_EQ(headings, Texts(Form().lvwHeadings));
                EXPECT_EQ(choices, Texts(Form().cmbFormats));
                EXPECT_EQ(2u, model::gFormats->ColFormatInfo->Count());
                EXPECT_EQ(2u, model::gHeadings->ColHeadingInfo->Count());
                EXPECT_EQ(settings, model::gSettings->ColSettingInfo->Count());
                EXPECT_EQ(1u, SettingsOf(21).size());
                EXPECT_EQ(21, Form().m_intHeadID);
                EXPECT_TRUE(Form().btnDeleteHead.Enabled());
                EXPECT_FALSE(Form().m_blnChanged);
            });
        EXPECT_EQ((Lines{ErrorBox(std::string("Error encountered while adding ") +
                                  (c.format ? "format: " : "heading: ") + c.error)}),
                  desktop.boxes);
        EXPECT_EQ(1u, Query("SELECT key_value FROM System_user_cfg WHERE key_name LIKE 'NextSR%'").size());
    }
}

// The number of an entry cannot be read from its key when it is below 0: the click on it fails.
TEST_F(Adding, NeverCopiesAnotherEntryThanTheSelectedOne)
{
    Run("INSERT INTO Report_headers VALUES (-5, 'ODD', 2) "
        "INSERT INTO Report_header_formats VALUES (-6, 'Odd', 0, 0, 0, 0, 0, 0, 0, 2)");
    Edit(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            PickFormat("Key-6-2");
            desktop.WillAnswerOk(2);
            ASSERT_TRUE(Form().btnAdd.Click());
            PickTab(2);
            PickHeading("Key20-2");
            PickHeading("Key-5-2");
            ASSERT_TRUE(Form().btnAddHead.Click());
            EXPECT_FALSE(Form().m_blnChanged);
        });
    EXPECT_EQ((Lines{ErrorBox("Error encountered while adding format: Type mismatch"),
                     ErrorBox("Error encountered while adding heading: Type mismatch")}),
              desktop.boxes);
}

TEST_F(Adding, AnIdentifierBeyond16BitsIsReported)
{
    Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRFormatID', '32767', NULL)");
    Edit(
        [&]
        {
            PickTab(1);
            desktop.WillAnswerOk();
            ASSERT_TRUE(Form().btnAdd.Click());
            EXPECT_EQ(3, Form().lvwFormats.Count());
        });
    EXPECT_EQ((Lines{ErrorBox("Error encountered while adding format: Overflow")}), desktop.boxes);
}

} // namespace
