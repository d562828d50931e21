// The event log, on a database.
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "host/modGlobalVariables.h"
#include "host/modMain.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace store;
using support::ErrorBox;
using support::Lines;

namespace
{

class EventLog : public support::DatabaseTest
{
protected:
    Lines Events() { return Query("SELECT user_id, error_code, msg1 FROM System_log"); }
};

TEST_F(EventLog, ARowHasAllItsColumns)
{
    host::gUserID = 77;
    WriteLogEntry(21000, "Error encountered while loading form: x");
    EXPECT_EQ(Lines{"2 | 0 | 77 | 21000 | -1 | -1 | -1 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | "
                    "Error encountered while loading form: x"},
              Query("SELECT severity, type, user_id, error_code, hosp_acct_id, dept_id, physician_id, document_id, "
                    "schedule_id, batch_nbr, flag1, flag2, flag3, flag4, number1, number2, msg1 FROM System_log"));
    // the server's own time
    EXPECT_EQ(Lines{"1"}, Query("SELECT 1 FROM System_log WHERE date_timestamp <= GETDATE()"));
    EXPECT_EQ(Lines{sql::InsertLogEntry(77, 21000, "Error encountered while loading form: x")}, Log());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(EventLog, TheUserIs0UntilTheHostSetsOne)
{
    WriteLogEntry(1, "x");
    EXPECT_EQ(Lines{"0 | 1 | x"}, Events());
}

TEST_F(EventLog, QuotesAreStoredIntact)
{
    WriteLogEntry(1, "message of O'Brien");
    WriteLogEntry(2, std::string(200, '\''));
    EXPECT_EQ((Lines{"0 | 1 | message of O'Brien", "0 | 2 | " + std::string(90, '\'')}), Events());
}

// A row that was sent over a connection that is lost is sent once more over a new one.
TEST_F(EventLog, ARowThatMeetsALossIsWrittenWithoutAWord)
{
    for (const char *state : {"08S01", "HY000", "01000"})
    {
        database.Cut("INSERT INTO System_log", state);
        WriteLogEntry(21010, state);
    }
    database.CutIdle();
    WriteLogEntry(21010, "idle");
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_EQ((Lines{"0 | 21010 | 08S01", "0 | 21010 | HY000", "0 | 21010 | 01000", "0 | 21010 | idle"}), Events());
}

// Nothing could ever be written then.
TEST_F(EventLog, TheRepetitionEndsWhenTheComponentHasDisconnected)
{
    Fail(database.kForGood, "INSERT INTO System_log", "refused");
    desktop.WillAnswerOk(2);
    desktop.whileBoxIsOpen = [&](const std::string &)
    {
        if (desktop.AnswersLeft() == 0)
            host::Disconnect();
    };
    WriteLogEntry(21010, "the cause");
    EXPECT_EQ(2u, desktop.boxes.size());
    WriteLogEntry(21010, "the cause");
    host::gConnection = nullptr;
    WriteLogEntry(21010, "the cause");
    EXPECT_EQ(2u, desktop.boxes.size());
    EXPECT_EQ(2u, Log().size());
}

// The row is the second statement of its batch: its error does not come with the first result.
TEST_F(EventLog, AnErrorInALaterStatementOfTheBatchIsSeen)
{
    Run("DROP TABLE System_log");
    desktop.WillAnswerOk();
    desktop.whileBoxIsOpen = [&](const std::string &)
    {
        Run("CREATE TABLE System_log (date_timestamp datetime, severity int, type int, user_id int, error_code int, "
            "hosp_acct_id int, dept_id int, physician_id int, document_id int, schedule_id int, batch_nbr int, "
            "flag1 int, flag2 int, flag3 int, flag4 int, number1 int, number2 int, msg1 varchar(90))");
    };
    WriteLogEntry(21010, "the cause");
    ASSERT_EQ(1u, desktop.boxes.size());
    EXPECT_EQ(0u, desktop.boxes[0].find("box 48 \"Error\" \"Error encountered while logging: 42S02: "));
    EXPECT_NE(std::string::npos, desktop.boxes[0].find("Invalid object name 'System_log'.\" -> OK"));
    const Lines events = Events();
    ASSERT_EQ(1u, events.size());
    EXPECT_EQ(0u, events[0].find("0 | 21008 | Error encountered while logging: 42S02: ")) << events[0];
}

// No limit but the user's patience.
TEST_F(EventLog, TheRepetitionHasNoDepth)
{
    constexpr int kTimes = 200;
    Fail(kTimes, "INSERT INTO System_log", "refused", "42000");
    desktop.WillAnswerOk(kTimes);
    std::set<const void *> depths;
    desktop.whileBoxIsOpen = [&](const std::string &) { depths.insert(__builtin_frame_address(0)); };
    WriteLogEntry(21010, "the cause");
    ASSERT_EQ(std::size_t(kTimes), desktop.boxes.size());
    EXPECT_EQ(1u, depths.size()) << "the stack grows with every failure";
    EXPECT_EQ(Lines{"0 | 21008 | Error encountered while logging: 42000: refused"}, Events());
}

TEST_F(EventLog, AReportedErrorIsShownThenLoggedWithTheSameText)
{
    runtime::ErrorTrap trap;
    ReportError(trap, "Error encountered while testing: ", 21001);
    EXPECT_EQ(Lines{}, Log());

    trap.Try([] { runtime::Raise(runtime::kOverflow); });
    desktop.WillAnswerOk();
    std::size_t sentBeforeTheBox = 99;
    desktop.whileBoxIsOpen = [&](const std::string &) { sentBeforeTheBox = Log().size(); };
    ReportError(trap, "Error encountered while testing: ", 21001);
    EXPECT_EQ(0u, sentBeforeTheBox);
    EXPECT_EQ(Lines{ErrorBox("Error encountered while testing: Overflow")}, desktop.boxes);
    EXPECT_EQ(Lines{"0 | 21001 | Error encountered while testing: Overflow"}, Events());
    EXPECT_EQ(runtime::kOverflow, trap.Number());
}

TEST_F(EventLog, ALongErrorIsShownWholeAndLoggedCut)
{
    runtime::ErrorTrap trap;
    trap.Try([] { throw runtime::Error(40002, std::string(200, 'x')); });
    desktop.WillAnswerOk();
    ReportError(trap, "Error: ", 21001);
    EXPECT_EQ(Lines{ErrorBox("Error: " + std::string(200, 'x'))}, desktop.boxes);
    EXPECT_EQ(Lines{"0 | 21001 | Error: " + std::string(83, 'x')}, Events());
}

} // namespace
