// The save pass, on a database: what is sent, in which order, and what stands in the tables behind it.
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "records.h"

#include "runtime/error.h"

#include <gtest/gtest.h>

#include <string>

using namespace store;
using records::State;
using support::ErrorBox;
using support::Lines;

namespace
{

class SavePass : public support::DatabaseTest
{
protected:
    SavePass() { records::Start(); }

    // What was sent behind the tagging options of `partitions` partitions.
    Lines SentBehindOptions(std::size_t partitions = 1) const
    {
        const Lines sent = Log();
        EXPECT_LE(2 * partitions, sent.size());
        return {sent.begin() + static_cast<std::ptrdiff_t>(std::min(2 * partitions, sent.size())), sent.end()};
    }
    Lines Formats()
    {
        return Query("SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, "
                     "insert_colon, bold, underline, indent, system_format, flag1 FROM Report_header_formats "
                     "ORDER BY format_id");
    }
    Lines Headings() { return Query("SELECT heading_id, heading, flag1 FROM Report_headers ORDER BY heading_id"); }
    Lines Settings()
    {
        return Query("SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings "
                     "ORDER BY heading_id, hosp_acct_id, report_type_nbr, flag1");
    }
    Lines DefaultModes()
    {
        return Query("SELECT user_id, application_id, key_value, partition_id FROM System_user_cfg "
                     "WHERE key_name = 'DefaultHeadingMode' ORDER BY partition_id");
    }
    Lines Events() { return Query("SELECT error_code, msg1 FROM System_log"); }
};

TEST_F(SavePass, OfASessionIsSentInOrderAndStored)
{
    Run("INSERT INTO Report_header_formats (format_id, format_name, system_format, flag1) VALUES (10, 'Old', 1, 3) "
        "INSERT INTO Report_header_formats (format_id, format_name, system_format, flag1) VALUES (11, 'Gone', 0, 3) "
        "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (20, 'Old', 3) "
        "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (21, 'Gone', 4) "
        "INSERT INTO Report_header_settings VALUES (20, 7, 0, 10, 0) "
        "INSERT INTO Report_header_settings VALUES (20, 8, 4, 10, 0) "
        "INSERT INTO Report_header_settings VALUES (21, 8, 4, 10, 0) "
        "INSERT INTO Report_header_settings VALUES (21, -1, 0, 10, 9)");
    model::clsPartition &three = records::Partition(3);
    model::clsPartition &four = records::Partition(4);
    three.m_blnTagKnownHeadings = true;
    four.m_blnMixFound = true;
    records::Format(three, 10, "Renamed", State::Changed);
    records::Format(three, 11, "Gone", State::Removed);
    records::Format(three, 12, "O'Brien", State::New);
    records::Format(four, 13, "Four's", State::New);
    records::Heading(three, 20, "Renamed", State::Changed);
    records::Heading(four, 21, "Gone", State::Removed);
    records::Heading(four, 22, "New 'one'", State::New);
    records::Setting(20, 7, 0, 12, 0, State::Changed);
    records::Setting(20, 8, 4, 10, 0, State::Removed);
    records::Setting(22, -1, 0, 13, 4, State::New);
    records::Setting(0, -1, 0, 12, 3, State::New);
    SaveAll();

    const auto format = [](const model::clsPartition &partition, const char *id) -> const model::clsFormats &
    { return *partition.m_objcolFormats->ColFormatInfo->Item(id); };
    const auto heading = [](const model::clsPartition &partition, const char *id) -> const model::clsHeadings &
    { return *partition.m_objcolHeadings->ColHeadingInfo->Item(id); };
    const auto setting = [](std::int64_t position) -> const model::clsSettings &
    { return *model::gSettings->ColSettingInfo->Item(position); };
    EXPECT_EQ((Lines{sql::InsertTaggingOption(3, false, true), sql::InsertTaggingOption(3, true, false),
                     sql::InsertTaggingOption(4, false, false), sql::UpdateTaggingOption(4, true, false),
                     sql::UpdateFormat(format(three, "10")), sql::InsertFormat(format(three, "12"), 3),
                     sql::InsertFormat(format(four, "13"), 4), sql::UpdateHeading(heading(three, "20")),
                     sql::InsertHeading(heading(four, "22"), 4), sql::UpdateSetting(setting(1)),
                     sql::DeleteSetting(setting(2)), sql::InsertSetting(setting(3)), sql::InsertSetting(setting(4)),
                     sql::StoreDefaultHeadingMode(setting(4)), sql::DeleteHeading(heading(four, "21")),
                     sql::DeleteSettingsOfHeading(heading(four, "21")), sql::DeleteFormat(format(three, "11"))}),
              Log());
    EXPECT_EQ((Lines{"10 | Renamed | 1 | 0 | 1 | 0 | 0 | 1 | 1 | 3", "12 | O'Brien | 1 | 0 | 1 | 0 | 0 | 1 | 0 | 3",
                     "13 | Four's | 1 | 0 | 1 | 0 | 0 | 1 | 0 | 4"}),
              Formats());
    EXPECT_EQ((Lines{"20 | Renamed | 3", "22 | New 'one' | 4"}), Headings());
    EXPECT_EQ((Lines{"0 | -1 | 0 | 12 | 3", "20 | 7 | 0 | 12 | 0", "22 | -1 | 0 | 13 | 4"}), Settings());
    EXPECT_EQ(Lines{"-1 | 1 | 12 | 3"}, DefaultModes());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(SavePass, WithoutChangesWritesTheTaggingOptionsAlone)
{
    model::clsPartition &three = records::Partition(3);
    for (const State state : {State::Unchanged, State::OnlyMarked})
    {
        const auto id = static_cast<std::int16_t>(state);
        records::Format(three, id, "x", state);
        records::Heading(three, id, "x", state);
        records::Setting(id, 1, 1, 1, 0, state);
        // not even the default heading mode
        records::Setting(0, -1, 0, 5, 3, state);
    }
    SaveAll();
    EXPECT_EQ(2u, Log().size());
    EXPECT_EQ(Lines{}, SentBehindOptions());
}

TEST_F(SavePass, OfANewFormatThatIsRemovedDeletesNothing)
{
    Run("INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (1, 'a', 3)");
    records::Format(records::Partition(3), 12, "x", State::NewAndRemoved);
    SaveAll();
    EXPECT_EQ(Lines{"DELETE FROM Report_header_formats WHERE format_id = 12"}, SentBehindOptions());
    EXPECT_EQ(1u, Formats().size());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(SavePass, OfANewHeadingThatIsRemovedDeletesItsSettings)
{
    records::Heading(records::Partition(3), 12, "x", State::NewAndRemoved);
    SaveAll();
    EXPECT_EQ((Lines{"DELETE FROM Report_headers WHERE heading_id = 12",
                     "DELETE FROM Report_header_settings WHERE heading_id = 12"}),
              SentBehindOptions());
}

TEST_F(SavePass, OfANewSettingThatIsRemovedDeletes)
{
    records::Partition(3);
    records::Setting(5, 1, 2, 3, 0, State::NewAndRemoved);
    SaveAll();
    EXPECT_EQ(Lines{"DELETE FROM Report_header_settings "
                    "WHERE heading_id = 5 AND hosp_acct_id = 1 AND report_type_nbr = 2 AND flag1 = 0"},
              SentBehindOptions());
}

TEST_F(SavePass, OfARemovedHeadingDeletesItsSettingsInEveryPartition)
{
    Run("INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (5, 'a', 3) "
        "INSERT INTO Report_header_settings VALUES (5, -1, 0, 1, 3) "
        "INSERT INTO Report_header_settings VALUES (5, -1, 0, 1, 99) "
        "INSERT INTO Report_header_settings VALUES (5, 7, 4, 1, 0) "
        "INSERT INTO Report_header_settings VALUES (6, 7, 4, 1, 0)");
    records::Heading(records::Partition(3), 5, "a", State::Removed);
    SaveAll();
    EXPECT_EQ(Lines{}, Headings());
    EXPECT_EQ(Lines{"6 | 7 | 4 | 1 | 0"}, Settings());
}

TEST_F(SavePass, OfARemovedFormatLeavesTheSettingsThatNameIt)
{
    Run("INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (1, 'a', 3) "
        "INSERT INTO Report_header_settings VALUES (6, 7, 4, 1, 0)");
    records::Format(records::Partition(3), 1, "a", State::Removed);
    SaveAll();
    EXPECT_EQ(Lines{}, Formats());
    EXPECT_EQ(Lines{"6 | 7 | 4 | 1 | 0"}, Settings());
}

// The default heading mode is stored whichever way the setting went; the second save finds the row.
TEST_F(SavePass, StoresTheDefaultHeadingModeOfInsertedChangedAndRemovedSettings)
{
    records::Partition(3);
    model::clsSettings &setting = records::Setting(0, -1, 0, 5, 3, State::New);
    SaveAll();
    EXPECT_EQ(Lines{"-1 | 1 | 5 | 3"}, DefaultModes());

    setting.NewSetting = false;
    setting.FormatID = 6;
    SaveAll();
    EXPECT_EQ(Lines{"0 | -1 | 0 | 6 | 3"}, Settings());
    EXPECT_EQ(Lines{"-1 | 1 | 6 | 3"}, DefaultModes());

    setting.FormatID = 8;
    setting.RemoveSetting = true;
    SaveAll();
    EXPECT_EQ(Lines{}, Settings());
    EXPECT_EQ(Lines{"-1 | 1 | 8 | 3"}, DefaultModes());
}

TEST_F(SavePass, StoresTheDefaultHeadingModeOfASettingThatFails)
{
    records::Partition(3);
    records::Setting(0, -1, 0, 5, 3, State::New);
    Fail(1, "INSERT INTO Report_header_settings", "no");
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(Lines{"-1 | 1 | 5 | 3"}, DefaultModes());
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: HY000: no")}, desktop.boxes);
}

TEST_F(SavePass, StoresNoDefaultHeadingModeOfNearlySuchSettings)
{
    records::Partition(3);
    records::Setting(1, -1, 0, 5, 3, State::New);
    records::Setting(0, 7, 0, 5, 0, State::New);
    records::Setting(0, -1, 4, 5, 3, State::New);
    SaveAll();
    EXPECT_EQ(3u, Settings().size());
    EXPECT_EQ(Lines{}, DefaultModes());
}

// The error shows only when the batch's next result is asked for, which is done for every statement.
TEST_F(SavePass, ReportsAnErrorInsideTheDefaultHeadingModeBatch)
{
    Run("INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) "
        "VALUES (-1, 1, 'DefaultHeadingMode', '1', 3)");
    records::Partition(3);
    records::Setting(0, -1, 0, 5, 3, State::New);
    constexpr int kBatch = 4; // behind the two options and the setting
    database.FailCall("SQLMoreResults", kBatch, support::TestDatabase::CallFault::Error);
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(Lines{"-1 | 1 | 5 | 3"}, DefaultModes());
    EXPECT_EQ(Lines{"21010 | Error encountered while accessing data: HY000: ordered for SQLMoreResults"}, Events());
}

TEST_F(SavePass, ChangesNoFlagsSoThatASecondSaveSendsTheSameAgain)
{
    model::clsPartition &three = records::Partition(3);
    three.m_blnKnownFound = three.m_blnMixFound = true;
    records::Format(three, 1, "a", State::Changed);
    records::Heading(three, 2, "b", State::Changed);
    records::Heading(three, 3, "c", State::Removed);
    records::Setting(2, 7, 0, 1, 0, State::Changed);
    SaveAll();
    const Lines first = Log();
    database.ClearLog();
    SaveAll();
    EXPECT_EQ(first, Log());
    EXPECT_EQ(7u, first.size());
}

struct NameCase
{
    const char *what;
    std::string name;
};

TEST_F(SavePass, StoresNamesIntact)
{
    const NameCase kNames[] = {
        {"quotes", "'O''Brien's'"},
        {"greatest length", std::string(50, 'n')},
        {"beyond ASCII", "\xC3\x84rztlicher Befund \xE2\x82\xAC"},
        {"line break", "two\r\nlines"},
        {"blanks", "   "},
        {"double quotes and percent", "\"100%\" -- /* ; */"},
    };
    model::clsPartition &three = records::Partition(3);
    std::int16_t id = 0;
    for (const auto &[what, name] : kNames)
        records::Format(three, ++id, name, State::New);
    SaveAll();
    id = 0;
    for (const auto &[what, name] : kNames)
        EXPECT_EQ(Lines{name},
                  Query("SELECT format_name FROM Report_header_formats WHERE format_id = " + std::to_string(++id)))
            << what;
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(SavePass, ANameThatIsOneTooLongIsRefusedByTheDatabaseAndToldToTheUser)
{
    model::clsPartition &three = records::Partition(3);
    records::Format(three, 1, std::string(51, 'n'), State::New);
    records::Format(three, 2, "kept", State::New);
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(1u, Formats().size());
    ASSERT_EQ(1u, desktop.boxes.size());
    EXPECT_NE(std::string::npos, desktop.boxes[0].find("Error encountered while accessing data: 22001: "))
        << desktop.boxes[0];
}

TEST_F(SavePass, AFailingInsertDoesNotKeepTheRestFromBeingWritten)
{
    model::clsPartition &three = records::Partition(3);
    records::Format(three, 1, "refused", State::New);
    records::Format(three, 2, "kept", State::New);
    records::Heading(three, 4, "h", State::New);
    records::Setting(4, 7, 0, 2, 0, State::New);
    Fail(1, "'refused'", "duplicate", "23000");
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(Lines{"2 | kept | 1 | 0 | 1 | 0 | 0 | 1 | 0 | 3"}, Formats());
    EXPECT_EQ(Lines{"4 | h | 3"}, Headings());
    EXPECT_EQ(Lines{"4 | 7 | 0 | 2 | 0"}, Settings());
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: 23000: duplicate")}, desktop.boxes);
    EXPECT_EQ(Lines{"21010 | Error encountered while accessing data: 23000: duplicate"}, Events());
}

TEST_F(SavePass, OfAPartitionWhoseCollectionsAHostTookAwayReportsItAndGoesOn)
{
    records::Partition(3).m_objcolFormats = nullptr;
    records::Format(records::Partition(4), 2, "kept", State::New);
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(1u, Formats().size());
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: "
                             "Object variable or With block variable not set")},
              desktop.boxes);
}

TEST_F(SavePass, WithoutLoadedPartitionsIsAnErrorAndWritesNothing)
{
    model::gPartitions = nullptr;
    EXPECT_THROW(SaveAll(), runtime::Error);
    EXPECT_EQ(Lines{}, Log());
}

} // namespace
