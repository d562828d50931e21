// CREATE and DROP of tables and indexes, and what the session tells of tables.
#include "play.h"

namespace
{

using tsql::Type;

class Tables : public tsqltest::PlayTest
{
};

TEST_F(Tables, CreateAndDrop)
{
    PlayAll({
        {"create", "CREATE TABLE t (a int)", ""},
        {"again", "CREATE TABLE T (a int)", "!2714 42S01 There is already an object named 'T' in the database."},
        {"index", "CREATE INDEX i ON t (a)", ""},
        {"index again", "CREATE INDEX I ON t (a)",
         "!1913 42S11 The operation failed because an index or statistics with name 'I' already exists on table 't'."},
        {"an index of that name on another table", "CREATE TABLE u (a int) CREATE INDEX i ON u (a)", ""},
        {"index on a column that is none", "CREATE INDEX j ON t (b)",
         "!1911 42000 Column name 'b' does not exist in the target table or view."},
        {"index on a table that is none", "CREATE INDEX j ON nothing (b)", "!208 42S02 Invalid object name 'nothing'."},
        {"drop index", "DROP INDEX t.i", ""},
        {"drop index with ON", "DROP INDEX i ON u", ""},
        {"drop index again", "DROP INDEX t.i",
         "!3701 42S02 Cannot drop the index 't.i', because it does not exist or you do not have permission."},
        {"drop two", "DROP TABLE t, u", ""},
        {"drop again", "DROP TABLE t",
         "!3701 42S02 Cannot drop the table 't', because it does not exist or you do not have permission."},
        {"create and use in one batch", "CREATE TABLE t (a int) INSERT t VALUES (1) SELECT a FROM t DROP TABLE t",
         "#1 + 1"},
        {"another table of the old name", "CREATE TABLE t (b varchar(3)) INSERT t VALUES ('xyz') SELECT b FROM t",
         "#1 + xyz"},
        {"owner before the name", "CREATE TABLE dbo.v (a int) DROP TABLE dbo.v", ""},
        {"names that need quotes",
         "CREATE TABLE [a \"b\" c] ([select] int, [x]]y] int) INSERT [a \"b\" c] ([x]]y]) VALUES (2) "
         "SELECT [select], [x]]y] FROM [a \"b\" c]",
         "#1 + NULL|2"},
        {"names beyond ASCII",
         "CREATE TABLE [\xC3\x89tat] (\xC3\xA9l\xC3\xA8ve int) INSERT \xC3\xA9tat (\xC3\x89L\xC3\x88VE) VALUES "
         "(3) SELECT * FROM \xC3\x89TAT",
         "#1 + 3"},
        {"a column twice", "CREATE TABLE w (a int, A int)",
         "!2705 42S21 Column names in each table must be unique. Column name 'A' in table 'w' is specified more than "
         "once."},
        {"a type that is none", "CREATE TABLE w (a money2)", "!2715 42000 Cannot find data type money2."},
        {"a length that is none", "CREATE TABLE w (a int(4))",
         "!2716 42000 Cannot specify a column width on data type int."},
        {"a length too long", "CREATE TABLE w (a varchar(9000))",
         "!131 42000 The size (9000) given to the type 'varchar' exceeds the maximum allowed (8000)."},
        {"two primary keys", "CREATE TABLE w (a int PRIMARY KEY, b int PRIMARY KEY)",
         "!8110 42000 Cannot add multiple PRIMARY KEY constraints to table 'w'."},
        {"a key on a column that is none", "CREATE TABLE w (a int, PRIMARY KEY (b))",
         "!1911 42000 Column name 'b' does not exist in the target table or view."},
        {"foreign keys are not known", "CREATE TABLE w (a int REFERENCES t (b))",
         "!102 42000 Line 1: Incorrect syntax near 'REFERENCES'."},
        {"identity is not known", "CREATE TABLE w (a int IDENTITY(1,1))",
         "!102 42000 Line 1: Incorrect syntax near 'IDENTITY'."},
    });
}

TEST_F(Tables, DescribeGivesTheDeclaredTypes)
{
    Play("CREATE TABLE all_types (a bit, b tinyint, c smallint, d int NOT NULL, e bigint, f decimal(9,3), g "
         "numeric(5), h float, i "
         "real, j char(4), k varchar(40), l nchar(6), m nvarchar(60), n varchar(max), o nvarchar(max), p text, q "
         "ntext, r datetime, "
         "s smalldatetime, t varchar, PRIMARY KEY CLUSTERED (d, k))");
    struct Expected
    {
        const char *name;
        Type type;
        int size;
        int scale;
    };
    constexpr Expected expected[] = {
        {"a", Type::Bit, 0, 0},       {"b", Type::TinyInt, 0, 0},  {"c", Type::SmallInt, 0, 0},
        {"d", Type::Int, 0, 0},       {"e", Type::BigInt, 0, 0},   {"f", Type::Decimal, 9, 3},
        {"g", Type::Decimal, 5, 0},   {"h", Type::Float, 0, 0},    {"i", Type::Float, 0, 0},
        {"j", Type::Char, 4, 0},      {"k", Type::VarChar, 40, 0}, {"l", Type::NChar, 6, 0},
        {"m", Type::NVarChar, 60, 0}, {"n", Type::VarChar, 0, 0},  {"o", Type::NVarChar, 0, 0},
        {"p", Type::VarChar, 0, 0},   {"q", Type::NVarChar, 0, 0}, {"r", Type::DateTime, 0, 0},
        {"s", Type::DateTime, 0, 0},  {"t", Type::VarChar, 1, 0},
    };
    const auto columns = m_session->DescribeTable("ALL_TYPES");
    ASSERT_EQ(std::size(expected), columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        const std::string name = expected[i].name;
        EXPECT_EQ(name, columns[i].name);
        EXPECT_EQ(expected[i].type, columns[i].type) << name;
        EXPECT_EQ(expected[i].size, columns[i].size) << name;
        EXPECT_EQ(expected[i].scale, columns[i].scale) << name;
        EXPECT_EQ(name == "d" || name == "k", columns[i].inPrimaryKey) << name;
        EXPECT_EQ(name != "d" && name != "k", columns[i].nullable) << name;
    }
    // The same in the columns of a result.
    m_session->Execute("SELECT * FROM all_types");
    const auto &result = m_session->NextResult()->Columns();
    ASSERT_EQ(columns.size(), result.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        EXPECT_EQ(columns[i].type, result[i].type) << columns[i].name;
        EXPECT_EQ(columns[i].size, result[i].size) << columns[i].name;
    }
}

TEST_F(Tables, ListsTablesButNotTheProgramsOwn)
{
    Play("CREATE TABLE b (a int) CREATE TABLE A (a int)");
    m_session->Internal("CREATE TABLE kvembedded_users (name)");
    EXPECT_EQ((std::vector<std::string>{"A", "b"}), m_session->Tables());
    EXPECT_TRUE(m_session->DescribeTable("nothing").empty());
    EXPECT_EQ("!208 42S02 Invalid object name 'kvembedded_users'.", Play("SELECT * FROM kvembedded_users"));
}

TEST_F(Tables, InternalGivesTheFirstColumn)
{
    EXPECT_EQ((std::vector<std::string>{"1", "", "x"}),
              m_session->Internal("SELECT 1, 2 UNION ALL SELECT NULL, 2 UNION ALL SELECT 'x', 3"));
    EXPECT_THROW(m_session->Internal("no statement"), tsql::SqlError);
}

} // namespace
