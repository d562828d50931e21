// Rows: what columns say of themselves, block fetch, values in pieces, conversions, and the order in which they are
// read.
#include "client.h"

#include <cstring>
#include <fstream>
#include <sstream>

namespace driver_tests
{
namespace
{

constexpr size_t Rows = 4; // of a block

class FetchTest : public DriverTest
{
protected:
    void Open(const std::string &sql)
    {
        SQLFreeStmt(statement, SQL_CLOSE);
        CHECK_STMT("S", Exec(statement, sql), statement);
    }
    void Set(SQLINTEGER attribute, SQLPOINTER value)
    {
        CHECK_STMT("S", SQLSetStmtAttrW(statement, attribute, value, 0), statement);
    }
    // The first column, as a number of this type, of a block.
    void BindBlock(SQLSMALLINT cType = SQL_C_SBIGINT)
    {
        Set(SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(Rows));
        Set(SQL_ATTR_ROW_STATUS_PTR, m_status);
        Set(SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched);
        CHECK_STMT("S", SQLBindCol(statement, 1, cType, m_values, 0, m_lengths), statement);
        m_octets = cType == SQL_C_BIT ? 1 : 8;
    }
    // Code and number of rows; then each place of the block: its value, NULL, ! for an error, - for none.
    std::string Fetch()
    {
        m_fetched = 99;
        const SQLRETURN code = SQLFetch(statement);
        std::ostringstream out;
        out << Letter(code) << " " << m_fetched << ":";
        for (size_t row = 0; row < Rows; ++row)
        {
            std::int64_t value = 0;
            std::memcpy(&value, reinterpret_cast<char *>(m_values) + m_octets * row, m_octets);
            if (m_status[row] == SQL_ROW_ERROR || m_status[row] == SQL_ROW_NOROW)
                out << (m_status[row] == SQL_ROW_ERROR ? " !" : " -");
            else
                out << " " << (m_lengths[row] == SQL_NULL_DATA ? "NULL" : std::to_string(value));
        }
        return out.str();
    }

private:
    std::int64_t m_values[Rows] = {};
    SQLLEN m_lengths[Rows] = {};
    SQLUSMALLINT m_status[Rows] = {};
    SQLULEN m_fetched = 0;
    size_t m_octets = 8;
};

TEST_F(FetchTest, ColumnsTellNameTypeSizeAndDigits)
{
    database.Run("CREATE TABLE c (a bit, b tinyint, c smallint NOT NULL, d int, e bigint, g float, h char(1), "
                 "i varchar(30), j nchar(1), k nvarchar(40), l datetime, m varchar(max))");
    const Lines expected[] = {{"a -7 1 0", "b -6 3 0", "c 5 5 0", "d 4 10 0", "e -5 19 0", "g 6 53 0", "h 1 1 0",
                               "i 12 30 0", "j -8 1 0", "k -9 40 0", "l 93 23 3", "m 12 0 0"},
                              {"a -7 1 0", "b -6 3 0", "c 5 5 0", "d 4 10 0", "e -5 19 0", "g 6 53 0", "h 1 3 0",
                               "i 12 3 0", "j -8 3 0", "k -9 3 0", "l 93 23 3", "m 12 3 0"}};
    for (const bool claimed : {false, true}) // texts claim another size
    {
        Link other;
        const SQLHSTMT theirs = driver_tests::Open(other, ConnectText(claimed ? "ClaimedTextSize=3;" : ""));
        CHECK_STMT("S", Exec(theirs, "SELECT a, b, c, d, e, g, h, i, j, k, l, m FROM c"), theirs);
        Lines columns;
        SQLWCHAR name[50] = {};
        SQLSMALLINT length = 0, type = 0, digits = 99;
        SQLULEN size = 99;
        for (SQLUSMALLINT i = 1; i <= 12; ++i)
        {
            CHECK_STMT("S", SQLDescribeColW(theirs, i, name, 50, &length, &type, &size, &digits, nullptr), theirs);
            std::ostringstream column;
            column << static_cast<char>(name[0]) << " " << type << " " << size << " " << digits;
            columns.push_back(column.str());
        }
        EXPECT_EQ(columns, expected[claimed]);
        CHECK_STMT("E", SQLDescribeColW(theirs, 13, name, 50, &length, &type, &size, &digits, nullptr), theirs);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, theirs, false), Lines{"07009 (0)"});
        CHECK_STMT("I", SQLDescribeColW(theirs, 1, name, 1, &length, &type, &size, &digits, nullptr), theirs);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, theirs, false), Lines{"01004 (0)"});
    }
}

TEST_F(FetchTest, BlocksOfRows)
{
    database.Run("INSERT INTO t (id) VALUES (4), (5), (6), (7)");
    Open("SELECT CASE WHEN id = 3 THEN NULL ELSE id END FROM t ORDER BY id");
    CHECK_STMT("S", SQLFetch(statement), statement) << "one row; the size may be raised behind it";
    BindBlock();
    EXPECT_EQ(Fetch(), "S 4: 2 NULL 4 5");
    EXPECT_EQ(Play("get 2"), "E[HY109 (0)]") << "not out of a block";
    EXPECT_EQ(Fetch(), "S 2: 6 7 - -");
    EXPECT_EQ(Fetch(), "N 0: - - - -");
}

TEST_F(FetchTest, RowThatDoesNotFitIsMarkedAndTheOthersAreGood)
{
    Open("SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 0");
    BindBlock(SQL_C_BIT);
    EXPECT_EQ(Fetch(), "I 3: 1 ! 0 -");
    EXPECT_EQ(Records(SQL_HANDLE_STMT, statement, false), Lines{"22003 (0)"});
}

// The rows before it are given with it; a lost connection says nothing of their number.
TEST_F(FetchTest, RowThatCannotBeMadeIsMarkedAndEndsTheResult)
{
    database.Run("CREATE TABLE v (i int NOT NULL PRIMARY KEY, s varchar(10))\nGO\n"
                 "INSERT INTO v VALUES (1, '10'), (2, '20'), (3, 'bad'), (4, '40')");
    struct Case
    {
        const char *fault;
        const char *sql;
        const char *first;
        const char *record;
        const char *second; // code of the fetch behind it
        const char *error;  // in the log
    };
    for (const Case &each :
         {Case{"", "SELECT CONVERT(int, s) FROM v ORDER BY i", "I 3: 10 20 ! -", "22018 (245)", "N", "22018: "},
          Case{"row:3", "SELECT i FROM v ORDER BY i", "I 3: 1 2 ! -", "HY000 (7)", "N", "HY000: m"},
          Case{"row:1", "SELECT i FROM v ORDER BY i", "E 1: ! - - -", "HY000 (7)", "N", "HY000: m"},
          Case{"cut-row:3", "SELECT i FROM v ORDER BY i", "E 99: 1 2 ! -", "HY000 (7)", "E", "HY000: m"}})
    {
        SCOPED_TRACE(each.fault);
        database.ClearLog();
        std::ofstream(database.Folder().Path("faults")) << "1\t" << each.fault << "\tSELECT i\tHY000\t7\tm\n";
        if (*each.fault == '\0')
            database.ClearFaults();
        Reconnect();
        Open(each.sql);
        BindBlock();
        EXPECT_EQ(Fetch(), each.first);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, statement, false), Lines{each.record});
        EXPECT_EQ(database.LoggedErrors().at(0).substr(0, std::strlen(each.error)), each.error);
        EXPECT_EQ(link->IsDead(), *each.second == 'E');
        CHECK_STMT(each.second, SQLFetch(statement), statement);
    }
}

TEST_F(FetchTest, BoundTextThatIsCutSaysHowLongItIs)
{
    Open("SELECT 'abcdefgh'");
    char16_t text[4] = {};
    SQLLEN length = 0;
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_WCHAR, text, sizeof text, &length), statement);
    CHECK_STMT("I", SQLFetch(statement), statement);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, statement, false), Lines{"01004 (0)"});
    EXPECT_EQ(std::u16string(text), u"abc");
    EXPECT_EQ(length, 16);
}

TEST_F(FetchTest, NullNeedsAnIndicator)
{
    Open("SELECT CONVERT(int, NULL)");
    SQLINTEGER value = 7;
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SLONG, &value, 0, nullptr), statement);
    EXPECT_EQ(Play("fetch"), "E[22002 (0)]");
}

TEST_F(FetchTest, TextInPieces)
{
    Open("SELECT N'abcdef\u00e9\u65e5', 'next'");
    CHECK_STMT("S", SQLFetch(statement), statement);
    char16_t piece[4] = {};
    SQLLEN length = 0;
    struct Step
    {
        SQLLEN capacity;
        const char *codes;
        const char16_t *piece;
        SQLLEN length;
    };
    for (const Step &each : {Step{0, "I", u"", 16}, Step{8, "I", u"abc", 16}, Step{8, "I", u"def", 10},
                             Step{8, "S", u"\u00e9\u65e5", 4}, Step{8, "N", u"\u00e9\u65e5", 4}})
    {
        CHECK_STMT(each.codes, SQLGetData(statement, 1, SQL_C_WCHAR, piece, each.capacity, &length), statement);
        EXPECT_EQ(std::u16string(piece), each.piece);
        EXPECT_EQ(length, each.length);
    }
    char narrow[10] = {};
    CHECK_STMT("S", SQLGetData(statement, 2, SQL_C_CHAR, narrow, sizeof narrow, &length), statement);
    EXPECT_STREQ(narrow, "next");
}

TEST_F(FetchTest, Conversions)
{
    struct Case
    {
        const char *sql;
        SQLSMALLINT cType;
        std::string bytes; // of the value
        const char *state; // or of the error
    };
    const auto bytes = [](auto value) { return std::string(reinterpret_cast<const char *>(&value), sizeof value); };
    const SQL_TIMESTAMP_STRUCT moment{2003, 2, 11, 8, 15, 30, 500000000};
    const char *const real = "SELECT CONVERT(float, '1.5')";
    const char *const date = "SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')";
    const Case cases[] = {
        {"SELECT -42", SQL_C_SLONG, bytes(std::int32_t{-42}), nullptr},
        {"SELECT -42", SQL_C_SBIGINT, bytes(std::int64_t{-42}), nullptr},
        {"SELECT 42", SQL_C_DOUBLE, bytes(42.0), nullptr},
        {"SELECT 42", SQL_C_CHAR, "42", nullptr},
        {"SELECT 1", SQL_C_BIT, std::string(1, '\1'), nullptr},
        {real, SQL_C_DOUBLE, bytes(1.5), nullptr},
        {date, SQL_C_TYPE_TIMESTAMP, bytes(moment), nullptr},
        {date, SQL_C_CHAR, "2003-02-11 08:15:30.500", nullptr},
        {"SELECT 2", SQL_C_BIT, "", "22003"},
        {"SELECT CONVERT(bigint, 2147483647) + 1", SQL_C_SLONG, "", "22003"},
        {"SELECT -1", SQL_C_ULONG, "", "22003"},
        {"SELECT '17'", SQL_C_SLONG, "", "07006"},
        {real, SQL_C_SLONG, "", "07006"},
        {date, SQL_C_SLONG, "", "07006"},
        {"SELECT 1", SQL_C_TYPE_TIMESTAMP, "", "07006"},
        {"SELECT 1", SQL_C_BINARY, "", "HY003"},
    };
    for (const Case &each : cases)
    {
        SCOPED_TRACE(std::string(each.sql) + " as " + std::to_string(each.cType));
        Open(each.sql);
        CHECK_STMT("S", SQLFetch(statement), statement);
        char buffer[64] = {};
        SQLLEN length = 0;
        const SQLRETURN code = SQLGetData(statement, 1, each.cType, buffer, sizeof buffer, &length);
        EXPECT_EQ(code, each.state != nullptr ? SQL_ERROR : SQL_SUCCESS);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, statement, false),
                  each.state != nullptr ? Lines{std::string(each.state) + " (0)"} : Lines());
        EXPECT_EQ(std::string(buffer, static_cast<size_t>(length)), each.bytes);
    }
}

} // namespace
} // namespace driver_tests
