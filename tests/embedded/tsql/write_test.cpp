// INSERT, UPDATE, DELETE: conversions into columns, keys, and that a failing statement leaves nothing half done.
#include "play.h"

namespace
{

class Write : public tsqltest::PlayTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(
            "", Play("CREATE TABLE t (id int NOT NULL PRIMARY KEY, name varchar(5) NULL, n smallint NULL)\n"
                     "CREATE TABLE wide (b bit, ti tinyint, si smallint, i int, bi bigint, d decimal(5,2), f float, r "
                     "real, c char(3), vc varchar(3), nc nchar(3), nvc nvarchar(3), vm varchar(max), tx text, dt "
                     "datetime, sd smalldatetime)"));
    }
};

TEST_F(Write, Insert)
{
    PlayAll({
        {"with columns", "INSERT INTO t (id, name) VALUES (1, 'a')", "#1"},
        {"without", "INSERT t VALUES (2, 'b', 2)", "#1"},
        {"several rows", "INSERT t (id) VALUES (3), (4), (5)", "#3"},
        {"from a query", "INSERT t (id, name) SELECT id + 10, name FROM t WHERE id < 3", "#2"},
        {"from itself and more", "INSERT t SELECT id + 100, name, n FROM t", "#7"},
        {"expressions", "INSERT t VALUES (50 + 1, 'x' + 'y', LEN('abc'))", "#1"},
        {"a subquery as a value", "INSERT t (id) VALUES ((SELECT MAX(id) FROM t) + 1)", "#1"},
        {"what is there", "SELECT * FROM t WHERE id IN (1, 2, 3, 11, 51, 113)",
         "1|a|NULL;2|b|2;3|NULL|NULL;11|a|NULL;51|xy|3;113|NULL|NULL"},
        {"too few values", "INSERT t (id, name) VALUES (9)",
         "!109 21S01 There are more columns in the INSERT statement than values specified in the VALUES clause. The "
         "number of "
         "values in the VALUES clause must match the number of columns specified in the INSERT statement."},
        {"too many values", "INSERT t (id) VALUES (9, 9)",
         "!110 21S01 There are fewer columns in the INSERT statement than values specified in the VALUES clause. The "
         "number of "
         "values in the VALUES clause must match the number of columns specified in the INSERT statement."},
        {"not the table's width", "INSERT t VALUES (9)",
         "!213 21S01 Column name or number of supplied values does not match table definition."},
        {"query too narrow", "INSERT t (id, name) SELECT 9",
         "!120 21S01 The select list for the INSERT statement contains fewer items than the insert list. The number of "
         "SELECT "
         "values must match the number of INSERT columns."},
        {"query too wide", "INSERT t (id) SELECT 9, 9",
         "!121 21S01 The select list for the INSERT statement contains more items than the insert list. The number of "
         "SELECT "
         "values must match the number of INSERT columns."},
        {"no such table", "INSERT nothing VALUES (1)", "!208 42S02 Invalid object name 'nothing'."},
        {"no such column", "INSERT t (nothing) VALUES (1)", "!207 42S22 Invalid column name 'nothing'."},
        {"a column twice", "INSERT t (id, ID) VALUES (1, 1)",
         "!264 42000 The column name 'ID' is specified more than once in the SET clause or column list of an INSERT."},
    });
}

TEST_F(Write, ConversionsIntoColumns)
{
    EXPECT_EQ("#1 + 1|255|-32768|7|9223372036854775807|1.26|0.25|0.5|a  |abc|b  |x|long|text|Jan  2 2006  3:04PM|Jan  "
              "2 2006  3:05PM",
              Play("INSERT wide VALUES (5, '255', -32768, ' 7 ', 9223372036854775807, 1.255, 0.25, 0.5, 'a', 'abc  ', "
                   "N'b', 'x', "
                   "'long', 'text', '20060102 15:04:40', '20060102 15:04:40')\nSELECT * FROM wide"));
    EXPECT_EQ("#1 + 12", Play("DELETE wide\nINSERT wide (vc) VALUES (12)\nSELECT vc FROM wide").substr(5));
    PlayAll({
        {"tinyint", "INSERT wide (ti) VALUES (256)",
         "!220 22003 Arithmetic overflow error for data type tinyint, value = 256."},
        {"smallint", "INSERT wide (si) VALUES (-32769)",
         "!220 22003 Arithmetic overflow error for data type smallint, value = -32769."},
        {"int from a decimal constant", "INSERT wide (i) VALUES (2147483648)",
         "!8115 22003 Arithmetic overflow error converting numeric to data type int."},
        {"int from a text", "INSERT wide (i) VALUES ('x')",
         "!245 22018 Conversion failed when converting the varchar value 'x' to data type int."},
        {"decimal", "INSERT wide (d) VALUES (1000)",
         "!8115 22003 Arithmetic overflow error converting int to data type numeric."},
        {"varchar", "INSERT wide (vc) VALUES ('abcd')", "!8152 22001 String or binary data would be truncated."},
        {"char", "INSERT wide (c) VALUES ('abcd')", "!8152 22001 String or binary data would be truncated."},
        {"nvarchar", "INSERT wide (nvc) VALUES (N'\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9')",
         "!8152 22001 String or binary data would be truncated."},
        {"three characters of two bytes fit", "INSERT wide (nvc) VALUES (N'\xC3\xA9\xC3\xA9\xC3\xA9')", "#1"},
        {"datetime", "INSERT wide (dt) VALUES ('never')",
         "!241 22007 Conversion failed when converting date and/or time from character string."},
        {"real", "INSERT wide (r) VALUES (1e39)",
         "!8115 22003 Arithmetic overflow error converting expression to data type real."},
        {"datetime into a number", "INSERT wide (i) VALUES (GETDATE())",
         "!257 42000 Implicit conversion from data type datetime to int is not allowed. Use the CONVERT function to "
         "run this "
         "query."},
        {"from a query", "INSERT wide (si) SELECT 40000",
         "!220 22003 Arithmetic overflow error for data type smallint, value = 40000."},
        {"equal rows of a query are taken together before they are converted",
         "INSERT wide (i) SELECT DISTINCT x FROM (SELECT "
         "1.2 AS x UNION SELECT 1.4) t",
         "#2"},
    });
}

TEST_F(Write, Update)
{
    Play("INSERT t VALUES (1, 'a', 1), (2, 'b', 2), (3, 'c', 3)");
    PlayAll({
        {"one row", "UPDATE t SET name = 'x' WHERE id = 1", "#1"},
        {"several columns see the old values", "UPDATE t SET id = n + 10, n = id WHERE id = 2", "#1"},
        {"no row", "UPDATE t SET name = 'y' WHERE id = 99", "#0"},
        {"all rows", "UPDATE t SET n = n * 2", "#3"},
        {"what is there", "SELECT * FROM t ORDER BY id", "1|x|2;3|c|6;12|b|4"},
        {"NULL", "UPDATE t SET name = NULL WHERE id = 12", "#1"},
        {"a text into a number", "UPDATE t SET n = '7' WHERE id = 12", "#1"},
        {"a subquery", "UPDATE t SET n = (SELECT MAX(n) FROM t) + 1", "#3"},
        {"a subquery over the table itself sees it as it was",
         "UPDATE t SET n = (SELECT COUNT(*) FROM t o WHERE o.n >= t.n AND o.id <= t.id)", "#3"},
        {"what is there now", "SELECT id, n FROM t ORDER BY id", "1|1;3|2;12|3"},
        {"a qualified column", "UPDATE t SET t.n = t.n + 1 WHERE t.id = 1", "#1"},
        {"a column twice", "UPDATE t SET n = 1, N = 2",
         "!264 42000 The column name 'N' is specified more than once in the SET clause or column list of an INSERT."},
        {"no such column", "UPDATE t SET nothing = 1", "!207 42S22 Invalid column name 'nothing'."},
        {"no such table", "UPDATE nothing SET a = 1", "!208 42S02 Invalid object name 'nothing'."},
        {"too long", "UPDATE t SET name = 'abcdef' WHERE id = 1",
         "!8152 22001 String or binary data would be truncated."},
    });
}

TEST_F(Write, UpdateFromAndDeleteFrom)
{
    Play("CREATE TABLE s (id int, v varchar(5)) INSERT t VALUES (1, 'a', 1), (2, 'b', 2), (3, 'c', 3) INSERT s VALUES "
         "(1, 'one'), "
         "(3, 'three')");
    PlayAll({
        {"by alias", "UPDATE x SET name = s.v FROM t x JOIN s ON s.id = x.id", "#2"},
        {"what is there", "SELECT name FROM t ORDER BY id", "one;b;three"},
        {"the target not among the sources", "UPDATE t SET n = 9 FROM s WHERE s.id = t.id AND s.v = 'one'", "#1"},
        {"what is there now", "SELECT n FROM t ORDER BY id", "9;2;3"},
        {"delete by alias", "DELETE x FROM t x JOIN s ON s.id = x.id WHERE s.v = 'one'", "#1"},
        {"delete with FROM twice", "DELETE FROM t FROM s WHERE s.id = t.id", "#1"},
        {"the rest", "SELECT id FROM t", "2"},
    });
}

TEST_F(Write, Delete)
{
    Play("INSERT t VALUES (1, 'a', 1), (2, 'b', 2), (3, 'c', 3)");
    PlayAll({
        {"where", "DELETE FROM t WHERE name = 'A'", "#1"},
        {"without FROM", "DELETE t WHERE id = 2", "#1"},
        {"no row", "DELETE t WHERE id = 2", "#0"},
        {"with a subquery over itself", "DELETE t WHERE id = (SELECT MAX(id) FROM t)", "#1"},
        {"nothing left", "SELECT COUNT(*) FROM t", "0"},
        {"no such table", "DELETE nothing", "!208 42S02 Invalid object name 'nothing'."},
    });
}

TEST_F(Write, KeysAndNulls)
{
    Play("CREATE TABLE k (a int NOT NULL, b varchar(5) NOT NULL, c int UNIQUE, d int, CONSTRAINT both PRIMARY KEY (a, "
         "b)) CREATE "
         "UNIQUE INDEX k_d ON k (d)");
    PlayAll({
        {"first", "INSERT k VALUES (1, 'x', 1, 1)", "#1"},
        {"another", "INSERT k VALUES (1, 'y', 2, 2)", "#1"},
        {"the key again, in another case and with a blank", "INSERT k VALUES (1, 'X ', 3, 3)",
         "!2627 23000 Violation of PRIMARY KEY constraint 'both'. Cannot insert duplicate key in object 'dbo.k'."},
        {"a unique column again", "INSERT k VALUES (2, 'x', 1, 3)",
         "!2627 23000 Violation of UNIQUE KEY constraint 'UQ_k_c'. Cannot insert duplicate key in object 'dbo.k'."},
        {"a unique index again", "INSERT k VALUES (2, 'x', 3, 1)",
         "!2601 23000 Cannot insert duplicate key row in object 'dbo.k' with unique index 'k_d'."},
        {"by UPDATE", "UPDATE k SET b = 'x'",
         "!2627 23000 Violation of PRIMARY KEY constraint 'both'. Cannot insert duplicate key in object 'dbo.k'."},
        {"NULL", "INSERT k VALUES (NULL, 'z', 5, 5)",
         "!515 23000 Cannot insert the value NULL into column 'a', table 'dbo.k'; column does not allow nulls. INSERT "
         "fails."},
        {"NULL by leaving it out", "INSERT k (a) VALUES (5)",
         "!515 23000 Cannot insert the value NULL into column 'b', table 'dbo.k'; column does not allow nulls. INSERT "
         "fails."},
        {"NULL by UPDATE", "UPDATE k SET a = NULL",
         "!515 23000 Cannot insert the value NULL into column 'a', table 'dbo.k'; column does not allow nulls. UPDATE "
         "fails."},
        {"a key without a name gets one", "INSERT t VALUES (1, 'a', 1) INSERT t VALUES (1, 'b', 1)",
         "#1 + !2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'."},
    });
}

TEST_F(Write, AFailingStatementLeavesNothing)
{
    PlayAll({
        {"rows before the wrong one", "INSERT t (id, n) SELECT 1, 1 UNION ALL SELECT 2, 40000",
         "!220 22003 Arithmetic overflow error for data type smallint, value = 40000."},
        {"values", "INSERT t (id) VALUES (1), (2), (1)",
         "!2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'."},
        {"nothing there", "SELECT COUNT(*) FROM t", "0"},
        {"fill", "INSERT t (id, n) VALUES (1, 1), (2, 2), (3, 3)", "#3"},
        {"a division that fails at the last row", "UPDATE t SET n = 6 / (n - 3)",
         "!8134 22012 Divide by zero error encountered."},
        {"as before", "SELECT n FROM t ORDER BY id", "1;2;3"},
        {"the same inside a transaction",
         "BEGIN TRAN UPDATE t SET n = 10 WHERE id = 1 UPDATE t SET n = 6 / (n - 3) COMMIT",
         "#1 + !8134 22012 Divide by zero error encountered."},
        {"only the failing one is taken back", "SELECT n FROM t ORDER BY id", "10;2;3"},
    });
}

TEST_F(Write, Defaults)
{
    Play("CREATE TABLE d (id int NOT NULL, a int DEFAULT 5, b varchar(10) DEFAULT 'x' + 'y', c datetime DEFAULT "
         "GETDATE(), e "
         "smallint NOT NULL DEFAULT (-1))");
    PlayAll({
        {"left out", "INSERT d (id) VALUES (1)", "#1"},
        {"asked for", "INSERT d (id, a, b) VALUES (2, DEFAULT, DEFAULT)", "#1"},
        {"given", "INSERT d (id, a, e) VALUES (3, NULL, 3)", "#1"},
        {"what is there", "SELECT id, a, b, e FROM d ORDER BY id", "1|5|xy|-1;2|5|xy|-1;3|NULL|xy|3"},
        {"a moment", "SELECT COUNT(*) FROM d WHERE c > '20200101'", "3"},
        {"by UPDATE", "UPDATE d SET a = DEFAULT WHERE id = 3 SELECT a FROM d WHERE id = 3", "#1 + 5"},
    });
}

TEST_F(Write, ManyRowsAtOnce)
{
    std::string batch = "INSERT t (id, name, n) VALUES (0, 'a', 0)";
    for (int i = 1; i < 1000; ++i)
        batch += ",(" + std::to_string(i) + ",'a'," + std::to_string(i) + ")";
    EXPECT_EQ("#1000", Play(batch));
    EXPECT_EQ("!10738 42000 The number of row value expressions in the INSERT statement exceeds the maximum allowed "
              "number of 1000 "
              "row values.",
              Play(batch + ",(1000,'a',1)"));
    EXPECT_EQ("1000|499500", Play("SELECT COUNT(*), SUM(n) FROM t"));
}

} // namespace
