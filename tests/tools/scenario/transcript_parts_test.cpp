// What a transcript takes from elsewhere: the statement log, the report, the host's properties, the site INI file.
#include "play/answers.h"
#include "play/options.h"
#include "play/properties.h"
#include "play/report_lines.h"
#include "play/site_file.h"
#include "play/statements.h"
#include "script/failure.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

namespace
{

using namespace scenario;

TEST(ScenarioStatements, AreTheComponentsWithTheirErrors)
{
    const auto statements = ParseLog("connect\t7.1\tKVHEADERS.DLL\tscenario embedded\n"
                                     "statement\t7.1\tKVHEADERS.DLL\tSELECT 1\\r\\n\n"
                                     "statement\t7.2\tscenario\tSELECT 2\n"
                                     "error\t7.2\tscenario\t42000: not of interest\n"
                                     "statement\t7.1\tKVHEADERS.DLL\tINSERT\n"
                                     "error\t7.1\tKVHEADERS.DLL\tHY000: disk full\n"
                                     "disconnect\t7.1\tKVHEADERS.DLL\t\n");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].text, "SELECT 1\\r\\n");
    EXPECT_EQ(statements[0].error, "");
    EXPECT_EQ(statements[1].text, "INSERT");
    EXPECT_EQ(statements[1].error, "HY000: disk full");
}

TEST(ScenarioStatements, AreReadAsTheLogGrows)
{
    const support::TestFolder folder;
    const std::string log = folder.Path("log");
    StatementTail tail(log);
    EXPECT_TRUE(tail.Take().empty());
    support::WriteFile(log, "statement\t1.1\tKVHEADERS.DLL\tone\nstatement\t1.1\tKVHEADERS.DLL\ttw");
    ASSERT_EQ(tail.Take().size(), 1u);
    EXPECT_TRUE(tail.Take().empty());
    support::WriteFile(log, "statement\t1.1\tKVHEADERS.DLL\tone\nstatement\t1.1\tKVHEADERS.DLL\ttwo\n");
    const auto statements = tail.Take();
    ASSERT_EQ(statements.size(), 1u);
    EXPECT_EQ(statements[0].text, "two");
}

TEST(ScenarioReport, HidesTheTimeAndShowsControlCharacters)
{
    EXPECT_EQ(
        ReportLines("GENERAL SETTINGS\t\t\t11/21/2003 3:58:07 PM\r\nPartition: A\\\"b\"\r\n\r\r\n\tBold: Yes\r\n"),
        "GENERAL SETTINGS\\t\\t\\t<now>\n"
        "Partition: A\\\"b\"\n"
        "\\r\n"
        "\\tBold: Yes\n");
    EXPECT_EQ(ReportLines("Gr\xFC\xDF"
                          "e\x01"),
              "Gr\xC3\xBC\xC3\x9F"
              "e\\x01\n");
    EXPECT_EQ(ReportLines(""), "");
}

TEST(ScenarioProperties, HaveTheTypeOfTheirName)
{
    EXPECT_EQ(ToProperty("PartitionID", "70000"), PropertyValue(std::int32_t{70000}));
    EXPECT_EQ(ToProperty("User_ID", "-7"), PropertyValue(std::int16_t{-7}));
    EXPECT_EQ(ToProperty("SqlUserName", " "), PropertyValue(std::string(" ")));
}

TEST(ScenarioProperties, RefuseWhatAHostCannotSet)
{
    EXPECT_THROW(ToProperty("Version", "1"), Refusal);
    EXPECT_THROW(ToProperty("partitionid", "1"), Refusal);
    EXPECT_THROW(ToProperty("User_ID", "40000"), Refusal);
    EXPECT_THROW(ToProperty("PartitionID", "three"), Refusal);
}

TEST(ScenarioSiteFile, KeepsSectionsAndKeysInOrder)
{
    const support::TestFolder folder;
    SiteFile site;
    site.Set(folder.Path("a.ini"), "System", "NetworkRootDir", "old");
    site.Set(folder.Path("a.ini"), "EditDesktop", "TagKnownHeadings", "Yes");
    site.Set(folder.Path("a.ini"), "System", "NetworkRootDir", "  ");
    EXPECT_EQ(support::ReadFile(folder.Path("a.ini")),
              "[System]\r\nNetworkRootDir=  \r\n[EditDesktop]\r\nTagKnownHeadings=Yes\r\n");
}

TEST(ScenarioAnswers, AreTakenInOrder)
{
    Answers answers;
    EXPECT_FALSE(answers.Take());
    answers.Add(ParseScript("a", "\nanswer Yes No").commands[0]);
    EXPECT_EQ(answers.Take(), "Yes");
    EXPECT_EQ(answers.Words(), "No");
    EXPECT_EQ(answers.Line(), 2);
    EXPECT_EQ(answers.Take(), "No");
    EXPECT_TRUE(answers.Empty());
}

TEST(ScenarioOptions, NameSourceAndFiles)
{
    std::string problem;
    const auto options = ParseOptions({"--database", "a.db", "--headers", "--no-sql", "one", "two"}, problem);
    ASSERT_TRUE(options);
    EXPECT_EQ(options->database, "a.db");
    EXPECT_FALSE(options->showSql);
    EXPECT_TRUE(options->headers) << "of all, not of each: not among those given";
    EXPECT_EQ(options->files, (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(options->given, (std::vector<std::string>{"--database", "a.db", "--no-sql"}));
}

TEST(ScenarioOptions, RefuseBadUsage)
{
    const struct
    {
        std::vector<std::string> arguments;
        const char *problem;
    } cases[] = {
        {{}, "no scenario to play"},
        {{"--no-sql"}, "no scenario to play"},
        {{"--quick", "a"}, "unknown option --quick"},
        {{"--database"}, "--database needs a value"},
        {{"--database", "a.db", "--data-source", "b", "c"}, "--data-source cannot be combined with --database"},
        {{"--own-tables", "t.sql", "c"}, "--own-tables needs --data-source"},
    };
    for (const auto &c : cases)
    {
        std::string problem;
        EXPECT_FALSE(ParseOptions(c.arguments, problem)) << c.problem;
        EXPECT_EQ(problem, c.problem);
    }
}

} // namespace
