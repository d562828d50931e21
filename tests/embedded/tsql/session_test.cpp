// What a session tells beyond values: the columns of results, the texts of errors, files, what other sessions change.
#include "play.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace
{

using tsql::Session;
using tsqltest::Case;

class SessionTest : public tsqltest::PlayTest
{
protected:
    // name:type:size of each column
    std::string Columns(std::string_view query)
    {
        m_session->Execute(query);
        std::string out;
        for (const tsql::Column &column : m_session->NextResult()->columns)
            out += (out.empty() ? "" : " ") + column.name + ":" + std::to_string(static_cast<int>(column.type)) + ":" +
                   std::to_string(column.size);
        return out;
    }
};

TEST_F(SessionTest, ColumnsHaveTheTypesOfWhatTheyHold)
{
    Play(
        "CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(30) NULL, flag char(1) NULL, at datetime NULL, "
        "long varchar(max) NULL, wide nvarchar(9) NULL, big bigint NULL) INSERT t (id) VALUES (1)");
    constexpr struct
    {
        const char *query, *columns;
    } cases[] = {
        {"SELECT * FROM t", "id:2:0 name:7:30 flag:6:1 at:10:0 long:7:0 wide:9:9 big:4:0"},
        {"SELECT 1, u.id, 'x', n FROM (SELECT id, name AS n FROM t) u", ":3:0 id:2:0 :7:0 n:7:30"},
        {"SELECT ID, n = (SELECT name FROM t u WHERE u.id = t.id) FROM t", "ID:2:0 n:7:30"},
        {"SELECT MAX(id), COUNT(*), ISNULL(MAX(id), 0) + 1, MIN(name) FROM t", ":2:0 :3:0 :3:0 :7:30"},
        {"SELECT '[' + name + ']', UPPER(wide), STR(id), CAST(id AS varchar(12)), CONVERT(int, name) FROM t",
         ":7:0 :9:0 :7:0 :7:12 :3:0"},
        {"SELECT CONVERT(float, '1.25'), CONVERT(bigint, '3000000000'), N'x', NULL, GETDATE()",
         ":5:0 :4:0 :9:0 :3:0 :10:0"},
        {"SELECT id, name FROM t UNION ALL SELECT 1, wide FROM t", "id:3:0 name:9:0"},
        {"SELECT CASE WHEN id = 1 THEN name ELSE 'none' END AS c, ISNULL(flag, name) FROM t", "c:7:0 :6:1"},
        {"SELECT DATA_TYPE, CHARACTER_MAXIMUM_LENGTH FROM INFORMATION_SCHEMA.COLUMNS",
         "DATA_TYPE:9:128 CHARACTER_MAXIMUM_LENGTH:3:0"},
    };
    for (const auto &[query, columns] : cases)
        EXPECT_EQ(Columns(query), columns) << query;
}

// What queries/*.sql give by number, and what they cannot show.
TEST_F(SessionTest, ErrorsByText)
{
    Play("CREATE TABLE t (id smallint NOT NULL PRIMARY KEY, name varchar(5) NULL) INSERT t VALUES (1, 'one')");
    constexpr Case cases[] = {
        {"a later error", "SELECT 1 INSERT t VALUES (NULL, 'x') SELECT 2",
         "1 + !515 23000 Cannot insert the value NULL into column 'id', table 'dbo.t'; column does not allow nulls. "
         "INSERT fails. + 2"},
        {"an update to NULL", "UPDATE t SET id = NULL",
         "!515 23000 Cannot insert the value NULL into column 'id', table 'dbo.t'; column does not allow nulls. UPDATE "
         "fails."},
        {"a key", "INSERT t VALUES (1, 'x')",
         "!2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'."},
        {"a length", "INSERT t VALUES (2, 'longer')", "!8152 22001 String or binary data would be truncated."},
        {"a range", "INSERT t VALUES (32768, 'x')",
         "!220 22003 Arithmetic overflow error for data type smallint, value = 32768."},
        {"a sum", "SELECT 2147483647 + 1",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"no number", "SELECT CONVERT(int, 'abc')",
         "!245 22018 Conversion failed when converting the varchar value 'abc' to data type int."},
        {"no column", "SELECT nothing FROM t", "!207 42S22 Invalid column name 'nothing'."},
        {"no table", "SELECT 1 FROM missing", "!208 42S02 Invalid object name 'missing'."},
        {"syntax", "SELECT 1\r\nSELECT", "!102 42000 Incorrect syntax near 'SELECT'."},
        {"not supported", "SELECT 1\nSELECT id FROM t FOR XML AUTO",
         "!40510 42000 Line 2: 'FOR' is not supported here."},
        {"several rows", "SELECT (SELECT a FROM (SELECT 1 AS a UNION ALL SELECT NULL) t)",
         "!512 21000 Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= "
         ", >, >= or when the subquery is used as an expression."},
        {"a condition that fails", "IF CONVERT(int, 'x') = 1 SELECT 1 ELSE SELECT 2 SELECT 3",
         "!245 22018 Conversion failed when converting the varchar value 'x' to data type int. + 3"},
        {"branches", "IF 1 = 2 IF 1 = 1 SELECT 1 ELSE SELECT 2; ELSE IF 1 = 2 SELECT 3 ELSE SELECT 4 SELECT 5",
         "4 + 5"},
        {"a branch that fails", "IF 1 = 1 SELECT a FROM missing ELSE SELECT 2 SELECT 3",
         "!208 42S02 Invalid object name 'missing'. + 3"},
        {"variables", "DECLARE @n int, @S varchar(3) SELECT @n = id, @s = 'abcdef' FROM t SELECT @N + 1, @s",
         "# + 2|abc"},
        {"a table made by the batch",
         "CREATE TABLE u (a varchar(2)) INSERT u VALUES ('abc') SELECT * FROM u DROP TABLE u",
         "!8152 22001 String or binary data would be truncated. + none"},
        {"letters without N", "SELECT '\u20AC \u041F \U0001F600', N'\u041F'", "\u20AC ? ??|\u041F"},
        {"the schema",
         "SELECT COLUMN_NAME, DATA_TYPE, CHARACTER_MAXIMUM_LENGTH FROM "
         "INFORMATION_SCHEMA.COLUMNS WHERE TABLE_NAME = 'T' ORDER BY COLUMN_NAME",
         "id|smallint|NULL;name|varchar|5"},
    };
    PlayAll(cases);
}

TEST_F(SessionTest, FilesAndOtherSessions)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("tsql" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "database").string();
    const auto open = [&](bool create) { return Session::Open(file, create, 50); };
    const auto refused = [&](bool create)
    {
        try
        {
            open(create);
            return 0;
        }
        catch (const tsql::SqlError &error)
        {
            return error.number;
        }
    };
    EXPECT_EQ(refused(false), 4060);
    const auto one = open(true);
    const auto other = open(false);
    EXPECT_EQ(tsqltest::Play(*one, "CREATE TABLE t (a int) INSERT t VALUES (1)"), "#1");
    EXPECT_EQ(tsqltest::Play(*other, "SELECT * FROM t"), "1");
    EXPECT_EQ(tsqltest::Play(*one, "DROP TABLE t CREATE TABLE t (b varchar(2)) INSERT t VALUES ('x')"), "#1");
    EXPECT_EQ(tsqltest::Play(*other, "SELECT * FROM t"), "x") << "the other's table, whatever was prepared";
    EXPECT_EQ(tsqltest::Play(*one, "BEGIN TRAN UPDATE t SET b = 'y'"), "#1");
    EXPECT_EQ(tsqltest::Play(*other, "SELECT b FROM t UPDATE t SET b = 'z' SELECT 1"),
              "x + !1222 42000 Lock request time out period exceeded. + 1");
    EXPECT_EQ(tsqltest::Play(*one, "COMMIT"), "");
    EXPECT_EQ(tsqltest::Play(*other, "UPDATE t SET b = 'z'"), "#1");
    other->Execute("SELECT 1 DELETE t SELECT 2");
    other->NextResult();
    other->Cancel();
    EXPECT_EQ(other->NextResult(), nullptr);
    EXPECT_EQ(tsqltest::Play(*one, "SELECT b FROM t"), "z") << "what was cancelled has not run";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::ofstream(file) << std::string(5000, 'x');
    EXPECT_EQ(refused(true), 4060) << "no database";
    std::filesystem::remove_all(folder);
}

} // namespace
