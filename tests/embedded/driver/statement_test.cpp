// Running statements: return codes, batches, one statement at a time, diagnostics, transactions.
#include "client.h"

#include <cstring>

namespace driver_tests
{
namespace
{

using Lines = std::vector<std::string>;

class StatementTest : public DriverTest
{
protected:
    void SetUp() override
    {
        DriverTest::SetUp();
        Run("CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(10) NULL)");
        Run("INSERT INTO t (id, name) VALUES (1, 'one') INSERT INTO t (id, name) VALUES (2, 'two') "
            "INSERT INTO t (id, name) VALUES (3, NULL)");
    }

    SQLLEN RowCount() const
    {
        SQLLEN count = -99;
        CHECK_STMT("S", SQLRowCount(statement, &count), statement);
        return count;
    }

    SQLSMALLINT ColumnCount() const
    {
        SQLSMALLINT count = -99;
        CHECK_STMT("S", SQLNumResultCols(statement, &count), statement);
        return count;
    }
};

TEST_F(StatementTest, StatementsWithoutRowsOrCountSucceed)
{
    CHECK_STMT("S", Exec(statement, "CREATE TABLE u (id int)"), statement);
    EXPECT_EQ(ColumnCount(), 0);
    EXPECT_EQ(RowCount(), -1);
    CHECK_STMT("N", SQLMoreResults(statement), statement);
}

TEST_F(StatementTest, InsertUpdateDeleteCountTheirRows)
{
    CHECK_STMT("S", Exec(statement, "INSERT INTO t (id) VALUES (9)"), statement);
    EXPECT_EQ(RowCount(), 1);
    CHECK_STMT("S", Exec(statement, "UPDATE t SET name = 'x' WHERE id > 1"), statement);
    EXPECT_EQ(RowCount(), 3);
    CHECK_STMT("S", Exec(statement, "DELETE FROM t WHERE id = 9"), statement);
    EXPECT_EQ(RowCount(), 1);
}

TEST_F(StatementTest, UpdateOrDeleteOfNoRowGivesNoData)
{
    CHECK_STMT("N", Exec(statement, "UPDATE t SET name = 'x' WHERE id = 77"), statement);
    CHECK_STMT("N", Exec(statement, "DELETE FROM t WHERE id = 77"), statement);
}

TEST_F(StatementTest, EachStatementOfABatchGivesItsResult)
{
    CHECK_STMT("S", Exec(statement, "SELECT 1 AS a UPDATE t SET name = 'x' SELECT id FROM t ORDER BY id"), statement);
    EXPECT_EQ(ColumnCount(), 1);
    EXPECT_EQ(ReadRows(statement), (std::vector<Lines>{{"1"}}));
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(ColumnCount(), 0);
    EXPECT_EQ(RowCount(), 3);
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(ReadRows(statement), (std::vector<Lines>{{"1"}, {"2"}, {"3"}}));
    CHECK_STMT("N", SQLMoreResults(statement), statement);
    CHECK_STMT("N", SQLMoreResults(statement), statement);
}

TEST_F(StatementTest, ErrorOfALaterStatementShowsAtMoreResultsAndTheRestRuns)
{
    CHECK_STMT("S",
               Exec(statement, "UPDATE t SET name = 'a' WHERE id = 1 INSERT INTO t (id) VALUES (1) "
                               "UPDATE t SET name = 'c' WHERE id = 3"),
               statement);
    CHECK_STMT("E", SQLMoreResults(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"23000 (2627)"});
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    CHECK_STMT("N", SQLMoreResults(statement), statement);
    EXPECT_EQ(Query(statement, "SELECT name FROM t ORDER BY id"), (Lines{"a", "two", "c"}));
}

TEST_F(StatementTest, RestOfABatchRunsBehindAFailedFirstStatement)
{
    CHECK_STMT("E", Exec(statement, "INSERT INTO t (id) VALUES (1) UPDATE t SET name = 'z' WHERE id = 3"), statement);
    SQLFreeStmt(statement, SQL_CLOSE);
    EXPECT_EQ(Query(statement, "SELECT name FROM t WHERE id = 3"), Lines{"z"});
}

TEST_F(StatementTest, SyntaxErrorRunsNothing)
{
    CHECK_STMT("E", Exec(statement, "DELETE FROM t SELEC 1"), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement).at(0).substr(0, 5), "42000");
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"3"});
}

TEST_F(StatementTest, ClosingCancelsWhatHasNotRun)
{
    CHECK_STMT("S", Exec(statement, "SELECT id FROM t DELETE FROM t"), statement);
    CHECK_STMT("S", SQLCloseCursor(statement), statement);
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"3"});
}

TEST_F(StatementTest, OpenResultKeepsOtherStatementsOut)
{
    const SQLHSTMT other = link.NewStatement();
    CHECK_STMT("S", Exec(statement, "SELECT id FROM t ORDER BY id"), statement);
    CHECK_STMT("S", SQLFetch(statement), statement);
    CHECK_STMT("E", Exec(other, "SELECT 1"), other);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, other), Lines{"HY000 (0) [KVHEADERS][Embedded Driver][SQL Server]Connection is "
                                                     "busy with results for another hstmt"});
    // the first goes on undisturbed
    EXPECT_EQ(ReadRows(statement), (std::vector<Lines>{{"2"}, {"3"}}));
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "free again at the end of the rows";
    CHECK_STMT("S", Exec(statement, "SELECT id FROM t"), statement);
    CHECK_STMT("S", SQLCloseCursor(statement), statement);
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "free again when closed";
    CHECK_STMT("S", Exec(statement, "UPDATE t SET name = 'x'"), statement);
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "a count keeps nobody out";
}

TEST_F(StatementTest, UnreadResultsOfABatchKeepOtherStatementsOut)
{
    const SQLHSTMT other = link.NewStatement();
    CHECK_STMT("S", Exec(statement, "UPDATE t SET name = 'x' SELECT id FROM t"), statement);
    CHECK_STMT("E", Exec(other, "SELECT 1"), other);
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(ReadRows(statement).size(), 3u) << "looking ahead has lost nothing";
}

TEST_F(StatementTest, ErrorsByNumberAndState)
{
    struct Case
    {
        const char *sql;
        const char *state;
    };
    for (const Case &each :
         {Case{"SELECT nothing FROM t", "42S22 (207)"}, Case{"SELECT 1 FROM missing", "42S02 (208)"},
          Case{"SELECT CONVERT(int, 'abc')", "22018 (245)"}, Case{"INSERT INTO t (name) VALUES ('x')", "23000 (515)"},
          Case{"INSERT INTO t (id) VALUES (2)", "23000 (2627)"},
          Case{"INSERT INTO t (id, name) VALUES (5, 'longer than ten')", "22001 (8152)"},
          Case{"INSERT INTO t (id) VALUES (40000)", "22003 (220)"}, Case{"SELECT FROM t", "42000 (102)"}})
    {
        SQLRETURN code = Exec(statement, each.sql);
        if (SQL_SUCCEEDED(code)) // conversions fail with the row
            code = SQLFetch(statement);
        CHECK_STMT("E", code, statement) << each.sql;
        const Lines states = States(SQL_HANDLE_STMT, statement);
        ASSERT_FALSE(states.empty()) << each.sql;
        EXPECT_EQ(states.at(0), each.state) << each.sql;
        SQLFreeStmt(statement, SQL_CLOSE);
    }
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"3"});
}

TEST_F(StatementTest, MessagesCarryTheServersPrefix)
{
    CHECK_STMT("E", Exec(statement, "SELECT 1 FROM missing"), statement);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, statement).at(0),
              "42S02 (208) [KVHEADERS][Embedded Driver][SQL Server]Invalid object name 'missing'.");
}

TEST_F(StatementTest, FieldsOfARecord)
{
    CHECK_STMT("E", Exec(statement, "SELECT 1 FROM missing"), statement);
    const auto text = [&](SQLSMALLINT field)
    {
        SQLWCHAR value[200] = {};
        SQLSMALLINT octets = 0;
        CHECK_STMT("S", SQLGetDiagFieldW(SQL_HANDLE_STMT, statement, 1, field, value, sizeof value, &octets),
                   statement);
        return Narrow({reinterpret_cast<char16_t *>(value), static_cast<size_t>(octets) / 2});
    };
    const auto number = [&](SQLSMALLINT field)
    {
        SQLINTEGER value = 99;
        const SQLSMALLINT record = field == SQL_DIAG_NUMBER ? 0 : 1;
        CHECK_STMT("S", SQLGetDiagFieldW(SQL_HANDLE_STMT, statement, record, field, &value, 0, nullptr), statement);
        return value;
    };
    EXPECT_EQ(number(SQL_DIAG_NUMBER), 1);
    EXPECT_EQ(number(SQL_DIAG_NATIVE), 208);
    EXPECT_EQ(text(SQL_DIAG_SQLSTATE), "42S02");
    EXPECT_EQ(text(SQL_DIAG_MESSAGE_TEXT), "[KVHEADERS][Embedded Driver][SQL Server]Invalid object name 'missing'.");
    EXPECT_EQ(text(SQL_DIAG_CLASS_ORIGIN), "ISO 9075");
}

TEST_F(StatementTest, PrintGivesInformation)
{
    CHECK_STMT("I", Exec(statement, "PRINT 'hello' UPDATE t SET name = 'x' WHERE id = 1"), statement);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, statement), Lines{"01000 (0) [KVHEADERS][Embedded Driver][SQL Server]hello"});
}

TEST_F(StatementTest, RollbackTakesBackAndCommitKeeps)
{
    const auto autocommit = [&](SQLULEN on)
    { return SQLSetConnectAttrW(link.dbc, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(on), 0); };
    ASSERT_TRUE(Allowed("S", autocommit(SQL_AUTOCOMMIT_OFF), SQL_HANDLE_DBC, link.dbc));
    Run("DELETE FROM t");
    EXPECT_TRUE(Allowed("S", SQLEndTran(SQL_HANDLE_DBC, link.dbc, SQL_ROLLBACK), SQL_HANDLE_DBC, link.dbc));
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"3"});
    Run("DELETE FROM t WHERE id = 1");
    EXPECT_TRUE(Allowed("S", SQLEndTran(SQL_HANDLE_DBC, link.dbc, SQL_COMMIT), SQL_HANDLE_DBC, link.dbc));
    ASSERT_TRUE(Allowed("S", autocommit(SQL_AUTOCOMMIT_ON), SQL_HANDLE_DBC, link.dbc));
    Link other;
    ASSERT_TRUE(Allowed("SI", other.Connect(ConnectText()), SQL_HANDLE_DBC, other.dbc));
    EXPECT_EQ(Query(other.NewStatement(), "SELECT COUNT(*) FROM t"), Lines{"2"});
}

TEST_F(StatementTest, TextsBeyondAsciiArriveWhole)
{
    EXPECT_EQ(Query(statement, "SELECT N'Gr\u00fc\u00dfe \u2013 \u65e5\u672c \U0001F600'"),
              Lines{"Gr\u00fc\u00dfe \u2013 \u65e5\u672c \U0001F600"});
}

TEST_F(StatementTest, SecondConnectionSeesWhatTheFirstWrote)
{
    Link other;
    ASSERT_TRUE(Allowed("SI", other.Connect(ConnectText()), SQL_HANDLE_DBC, other.dbc));
    const SQLHSTMT theirs = other.NewStatement();
    Run("UPDATE t SET name = 'new' WHERE id = 1");
    EXPECT_EQ(Query(theirs, "SELECT name FROM t WHERE id = 1"), Lines{"new"});
}

} // namespace
} // namespace driver_tests
