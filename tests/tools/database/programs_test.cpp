// sqlbatch and generate_site, run as programs: batches, results, errors with their place, exit status.
#include "support/processes.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace database_tools_tests
{
namespace
{

using support::Outcome;
using support::RunShell;

class ToolsTest : public testing::Test
{
protected:
    std::string Write(const std::string &name, const std::string &text) const
    {
        support::WriteFile(m_folder.Path(name), text);
        return m_folder.Path(name);
    }

    static std::string Program(const std::string &name)
    {
        const char *build = std::getenv("KV_BUILD");
        return std::string(build != nullptr ? build : ".") + "/" + name;
    }

    Outcome Batch(const std::string &arguments) const
    {
        return RunShell(Program("sqlbatch") + " --database " + m_folder.Path("site.db") + " " + arguments);
    }

    support::TestFolder m_folder;
};

TEST_F(ToolsTest, BatchesAreSeparatedByLinesWithGoAlone)
{
    const std::string file =
        Write("a.sql", "\xEF\xBB\xBF-- GO in a comment\r\nCREATE TABLE t (id int NOT NULL, name "
                       "nvarchar(20) NULL)\r\nGO\r\nINSERT INTO t VALUES (1, N'Gr\u00fcn')\n  go  \n\nGO\n"
                       "INSERT INTO t VALUES (2, NULL)\nSELECT id, name, 'GO' AS [go]\nFROM t ORDER BY id\n");
    const Outcome outcome = Batch("--create " + file);
    EXPECT_EQ(outcome.text,
              "(1 row affected)\n(1 row affected)\nid | name | go\n1 | Gr\u00fcn | GO\n2 | NULL | GO\n(2 rows)\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ToolsTest, ErrorsHaveTheirPlaceAndTheRestRuns)
{
    const std::string file =
        Write("a.sql", "CREATE TABLE t (id int NOT NULL)\nGO\n\n\nSELECT 1 FROM missing\nGO\nSELECT 2 AS n\n");
    const Outcome outcome = Batch("--create --quiet " + file);
    EXPECT_EQ(outcome.text, file + ":5: 42S02: Invalid object name 'missing'.\nn\n2\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(ToolsTest, QueriesAndStandardInput)
{
    ASSERT_EQ(Batch("--create --query 'CREATE TABLE t (id int)'").status, 0);
    const Outcome outcome =
        RunShell("printf 'INSERT INTO t VALUES (5)\\nGO\\nSELECT id FROM t' | " + Program("sqlbatch") + " --database " +
                 m_folder.Path("site.db") + " --quiet --query 'SELECT COUNT(*) AS n FROM t' -");
    EXPECT_EQ(outcome.text, "n\n0\nid\n5\n");
}

TEST_F(ToolsTest, LongTextsArePrintedWhole)
{
    const std::string text(5000, 'x');
    EXPECT_EQ(Batch("--create --quiet --query \"SELECT '" + text + "' AS t\"").text, "t\n" + text + "\n");
}

TEST_F(ToolsTest, PasswordGivenAtCreationIsAskedForLater)
{
    setenv("KV_TEST_SECRET", "it's {se;cret}", 1);
    EXPECT_EQ(Batch("--create --password-env KV_TEST_SECRET --query 'SELECT 1 AS n'").status, 0);
    const Outcome refused = Batch("--query 'SELECT 1 AS n'");
    EXPECT_EQ(refused.text, "sqlbatch: 28000: Login failed for user 'sa'.\n");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(Batch("--user SA --password-env KV_TEST_SECRET --query 'SELECT 1 AS n'").status, 0);
    unsetenv("KV_TEST_SECRET");
}

TEST_F(ToolsTest, MisuseIsExitStatus2)
{
    EXPECT_EQ(Batch("").status, 2) << "nothing to run";
    EXPECT_EQ(Batch("--no-such-option x.sql").status, 2);
    EXPECT_EQ(Batch("--data-source both x.sql").status, 2);
    EXPECT_EQ(Batch("--create missing.sql").status, 1) << "a file that cannot be read";
    EXPECT_EQ(RunShell(Program("generate_site") + " --settings many").status, 2);
    EXPECT_EQ(RunShell(Program("generate_site") + " --headings 2 --settings 1000000").status, 2);
}

TEST_F(ToolsTest, GeneratedSiteLoadsAndIsTheSameEachTime)
{
    const std::string generate = Program("generate_site") +
                                 " --settings 3000 --headings 500 --formats 60 --partitions 12 "
                                 "--accounts 20 --report-types 5";
    const Outcome first = RunShell(generate);
    ASSERT_EQ(first.status, 0);
    EXPECT_EQ(first.text, RunShell(generate).text);
    EXPECT_NE(first.text, RunShell(generate + " --seed 2").text);

    const char *root = std::getenv("KV_ROOT");
    ASSERT_EQ(Batch(std::string("--create ") + root + "/embedded/database/tables.sql").status, 0);
    const Outcome loaded = Batch("--quiet " + Write("site.sql", first.text));
    EXPECT_EQ(loaded.text, "");
    ASSERT_EQ(loaded.status, 0);
    EXPECT_EQ(
        Batch("--quiet --query \"SELECT (SELECT COUNT(*) FROM Report_header_settings) a, (SELECT COUNT(*) FROM "
              "Report_headers) b, (SELECT COUNT(*) FROM Report_header_formats) c, (SELECT COUNT(*) FROM "
              "System_partitions) d, (SELECT COUNT(*) FROM account_info) e, (SELECT COUNT(*) FROM reports_cfg) f\"")
            .text,
        "a | b | c | d | e | f\n3000 | 500 | 60 | 12 | 21 | 121\n");
    EXPECT_EQ(
        Batch("--quiet --query \"SELECT COUNT(*) n FROM Report_header_settings s WHERE NOT EXISTS (SELECT * FROM "
              "Report_header_formats f WHERE f.format_id = s.format_id) OR NOT EXISTS (SELECT * FROM Report_headers h "
              "WHERE h.heading_id = s.heading_id) OR (s.hosp_acct_id = -1 AND s.flag1 = 0) OR (s.hosp_acct_id > 0 AND "
              "s.flag1 <> 0)\"")
            .text,
        "n\n0\n");
    EXPECT_EQ(Batch("--quiet --query \"SELECT lineage FROM System_partitions WHERE partition_id = 9\"").text,
              "lineage\n/1/2/\n");
}

} // namespace
} // namespace database_tools_tests
