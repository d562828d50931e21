// New identifiers, on a database.
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "runtime/error.h"

#include <gtest/gtest.h>

#include <string>

using namespace store;
using support::Lines;

namespace
{

// Formats and headings count alike; `table` gives rows of an id and the partition that owns them.
struct Kind
{
    const char *name;
    std::int32_t (*next)();
    sql::Counter counter;
    const char *rows;
};

void PrintTo(const Kind &kind, std::ostream *out)
{
    *out << kind.name;
}

class Identifiers : public support::DatabaseTest, public testing::WithParamInterface<Kind>
{
protected:
    std::int32_t Next() { return GetParam().next(); }
    std::string Key() const { return std::string(GetParam().counter.key); }
    Lines Counters()
    {
        return Query("SELECT user_id, application_id, key_name, key_value, partition_id "
                     "FROM System_user_cfg ORDER BY key_name");
    }
    void SetCounter(const std::string &value)
    {
        Run("INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value) VALUES (-1, 1, '" + Key() +
            "', '" + value + "')");
    }
};

TEST_P(Identifiers, AnEmptyTableStartsAt1)
{
    EXPECT_EQ(1, Next());
    EXPECT_EQ(Lines{"-1 | 1 | " + Key() + " | 1 | NULL"}, Counters());
}

TEST_P(Identifiers, TheCounterStartsBehindTheGreatestIdOfAllPartitionsAndIsNotRaisedAgain)
{
    Run(GetParam().rows);
    EXPECT_EQ(42, Next());
    EXPECT_EQ(Lines{"-1 | 1 | " + Key() + " | 42 | NULL"}, Counters());
    EXPECT_EQ(43, Next());
    EXPECT_EQ(Lines{"-1 | 1 | " + Key() + " |         43 | NULL"}, Counters());
}

TEST_P(Identifiers, ACounterInAnyFormThatConvertsIsRaisedAndStoredIn10Characters)
{
    for (const char *stored : {"41", "        41", "41  ", "  41 ", "0041", "+41"})
    {
        Run("DELETE FROM System_user_cfg");
        SetCounter(stored);
        EXPECT_EQ(42, Next()) << '"' << stored << '"';
        EXPECT_EQ(Lines{"-1 | 1 | " + Key() + " |         42 | NULL"}, Counters()) << '"' << stored << '"';
    }
}

TEST_P(Identifiers, AnEmptyCounterCountsAs0)
{
    SetCounter("");
    EXPECT_EQ(1, Next());
}

TEST_P(Identifiers, TheTwoStatementsAreSentWholeEachTime)
{
    Next();
    Next();
    const std::string raise = sql::RaiseCounter(GetParam().counter);
    const std::string read = sql::ReadCounter(GetParam().counter);
    EXPECT_EQ((Lines{raise, read, raise, read}), Log());
}

TEST_P(Identifiers, RowsOfOtherUsersAndApplicationsAreLeftAlone)
{
    Run("INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value) VALUES (5, 1, '" + Key() +
        "', '100')");
    Run("INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value) VALUES (-1, 2, '" + Key() +
        "', '200')");
    EXPECT_EQ(1, Next());
    EXPECT_EQ(2, Next());
    EXPECT_EQ((Lines{"5 | 1 | 100", "-1 | 2 | 200"}),
              Query("SELECT user_id, application_id, key_value FROM System_user_cfg "
                    "WHERE user_id <> -1 OR application_id <> 1 ORDER BY application_id"));
}

TEST_P(Identifiers, IdentifiersBeyond16BitsAreHandedOutAsTheyAre)
{
    SetCounter("32767");
    EXPECT_EQ(32768, Next());
}

TEST_P(Identifiers, AnErrorOfEitherStatementGoesToTheCaller)
{
    SetCounter("no number");
    try
    {
        Next();
        FAIL() << "no error";
    }
    catch (const runtime::Error &error)
    {
        EXPECT_EQ(0u, error.Description().find("22018: ")) << error.Description();
    }
    Run("DELETE FROM System_user_cfg");
    Fail(1, "SELECT CONVERT(int", "busy");
    try
    {
        Next();
        FAIL() << "no error";
    }
    catch (const runtime::Error &error)
    {
        EXPECT_EQ("HY000: busy", error.Description());
    }
    // the identifier is used up all the same
    EXPECT_EQ(2, Next());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

INSTANTIATE_TEST_SUITE_P(
    Both, Identifiers,
    testing::Values(Kind{"Formats", &NextFormatID, sql::kFormatCounter,
                         "INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (41, 'a', 3) "
                         "INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (7, 'b', 4)"},
                    Kind{"Headings", &NextHeaderID, sql::kHeadingCounter,
                         "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (41, 'a', 3) "
                         "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (7, 'b', 4)"}),
    [](const auto &info) { return std::string(info.param.name); });

class BothCounters : public support::DatabaseTest
{
};

TEST_F(BothCounters, CountIndependently)
{
    EXPECT_EQ(1, NextFormatID());
    EXPECT_EQ(1, NextHeaderID());
    EXPECT_EQ(2, NextFormatID());
    EXPECT_EQ(3, NextFormatID());
    EXPECT_EQ(2, NextHeaderID());
}

// Two editors that both raise before either reads are handed the same identifier.
TEST_F(BothCounters, TwoEditorsThatInterleaveGetTheSameIdentifier)
{
    EXPECT_EQ(1, NextFormatID());
    Run(sql::RaiseCounter(sql::kFormatCounter));
    EXPECT_EQ(3, NextFormatID());
    EXPECT_EQ(Lines{"3"}, Query(sql::ReadCounter(sql::kFormatCounter)));
}

} // namespace
