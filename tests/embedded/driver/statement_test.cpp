// Calls of one connection in their order: return codes, batches, one open result, columns and rows, sequence, errors.
#include "client.h"

namespace driver_tests
{
namespace
{

using StatementTest = DriverTest;

struct Case
{
    const char *meaning;
    const char *script;
    const char *played;
    const char *rows = "3"; // that are left in the table
};
constexpr const char *kBusy = "exec SELECT id FROM t ORDER BY id\nfetch\nother SELECT 1\nrows\nother SELECT 1\nclose\n"
                              "exec SELECT id FROM t\nclose\nother SELECT 1";
constexpr Case kCases[] = {
    {"neither rows nor a count", "exec CREATE TABLE u (id int)\ncols\ncount\nmore", "S S=0 S=-1 N"},
    {"INSERT", "exec INSERT INTO t (id) VALUES (9)\ncols\ncount\nmore", "S S=0 S=1 N", "4"},
    {"UPDATE", "exec UPDATE t SET name = 'x' WHERE id > 1\ncols\ncount\nmore", "S S=0 S=2 N"},
    {"UPDATE of no row", "exec UPDATE t SET name = 'x' WHERE id = 77\ncols\ncount\nmore", "N S=0 S=0 N"},
    {"DELETE", "exec DELETE FROM t WHERE id = 3\ncols\ncount\nmore", "S S=0 S=1 N", "2"},
    {"DELETE of no row", "exec DELETE FROM t WHERE id = 77\ncount\nmore", "N S=0 N"},
    {"each of a batch gives its result or its error",
     "exec SELECT 1 UPDATE t SET name = 'x' INSERT INTO t (id) VALUES (1) SELECT id FROM t ORDER BY id\n"
     "rows\nmore\ncount\nmore\nmore\nrows\nmore\nmore",
     "S S=1 S S=3 E[23000 (2627)] S S=1,2,3 N N"},
    {"nothing runs of a batch with a syntax error", "exec DELETE FROM t SELECT FROM t", "E[42000 (102)]"},
    {"closing cancels the rest", "exec SELECT id FROM t DELETE FROM t\nclose", "S S"},
    {"the rest runs behind a failed first statement",
     "exec INSERT INTO t (id) VALUES (1) DELETE FROM t WHERE id = 3\nmore", "E[23000 (2627)] N", "2"},
    {"an open result keeps others out, to its last row or until it is closed", kBusy,
     "S S E[HY000 (0)] S=2,3 S=1 S S S S=1"},
    {"a count keeps nobody out", "exec UPDATE t SET name = 'x'\nother SELECT 1", "S S=1"},
    {"unread results behind it do, and looking ahead loses nothing",
     "exec UPDATE t SET name = 'x' SELECT id FROM t\nother SELECT 1\nmore\nrows", "S E[HY000 (0)] S S=1,2,3"},
    {"calls before anything was executed", "fetch\ncols\ncount\nexecute",
     "E[HY010 (0)] E[HY010 (0)] E[HY010 (0)] E[HY010 (0)]"},
    {"no row, an open cursor, no cursor",
     "exec SELECT 1\nget 1\nfetch\nfetch\nexec SELECT 2\nclose\nexec UPDATE t SET name = 1\nfetch",
     "S E[24000 (0)] S N E[24000 (0)] S S E[24000 (0)]"},
    {"columns upwards and once", "exec SELECT 1, 2\nfetch\nget 2\nget 2\nget 1\nget 3",
     "S S S=2 N E[07009 (0)] E[07009 (0)]"},
    {"columns behind the bound ones",
     "exec SELECT 1, 2, 3\nbind 2\nfetch\nget 1\nget 2\nget 3\nunbind\nfetch\nclose\nexec SELECT 5\nfetch\nget 1",
     "S S S E[07009 (0)] E[07009 (0)] S=3 S N S S S S=5"},
    {"values in pieces; none of a text that is bound and cut",
     "exec SELECT N'abcdef\u00e9\u65e5', 'next'\nfetch\nget 1 wide 0\nget 1 wide 8\nget 1 wide 8\nget 1 wide 8\n"
     "get 1 wide 8\nget 2 narrow 10\nclose\nexec SELECT 'abcdefgh'\nbind 1 wide 8\nfetch\nbound",
     "S S I[01004 (0)]=/16 I[01004 (0)]=abc/16 I[01004 (0)]=def/10 S=\u00e9\u65e5/4 N S=next/4 S S S I[01004 (0)] "
     "S=abc/16"},
    {"NULL needs a place for the length", "exec SELECT CONVERT(int, NULL)\nbind 1 long 0\nfetch", "S S E[22002 (0)]"},
    {"blocks, whose size is raised behind a row",
     "exec SELECT CASE WHEN a.id = 3 THEN NULL ELSE a.id END FROM t a JOIN t b ON b.id < 3 ORDER BY a.id\nfetch\n"
     "block\nattribute\nbind 1 bigint\nfetch\nget 2\nfetch\nfetch",
     "S S S S S S=4:(1)(2)(2)(NULL) E[HY109 (0)] S=1:(NULL)--- N=0:----"},
    {"rows that do not fit are marked, each with its error, and the others are good",
     "exec SELECT CASE id WHEN 1 THEN 2 WHEN 2 THEN 0 ELSE 'x' + 1 END FROM t\nblock\nattribute\nbind 1 bit\nfetch",
     "S S S S I[22003 (0)][22018 (245)]=3:!(0)!-"},
};

TEST_F(StatementTest, GivesWhatTheStrictestDriverGives)
{
    for (const Case &each : kCases)
    {
        SCOPED_TRACE(each.meaning);
        database.Run("DELETE FROM t\nGO\nINSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, NULL)");
        Reconnect();
        EXPECT_EQ(Play(each.script), each.played);
        client.reset();
        EXPECT_EQ(Count(), each.rows);
    }
}

TEST_F(StatementTest, MessagesArePrefixed)
{
    Play("exec SELECT 1\nother SELECT 1");
    EXPECT_EQ(database.LoggedErrors(), Lines{"HY000: [KVHEADERS][Embedded Driver][SQL Server]Connection is busy with "
                                             "results for another hstmt"});
}

TEST_F(StatementTest, ColumnsTellNameTypeSizeAndDigits)
{
    database.Run("CREATE TABLE c (a bit, b tinyint, c smallint NOT NULL, d int, e bigint, g float, h char(1), "
                 "i varchar(30), j nchar(1), k nvarchar(40), l datetime, m varchar(max))");
    std::string script = "exec SELECT a, b, c, d, e, g, h, i, j, k, l, m, 1 AS long FROM c";
    for (int i = 1; i <= 14; ++i)
        script += "\ncolumn " + std::to_string(i);
    const std::string numbers = "S S=a/-7/1/0 S=b/-6/3/0 S=c/5/5/0 S=d/4/10/0 S=e/-5/19/0 S=g/6/53/0 ";
    const std::string end = " I[01004 (0)]=l/4/10/0 E[07009 (0)]";
    EXPECT_EQ(Play(script), numbers + "S=h/1/1/0 S=i/12/30/0 S=j/-8/1/0 S=k/-9/40/0 S=l/93/23/3 S=m/12/0/0" + end);
    Reconnect("ClaimedTextSize=3;");
    EXPECT_EQ(Play(script), numbers + "S=h/1/3/0 S=i/12/3/0 S=j/-8/3/0 S=k/-9/3/0 S=l/93/23/3 S=m/12/3/0" + end);
}

TEST_F(StatementTest, Conversions)
{
    const std::string real = "CONVERT(float, '1.5')";
    const std::string date = "CONVERT(datetime, '2003-02-11T08:15:30.500')";
    const struct
    {
        std::string value, type, played;
    } cases[] = {
        {"-42", "long", "S=-42"},
        {"-42", "bigint", "S=-42"},
        {"42", "double", "S=42"},
        {"42", "narrow", "S=42/2"},
        {"1", "bit", "S=1"},
        {real, "double", "S=1.5"},
        {date, "narrow", "S=2003-02-11 08:15:30.500/23"},
        {"2", "bit", "E[22003 (0)]"},
        {"CONVERT(bigint, 2147483647) + 1", "long", "E[22003 (0)]"},
        {"-1", "ulong", "E[22003 (0)]"},
        {"'17'", "long", "E[07006 (0)]"},
        {real, "long", "E[07006 (0)]"},
        {date, "long", "E[07006 (0)]"},
        {"1", "time", "E[07006 (0)]"},
        {"1", "binary", "E[HY003 (0)]"},
    };
    for (const auto &[value, type, played] : cases)
        EXPECT_EQ(Play("exec SELECT " + value + "\nfetch\nget 1 " + type + "\nclose"), "S S " + played + " S")
            << value << " as " << type;
}

} // namespace
} // namespace driver_tests
