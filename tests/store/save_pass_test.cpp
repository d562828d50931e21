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

    Lines Formats() { return Query("SELECT format_id, format_name FROM Report_header_formats"); }
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
};

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
    EXPECT_EQ((Lines{sql::InsertTaggingOption(3, false, false), sql::InsertTaggingOption(3, true, false)}), Log());
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
