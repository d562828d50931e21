// The catalogue functions: tables, columns, keys, types.
#include "client.h"

namespace driver_tests
{
namespace
{

using Lines = std::vector<std::string>;

class CatalogTest : public DriverTest
{
protected:
    void SetUp() override
    {
        DriverTest::SetUp();
        Run("CREATE TABLE Alpha (a smallint NOT NULL, b varchar(30) NULL, c datetime NULL, d nvarchar(5) NOT NULL, "
            "PRIMARY KEY (a, d))");
        Run("CREATE TABLE Beta_x (id int NOT NULL)");
    }

    SQLWCHAR *Text(const char *text)
    {
        m_texts.push_back(Wide(text));
        return reinterpret_cast<SQLWCHAR *>(m_texts.back().data());
    }

    Lines Columns(size_t first, size_t last)
    {
        Lines lines;
        for (const Lines &row : ReadRows(statement))
        {
            std::string line = row.at(first);
            for (size_t i = first + 1; i <= last; ++i)
                line += " | " + row.at(i);
            lines.push_back(line);
        }
        SQLFreeStmt(statement, SQL_CLOSE);
        return lines;
    }

    std::vector<std::u16string> m_texts;
};

TEST_F(CatalogTest, TablesByPattern)
{
    m_texts.reserve(20);
    const auto tables = [&](const char *pattern, const char *types)
    {
        CHECK_STMT("S",
                   SQLTablesW(statement, nullptr, 0, nullptr, 0, pattern == nullptr ? nullptr : Text(pattern), SQL_NTS,
                              types == nullptr ? nullptr : Text(types), SQL_NTS),
                   statement);
        return Columns(1, 3);
    };
    EXPECT_EQ(tables(nullptr, nullptr), (Lines{"dbo | Alpha | TABLE", "dbo | Beta_x | TABLE"}));
    EXPECT_EQ(tables("%", "TABLE,VIEW"), (Lines{"dbo | Alpha | TABLE", "dbo | Beta_x | TABLE"}));
    EXPECT_EQ(tables("beta\\_x", nullptr), Lines{"dbo | Beta_x | TABLE"});
    EXPECT_EQ(tables("B%_x", "'TABLE'"), Lines{"dbo | Beta_x | TABLE"});
    EXPECT_EQ(tables("%", "VIEW"), Lines{});
    EXPECT_EQ(tables("gamma", nullptr), Lines{});
}

TEST_F(CatalogTest, UsersOfTheDatabaseAreNoTable)
{
    Link maker;
    ASSERT_TRUE(Allowed(
        "SI",
        maker.Connect("Driver={SQL Server};Create=yes;UID=sa;PWD=secret;Database=" + settings.Path("users.db") + ";"),
        SQL_HANDLE_DBC, maker.dbc));
    const SQLHSTMT theirs = maker.NewStatement();
    CHECK_STMT("S", SQLTablesW(theirs, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), theirs);
    CHECK_STMT("N", SQLFetch(theirs), theirs);
}

TEST_F(CatalogTest, ColumnsOfATable)
{
    m_texts.reserve(20);
    CHECK_STMT("S", SQLColumnsW(statement, nullptr, 0, nullptr, 0, Text("ALPHA"), SQL_NTS, nullptr, 0), statement);
    // TABLE_NAME, COLUMN_NAME, DATA_TYPE, TYPE_NAME, COLUMN_SIZE, BUFFER_LENGTH, DECIMAL_DIGITS, NUM_PREC_RADIX,
    // NULLABLE
    EXPECT_EQ(Columns(2, 10), (Lines{"Alpha | a | 5 | smallint | 5 | 2 | 0 | 10 | 0",
                                     "Alpha | b | 12 | varchar | 30 | 30 | NULL | NULL | 1",
                                     "Alpha | c | 93 | datetime | 23 | 16 | NULL | NULL | 1",
                                     "Alpha | d | -9 | nvarchar | 5 | 10 | NULL | NULL | 0"}));
    CHECK_STMT("S", SQLColumnsW(statement, nullptr, 0, nullptr, 0, Text("%"), SQL_NTS, Text("i_"), SQL_NTS), statement);
    EXPECT_EQ(Columns(2, 3), Lines{"Beta_x | id"});
}

TEST_F(CatalogTest, PrimaryKeys)
{
    m_texts.reserve(20);
    CHECK_STMT("S", SQLPrimaryKeysW(statement, nullptr, 0, nullptr, 0, Text("Alpha"), SQL_NTS), statement);
    EXPECT_EQ(Columns(2, 4), (Lines{"Alpha | a | 1", "Alpha | d | 2"}));
    CHECK_STMT("S", SQLStatisticsW(statement, nullptr, 0, nullptr, 0, Text("Alpha"), SQL_NTS, SQL_INDEX_ALL, SQL_QUICK),
               statement);
    EXPECT_EQ(ReadRows(statement).size(), 0u);
}

TEST_F(CatalogTest, Types)
{
    CHECK_STMT("S", SQLGetTypeInfoW(statement, SQL_SMALLINT), statement);
    EXPECT_EQ(Columns(0, 2), Lines{"smallint | 5 | 5"});
    CHECK_STMT("S", SQLGetTypeInfoW(statement, SQL_ALL_TYPES), statement);
    EXPECT_EQ(ReadRows(statement).size(), 12u);
}

TEST_F(CatalogTest, CatalogueHoldsTheConnectionLikeEveryResult)
{
    CHECK_STMT("S", SQLTablesW(statement, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), statement);
    const SQLHSTMT other = link.NewStatement();
    CHECK_STMT("E", Exec(other, "SELECT 1"), other);
    EXPECT_EQ(ReadRows(statement).size(), 2u);
    EXPECT_EQ(Query(other, "SELECT 1"), Lines{"1"});
}

} // namespace
} // namespace driver_tests
