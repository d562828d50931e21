// Batches: several statements, branches, variables, messages, transactions, and how errors come out one by one.
#include "play.h"

namespace
{

class Batch : public tsqltest::PlayTest
{
protected:
    void SetUp() override { ASSERT_EQ("", Play("CREATE TABLE t (a int NOT NULL PRIMARY KEY, b varchar(10))")); }
};

TEST_F(Batch, StatementsWithAndWithoutSemicolons)
{
    PlayAll({
        {"empty", "", ""},
        {"only semicolons and comments", " ;; -- nothing\n/* at all */ ;", ""},
        {"one behind the other", "SELECT 1 SELECT 2 SELECT 3", "1 + 2 + 3"},
        {"with semicolons", "SELECT 1; SELECT 2;;SELECT 3;", "1 + 2 + 3"},
        {"rows and counts", "INSERT t VALUES (1, 'x') UPDATE t SET b = 'y' SELECT b FROM t DELETE t",
         "#1 + #1 + y + #1"},
        {"an alias is no keyword", "SELECT 1 AS a SELECT a FROM t INSERT t VALUES (2, 'z')", "1 + none + #1"},
    });
}

TEST_F(Batch, Branches)
{
    PlayAll({
        {"not exists", "IF NOT EXISTS (SELECT * FROM t) INSERT t VALUES (1, 'new') ELSE UPDATE t SET b = 'old'", "#1"},
        {"exists", "IF NOT EXISTS (SELECT * FROM t) INSERT t VALUES (1, 'new') ELSE UPDATE t SET b = 'old'", "#1"},
        {"what is there", "SELECT b FROM t", "old"},
        {"condition", "IF 1 = 2 SELECT 'yes' ELSE SELECT 'no'", "no"},
        {"without else", "IF 1 = 2 SELECT 'yes' SELECT 'after'", "after"},
        {"semicolon before else", "IF 1 = 1 SELECT 'yes'; ELSE SELECT 'no'", "yes"},
        {"block", "IF 1 = 1 BEGIN SELECT 1 SELECT 2; END ELSE BEGIN SELECT 3 END SELECT 4", "1 + 2 + 4"},
        {"else if", "IF 1 = 2 SELECT 1 ELSE IF 1 = 1 SELECT 2 ELSE SELECT 3", "2"},
        {"else belongs to the inner if", "IF 1 = 2 IF 1 = 1 SELECT 1 ELSE SELECT 2", ""},
        {"an unknown condition is not met", "IF NULL = 1 SELECT 1 ELSE SELECT 2", "2"},
        {"an aggregate over a table", "IF (SELECT COUNT(*) FROM t) > 0 SELECT 'some'", "some"},
        {"a condition that fails", "IF 1 / 0 = 1 SELECT 1 ELSE SELECT 2 SELECT 3",
         "!8134 22012 Divide by zero error encountered. + 3"},
        {"an empty block", "BEGIN END", "!102 42000 Line 1: Incorrect syntax near 'END'."},
    });
}

TEST_F(Batch, Variables)
{
    PlayAll({
        {"declare, select, use", "DECLARE @v int SELECT @v = 5 SELECT @v + 1", "# + 6"},
        {"set", "DECLARE @v varchar(3) SET @v = 'abcdef' SELECT @v", "abc"},
        {"NULL before it is set", "DECLARE @v int SELECT @v", "NULL"},
        {"several", "DECLARE @a int, @b varchar(5) SELECT @a = 1, @b = 'x' SELECT @b + STR(@a, 2)", "# + x 1"},
        {"with a value at once", "DECLARE @a int = 3, @b int = 4 SELECT @a * @b", "12"},
        {"names without case", "DECLARE @Abc int SET @aBC = 1 SELECT @ABC", "1"},
        {"the moment", "DECLARE @now datetime SELECT @now = GETDATE() SELECT 1 WHERE @now > '20200101'", "# + 1"},
        {"the last row stays",
         "INSERT t VALUES (1, 'x'), (2, 'y') DECLARE @v int SELECT @v = a FROM t ORDER BY a SELECT @v", "#2 + # + 2"},
        {"no row changes nothing", "DECLARE @v int SET @v = 7 SELECT @v = a FROM t WHERE a = 99 SELECT @v", "# + 7"},
        {"in INSERT, UPDATE, WHERE",
         "DECLARE @v int SET @v = 3 INSERT t VALUES (@v, 'v') UPDATE t SET b = @v WHERE a = @v SELECT b "
         "FROM t WHERE a = @v",
         "#1 + #1 + 3"},
        {"a text variable is a text", "DECLARE @v varchar(20) SET @v = 'O''Brien'' --' SELECT @v, LEN(@v)",
         "O'Brien' --|11"},
        {"converted to its type", "DECLARE @v int SET @v = '12' SELECT @v + 1", "13"},
        {"overflow", "DECLARE @v tinyint SET @v = 300",
         "!220 22003 Arithmetic overflow error for data type tinyint, value = 300."},
        {"not declared", "SELECT 1 SELECT @nothing", "!137 42000 Must declare the scalar variable \"@nothing\"."},
        {"declared twice", "DECLARE @a int DECLARE @A int",
         "!134 42000 The variable name '@A' has already been declared."},
        {"gone with the batch", "SELECT @v", "!137 42000 Must declare the scalar variable \"@v\"."},
        {"values and rows do not mix", "DECLARE @a int SELECT @a = 1, 2",
         "!141 42000 A SELECT statement that assigns a value to a variable must not be combined with data-retrieval "
         "operations."},
    });
}

TEST_F(Batch, Messages)
{
    EXPECT_EQ("1", Play("PRINT 'one' PRINT 'two' + '!' SELECT 1 PRINT 3 + 4"));
    EXPECT_EQ((std::vector<std::string>{"one", "two!", "7"}), m_session->TakeMessages());
    EXPECT_TRUE(m_session->TakeMessages().empty());
}

TEST_F(Batch, RowCount)
{
    EXPECT_EQ("#2 + 2", Play("INSERT t VALUES (1, 'a'), (2, 'b') SELECT @@ROWCOUNT"));
    EXPECT_EQ("#0 + 0", Play("DELETE t WHERE a = 9 SELECT @@ROWCOUNT"));
    EXPECT_EQ("1;2 + 2 + 1", Play("SELECT a FROM t SELECT @@ROWCOUNT SELECT @@ROWCOUNT"));
    EXPECT_EQ("0", Play("SET NOCOUNT ON DELETE t WHERE a = 9 SET NOCOUNT OFF SELECT 0"));
    EXPECT_EQ("#2", Play("DELETE t"));
}

TEST_F(Batch, ASyntaxErrorRunsNothing)
{
    PlayAll({
        {"at the end", "INSERT t VALUES (1, 'x')\nSELECT FROM", "!102 42000 Line 2: Incorrect syntax near 'FROM'."},
        {"nothing inserted", "SELECT COUNT(*) FROM t", "0"},
        {"the line of the place", "SELECT 1;\r\n\r\nSELEC 2\r\n", "!102 42000 Line 3: Incorrect syntax near 'SELEC'."},
        {"the end names the last word", "SELECT * FROM", "!102 42000 Line 1: Incorrect syntax near 'FROM'."},
        {"text not closed", "SELECT 1\nSELECT 'abc",
         "!105 42000 Line 2: Unclosed quotation mark before the character string 'abc'."},
        {"comment not closed", "SELECT 1 /* abc", "!113 42000 Line 1: Missing end comment mark '*/'."},
        {"a character of no use", "SELECT ?", "!102 42000 Line 1: Incorrect syntax near '?'."},
        {"a temporary table", "SELECT * FROM #t", "!102 42000 Line 1: Incorrect syntax near '#t'."},
        {"a word outside the dialect", "EXEC sp_who", "!102 42000 Line 1: Incorrect syntax near 'EXEC'."},
        {"WHILE", "WHILE 1 = 1 SELECT 1", "!102 42000 Line 1: Incorrect syntax near 'WHILE'."},
        {"EXCEPT", "SELECT 1 EXCEPT SELECT 2", "!102 42000 Line 1: Incorrect syntax near 'EXCEPT'."},
        {"SELECT INTO", "SELECT 1 AS a INTO x", "!102 42000 Line 1: Incorrect syntax near 'INTO'."},
        {"an option that is not known", "SET XACT_ABORT ON", "!102 42000 Line 1: Incorrect syntax near 'XACT_ABORT'."},
        {"an option that can only be on", "SET ANSI_NULLS OFF", "!102 42000 Line 1: Incorrect syntax near 'OFF'."},
        {"a parenthesis too many", "SELECT (1))", "!102 42000 Line 1: Incorrect syntax near ')'."},
        {"a comma too many", "SELECT 1, FROM t", "!102 42000 Line 1: Incorrect syntax near 'FROM'."},
        {"two comparisons in a row", "SELECT 1 WHERE 1 = 1 = 1", "!102 42000 Line 1: Incorrect syntax near '='."},
        {"a binary constant", "SELECT 0xFF", "!102 42000 Line 1: Incorrect syntax near '0xFF'."},
        {"NOT without a test", "SELECT 1 WHERE 1 NOT 2", "!102 42000 Line 1: Incorrect syntax near '2'."},
    });
}

TEST_F(Batch, StatementsBehindAFailingOneStillRun)
{
    PlayAll({
        {"an unknown table between", "SELECT 1 SELECT * FROM nothing SELECT 2",
         "1 + !208 42S02 Invalid object name 'nothing'. + 2"},
        {"a failing insert between", "INSERT t VALUES (1, 'a') INSERT t VALUES (1, 'b') INSERT t VALUES (2, 'c')",
         "#1 + !2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'. "
         "+ #1"},
        {"a failing branch", "IF 1 = 1 BEGIN INSERT t VALUES (1, 'a') SELECT 1 END SELECT 2",
         "!2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'. + 1 + "
         "2"},
        {"a failing row", "SELECT 2 / (a - 1) FROM t ORDER BY a DESC SELECT 'after'",
         "!8134 22012 Divide by zero error encountered. + after"},
    });
}

TEST_F(Batch, AnErrorOfALaterStatementComesWithItsResult)
{
    m_session->Execute("SELECT 1 SELECT * FROM nothing SELECT 3");
    ASSERT_NE(nullptr, m_session->NextResult());
    EXPECT_THROW(m_session->NextResult(), tsql::SqlError);
    tsql::Result *third = m_session->NextResult();
    ASSERT_NE(nullptr, third);
    ASSERT_TRUE(third->Step());
    EXPECT_EQ(3, third->Integer(0));
    EXPECT_EQ(nullptr, m_session->NextResult());
    EXPECT_EQ(nullptr, m_session->NextResult());
}

TEST_F(Batch, AnErrorAmongRowsNotReadComesWithTheNextResult)
{
    m_session->Execute("SELECT 10 / (2 - a) FROM (SELECT 1 AS a UNION ALL SELECT 2) x SELECT 'after'");
    tsql::Result *first = m_session->NextResult();
    ASSERT_NE(nullptr, first);
    ASSERT_TRUE(first->Step());
    try
    {
        m_session->NextResult();
        FAIL() << "the second row divides by zero";
    }
    catch (const tsql::SqlError &error)
    {
        EXPECT_EQ(8134, error.Number());
    }
    ASSERT_NE(nullptr, m_session->NextResult());
}

TEST_F(Batch, CancelDropsWhatHasNotRun)
{
    m_session->Execute("SELECT 1 INSERT t VALUES (1, 'x')");
    ASSERT_NE(nullptr, m_session->NextResult());
    m_session->Cancel();
    EXPECT_EQ(nullptr, m_session->NextResult());
    EXPECT_EQ("0", Play("SELECT COUNT(*) FROM t"));
    m_session->Execute("SELECT 1 INSERT t VALUES (1, 'x')");
    ASSERT_NE(nullptr, m_session->NextResult());
    EXPECT_EQ("0", Play("SELECT COUNT(*) FROM t")) << "so does another batch";
}

TEST_F(Batch, Transactions)
{
    PlayAll({
        {"commit", "BEGIN TRANSACTION INSERT t VALUES (1, 'x') COMMIT TRANSACTION", "#1"},
        {"rollback", "BEGIN TRAN DELETE t ROLLBACK", "#1"},
        {"still there", "SELECT a FROM t", "1"},
        {"nested", "BEGIN TRAN BEGIN TRAN SELECT @@TRANCOUNT COMMIT SELECT @@TRANCOUNT COMMIT SELECT @@TRANCOUNT",
         "2 + 1 + 0"},
        {"rollback takes all", "BEGIN TRAN BEGIN TRAN DELETE t ROLLBACK TRAN SELECT @@TRANCOUNT SELECT COUNT(*) FROM t",
         "#1 + 0 + 1"},
        {"named", "BEGIN TRAN mine INSERT t VALUES (2, 'y') COMMIT TRAN mine", "#1"},
        {"over several batches, first", "BEGIN TRAN INSERT t VALUES (3, 'z')", "#1"},
        {"second", "SELECT COUNT(*) FROM t ROLLBACK", "3"},
        {"third", "SELECT COUNT(*) FROM t", "2"},
        {"commit without begin", "COMMIT",
         "!3902 25000 The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION."},
        {"rollback without begin", "ROLLBACK TRAN",
         "!3903 25000 The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."},
        {"tables are rolled back too", "BEGIN TRAN CREATE TABLE u (a int) ROLLBACK SELECT * FROM u",
         "!208 42S02 Invalid object name 'u'."},
    });
}

TEST_F(Batch, DepthIsLimitedWithAnError)
{
    const std::string deep =
        "!191 42000 Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into "
        "smaller queries.";
    const auto repeated = [](const char *text, int count)
    {
        std::string out;
        for (int i = 0; i < count; ++i)
            out += text;
        return out;
    };
    EXPECT_EQ(deep, Play("SELECT " + repeated("(", 5000) + "1" + repeated(")", 5000)));
    EXPECT_EQ(deep, Play("SELECT " + repeated("- ", 5000) + "1"));
    EXPECT_EQ(deep, Play("SELECT 1 WHERE " + repeated("NOT ", 5000) + "1 = 1"));
    EXPECT_EQ(deep, Play("SELECT 1" + repeated(" + 1", 5000)));
    EXPECT_EQ(deep, Play(repeated("IF 1 = 1 ", 5000) + "SELECT 1"));
    EXPECT_EQ(deep, Play(repeated("BEGIN ", 5000)));
    EXPECT_EQ(deep, Play("SELECT " + repeated("(SELECT ", 5000) + "1"));
    EXPECT_EQ(deep, Play("SELECT " + repeated("LEN(", 5000) + "1"));
    EXPECT_EQ(deep, Play("SELECT 1 FROM " + repeated("(", 5000)));
    EXPECT_EQ("301", Play("SELECT 1" + repeated(" + 1", 300)));
    EXPECT_EQ("1", Play("SELECT 1" + repeated(" + 1 - 1", 150)));
    EXPECT_EQ("1", Play("SELECT 1" + repeated(" * 1", 20)));
    EXPECT_EQ("301", Play("SELECT LEN('1'" + repeated(" + '1'", 300) + ")")) << "joining texts";
    EXPECT_EQ("1", Play("SELECT " + repeated("(", 20) + "1" + repeated(")", 20)));
    EXPECT_EQ("1", Play("SELECT 1 WHERE 1 = 2" + repeated(" OR 1 = 1", 3000))) << "long lists are not deep";
    EXPECT_EQ("1", Play("SELECT 1 WHERE 1 IN (1" + repeated(", 2", 3000) + ")"));
}

TEST_F(Batch, AnyBytes)
{
    EXPECT_EQ("!102", Play(std::string_view("SELECT \0 1", 10)).substr(0, 4));
    EXPECT_EQ("3", Play(std::string_view("SELECT LEN('a\0b')", 17)));
    EXPECT_EQ("2", Play("SELECT LEN('\xFF\xFE')"));
    EXPECT_EQ("none", Play("SELECT 1 WHERE '\xFF' = '\xFE'"));
}

} // namespace
