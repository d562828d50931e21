// Queries over tables: sources, joins, grouping, order, UNION, subqueries.
#include "play.h"

namespace
{

class Query : public tsqltest::PlayTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ("#4 + #5",
                  Play("CREATE TABLE dept (id int NOT NULL PRIMARY KEY, name varchar(20), boss int)\n"
                       "CREATE TABLE person (id int NOT NULL, name varchar(20) NULL, dept int NULL, pay int NULL)\n"
                       "INSERT dept VALUES (1, 'Sales', 2), (2, 'Lab', NULL), (3, 'Empty', 9), (4, 'lab ', 1)\n"
                       "INSERT person VALUES (1, 'Ann', 1, 10), (2, 'bob', 1, 20), (3, 'Carl', 2, 30), "
                       "(4, 'ANN', NULL, NULL), (5, 'Eve', 2, 30)"));
    }
};

TEST_F(Query, ColumnsAndNames)
{
    PlayAll({
        {"all columns", "SELECT * FROM dept WHERE id = 1", "1|Sales|2"},
        {"all of one source", "SELECT d.*, p.name FROM dept d, person p WHERE d.boss = p.id AND d.id = 1",
         "1|Sales|2|bob"},
        {"names without case", "SELECT NAME FROM DEPT WHERE ID = 2", "Lab"},
        {"bracketed and quoted names", "SELECT [name], \"id\" FROM [dept] WHERE [dept].[id] = 2", "Lab|2"},
        {"database and owner before the name", "SELECT name FROM db.dbo.dept WHERE dbo.dept.id = 2", "Lab"},
        {"two dots", "SELECT name FROM db..dept WHERE id = 2", "Lab"},
        {"alias with AS", "SELECT name AS n FROM dept AS d WHERE d.id = 1", "Sales"},
        {"a value without a source", "SELECT 1, 'a'", "1|a"},
        {"no such table", "SELECT * FROM nothing", "!208 42S02 Invalid object name 'nothing'."},
        {"no such column", "SELECT nothing FROM dept", "!207 42S22 Invalid column name 'nothing'."},
        {"no such column of a source", "SELECT d.nothing FROM dept d", "!207 42S22 Invalid column name 'nothing'."},
        {"no such source", "SELECT x.name FROM dept",
         "!4104 42000 The multi-part identifier \"x.name\" could not be bound."},
        {"the name hidden by an alias", "SELECT dept.name FROM dept d",
         "!4104 42000 The multi-part identifier \"dept.name\" could not be bound."},
        {"two of that name", "SELECT name FROM dept, person", "!209 42000 Ambiguous column name 'name'."},
        {"the same source twice", "SELECT 1 FROM dept, dept",
         "!1013 42000 The objects \"dept\" and \"dept\" in the FROM clause have the same exposed names. Use "
         "correlation names to "
         "distinguish them."},
        {"star without a source", "SELECT *", "!102 42000 Line 1: Incorrect syntax near '*'."},
        {"SQLite's own tables are not seen", "SELECT * FROM sqlite_schema",
         "!208 42S02 Invalid object name 'sqlite_schema'."},
    });
}

TEST_F(Query, ColumnNamesOfTheResult)
{
    m_session->Execute(
        "SELECT id, NAME, d.boss AS [the boss], n = name, id + 1, 'x' 'quoted', [sum] = 1 + 1 FROM dept d");
    std::vector<std::string> names;
    for (const tsql::Column &column : m_session->NextResult()->Columns())
        names.push_back(column.name);
    EXPECT_EQ((std::vector<std::string>{"id", "NAME", "the boss", "n", "", "quoted", "sum"}), names);
}

TEST_F(Query, Joins)
{
    PlayAll({
        {"comma", "SELECT p.name FROM dept d, person p WHERE d.id = p.dept AND d.name = 'SALES' ORDER BY p.id",
         "Ann;bob"},
        {"inner", "SELECT d.name, p.name FROM dept d JOIN person p ON d.boss = p.id ORDER BY d.id",
         "Sales|bob;lab |Ann"},
        {"left", "SELECT d.id, p.name FROM dept d LEFT JOIN person p ON d.boss = p.id ORDER BY d.id",
         "1|bob;2|NULL;3|NULL;4|Ann"},
        {"left outer", "SELECT COUNT(*) FROM dept d LEFT OUTER JOIN person p ON p.dept = d.id", "6"},
        {"right", "SELECT d.id, p.id FROM dept d RIGHT JOIN person p ON p.dept = d.id ORDER BY p.id",
         "1|1;1|2;2|3;NULL|4;2|5"},
        {"full", "SELECT d.id, p.id FROM dept d FULL JOIN person p ON p.dept = d.id AND d.id = 1 ORDER BY d.id, p.id",
         "NULL|3;NULL|4;NULL|5;1|1;1|2;2|NULL;3|NULL;4|NULL"},
        {"cross", "SELECT COUNT(*) FROM dept CROSS JOIN person", "20"},
        {"with itself", "SELECT a.id, b.id FROM person a JOIN person b ON a.name = b.name AND a.id < b.id", "1|4"},
        {"three",
         "SELECT p.name, b.name FROM person p JOIN dept d ON p.dept = d.id JOIN person b ON d.boss = b.id ORDER BY 1",
         "Ann|bob;bob|bob"},
        {"in parentheses",
         "SELECT d.id, b.id FROM dept d LEFT JOIN (person p JOIN person b ON p.pay = b.pay AND p.id < b.id) ON p.dept "
         "= d.id "
         "ORDER BY d.id",
         "1|NULL;2|5;3|NULL;4|NULL"},
        {"comma and join", "SELECT COUNT(*) FROM dept a, dept d JOIN person p ON p.dept = d.id", "16"},
        {"on another type", "SELECT p.id FROM person p JOIN dept d ON d.id = CAST(p.dept AS varchar(5)) ORDER BY 1",
         "1;2;3;5"},
        {"no condition", "SELECT 1 FROM dept d JOIN person p", "!102 42000 Line 1: Incorrect syntax near 'p'."},
    });
}

TEST_F(Query, WhereWithTexts)
{
    PlayAll({
        {"without case", "SELECT id FROM person WHERE name = 'ann' ORDER BY id", "1;4"},
        {"trailing blanks", "SELECT id FROM dept WHERE name = 'LAB   ' ORDER BY id", "2;4"},
        {"the value keeps them", "SELECT '|' + name + '|' FROM dept WHERE id = 4", "|lab |"},
        {"in", "SELECT id FROM dept WHERE name IN ('sales', 'EMPTY') ORDER BY id", "1;3"},
        {"a number for a text column", "SELECT id FROM person WHERE name = 5",
         "!245 22018 Conversion failed when converting the varchar value 'Ann' to data type int."},
        {"a text for a number column", "SELECT id FROM person WHERE pay > '20' ORDER BY id", "3;5"},
        {"a text that is no number", "SELECT id FROM person WHERE pay = 'x'",
         "!245 22018 Conversion failed when converting the varchar value 'x' to data type int."},
        {"like", "SELECT id FROM person WHERE name LIKE '[a-b]%' ORDER BY id", "1;2;4"},
    });
}

TEST_F(Query, Aggregates)
{
    PlayAll({
        {"over all", "SELECT COUNT(*), COUNT(pay), SUM(pay), AVG(pay), MIN(pay), MAX(pay) FROM person",
         "5|4|90|22|10|30"},
        {"over nothing", "SELECT COUNT(*), SUM(pay), MAX(name) FROM person WHERE id > 99", "0|NULL|NULL"},
        {"distinct", "SELECT COUNT(DISTINCT pay), SUM(DISTINCT pay), COUNT(DISTINCT name) FROM person", "3|60|4"},
        {"texts", "SELECT MIN(name), MAX(name) FROM person WHERE id <> 4", "Ann|Eve"},
        {"average of decimals", "SELECT AVG(pay * 1.0) FROM person", "22.500000"},
        {"sum out of range", "SELECT SUM(pay * 100000000) FROM person",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"of an expression", "SELECT SUM(CASE WHEN pay > 15 THEN 1 ELSE 0 END) FROM person", "3"},
        {"ISNULL of an empty MAX", "SELECT ISNULL(MAX(id), 0) + 1 FROM person WHERE id > 99", "1"},
        {"sum of a text", "SELECT SUM(name) FROM person",
         "!8117 42000 Operand data type varchar is invalid for sum operator."},
        {"in WHERE", "SELECT id FROM person WHERE COUNT(*) > 1",
         "!147 42000 An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a HAVING "
         "clause or "
         "a select list, and the column being aggregated is an outer reference."},
        {"inside each other", "SELECT SUM(COUNT(*)) FROM person",
         "!130 42000 Cannot perform an aggregate function on an expression containing an aggregate or a subquery."},
        {"beside a column", "SELECT name, COUNT(*) FROM person",
         "!8120 42000 Column 'name' is invalid in the select list because it is not contained in either an aggregate "
         "function or "
         "the GROUP BY clause."},
    });
}

TEST_F(Query, Grouping)
{
    PlayAll({
        {"by a column", "SELECT dept, COUNT(*) FROM person GROUP BY dept ORDER BY dept", "NULL|1;1|2;2|2"},
        {"by a text without case", "SELECT COUNT(*) FROM person GROUP BY name ORDER BY COUNT(*) DESC, MIN(id)",
         "2;1;1;1"},
        {"by an expression", "SELECT pay / 20, COUNT(*) FROM person WHERE pay IS NOT NULL GROUP BY pay / 20 ORDER BY 1",
         "0|1;1|3"},
        {"of what is grouped by", "SELECT dept + 1 FROM person WHERE dept = 1 GROUP BY dept", "2"},
        {"having", "SELECT dept FROM person GROUP BY dept HAVING COUNT(*) > 1 AND SUM(pay) > 40", "2"},
        {"having without grouping", "SELECT COUNT(*) FROM person HAVING COUNT(*) > 9", "none"},
        {"a qualified name is the same column", "SELECT person.dept FROM person WHERE dept = 2 GROUP BY DEPT", "2"},
        {"a column that is not grouped by", "SELECT name FROM person GROUP BY dept",
         "!8120 42000 Column 'name' is invalid in the select list because it is not contained in either an aggregate "
         "function or "
         "the GROUP BY clause."},
        {"the same in HAVING", "SELECT dept FROM person GROUP BY dept HAVING name = 'x'",
         "!8121 42000 Column 'name' is invalid in the HAVING clause because it is not contained in either an aggregate "
         "function "
         "or the GROUP BY clause."},
        {"the same in ORDER BY", "SELECT dept FROM person GROUP BY dept ORDER BY name",
         "!8127 42000 Column 'name' is invalid in the ORDER BY clause because it is not contained in either an "
         "aggregate "
         "function or the GROUP BY clause."},
        {"the same behind a star", "SELECT * FROM person GROUP BY id",
         "!8120 42000 Column 'name' is invalid in the select list because it is not contained in either an aggregate "
         "function or "
         "the GROUP BY clause."},
        {"by a constant", "SELECT 1 FROM person GROUP BY 1",
         "!164 42000 Each GROUP BY expression must contain at least one column that is not an outer reference."},
        {"distinct and grouped", "SELECT DISTINCT dept, pay FROM person WHERE dept = 2 GROUP BY dept, pay, id", "2|30"},
    });
}

TEST_F(Query, DistinctTopAndOrder)
{
    PlayAll({
        {"distinct without case", "SELECT DISTINCT name FROM dept WHERE id IN (2, 4)", "Lab"},
        {"distinct expressions", "SELECT DISTINCT UPPER(name) FROM person WHERE id IN (1, 4)", "ANN"},
        {"order without case", "SELECT name FROM person WHERE id <> 4 ORDER BY name", "Ann;bob;Carl;Eve"},
        {"descending", "SELECT id FROM person ORDER BY id DESC", "5;4;3;2;1"},
        {"NULL first", "SELECT pay FROM person ORDER BY pay, id", "NULL;10;20;30;30"},
        {"by an alias", "SELECT -id AS minus FROM person ORDER BY minus", "-5;-4;-3;-2;-1"},
        {"by the alias in front", "SELECT minus = -id FROM person ORDER BY minus", "-5;-4;-3;-2;-1"},
        {"by a position", "SELECT name, id FROM person ORDER BY 2 DESC", "Eve|5;ANN|4;Carl|3;bob|2;Ann|1"},
        {"by a column not shown", "SELECT name FROM person ORDER BY pay DESC, id DESC", "Eve;Carl;bob;Ann;ANN"},
        {"by an expression", "SELECT id FROM person WHERE pay IS NOT NULL ORDER BY 0 - pay, id", "3;5;2;1"},
        {"an alias goes before a column", "SELECT pay AS id, id AS pay FROM person WHERE dept = 1 ORDER BY id DESC",
         "20|2;10|1"},
        {"position out of range", "SELECT id FROM person ORDER BY 2",
         "!108 42000 The ORDER BY position number 2 is out of range of the number of items in the select list."},
        {"constant", "SELECT id FROM person ORDER BY 'a'",
         "!408 42000 A constant expression was encountered in the ORDER BY list, position 1."},
        {"distinct and another column", "SELECT DISTINCT name FROM person ORDER BY id",
         "!145 42000 ORDER BY items must appear in the select list if SELECT DISTINCT is specified."},
        {"distinct and its own expression", "SELECT DISTINCT pay + 0 FROM person WHERE pay > 10 ORDER BY pay + 0 DESC",
         "30;20"},
        {"top", "SELECT TOP 2 id FROM person ORDER BY id DESC", "5;4"},
        {"top in parentheses", "SELECT TOP (1 + 1) id FROM person ORDER BY id", "1;2"},
        {"top 0", "SELECT TOP 0 id FROM person", "none"},
        {"top below 0", "SELECT TOP (-1) id FROM person", "!127 42000 A TOP N value may not be negative."},
        {"top percent is not known", "SELECT TOP 10 PERCENT id FROM person",
         "!102 42000 Line 1: Incorrect syntax near 'PERCENT'."},
    });
}

TEST_F(Query, Unions)
{
    PlayAll({
        {"all", "SELECT 1 UNION ALL SELECT 1 UNION ALL SELECT 2", "1;1;2"},
        {"without doubles", "SELECT 1 UNION SELECT 1 UNION SELECT 2", "1;2"},
        {"texts without case", "SELECT COUNT(*) FROM (SELECT 'a' AS x UNION SELECT 'A ') t", "1"},
        {"types meet", "SELECT 1 UNION ALL SELECT 2.5 ORDER BY 1", "1.0;2.5"},
        {"a text beside a number", "SELECT 1 UNION ALL SELECT '7' ORDER BY 1", "1;7"},
        {"a text that is none", "SELECT 1 UNION ALL SELECT 'x'",
         "!245 22018 Conversion failed when converting the varchar value 'x' to data type int."},
        {"order by the first one's name", "SELECT id AS x FROM dept UNION SELECT id FROM person ORDER BY x DESC",
         "5;4;3;2;1"},
        {"order by something else", "SELECT id FROM dept UNION SELECT id FROM person ORDER BY boss",
         "!104 42000 ORDER BY items must appear in the select list if the statement contains a UNION operator."},
        {"top in a branch", "SELECT 0 UNION ALL SELECT TOP 1 id FROM person", "0;1"},
        {"different widths", "SELECT 1 UNION SELECT 1, 2",
         "!205 42000 All queries combined using a UNION operator must have an equal number of expressions in their "
         "target "
         "lists."},
    });
}

TEST_F(Query, Subqueries)
{
    PlayAll({
        {"a value", "SELECT (SELECT name FROM dept WHERE id = 2)", "Lab"},
        {"no row is NULL", "SELECT (SELECT name FROM dept WHERE id = 99)", "NULL"},
        {"two rows are an error", "SELECT (SELECT name FROM dept)",
         "!512 21000 Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= "
         ", >, >= "
         "or when the subquery is used as an expression."},
        {"two columns are an error", "SELECT (SELECT id, name FROM dept WHERE id = 1)",
         "!116 42000 Only one expression can be specified in the select list when the subquery is not introduced with "
         "EXISTS."},
        {"correlated", "SELECT name, b = (SELECT name FROM person WHERE dept.boss = id) FROM dept ORDER BY dept.id",
         "Sales|bob;Lab|NULL;Empty|NULL;lab |Ann"},
        {"correlated aggregate",
         "SELECT id, (SELECT COUNT(*) FROM person p WHERE p.dept = d.id) FROM dept d ORDER BY id", "1|2;2|2;3|0;4|0"},
        {"a constant from a table", "SELECT (SELECT 7 FROM dept WHERE id = 1)", "7"},
        {"of an outer column only", "SELECT (SELECT p.name FROM dept d WHERE d.id = 1) FROM person p WHERE p.id = 3",
         "Carl"},
        {"in", "SELECT id FROM person WHERE dept IN (SELECT id FROM dept WHERE name = 'sales') ORDER BY id", "1;2"},
        {"not in", "SELECT id FROM dept WHERE id NOT IN (SELECT dept FROM person WHERE dept IS NOT NULL) ORDER BY id",
         "3;4"},
        {"not in with a NULL", "SELECT id FROM dept WHERE id NOT IN (SELECT dept FROM person)", "none"},
        {"in with texts", "SELECT id FROM person WHERE name IN (SELECT 'EVE ')", "5"},
        {"in across types", "SELECT id FROM dept WHERE id IN (SELECT '2')", "2"},
        {"a text in numbers", "SELECT 1 WHERE '2' IN (SELECT id FROM dept)", "1"},
        {"exists", "SELECT id FROM dept d WHERE EXISTS (SELECT * FROM person WHERE dept = d.id) ORDER BY id", "1;2"},
        {"not exists", "SELECT id FROM dept d WHERE NOT EXISTS (SELECT * FROM person WHERE dept = d.id) ORDER BY id",
         "3;4"},
        {"a subquery before LIKE", "SELECT 1 WHERE (SELECT name FROM dept WHERE id = 1) LIKE 's%'", "1"},
        {"derived",
         "SELECT t.n, t.c FROM (SELECT dept AS n, COUNT(*) AS c FROM person GROUP BY dept) AS t WHERE t.c > 1 ORDER BY "
         "n",
         "1|2;2|2"},
        {"derived texts compare without case", "SELECT 1 FROM (SELECT 'a' + 'b' AS x) t WHERE x = 'AB'", "1"},
        {"derived with TOP and order", "SELECT SUM(id) FROM (SELECT TOP 2 id FROM person ORDER BY id DESC) t", "9"},
        {"derived and joined",
         "SELECT p.name FROM person p JOIN (SELECT MAX(id) AS top_id FROM person) m ON p.id = m.top_id", "Eve"},
        {"derived without a name for a column", "SELECT 1 FROM (SELECT 1 + 1) t",
         "!8155 42000 No column name was specified for column 1 of 't'."},
        {"derived with a name twice", "SELECT 1 FROM (SELECT 1 AS a, 2 AS A) t",
         "!8156 42000 The column 'A' was specified multiple times for 't'."},
        {"order without TOP inside", "SELECT 1 FROM (SELECT id FROM dept ORDER BY id) t",
         "!1033 42000 The ORDER BY clause is invalid in views, inline functions, derived tables and subqueries, unless "
         "TOP is "
         "also specified."},
        {"correlated derived inside a subquery",
         "SELECT d.id FROM dept d WHERE 1 = (SELECT COUNT(*) FROM (SELECT DISTINCT pay FROM person WHERE dept = d.id) "
         "t)",
         "2"},
        {"an alias of the inner hides the outer",
         "SELECT id FROM dept d WHERE EXISTS (SELECT 1 FROM person d WHERE d.pay = 10 AND "
         "d.id = 1) AND d.id = 3",
         "3"},
    });
}

} // namespace
