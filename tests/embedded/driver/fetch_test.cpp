// Rows: what columns say of themselves, block fetch in each way of binding, values in pieces, conversions.
#include "client.h"

#include <array>
#include <cstring>

namespace driver_tests
{
namespace
{

using Lines = std::vector<std::string>;

class FetchTest : public DriverTest
{
protected:
    void Open(const std::string &sql) { CHECK_STMT("S", Exec(statement, sql), statement); }

    void Set(SQLINTEGER attribute, SQLULEN value)
    {
        CHECK_STMT("S", SQLSetStmtAttrW(statement, attribute, reinterpret_cast<SQLPOINTER>(value), 0), statement);
    }

    void SetPointer(SQLINTEGER attribute, void *value)
    {
        CHECK_STMT("S", SQLSetStmtAttrW(statement, attribute, value, 0), statement);
    }

    // A table of the numbers 1 to `count` and a text each.
    void MakeNumbers(int count)
    {
        Run("CREATE TABLE n (i int NOT NULL PRIMARY KEY, s varchar(20) NULL)");
        std::string sql;
        for (int i = 1; i <= count; ++i)
            sql += "INSERT INTO n VALUES (" + std::to_string(i) + ", " +
                   (i % 3 == 0 ? "NULL" : "'row " + std::to_string(i) + "'") + ") ";
        Run(sql);
    }
};

TEST_F(FetchTest, ColumnsTellTypeSizeAndNullability)
{
    Run("CREATE TABLE c (a bit, b tinyint, c smallint NOT NULL, d int, e bigint, f decimal(9,2), g float, h char(4), "
        "i varchar(30), j nchar(5), k nvarchar(40), l datetime, m varchar(max))");
    Open("SELECT a, b, c, d, e, f, g, h, i, j, k, l, m FROM c");
    struct Expected
    {
        std::string name;
        SQLSMALLINT type;
        SQLULEN size;
        SQLSMALLINT digits;
    };
    const std::vector<Expected> expected = {
        {"a", SQL_BIT, 1, 0},      {"b", SQL_TINYINT, 3, 0},   {"c", SQL_SMALLINT, 5, 0},
        {"d", SQL_INTEGER, 10, 0}, {"e", SQL_BIGINT, 19, 0},   {"f", SQL_DECIMAL, 9, 2},
        {"g", SQL_FLOAT, 53, 0},   {"h", SQL_CHAR, 4, 0},      {"i", SQL_VARCHAR, 30, 0},
        {"j", SQL_WCHAR, 5, 0},    {"k", SQL_WVARCHAR, 40, 0}, {"l", SQL_TYPE_TIMESTAMP, 23, 3},
        {"m", SQL_VARCHAR, 0, 0},
    };
    for (size_t i = 0; i < expected.size(); ++i)
    {
        SQLWCHAR name[50] = {};
        SQLSMALLINT length = 0;
        SQLSMALLINT type = 0;
        SQLULEN size = 99;
        SQLSMALLINT digits = 99;
        SQLSMALLINT nullable = 99;
        CHECK_STMT("S",
                   SQLDescribeColW(statement, static_cast<SQLUSMALLINT>(i + 1), name, 50, &length, &type, &size,
                                   &digits, &nullable),
                   statement);
        EXPECT_EQ(Narrow({reinterpret_cast<char16_t *>(name), static_cast<size_t>(length)}), expected[i].name);
        EXPECT_EQ(type, expected[i].type) << expected[i].name;
        EXPECT_EQ(size, expected[i].size) << expected[i].name;
        EXPECT_EQ(digits, expected[i].digits) << expected[i].name;
        EXPECT_EQ(nullable, SQL_NULLABLE) << expected[i].name;
        SQLLEN concise = 0;
        CHECK_STMT("S",
                   SQLColAttributeW(statement, static_cast<SQLUSMALLINT>(i + 1), SQL_DESC_CONCISE_TYPE, nullptr, 0,
                                    nullptr, &concise),
                   statement);
        EXPECT_EQ(concise, expected[i].type);
    }
    CHECK_STMT("E", SQLDescribeColW(statement, 14, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement).at(0).substr(0, 5), "07009");
}

TEST_F(FetchTest, ClaimedSizeChangesWhatIsSaidAndNotWhatIsGiven)
{
    Link client;
    ASSERT_TRUE(Allowed("SI", client.Connect(ConnectText("ClaimedTextSize=3;")), SQL_HANDLE_DBC, client.dbc));
    const SQLHSTMT theirs = client.NewStatement();
    CHECK_STMT("S", Exec(theirs, "SELECT 'longer than three', 12345"), theirs);
    SQLULEN size = 99;
    CHECK_STMT("S", SQLDescribeColW(theirs, 1, nullptr, 0, nullptr, nullptr, &size, nullptr, nullptr), theirs);
    EXPECT_EQ(size, 3u);
    CHECK_STMT("S", SQLDescribeColW(theirs, 2, nullptr, 0, nullptr, nullptr, &size, nullptr, nullptr), theirs);
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(ReadRows(theirs), (std::vector<Lines>{{"longer than three", "12345"}}));
}

TEST_F(FetchTest, BlocksByColumn)
{
    MakeNumbers(10);
    Open("SELECT i, s FROM n ORDER BY i");
    SQLINTEGER ids[4] = {};
    SQLLEN idLengths[4] = {};
    char16_t texts[4][8] = {};
    SQLLEN textLengths[4] = {};
    SQLULEN fetched = 99;
    SQLUSMALLINT status[4] = {};
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SLONG, ids, 0, idLengths), statement);
    CHECK_STMT("S", SQLBindCol(statement, 2, SQL_C_WCHAR, texts, sizeof texts[0], textLengths), statement);
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 4);
    SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched);
    SetPointer(SQL_ATTR_ROW_STATUS_PTR, status);

    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 4u);
    EXPECT_EQ((std::vector<SQLINTEGER>(ids, ids + 4)), (std::vector<SQLINTEGER>{1, 2, 3, 4}));
    EXPECT_EQ(idLengths[2], 4);
    EXPECT_EQ(std::u16string(texts[0]), u"row 1");
    EXPECT_EQ(textLengths[0], 10);
    EXPECT_EQ(textLengths[2], SQL_NULL_DATA);
    EXPECT_EQ(status[3], SQL_ROW_SUCCESS);
    CHECK_STMT("S", SQLFetchScroll(statement, SQL_FETCH_NEXT, 0), statement);
    EXPECT_EQ(ids[0], 5);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(ids[1], 10);
    EXPECT_EQ((std::vector<SQLUSMALLINT>(status, status + 4)),
              (std::vector<SQLUSMALLINT>{SQL_ROW_SUCCESS, SQL_ROW_SUCCESS, SQL_ROW_NOROW, SQL_ROW_NOROW}));
    CHECK_STMT("N", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 0u);
    CHECK_STMT("N", SQLFetch(statement), statement);
}

TEST_F(FetchTest, BlocksByRowWithOffset)
{
    MakeNumbers(5);
    Open("SELECT i, i * 10, s FROM n ORDER BY i");
    struct Row
    {
        SQLINTEGER id;
        SQLLEN idLength;
        SQLSMALLINT ten;
        SQLLEN tenLength;
        char text[12];
        SQLLEN textLength;
    };
    std::array<Row, 6> rows{};
    SQLLEN offset = sizeof(Row);
    Set(SQL_ATTR_ROW_BIND_TYPE, sizeof(Row));
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 3);
    SetPointer(SQL_ATTR_ROW_BIND_OFFSET_PTR, &offset);
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SLONG, &rows[0].id, 0, &rows[0].idLength), statement);
    CHECK_STMT("S", SQLBindCol(statement, 2, SQL_C_SSHORT, &rows[0].ten, 0, &rows[0].tenLength), statement);
    CHECK_STMT("S", SQLBindCol(statement, 3, SQL_C_CHAR, rows[0].text, sizeof rows[0].text, &rows[0].textLength),
               statement);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(rows[0].id, 0) << "the offset leaves the first place alone";
    EXPECT_EQ(rows[1].id, 1);
    EXPECT_EQ(rows[3].ten, 30);
    EXPECT_EQ(rows[3].tenLength, 2);
    EXPECT_STREQ(rows[2].text, "row 2");
    EXPECT_EQ(rows[3].textLength, SQL_NULL_DATA);
    offset = 0;
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(rows[0].id, 4);
    EXPECT_EQ(rows[1].id, 5);
}

TEST_F(FetchTest, ArraySizeMayBeRaisedBehindExecution)
{
    MakeNumbers(7);
    Open("SELECT i FROM n ORDER BY i");
    SQLBIGINT ids[5] = {};
    SQLLEN lengths[5] = {};
    CHECK_STMT("S", SQLFetch(statement), statement);
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 5);
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SBIGINT, ids, 0, lengths), statement);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(ids[0], 2);
    EXPECT_EQ(ids[4], 6);
}

TEST_F(FetchTest, RowThatDoesNotFitIsMarkedAndTheOthersAreGood)
{
    Open("SELECT 1 UNION ALL SELECT 40000 UNION ALL SELECT 3");
    SQLSMALLINT values[3] = {};
    SQLLEN lengths[3] = {};
    SQLUSMALLINT status[3] = {};
    SetPointer(SQL_ATTR_ROW_STATUS_PTR, status);
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 3);
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SSHORT, values, 0, lengths), statement);
    CHECK_STMT("I", SQLFetch(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"22003 (0)"});
    EXPECT_EQ((std::vector<SQLUSMALLINT>(status, status + 3)),
              (std::vector<SQLUSMALLINT>{SQL_ROW_SUCCESS, SQL_ROW_ERROR, SQL_ROW_SUCCESS}));
    EXPECT_EQ(values[0], 1);
    EXPECT_EQ(values[2], 3);
}

TEST_F(FetchTest, NullNeedsAnIndicator)
{
    Open("SELECT CONVERT(int, NULL)");
    SQLINTEGER value = 7;
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SLONG, &value, 0, nullptr), statement);
    CHECK_STMT("E", SQLFetch(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"22002 (0)"});
}

TEST_F(FetchTest, BoundTextThatIsCutSaysHowLongItIs)
{
    Open("SELECT 'abcdefgh'");
    char16_t text[4] = {};
    SQLLEN length = 0;
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_WCHAR, text, sizeof text, &length), statement);
    CHECK_STMT("I", SQLFetch(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"01004 (0)"});
    EXPECT_EQ(std::u16string(text), u"abc");
    EXPECT_EQ(length, 16);
}

TEST_F(FetchTest, TextInPieces)
{
    Open("SELECT N'abcdef\u00e9\u65e5', 'next'");
    CHECK_STMT("S", SQLFetch(statement), statement);
    char16_t piece[4] = {};
    SQLLEN length = 0;
    const auto get = [&](SQLLEN capacity) { return SQLGetData(statement, 1, SQL_C_WCHAR, piece, capacity, &length); };
    CHECK_STMT("I", get(0), statement);
    EXPECT_EQ(length, 16) << "asking with no room tells the length";
    CHECK_STMT("I", get(sizeof piece), statement);
    EXPECT_EQ(std::u16string(piece), u"abc");
    EXPECT_EQ(length, 16);
    CHECK_STMT("I", get(sizeof piece), statement);
    EXPECT_EQ(std::u16string(piece), u"def");
    EXPECT_EQ(length, 10);
    CHECK_STMT("S", get(sizeof piece), statement);
    EXPECT_EQ(std::u16string(piece), u"\u00e9\u65e5");
    EXPECT_EQ(length, 4);
    CHECK_STMT("N", get(sizeof piece), statement);
    char narrow[10] = {};
    CHECK_STMT("S", SQLGetData(statement, 2, SQL_C_CHAR, narrow, sizeof narrow, &length), statement);
    EXPECT_STREQ(narrow, "next");
    CHECK_STMT("S",
               SQLGetData(statement, 1, SQL_C_CHAR, narrow, 0, &length) == SQL_SUCCESS_WITH_INFO ? SQL_SUCCESS : -1,
               statement)
        << "going back to a column starts it anew";
    EXPECT_EQ(length, 11) << "octets of UTF-8";
}

TEST_F(FetchTest, PositionInsideABlock)
{
    MakeNumbers(5);
    Open("SELECT s, i FROM n ORDER BY i");
    char16_t texts[5][4] = {};
    SQLLEN lengths[5] = {};
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 5);
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_WCHAR, texts, sizeof texts[0], lengths), statement);
    CHECK_STMT("I", SQLFetch(statement), statement);
    EXPECT_EQ(std::u16string(texts[3]), u"row");
    EXPECT_EQ(lengths[3], 10);
    CHECK_STMT("S", SQLSetPos(statement, 4, SQL_POSITION, SQL_LOCK_NO_CHANGE), statement);
    EXPECT_EQ(ReadRow(statement), (Lines{"row 4", "4"})) << "also of the column that is bound";
    CHECK_STMT("S", SQLSetPos(statement, 2, SQL_POSITION, SQL_LOCK_NO_CHANGE), statement);
    EXPECT_EQ(ReadRow(statement), (Lines{"row 2", "2"}));
    CHECK_STMT("E", SQLSetPos(statement, 6, SQL_POSITION, SQL_LOCK_NO_CHANGE), statement);
}

TEST_F(FetchTest, Conversions)
{
    struct Case
    {
        const char *sql;
        SQLSMALLINT cType;
        const char *codes;
        std::string bytes; // of the value, or the state of the error
    };
    const auto bytes = [](auto value) { return std::string(reinterpret_cast<const char *>(&value), sizeof value); };
    const SQL_TIMESTAMP_STRUCT moment{2003, 2, 11, 8, 15, 30, 500000000};
    const std::vector<Case> cases = {
        {"SELECT 42", SQL_C_SLONG, "S", bytes(std::int32_t{42})},
        {"SELECT 42", SQL_C_SSHORT, "S", bytes(std::int16_t{42})},
        {"SELECT 42", SQL_C_SBIGINT, "S", bytes(std::int64_t{42})},
        {"SELECT 42", SQL_C_DOUBLE, "S", bytes(42.0)},
        {"SELECT 42", SQL_C_DEFAULT, "S", bytes(std::int32_t{42})},
        {"SELECT 42", SQL_C_CHAR, "S", "42"},
        {"SELECT 1", SQL_C_BIT, "S", std::string(1, '\1')},
        {"SELECT 2", SQL_C_BIT, "E", "22003"},
        {"SELECT 300", SQL_C_UTINYINT, "E", "22003"},
        {"SELECT 32768", SQL_C_SSHORT, "E", "22003"},
        {"SELECT -1", SQL_C_ULONG, "E", "22003"},
        {"SELECT ' 17 '", SQL_C_SLONG, "S", bytes(std::int32_t{17})},
        {"SELECT '1.75'", SQL_C_SLONG, "I", bytes(std::int32_t{1})},
        {"SELECT 'x'", SQL_C_SLONG, "E", "22018"},
        {"SELECT CONVERT(float, 1.5)", SQL_C_DOUBLE, "S", bytes(1.5)},
        {"SELECT CONVERT(float, 1.5)", SQL_C_SLONG, "I", bytes(std::int32_t{1})},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_TYPE_TIMESTAMP, "S", bytes(moment)},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_DEFAULT, "S", bytes(moment)},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_CHAR, "S", "2003-02-11 08:15:30.500"},
        {"SELECT '2003-02-11 08:15:30.500'", SQL_C_TYPE_TIMESTAMP, "S", bytes(moment)},
        {"SELECT '2003-02-11'", SQL_C_TYPE_DATE, "S", bytes(SQL_DATE_STRUCT{2003, 2, 11})},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_SLONG, "E", "07006"},
        {"SELECT 1", SQL_C_TYPE_TIMESTAMP, "E", "07006"},
        {"SELECT 1", SQL_C_BINARY, "E", "07006"},
    };
    for (const Case &each : cases)
    {
        const std::string label = std::string(each.sql) + " as " + std::to_string(each.cType);
        SCOPED_TRACE(label);
        Open(each.sql);
        CHECK_STMT("S", SQLFetch(statement), statement);
        char buffer[64] = {};
        SQLLEN length = 0;
        const SQLRETURN code = SQLGetData(statement, 1, each.cType, buffer, sizeof buffer, &length);
        CHECK_STMT(each.codes, code, statement);
        if (code == SQL_ERROR)
            EXPECT_EQ(States(SQL_HANDLE_STMT, statement).at(0).substr(0, 5), each.bytes);
        else
            EXPECT_EQ(std::string(buffer, static_cast<size_t>(length)), each.bytes);
        SQLFreeStmt(statement, SQL_CLOSE);
    }
}

TEST_F(FetchTest, ErrorInTheMiddleOfAResultComesBehindItsRows)
{
    Run("CREATE TABLE v (i int NOT NULL PRIMARY KEY, s varchar(10))");
    Run("INSERT INTO v VALUES (1, '10') INSERT INTO v VALUES (2, '20') INSERT INTO v VALUES (3, 'bad') "
        "INSERT INTO v VALUES (4, '40')");
    Open("SELECT CONVERT(int, s) FROM v ORDER BY i");
    SQLINTEGER values[4] = {};
    SQLLEN lengths[4] = {};
    SQLULEN fetched = 0;
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 4);
    SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched);
    CHECK_STMT("S", SQLBindCol(statement, 1, SQL_C_SLONG, values, 0, lengths), statement);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(values[1], 20);
    CHECK_STMT("E", SQLFetch(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"22018 (245)"});
}

TEST_F(FetchTest, FetchWithoutAResultIsAnError)
{
    CHECK_STMT("E", SQLFetch(statement), statement);
    Run("CREATE TABLE nothing (i int)");
    CHECK_STMT("E", SQLFetch(statement), statement);
}

} // namespace
} // namespace driver_tests
