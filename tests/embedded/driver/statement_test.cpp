// Running statements: return codes, batches, one statement at a time, diagnostics, the order of calls, transactions.
#include "client.h"

namespace driver_tests
{
namespace
{

class StatementTest : public DriverTest
{
protected:
    StatementTest()
    {
        Run("CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(10) NULL)");
        Run("INSERT INTO t (id, name) VALUES (1, 'one'), (2, 'two'), (3, NULL)");
    }

    SQLLEN RowCount() const
    {
        SQLLEN count = -99;
        CHECK_STMT("S", SQLRowCount(statement, &count), statement);
        return count;
    }
};

TEST_F(StatementTest, CodesAndCounts)
{
    struct Case
    {
        const char *sql;
        const char *code;
        SQLLEN count;
    };
    for (const Case &each :
         {Case{"CREATE TABLE u (id int)", "S", -1}, Case{"INSERT INTO t (id) VALUES (9)", "S", 1},
          Case{"UPDATE t SET name = 'x' WHERE id > 1", "S", 3}, Case{"DELETE FROM t WHERE id = 9", "S", 1},
          Case{"UPDATE t SET name = 'x' WHERE id = 77", "N", 0}, Case{"DELETE FROM t WHERE id = 77", "N", 0},
          Case{"PRINT 'hello' UPDATE t SET name = 'x' WHERE id = 1", "I", 1}})
    {
        SCOPED_TRACE(each.sql);
        CHECK_STMT(each.code, Exec(statement, each.sql), statement);
        const bool isTold = *each.code == 'I';
        EXPECT_EQ(Records(SQL_HANDLE_STMT, statement),
                  isTold ? Lines{"01000 (0) [KVHEADERS][Embedded Driver][SQL Server]hello"} : Lines{});
        SQLSMALLINT columns = -99;
        CHECK_STMT("S", SQLNumResultCols(statement, &columns), statement);
        EXPECT_EQ(columns, 0);
        EXPECT_EQ(RowCount(), each.count);
        CHECK_STMT("N", SQLMoreResults(statement), statement);
    }
}

TEST_F(StatementTest, EachStatementOfABatchGivesItsResultOrItsError)
{
    CHECK_STMT("S",
               Exec(statement, "SELECT 1 AS a UPDATE t SET name = 'x' INSERT INTO t (id) VALUES (1) "
                               "SELECT id FROM t ORDER BY id"),
               statement);
    EXPECT_EQ(ReadRows(statement), (Lines{"1"}));
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(RowCount(), 3);
    CHECK_STMT("E", SQLMoreResults(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"23000 (2627)"});
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(ReadRows(statement), (Lines{"1", "2", "3"}));
    CHECK_STMT("N", SQLMoreResults(statement), statement);
    CHECK_STMT("N", SQLMoreResults(statement), statement);
}

TEST_F(StatementTest, WhatRunsOfABatch)
{
    struct Case
    {
        const char *meaning;
        const char *sql;
        const char *code;
        const char *rows; // that are left
    };
    for (const Case &each : {Case{"nothing of one with a syntax error", "DELETE FROM t SELEC 1", "E", "3"},
                             Case{"closing cancels the rest", "SELECT id FROM t DELETE FROM t", "S", "3"},
                             Case{"the rest behind a failed first statement",
                                  "INSERT INTO t (id) VALUES (1) DELETE FROM t WHERE id = 3", "E", "2"}})
    {
        CHECK_STMT(each.code, Exec(statement, each.sql), statement);
        SQLFreeStmt(statement, SQL_CLOSE);
        EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{each.rows}) << each.meaning;
    }
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
    EXPECT_EQ(ReadRows(statement), (Lines{"2", "3"}));
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "free again at the end of the rows";
    CHECK_STMT("S", SQLCloseCursor(statement), statement);
    CHECK_STMT("S", Exec(statement, "SELECT id FROM t"), statement);
    CHECK_STMT("S", SQLCloseCursor(statement), statement);
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "free again when closed";
    CHECK_STMT("S", Exec(statement, "UPDATE t SET name = 'x'"), statement);
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"}) << "a count keeps nobody out";
    CHECK_STMT("S", Exec(statement, "UPDATE t SET name = 'x' SELECT id FROM t"), statement);
    CHECK_STMT("E", Exec(other, "SELECT 1"), other) << "unread results behind it do";
    CHECK_STMT("S", SQLMoreResults(statement), statement);
    EXPECT_EQ(ReadRows(statement).size(), 3u) << "looking ahead has lost nothing";
}

TEST_F(StatementTest, CallsOutOfSequence)
{
    SQLSMALLINT columns = 0;
    SQLLEN count = 0;
    const auto expect = [&](SQLRETURN code, const char *state)
    {
        CHECK_STMT("E", code, statement);
        EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{std::string(state) + " (0)"});
    };
    expect(SQLFetch(statement), "HY010");
    expect(SQLNumResultCols(statement, &columns), "HY010");
    expect(SQLRowCount(statement, &count), "HY010");
    expect(SQLExecute(statement), "HY010");
    Exec(statement, "SELECT id FROM t");
    expect(SQLGetData(statement, 1, SQL_C_SLONG, &count, 0, &count), "24000");
    while (SQLFetch(statement) == SQL_SUCCESS)
    {
    }
    expect(Exec(statement, "SELECT 1"), "24000");
    SQLFreeStmt(statement, SQL_CLOSE);
    Exec(statement, "UPDATE t SET id = id");
    expect(SQLFetch(statement), "24000");
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

TEST_F(StatementTest, TextsBeyondAsciiArriveWhole)
{
    const std::string text = "Gr\u00fc\u00dfe \u2013 \u65e5\u672c \U0001F600";
    EXPECT_EQ(Query(statement, "SELECT N'" + text + "'"), Lines{text});
}

} // namespace
} // namespace driver_tests
