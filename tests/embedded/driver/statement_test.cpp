// Calls of one connection in their order: return codes, batches, one open result, columns upwards, sequence, errors.
#include "client.h"

namespace driver_tests
{
namespace
{

class StatementTest : public DriverTest
{
};

struct Case
{
    const char *meaning;
    const char *script;
    const char *played;
    const char *rows; // that are left in the table
};
constexpr const char *kBusy = "exec SELECT id FROM t ORDER BY id\nfetch\nother SELECT 1\nrows\nother SELECT 1\nclose\n"
                              "exec SELECT id FROM t\nclose\nother SELECT 1";
constexpr Case kCases[] = {
    {"neither rows nor a count", "exec CREATE TABLE u (id int)\ncols\ncount\nmore", "S S=0 S=-1 N", "3"},
    {"INSERT", "exec INSERT INTO t (id) VALUES (9)\ncols\ncount\nmore", "S S=0 S=1 N", "4"},
    {"UPDATE", "exec UPDATE t SET name = 'x' WHERE id > 1\ncols\ncount\nmore", "S S=0 S=2 N", "3"},
    {"UPDATE of no row", "exec UPDATE t SET name = 'x' WHERE id = 77\ncols\ncount\nmore", "N S=0 S=0 N", "3"},
    {"DELETE", "exec DELETE FROM t WHERE id = 3\ncols\ncount\nmore", "S S=0 S=1 N", "2"},
    {"DELETE of no row", "exec DELETE FROM t WHERE id = 77\ncount\nmore", "N S=0 N", "3"},
    {"each of a batch gives its result or its error",
     "exec SELECT 1 UPDATE t SET name = 'x' INSERT INTO t (id) VALUES (1) SELECT id FROM t ORDER BY id\n"
     "rows\nmore\ncount\nmore\nmore\nrows\nmore\nmore",
     "S S=1 S S=3 E[23000 (2627)] S S=1,2,3 N N", "3"},
    {"nothing runs of a batch with a syntax error", "exec DELETE FROM t SELECT FROM t", "E[42000 (102)]", "3"},
    {"closing cancels the rest", "exec SELECT id FROM t DELETE FROM t\nclose", "S S", "3"},
    {"the rest runs behind a failed first statement",
     "exec INSERT INTO t (id) VALUES (1) DELETE FROM t WHERE id = 3\nmore", "E[23000 (2627)] N", "2"},
    {"an open result keeps others out, to its last row or until it is closed", kBusy,
     "S S E[HY000 (0)] S=2,3 S=1 S S S S=1", "3"},
    {"a count keeps nobody out", "exec UPDATE t SET name = 'x'\nother SELECT 1", "S S=1", "3"},
    {"unread results behind it do, and looking ahead loses nothing",
     "exec UPDATE t SET name = 'x' SELECT id FROM t\nother SELECT 1\nmore\nrows", "S E[HY000 (0)] S S=1,2,3", "3"},
    {"calls before anything was executed", "fetch\ncols\ncount\nexecute",
     "E[HY010 (0)] E[HY010 (0)] E[HY010 (0)] E[HY010 (0)]", "3"},
    {"no row, an open cursor, no cursor",
     "exec SELECT 1\nget 1\nfetch\nfetch\nexec SELECT 2\nclose\nexec UPDATE t SET id = id\nfetch",
     "S E[24000 (0)] S N E[24000 (0)] S S E[24000 (0)]", "3"},
    {"columns upwards and once", "exec SELECT 1, 2\nfetch\nget 2\nget 2\nget 1\nget 3",
     "S S S=2 N E[07009 (0)] E[07009 (0)]", "3"},
    {"columns behind the bound ones",
     "exec SELECT 1, 2, 3\nbind 2\nfetch\nget 1\nget 2\nget 3\nunbind\nfetch\nclose\nexec SELECT 5\nfetch\nget 1",
     "S S S E[07009 (0)] E[07009 (0)] S=3 S N S S S S=5", "3"},
    {"no such column", "exec SELECT nothing FROM t", "E[42S22 (207)]", "3"},
    {"no such table", "exec SELECT 1 FROM missing", "E[42S02 (208)]", "3"},
    {"a conversion fails with its row", "exec SELECT CONVERT(int, 'abc')\nfetch", "S E[22018 (245)]", "3"},
    {"NULL", "exec INSERT INTO t (name) VALUES ('x')", "E[23000 (515)]", "3"},
    {"too long", "exec INSERT INTO t (id, name) VALUES (5, 'longer than ten')", "E[22001 (8152)]", "3"},
    {"too great", "exec INSERT INTO t (id) VALUES (40000)", "E[22003 (220)]", "3"},
};

TEST_F(StatementTest, GivesWhatTheStrictestDriverGives)
{
    for (const Case &each : kCases)
    {
        SCOPED_TRACE(each.meaning);
        database.Run("DELETE FROM t\nGO\nINSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, NULL)");
        Reconnect();
        EXPECT_EQ(Play(each.script), each.played);
        SQLFreeStmt(statement, SQL_CLOSE);
        EXPECT_EQ(Count(), each.rows);
    }
}

TEST_F(StatementTest, MessagesArePrefixed)
{
    CHECK_STMT("S", Exec(statement, "SELECT 1"), statement);
    const SQLHSTMT other = link->NewStatement();
    CHECK_STMT("E", Exec(other, "SELECT 1"), other);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, other), Lines{"HY000 (0) [KVHEADERS][Embedded Driver][SQL Server]Connection is "
                                                     "busy with results for another hstmt"});
}

TEST_F(StatementTest, TextsBeyondAsciiArriveWhole)
{
    const std::string text = "Gr\u00fc\u00dfe \u2013 \u65e5\u672c \U0001F600";
    EXPECT_EQ(Query(statement, "SELECT N'" + text + "'"), Lines{text});
}

} // namespace
} // namespace driver_tests
