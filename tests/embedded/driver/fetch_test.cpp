// Rows: what columns say of themselves, block fetch, values in pieces, conversions, and the order in which they are
// read.
#include "client.h"
#include "runtime/text.h"

namespace driver_tests
{
namespace
{

class FetchTest : public DriverTest
{
protected:
    void Open(const std::string &sql)
    {
        SQLFreeStmt(statement, SQL_CLOSE);
        CHECK_STMT("S", Exec(statement, sql), statement);
    }
    void OpenRow(const std::string &sql)
    {
        Open(sql);
        CHECK_STMT("S", SQLFetch(statement), statement);
    }
    void Set(SQLINTEGER attribute, SQLULEN value)
    {
        CHECK_STMT("S", SQLSetStmtAttrW(statement, attribute, reinterpret_cast<SQLPOINTER>(value), 0), statement);
    }
    void SetPointer(SQLINTEGER attribute, void *value) { Set(attribute, reinterpret_cast<SQLULEN>(value)); }
    void Bind(SQLSMALLINT cType, void *values, SQLLEN capacity, SQLLEN *lengths)
    {
        CHECK_STMT("S", SQLBindCol(statement, 1, cType, values, capacity, lengths), statement);
    }
    SQLRETURN GetNumber(SQLUSMALLINT column)
    {
        SQLINTEGER value = 0;
        SQLLEN length = 0;
        return SQLGetData(statement, column, SQL_C_SLONG, &value, 0, &length);
    }
    void ExpectState(const std::string &state) { EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{state + " (0)"}); }
};

TEST_F(FetchTest, ColumnsTellTypeAndSize)
{
    Run("CREATE TABLE c (a bit, b tinyint, c smallint NOT NULL, d int, e bigint, g float, h char(1), "
        "i varchar(30), j nchar(1), k nvarchar(40), l datetime, m varchar(max))");
    struct Expected
    {
        const char *name;
        SQLSMALLINT type;
        SQLULEN size;
        SQLSMALLINT digits;
    };
    const std::vector<Expected> expected = {
        {"a", SQL_BIT, 1, 0},       {"b", SQL_TINYINT, 3, 0},         {"c", SQL_SMALLINT, 5, 0},
        {"d", SQL_INTEGER, 10, 0},  {"e", SQL_BIGINT, 19, 0},         {"g", SQL_FLOAT, 53, 0},
        {"h", SQL_CHAR, 1, 0},      {"i", SQL_VARCHAR, 30, 0},        {"j", SQL_WCHAR, 1, 0},
        {"k", SQL_WVARCHAR, 40, 0}, {"l", SQL_TYPE_TIMESTAMP, 23, 3}, {"m", SQL_VARCHAR, 0, 0},
    };
    Link liar; // texts claim another size, and the names stay
    ASSERT_TRUE(Allowed("SI", liar.Connect(ConnectText("ClaimedTextSize=3;")), SQL_HANDLE_DBC, liar.dbc));
    const SQLHSTMT theirs = liar.NewStatement();
    for (const SQLHSTMT each : {statement, theirs})
    {
        CHECK_STMT("S", Exec(each, "SELECT a, b, c, d, e, g, h, i, j, k, l, m FROM c"), each);
        for (SQLUSMALLINT i = 0; i < expected.size(); ++i)
        {
            SQLWCHAR name[50] = {};
            SQLSMALLINT length = 0;
            SQLSMALLINT type = 0;
            SQLULEN size = 99;
            SQLSMALLINT digits = 99;
            SQLLEN concise = 0;
            CHECK_STMT("S", SQLDescribeColW(each, i + 1, name, 50, &length, &type, &size, &digits, nullptr), each);
            CHECK_STMT("S", SQLColAttributeW(each, i + 1, SQL_DESC_CONCISE_TYPE, nullptr, 0, nullptr, &concise), each);
            SCOPED_TRACE(expected[i].name);
            EXPECT_EQ(runtime::FromUtf16({reinterpret_cast<char16_t *>(name), static_cast<size_t>(length)}),
                      expected[i].name);
            EXPECT_EQ(type, expected[i].type);
            EXPECT_EQ(concise, expected[i].type);
            const bool isText = (i >= 6 && i <= 9) || i == 11;
            EXPECT_EQ(size, each == theirs && isText ? 3 : expected[i].size);
            EXPECT_EQ(digits, expected[i].digits);
        }
    }
    CHECK_STMT("E", SQLDescribeColW(statement, 13, nullptr, 0, nullptr, nullptr, nullptr, nullptr, nullptr), statement);
    ExpectState("07009");
}

TEST_F(FetchTest, BlocksOfRows)
{
    Run("CREATE TABLE n (i int NOT NULL PRIMARY KEY)");
    Run("INSERT INTO n VALUES (1), (2), (3), (4), (5), (6), (7)");
    Open("SELECT CASE WHEN i = 3 THEN NULL ELSE i END FROM n ORDER BY i");
    std::int64_t values[4] = {};
    SQLLEN lengths[4] = {};
    SQLUSMALLINT status[4] = {};
    SQLULEN fetched = 0;
    CHECK_STMT("S", SQLFetch(statement), statement) << "one row; the size may be raised behind it";
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 4);
    SetPointer(SQL_ATTR_ROW_STATUS_PTR, status);
    SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched);
    Bind(SQL_C_SBIGINT, values, 0, lengths);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 4u);
    EXPECT_EQ((std::vector<SQLLEN>{values[0], lengths[1], values[3], lengths[3]}),
              (std::vector<SQLLEN>{2, SQL_NULL_DATA, 5, 8}));
    CHECK_STMT("E", GetNumber(1), statement) << "not out of a block";
    ExpectState("HY109");
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ((std::vector<SQLUSMALLINT>(status, status + 4)),
              (std::vector<SQLUSMALLINT>{SQL_ROW_SUCCESS, SQL_ROW_SUCCESS, SQL_ROW_NOROW, SQL_ROW_NOROW}));
    CHECK_STMT("N", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 0u);
}

TEST_F(FetchTest, RowThatDoesNotFitIsMarkedAndTheOthersAreGood)
{
    Open("SELECT 1 UNION ALL SELECT 40000 UNION ALL SELECT 3");
    SQLSMALLINT values[3] = {};
    SQLLEN lengths[3] = {};
    SQLUSMALLINT status[3] = {};
    SetPointer(SQL_ATTR_ROW_STATUS_PTR, status);
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 3);
    Bind(SQL_C_SSHORT, values, 0, lengths);
    CHECK_STMT("I", SQLFetch(statement), statement);
    ExpectState("22003");
    EXPECT_EQ((std::vector<SQLUSMALLINT>(status, status + 3)),
              (std::vector<SQLUSMALLINT>{SQL_ROW_SUCCESS, SQL_ROW_ERROR, SQL_ROW_SUCCESS}));
    EXPECT_EQ(values[0] + values[2], 4);
}

TEST_F(FetchTest, NullNeedsAnIndicator)
{
    Open("SELECT CONVERT(int, NULL)");
    SQLINTEGER value = 7;
    Bind(SQL_C_SLONG, &value, 0, nullptr);
    CHECK_STMT("E", SQLFetch(statement), statement);
    ExpectState("22002");
}

TEST_F(FetchTest, BoundTextThatIsCutSaysHowLongItIs)
{
    Open("SELECT 'abcdefgh'");
    char16_t text[4] = {};
    SQLLEN length = 0;
    Bind(SQL_C_WCHAR, text, sizeof text, &length);
    CHECK_STMT("I", SQLFetch(statement), statement);
    ExpectState("01004");
    EXPECT_EQ(std::u16string(text), u"abc");
    EXPECT_EQ(length, 16);
}

TEST_F(FetchTest, TextInPieces)
{
    OpenRow("SELECT N'abcdef\u00e9\u65e5', 'next'");
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

TEST_F(FetchTest, ColumnsAreReadOnceUpwardsAndBehindTheBoundOnes)
{
    OpenRow("SELECT 1, 2");
    CHECK_STMT("S", GetNumber(2), statement);
    CHECK_STMT("N", GetNumber(2), statement) << "again after its end";
    for (const SQLUSMALLINT column : {1, 3})
    {
        CHECK_STMT("E", GetNumber(column), statement) << column;
        ExpectState("07009");
    }

    SQLINTEGER bound = 0;
    SQLLEN length = 0;
    Open("SELECT 1, 2, 3");
    CHECK_STMT("S", SQLBindCol(statement, 2, SQL_C_SLONG, &bound, 0, &length), statement);
    CHECK_STMT("S", SQLFetch(statement), statement);
    CHECK_STMT("E", GetNumber(1), statement) << "in front of a bound one";
    CHECK_STMT("E", GetNumber(2), statement) << "the bound one itself";
    CHECK_STMT("S", GetNumber(3), statement);
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
        {"SELECT -42", SQL_C_SBIGINT, "S", bytes(std::int64_t{-42})},
        {"SELECT 42", SQL_C_DOUBLE, "S", bytes(42.0)},
        {"SELECT 42", SQL_C_CHAR, "S", "42"},
        {"SELECT 1", SQL_C_BIT, "S", std::string(1, '\1')},
        {"SELECT 2", SQL_C_BIT, "E", "22003"},
        {"SELECT 300", SQL_C_UTINYINT, "E", "22003"},
        {"SELECT 32768", SQL_C_SSHORT, "E", "22003"},
        {"SELECT -1", SQL_C_ULONG, "E", "22003"},
        {"SELECT '17'", SQL_C_SLONG, "E", "07006"},
        {"SELECT CONVERT(float, '1.5')", SQL_C_DOUBLE, "S", bytes(1.5)},
        {"SELECT CONVERT(float, '1.5')", SQL_C_SLONG, "E", "07006"},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_TYPE_TIMESTAMP, "S", bytes(moment)},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_CHAR, "S", "2003-02-11 08:15:30.500"},
        {"SELECT CONVERT(datetime, '2003-02-11T08:15:30.500')", SQL_C_SLONG, "E", "07006"},
        {"SELECT 1", SQL_C_TYPE_TIMESTAMP, "E", "07006"},
        {"SELECT 1", SQL_C_BINARY, "E", "HY003"},
    };
    for (const Case &each : cases)
    {
        SCOPED_TRACE(std::string(each.sql) + " as " + std::to_string(each.cType));
        OpenRow(each.sql);
        char buffer[64] = {};
        SQLLEN length = 0;
        const SQLRETURN code = SQLGetData(statement, 1, each.cType, buffer, sizeof buffer, &length);
        CHECK_STMT(each.codes, code, statement);
        if (code == SQL_ERROR)
            ExpectState(each.bytes);
        else
            EXPECT_EQ(std::string(buffer, static_cast<size_t>(length)), each.bytes);
    }
}

TEST_F(FetchTest, ErrorInTheMiddleOfAResultComesBehindItsRows)
{
    Run("CREATE TABLE v (i int NOT NULL PRIMARY KEY, s varchar(10))");
    Run("INSERT INTO v VALUES (1, '10'), (2, '20'), (3, 'bad'), (4, '40')");
    Open("SELECT CONVERT(int, s) FROM v ORDER BY i");
    SQLINTEGER values[4] = {};
    SQLLEN lengths[4] = {};
    SQLULEN fetched = 0;
    Set(SQL_ATTR_ROW_ARRAY_SIZE, 4);
    SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched);
    Bind(SQL_C_SLONG, values, 0, lengths);
    CHECK_STMT("S", SQLFetch(statement), statement);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(values[1], 20);
    CHECK_STMT("E", SQLFetch(statement), statement);
    EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"22018 (245)"});
}

} // namespace
} // namespace driver_tests
