// check-site.sql: silent on a sound site, and each of its findings found on a broken one.
#include "support/test_database.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace
{

using Lines = std::vector<std::string>;

constexpr const char *Tables[] = {
    "System_partitions", "Report_header_formats", "Report_headers",  "Report_header_settings",
    "account_info",      "reports_cfg",           "System_user_cfg", "System_log"};

std::string Script()
{
    return support::ReadFile(support::SourcePath("docs/check-site.sql"));
}

std::string TestFile(const std::string &name)
{
    return support::ReadFile(support::SourcePath("tests/embedded/database/" + name));
}

Lines LinesOf(const std::string &text)
{
    Lines lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// "finding | concerns" of each row; the two columns behind, what it means and what to do, must not be empty.
Lines Findings(support::TestDatabase &database)
{
    Lines findings;
    for (const std::string &row : database.Query(Script()))
    {
        const std::size_t concerns = row.find(" | ");
        const std::size_t meaning = row.find(" | ", concerns + 3);
        const std::size_t remedy = row.find(" | ", meaning + 3);
        EXPECT_TRUE(remedy != std::string::npos && remedy > meaning + 20 && row.size() > remedy + 15) << row;
        findings.push_back(row.substr(0, meaning));
    }
    std::sort(findings.begin(), findings.end());
    return findings;
}

TEST(CheckSite, FindsNothingInTheSampleSite)
{
    support::TestDatabase database;
    database.Run(support::ReadFile(support::SourcePath("embedded/database/sample.sql")));
    EXPECT_EQ(Findings(database), Lines{});
}

const Lines Missing = {"No account -1 | account_info", "No format 0 | Report_header_formats",
                       "No heading 0 | Report_headers"};

TEST(CheckSite, FindsTheRecordsThatAnEmptySiteLacks)
{
    support::TestDatabase database;
    EXPECT_EQ(Findings(database), Missing);
}

TEST(CheckSite, FindsEachFaultOfABrokenSite)
{
    support::TestDatabase database;
    for (const char *table : Tables)
        database.Run(std::string("DROP TABLE ") + table);
    database.Run(TestFile("broken-site.sql"));
    EXPECT_EQ(Findings(database), LinesOf(TestFile("broken-site.findings")));
}

// A finding that is added to the script must be added to the broken site.
TEST(CheckSite, NoFindingIsUntested)
{
    std::set<std::string> inScript;
    for (const std::string &line : LinesOf(Script()))
        if (line.starts_with("SELECT '"))
            inScript.insert(line.substr(8, line.find('\'', 8) - 8));
    std::set<std::string> found;
    Lines tested = LinesOf(TestFile("broken-site.findings"));
    tested.insert(tested.end(), Missing.begin(), Missing.end());
    for (const std::string &line : tested)
        found.insert(line.substr(0, line.find(" | ")));
    EXPECT_EQ(inScript, found);
    EXPECT_GT(inScript.size(), 20U);
}

} // namespace
