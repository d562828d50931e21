// Statements and rows on a real connection: batches, blocks, values larger than claimed, one statement at a time.
#include "odbc/rdoConnection.h"
#include "odbc/rdoEnvironment.h"
#include "odbc/rdoResultset.h"
#include "runtime/convert.h"
#include "runtime/error_trap.h"
#include "support/test_database.h"
#include "support/wine.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include <memory>
#include <set>
#include <string>
#include <vector>

#ifndef _WIN32
static std::set<SQLINTEGER> unknownAttributes; // that the driver is to refuse

extern "C" SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value,
                                                SQLINTEGER capacity, SQLINTEGER *length)
{
    static const auto original =
        reinterpret_cast<decltype(&SQLGetConnectAttrW)>(dlsym(RTLD_NEXT, "SQLGetConnectAttrW"));
    return unknownAttributes.contains(attribute) ? SQL_ERROR : original(connection, attribute, value, capacity, length);
}
#endif

namespace
{

using runtime::Value;

template <class Action>
runtime::ErrorTrap Trapped(Action action)
{
    runtime::ErrorTrap trap;
    trap.Try(action);
    return trap;
}

class Connection : public testing::Test
{
protected:
    std::shared_ptr<odbc::rdoConnection> Open(const std::string &more = {})
    {
        odbc::rdoEnvironment environment;
        return environment.OpenConnection("", odbc::kNeverPrompt, false,
                                          "UID=sa;PWD=;Database=" + database.DatabaseName() +
                                              ";Server=embedded;Driver={SQL Server};DSN='';APP=KVHEADERS.DLL;" + more);
    }

    // The first column of each row.
    static std::vector<std::string> FirstColumn(odbc::rdoConnection &connection, const std::string &sql)
    {
        std::vector<std::string> values;
        const auto rows = connection.OpenResultset(sql);
        for (; !rows->AtEnd(); rows->MoveNext())
            values.push_back(runtime::ToTextOrEmpty(rows->rdoColumns(0).Value()));
        return values;
    }

    support::TestDatabase database;
    std::shared_ptr<odbc::rdoConnection> connection = Open();
};

TEST_F(Connection, ValuesComeInTheirTypes)
{
    const auto rows = connection->OpenResultset("SELECT CAST(1 AS bit) AS a, CAST(-7 AS smallint) AS b, 100000 AS c, "
                                                "CAST('2.5' AS float) AS d, N'\u00e9 x ' AS e, NULL AS f");
    ASSERT_FALSE(rows->AtEnd());
    EXPECT_EQ(rows->rdoColumns(0).Value(), Value(std::int64_t{1}));
    EXPECT_TRUE(rows->rdoColumns(0).IsOne());
    EXPECT_EQ(rows->rdoColumns(1).Value(), Value(std::int64_t{-7}));
    EXPECT_EQ(rows->rdoColumns(1).Integer(), -7);
    EXPECT_EQ(rows->rdoColumns(2).Long(), 100000);
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(2).Integer(); }).Number(), 6);
    EXPECT_EQ(rows->rdoColumns(3).Value(), Value(2.5));
    EXPECT_EQ(rows->rdoColumns(4).Text(), "\u00e9 x ");
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(4).Integer(); }).Number(), 13);
    EXPECT_TRUE(rows->rdoColumns(5).IsNull());
    EXPECT_EQ(rows->rdoColumns(5).Value(), Value(runtime::Null()));
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(5).Long(); }).Number(), 94);
    EXPECT_FALSE(rows->rdoColumns(5).IsOne());
}

TEST_F(Connection, ColumnsAreFoundByPlaceAndByNameWithoutRegardToCase)
{
    const auto rows = connection->OpenResultset("SELECT 1 AS first, 2 AS Second");
    EXPECT_EQ(rows->rdoColumns("SECOND").Long(), 2);
    EXPECT_EQ(rows->rdoColumns(0).Long(), 1);
    EXPECT_EQ(Trapped([&] { rows->rdoColumns("third"); }).Number(), 40041);
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(2); }).Number(), 40041);
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(-1); }).Number(), 40041);
    rows->MoveNext();
    EXPECT_TRUE(rows->AtEnd());
}

TEST_F(Connection, AllRowsComeInOrderWhateverTheirNumber)
{
    database.Run("CREATE TABLE numbers (n int NOT NULL)");
    int stored = 0;
    for (const int wanted : {0, 1, 255, 256, 257, 512, 1000})
    {
        for (; stored < wanted; ++stored)
            database.Run("INSERT INTO numbers (n) VALUES (" + std::to_string(stored) + ")");
        const auto rows = connection->OpenResultset("SELECT n FROM numbers ORDER BY n");
        int count = 0;
        for (; !rows->AtEnd(); rows->MoveNext(), ++count)
            ASSERT_EQ(rows->rdoColumns(0).Long(), count);
        EXPECT_EQ(count, wanted);
    }
}

TEST_F(Connection, ATextIsReadWholeOrNotAtAllWhateverSizeTheDriverClaims)
{
    if (support::WineVersion() >= 10)
        GTEST_SKIP() << "Wine's SQLFetch crashes when no column is bound, and one was bound and unbound before";
    const std::string longText(9000, 'x');
    database.Run("CREATE TABLE texts (id int NOT NULL, short varchar(60) NULL, long varchar(max) NULL)");
    database.Run("INSERT INTO texts (id, short, long) VALUES (1, '" + std::string(60, 'a') + "', '" + longText + "')");
    database.Run("INSERT INTO texts (id, short, long) VALUES (2, NULL, NULL)");
    database.Run("INSERT INTO texts (id, short, long) VALUES (3, '', 'end')");
    const std::vector<std::string> shorts = {std::string(60, 'a'), "", ""};
    const std::vector<std::string> longs = {longText, "", "end"};
    struct Case
    {
        const char *claim;
        bool shortFits, longFits;
    };
    // In a block there is room for twice what the driver says, for characters beyond U+FFFF.
    for (const Case &c : {Case{"", true, true}, Case{"ClaimedTextSize=0;", true, true},
                          Case{"ClaimedTextSize=29;", false, false}, Case{"ClaimedTextSize=30;", true, false}})
    {
        const auto other = Open(c.claim);
        for (const auto &[column, fits, texts] :
             {std::tuple("short", c.shortFits, shorts), std::tuple("long", c.longFits, longs)})
        {
            const std::string sql = std::string("SELECT ") + column + " FROM texts ORDER BY id";
            std::vector<std::string> read;
            const auto trap = Trapped([&] { read = FirstColumn(*other, sql); });
            EXPECT_EQ(read, fits ? texts : std::vector<std::string>()) << c.claim << column;
            EXPECT_EQ(trap.Description(), fits ? "" : "22001: A text is longer than its column") << c.claim << column;
        }
    }
}

// A driver gives the rows of a block with the one that failed, marked, or fails as a whole behind them.
TEST_F(Connection, RowsInFrontOfAFailingOneAreRead)
{
    database.Run("CREATE TABLE numbers (n int NOT NULL)");
    for (int n = 1; n <= 600; n += 100)
    {
        std::string values;
        for (int i = n; i < n + 100; ++i)
            values += (values.empty() ? "(" : ", (") + std::to_string(i) + ")";
        database.Run("INSERT INTO numbers (n) VALUES " + values);
    }
    for (const bool isCut : {false, true})
        for (const int bad : {1, 2, 256, 257, 600})
        {
            const auto other = Open();
            isCut ? database.CutAtRow(bad, "numbers") : database.FailAtRow(bad, 1, "numbers", "torn");
            int read = 0;
            const auto trap = Trapped(
                [&]
                {
                    const auto rows = other->OpenResultset("SELECT n FROM numbers ORDER BY n");
                    for (; !rows->AtEnd(); rows->MoveNext())
                        EXPECT_EQ(rows->rdoColumns(0).Long(), ++read);
                });
            EXPECT_EQ(read, bad - 1);
            EXPECT_EQ(trap.Description(), isCut ? "08S01: Communication link failure" : "HY000: torn") << bad;
        }
}

// The driver gives the columns of such a row upwards only: read in the caller's order, the lower ones failed.
TEST_F(Connection, ColumnsMayBeReadInAnyOrderAndAgain)
{
    database.Run("CREATE TABLE texts (id int NOT NULL, long varchar(max) NULL)");
    database.Run("INSERT INTO texts (id, long) VALUES (7, 'text')");
    const auto rows = connection->OpenResultset("SELECT id, long FROM texts");
    EXPECT_EQ(rows->rdoColumns(1).Text(), "text");
    EXPECT_EQ(rows->rdoColumns(0).Long(), 7);
    EXPECT_EQ(rows->rdoColumns(1).Text(), "text");
}

TEST_F(Connection, ResultsWithoutRowsAreRunAndPassedOver)
{
    const auto rows = connection->OpenResultset("DECLARE @n int SELECT @n = 5 SELECT @n + 1");
    ASSERT_FALSE(rows->AtEnd());
    EXPECT_EQ(rows->rdoColumns(0).Long(), 6);
    EXPECT_TRUE(connection->OpenResultset("CREATE TABLE made (n int)")->AtEnd());
    EXPECT_TRUE(connection->OpenResultset("UPDATE made SET n = 1")->AtEnd());
}

TEST_F(Connection, AnErrorInALaterStatementOfABatchIsTheStatementsError)
{
    database.Run("CREATE TABLE made (n int NOT NULL)");
    const auto trap = Trapped(
        [&]
        {
            connection->Execute("INSERT INTO made (n) VALUES (1) INSERT INTO made (n) VALUES (NULL) "
                                "INSERT INTO made (n) VALUES (3)");
        });
    EXPECT_EQ(trap.Number(), 40002);
    EXPECT_EQ(trap.Description().substr(0, 7), "23000: ");
    EXPECT_EQ(database.Query("SELECT n FROM made ORDER BY n"), (std::vector<std::string>{"1", "3"}))
        << "statements behind the failed one still run";
}

TEST_F(Connection, TheFirstErrorOfABatchIsTheOneReported)
{
    database.Run("CREATE TABLE made (n smallint NOT NULL)");
    // Behind a statement that has succeeded the driver gives the errors one by one.
    for (const std::string before : {"", "INSERT INTO made (n) VALUES (3) "})
    {
        const auto trap = Trapped(
            [&]
            {
                connection->Execute(before + "INSERT INTO made (n) VALUES (NULL) INSERT INTO made (n) VALUES (70000) "
                                             "INSERT INTO made (n) VALUES (3)");
            });
        EXPECT_EQ(trap.Description().substr(0, 7), "23000: ") << before;
    }
    EXPECT_EQ(database.Query("SELECT n FROM made"), (std::vector<std::string>{"3", "3", "3"}));
}

TEST_F(Connection, AnErrorBehindTheRowsShowsAtTheirEnd)
{
    database.Run("CREATE TABLE made (n int NOT NULL)");
    const auto rows = connection->OpenResultset("SELECT 1 INSERT INTO made (n) VALUES (NULL)");
    EXPECT_EQ(rows->rdoColumns(0).Long(), 1);
    EXPECT_EQ(Trapped([&] { rows->MoveNext(); }).Description().substr(0, 7), "23000: ");
    EXPECT_TRUE(rows->AtEnd());
}

TEST_F(Connection, TheNextStatementClosesTheRowsThatWereOpen)
{
    database.Run("INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (1, 'a', 1), (2, 'b', 1)");
    const auto rows = connection->OpenResultset("SELECT heading, heading_id FROM Report_headers ORDER BY heading_id");
    const odbc::rdoColumn column = rows->rdoColumns(0), number = rows->rdoColumns(1);
    EXPECT_EQ(column.Text(), "a");
    connection->Execute("UPDATE Report_headers SET heading = 'c' WHERE heading_id = 2");
    EXPECT_EQ(Trapped([&] { column.IsNull(); }).Number(), 91);
    EXPECT_EQ(Trapped([&] { column.Text(); }).Number(), 91);
    EXPECT_EQ(Trapped([&] { number.Integer(); }).Number(), 91);
    EXPECT_EQ(Trapped([&] { rows->MoveNext(); }).Number(), 91);
    EXPECT_EQ(Trapped([&] { rows->rdoColumns(0); }).Number(), 91);
    const auto again = connection->OpenResultset("SELECT heading FROM Report_headers WHERE heading_id = 2");
    rows->Close(); // the older one must not close the newer
    EXPECT_EQ(again->rdoColumns(0).Text(), "c");
    again->Close();
    EXPECT_EQ(Trapped([&] { again->rdoColumns(0); }).Number(), 91);
}

TEST_F(Connection, ClosesAStatementOnce)
{
    database.FailCall("SQLFreeStmt", 3, support::TestDatabase::CallFault::Error);
    connection->Execute("DECLARE @n int");
    connection->Execute("DECLARE @n int");
    EXPECT_FALSE(database.FaultFired());
    connection->Execute("DECLARE @n int");
    EXPECT_TRUE(database.FaultFired());
}

TEST_F(Connection, AFailedStatementLeavesTheConnectionUsable)
{
    const auto trap = Trapped([&] { connection->OpenResultset("SELECT n FROM nowhere"); });
    EXPECT_EQ(trap.Number(), 40002);
    EXPECT_EQ(trap.Description().substr(0, 7), "42S02: ");
    EXPECT_EQ(FirstColumn(*connection, "SELECT 5"), std::vector<std::string>{"5"});
    EXPECT_EQ(Trapped([&] { connection->Execute("SELEKT"); }).Description().substr(0, 7), "42000: ");
    database.Fail(1, "SELECT 6", std::string(1500, 'x'));
    EXPECT_EQ(Trapped([&] { connection->Execute("SELECT 6"); }).Description().size(), 1507u);
    EXPECT_EQ(FirstColumn(*connection, "SELECT 6"), std::vector<std::string>{"6"});
}

TEST_F(Connection, AnUpdateThatTouchesNoRowIsNoError)
{
    connection->Execute("UPDATE Report_headers SET heading = 'c' WHERE heading_id = 99");
    connection->Execute("DELETE FROM Report_headers WHERE heading_id = 99");
    const auto none = connection->OpenResultset("DECLARE @n int");
    none->MoveNext();
    EXPECT_TRUE(none->AtEnd());
    EXPECT_EQ(Trapped([&] { none->rdoColumns(0); }).Number(), 40009);
}

TEST_F(Connection, ThatFailsToDisconnectInTheEndHasNobodyToTell)
{
    database.FailCall("SQLDisconnect", 1, support::TestDatabase::CallFault::Error);
    connection.reset();
    EXPECT_TRUE(database.FaultFired());
}

TEST_F(Connection, RowsOutliveTheirConnectionWithoutHarm)
{
    const auto rows = connection->OpenResultset("SELECT 1");
    connection->Close();
    connection->Close();
    EXPECT_EQ(Trapped([&] { rows->MoveNext(); }).Number(), 91);
    EXPECT_EQ(Trapped([&] { connection->Execute("SELECT 1"); }).Number(), 91);
    connection.reset();
    rows->Close();
}

TEST_F(Connection, AConnectionThatIsCutIsLostAndClosesInPeace)
{
    EXPECT_FALSE(connection->AskIfLost());
    EXPECT_EQ(Trapped([&] { connection->Execute("SELEKT"); }).Number(), 40002);
    EXPECT_FALSE(connection->IsLost()) << "an error is no loss";
    database.Cut("Report_headers");
    EXPECT_EQ(Trapped([&] { connection->Execute("DELETE FROM Report_headers"); }).Number(), 40002);
    EXPECT_TRUE(connection->IsLost());
    EXPECT_NE(Trapped([&] { connection->Execute("SELECT 1"); }).Number(), 0);
    connection->Close();
    EXPECT_FALSE(connection->AskIfLost()) << "closed is not lost";
}

#ifndef _WIN32
// A driver may know one of the two attributes that tell of a loss, or neither: then its states alone tell.
TEST_F(Connection, ALossIsSeenByWhatTheDriverKnows)
{
    constexpr SQLINTEGER kDead = SQL_ATTR_CONNECTION_DEAD, kNetworkDead = 1244;
    struct Case
    {
        const char *state;
        std::set<SQLINTEGER> unknown;
        bool lost;
    };
    for (const Case &c : {Case{"08S01", {kDead, kNetworkDead}, true}, Case{"01000", {kDead}, true},
                          Case{"01000", {kNetworkDead}, true}, Case{"01000", {kDead, kNetworkDead}, false}})
    {
        const auto cut = Open();
        database.Cut("SELECT 2", c.state);
        unknownAttributes = c.unknown;
        EXPECT_TRUE(Trapped([&] { cut->Execute("SELECT 2"); }).Pending());
        EXPECT_EQ(cut->IsLost(), c.lost) << c.state << " " << c.unknown.size();
        unknownAttributes.clear();
    }
}
#endif

TEST(Environment, AnUnknownDriverOrDataSourceIsRefused)
{
    odbc::rdoEnvironment environment;
    const auto driver =
        Trapped([&] { environment.OpenConnection("", odbc::kNeverPrompt, false, "UID=sa;Driver={No Such};DSN='';"); });
    EXPECT_EQ(driver.Number(), 40002) << driver.Description();
    const auto source =
        Trapped([&] { environment.OpenConnection("NoSuchSource", odbc::kNeverPrompt, false, "UID=sa;PWD=;"); });
    const bool silent = support::WineVersion() >= 10; // its driver manager leaves no record of failures of its own
    EXPECT_EQ(source.Number(), silent ? runtime::kGeneralDatabaseFailure : 40002);
    EXPECT_EQ(source.Description().substr(0, 7), silent ? "HY000: " : "IM002: ");
}

TEST(Environment, RefusesWhatItDoesNotOffer)
{
    odbc::rdoEnvironment environment;
    constexpr int kPrompt = 0;
    EXPECT_EQ(Trapped([&] { environment.OpenConnection("", kPrompt, false, ""); }).Number(), 380);
    environment.CursorDriver = 2;
    EXPECT_EQ(Trapped([&] { environment.OpenConnection("", odbc::kNeverPrompt, false, ""); }).Number(), 380);
    environment.Close();
    EXPECT_EQ(Trapped([&] { environment.OpenConnection("", odbc::kNeverPrompt, false, ""); }).Number(), 91);
}

} // namespace
