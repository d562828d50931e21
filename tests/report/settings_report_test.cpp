// The settings report, on a database: whole documents, and what happens when something is in the way.
#include "report/settings_report.h"

#include "report/report_queries.h"
#include "support/database_fixture.h"
#include "support/registry.h"

#include "host/modGlobalVariables.h"
#include "model/globals.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#ifdef _WIN32
#include <share.h>
#endif

using support::Box;
using support::ErrorBox;
using support::Lines;

namespace
{

constexpr const char *kKey = "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0";

// A partition 3 below 2 below 1, with 5 below it and 4 beside it. All of them have formats and headings.
constexpr const char *kSite = "INSERT INTO System_partitions VALUES (1, 'Network', '/', NULL)\n"
                              "INSERT INTO System_partitions VALUES (2, 'Eastern Region', '/1/', NULL)\n"
                              "INSERT INTO System_partitions VALUES (3, 'Lakeside', '/1/2/', NULL)\n"
                              "INSERT INTO System_partitions VALUES (4, 'Beside', '/1/2/', NULL)\n"
                              "INSERT INTO System_partitions VALUES (5, 'Below', '/1/2/3/', NULL)\n"
                              "INSERT INTO System_partitions VALUES (13, 'Thirteen', '/', NULL)\n"
                              "INSERT INTO Report_header_formats VALUES (0, 'Default', 0, 0, 1, 0, 0, 0, 1, 1)\n"
                              "INSERT INTO Report_header_formats VALUES (1, 'Own Line', 1, 1, 1, 1, 0, 0, 1, 1)\n"
                              "INSERT INTO Report_header_formats VALUES (2, 'Regional', NULL, 2, -1, 0, 1, 1, 0, 2)\n"
                              "INSERT INTO Report_header_formats VALUES (3, 'Zebra', 1, 0, 1, 0, 1, 0, 0, 3)\n"
                              "INSERT INTO Report_header_formats VALUES (4, 'Alpha', 0, 1, 0, 1, 0, 1, 0, 3)\n"
                              "INSERT INTO Report_header_formats VALUES (5, 'Of Beside', 0, 0, 0, 0, 0, 0, 0, 4)\n"
                              "INSERT INTO Report_header_formats VALUES (6, 'Of Below', 0, 0, 0, 0, 0, 0, 0, 5)\n"
                              "INSERT INTO Report_header_formats VALUES (7, 'Of Thirteen', 0, 0, 0, 0, 0, 0, 0, 13)\n"
                              "INSERT INTO Report_headers VALUES (0, '<Default>', 1)\n"
                              "INSERT INTO Report_headers VALUES (1, 'History', 1)\n"
                              "INSERT INTO Report_headers VALUES (2, 'Impression', 3)\n"
                              "INSERT INTO Report_headers VALUES (3, 'Findings', 3)\n"
                              "INSERT INTO Report_headers VALUES (4, 'Of Beside', 4)\n"
                              "INSERT INTO Report_headers VALUES (5, 'Of Below', 5)\n"
                              "INSERT INTO account_info VALUES (-1, 'All', '0', 0)\n"
                              "INSERT INTO account_info VALUES (7, 'Lakeside Main', '0', 3)\n"
                              "INSERT INTO account_info VALUES (8, 'Lakeside North', '0', 3)\n"
                              "INSERT INTO account_info VALUES (9, 'Below Account', '0', 5)\n"
                              "INSERT INTO reports_cfg VALUES (0, 'All', -1, '0')\n"
                              "INSERT INTO reports_cfg VALUES (0, 'All', 7, '0')\n"
                              "INSERT INTO reports_cfg VALUES (4, 'Letter', 7, '0')\n"
                              "INSERT INTO reports_cfg VALUES (5, 'Note', 7, '0')\n"
                              "INSERT INTO reports_cfg VALUES (5, 'Note', 8, '0')\n"
                              "INSERT INTO reports_cfg VALUES (0, 'All', 9, '0')\n";

constexpr const char *kSettings = "INSERT INTO Report_header_settings VALUES (0, -1, 0, 0, 3)\n"
                                  "INSERT INTO Report_header_settings VALUES (1, -1, 0, 1, 3)\n"
                                  "INSERT INTO Report_header_settings VALUES (1, -1, 0, 1, 4)\n"
                                  "INSERT INTO Report_header_settings VALUES (3, 7, 0, 3, 0)\n"
                                  "INSERT INTO Report_header_settings VALUES (2, 7, 5, 4, 0)\n"
                                  "INSERT INTO Report_header_settings VALUES (3, 7, 5, 3, 0)\n"
                                  "INSERT INTO Report_header_settings VALUES (2, 7, 4, 2, 0)\n"
                                  "INSERT INTO Report_header_settings VALUES (2, 8, 5, 3, 0)\n"
                                  "INSERT INTO Report_header_settings VALUES (2, 9, 0, 6, 0)\n";

class SettingsReport : public support::DatabaseTest
{
protected:
    SettingsReport()
    {
        SetRoot(database.Folder().Path());
        std::filesystem::create_directories(database.Folder().Path("ZENTRA/TEMP"));
        Select(3, "Lakeside");
    }

    void SetRoot(const std::string &root)
    {
        m_registry.Set(platform::RegistryRoot::LocalMachine, kKey, "LocalRootDir", root);
    }
    void Select(std::int32_t id, const std::string &name)
    {
        model::gCurrentPartition = runtime::MakeRef<model::clsPartition>();
        model::gCurrentPartition->SetPartitionID(id);
        model::gCurrentPartition->m_strPartitionName = name;
    }
    void AddOption(const std::string &key, const std::string &value)
    {
        Run("INSERT INTO System_user_cfg VALUES (-1, 1, '" + key + "', " + value + ", 3)");
    }

    // The path as the component builds it, and as the test reads it.
    std::string BuiltPath() const { return Folder() + "\\ZENTRA\\TEMP\\HEADINGS.TXT"; }
    std::string Path() const { return Folder() + "/ZENTRA/TEMP/HEADINGS.TXT"; }
    std::string Folder() const { return const_cast<SettingsReport *>(this)->database.Folder().Path(); }

    // Prints, expects the report to be opened, and gives it.
    std::string Print()
    {
        report::PrintSettings(nullptr);
        EXPECT_EQ(nullptr, host::gResultset);
        EXPECT_EQ(1u, desktop.opened.size());
        return desktop.opened.empty() ? std::string() : desktop.opened.back().content;
    }
    static Lines Queries(std::int32_t id)
    {
        return {report::TagOptionQuery(id), report::FormatQuery(id), report::HeadingQuery(id),
                report::ConfigurationQuery(id)};
    }

    // The box of a query that failed.
    static std::string DatabaseErrorBox()
    {
        return Box(0, "KVHEADERS", "Database error.  Unable to retrieve configuration.");
    }
    static std::string PrintErrorBox(const std::string &description)
    {
        return ErrorBox("Error encountered while printing settings: " + description);
    }

    support::TestRegistry m_registry;
};

// Whole documents --------------------------------------------------------------------------------------------------

TEST_F(SettingsReport, OfASiteWithInheritedFormats)
{
    Run(kSite);
    Run(kSettings);
    AddOption("TagKnownHeadings", "'True'");
    AddOption("TagMixedCaseHeadings", "'False'");
    support::ExpectApproved("report/inherited", Print());
    EXPECT_EQ(Queries(3), Log());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(SettingsReport, OfAPartitionWithoutAnything)
{
    Select(77, "Nothing");
    support::ExpectApproved("report/nothing", Print());
    EXPECT_EQ(Queries(77), Log());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_F(SettingsReport, OfANetworkWithoutAncestors)
{
    Run(kSite);
    Run(kSettings);
    Select(1, "Network");
    support::ExpectApproved("report/network", Print());
}

TEST_F(SettingsReport, OfNamesBeyondAsciiAndBeyondTheCodePage)
{
    Select(3, "Gr\xC3\xBCnwald \xE5\x8C\x97");
    Run("INSERT INTO System_partitions VALUES (3, N'Gr\xC3\xBCnwald', '/', NULL)\n"
        "INSERT INTO Report_header_formats VALUES (1, N'\xC3\x9C"
        "berschrift \xE2\x82\xAC', 1, 0, 0, 0, 0, 0, 0, 3)\n"
        "INSERT INTO Report_headers VALUES (1, N'\xD0\x96\xD0\xB0 O''Brien', 3)\n"
        "INSERT INTO Report_headers VALUES (2, N'two\r\nlines \xE5\x8C\x97', 3)\n"
        "INSERT INTO account_info VALUES (7, N'Stra\xC3\x9F"
        "e', '0', 3)\n"
        "INSERT INTO reports_cfg VALUES (4, N'\xC5\x92uvre \xE2\x80\x93', 7, '0')\n"
        "INSERT INTO Report_header_settings VALUES (1, 7, 4, 1, 0)\n");
    support::ExpectApproved("report/beyond_ascii", Print());
}

TEST_F(SettingsReport, OfNamesThatAreNull)
{
    Run("INSERT INTO System_partitions VALUES (3, NULL, '/', NULL)\n"
        "INSERT INTO Report_header_formats VALUES (1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, 3)\n"
        "INSERT INTO Report_headers VALUES (1, NULL, 3)\n"
        "INSERT INTO account_info VALUES (7, NULL, '0', 3)\n"
        "INSERT INTO reports_cfg VALUES (4, NULL, 7, '0')\n"
        "INSERT INTO Report_header_settings VALUES (1, 7, 4, 1, 0)\n"
        // the numbers of the two defaults, each at the other's place
        "INSERT INTO account_info VALUES (0, 'Zero', '0', 3)\n"
        "INSERT INTO reports_cfg VALUES (-1, 'Minus', 0, '0')\n"
        "INSERT INTO Report_header_settings VALUES (1, 0, -1, 1, 0)\n");
    AddOption("TagKnownHeadings", "NULL");
    support::ExpectApproved("report/null_names", Print());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

// The tagging options -----------------------------------------------------------------------------------------------

TEST_F(SettingsReport, PrintsTheTaggingOptionsAsTheirRowsStand)
{
    struct Case
    {
        const char *key;
        const char *value;
        const char *line;
    };
    static const Case kCases[] = {
        {"TagKnownHeadings", "'True'", "Tag Only Known Headings: Yes\r\n"},
        {"TagKnownHeadings", "'tRUE'", "Tag Only Known Headings: Yes\r\n"},
        {"TagKnownHeadings", "'False'", "Tag Only Known Headings: No\r\n"},
        {"TagKnownHeadings", "' True'", "Tag Only Known Headings: No\r\n"},
        {"TagKnownHeadings", "'Yes'", "Tag Only Known Headings: No\r\n"},
        {"TagKnownHeadings", "'1'", "Tag Only Known Headings: No\r\n"},
        {"TagKnownHeadings", "''", "Tag Only Known Headings: No\r\n"},
        {"TagMixedCaseHeadings", "'TRUE'", "Tag Mixed Case Headings: Yes\r\n"},
        {"TagMixedCaseHeadings", "NULL", "Tag Mixed Case Headings: No\r\n"},
        {"tagmixedcaseheadings ", "'true'", "Tag Mixed Case Headings: Yes\r\n"},
        {"TagOther", "'True'", ""},
    };
    const std::string before = "Partition: Lakeside\r\n" + std::string(76, '-') + "\r\n";
    for (const auto &[key, value, line] : kCases)
    {
        Run("DELETE FROM System_user_cfg");
        AddOption(key, value);
        desktop.opened.clear();
        EXPECT_NE(std::string::npos, Print().find(before + line + "\r\r\n")) << key << " " << value;
    }
}

TEST_F(SettingsReport, PrintsADuplicatedOptionTwiceAndThoseOfOthersNotAtAll)
{
    AddOption("TagKnownHeadings", "'True'");
    AddOption("TagKnownHeadings", "'True'");
    Run("INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', 4)\n"
        "INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', NULL)\n"
        "INSERT INTO System_user_cfg VALUES (-1, 2, 'TagMixedCaseHeadings', 'True', 3)\n"
        "INSERT INTO System_user_cfg VALUES (5, 1, 'TagMixedCaseHeadings', 'True', 3)\n");
    EXPECT_NE(std::string::npos, Print().find(std::string(76, '-') + "\r\n"
                                                                     "Tag Only Known Headings: Yes\r\n"
                                                                     "Tag Only Known Headings: Yes\r\n\r\r\n"));
}

// Opening the file --------------------------------------------------------------------------------------------------

TEST_F(SettingsReport, IsOpenedForTheOwnerWithItsOwnPathAsWorkingDirectory)
{
    int window = 0;
    report::PrintSettings(&window);
    ASSERT_EQ(1u, desktop.opened.size());
    EXPECT_EQ(&window, desktop.opened[0].owner);
    EXPECT_EQ(BuiltPath(), desktop.opened[0].path);
    EXPECT_EQ(BuiltPath(), desktop.opened[0].workingDirectory);
}

TEST_F(SettingsReport, ReplacesTheReportBefore)
{
    support::WriteFile(Path(), std::string(100000, 'x'));
    const std::string report = Print();
    EXPECT_EQ(0u, report.find("GENERAL SETTINGS\t\t\t11/21/2003 3:58:07 PM\r\n"));
    EXPECT_EQ(std::string::npos, report.find('x'));
    EXPECT_EQ(report, support::ReadFile(Path()));
}

// Failures ----------------------------------------------------------------------------------------------------------

TEST_F(SettingsReport, WithoutItsTaggingOptionsIsNotWritten)
{
    support::WriteFile(Path(), "before");
    Fail(1, "TagKnownHeadings", "no options", "42000");
    desktop.WillAnswerOk(2);
    report::PrintSettings(nullptr);
    EXPECT_EQ((Lines{DatabaseErrorBox(), PrintErrorBox("42000: no options")}), desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: 42000: no options"}, Events());
    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_TRUE(desktop.opened.empty());
    EXPECT_EQ(report::TagOptionQuery(3), Log()[0]);
    EXPECT_EQ(2u, Log().size());
}

struct QueryCase
{
    const char *name;
    const char *text; // stands in that query alone
    // What is missing from the report without it: from here to there, or to the end.
    const char *from, *to;
};

void PrintTo(const QueryCase &query, std::ostream *out)
{
    *out << query.name;
}

class FailingQuery : public SettingsReport, public testing::WithParamInterface<QueryCase>
{
};

TEST_P(FailingQuery, IsToldAtItsPlaceAndReportedAtTheEnd)
{
    Run(kSite);
    Run(kSettings);
    AddOption("TagKnownHeadings", "'True'");
    std::string expected = Print();
    const std::size_t from = expected.find(GetParam().from);
    ASSERT_NE(std::string::npos, from);
    expected.erase(from, GetParam().to ? expected.find(GetParam().to) - from : std::string::npos);
    desktop.opened.clear();
    database.ClearLog();
    Fail(1, GetParam().text, "it's gone");
    desktop.WillAnswerOk(2);
    std::size_t sentBeforeTheFirstBox = 0;
    desktop.whileBoxIsOpen = [&](const std::string &)
    {
        if (desktop.boxes.size() == 1)
            sentBeforeTheFirstBox = Log().size();
    };
    EXPECT_EQ(expected, Print());
    EXPECT_EQ((Lines{DatabaseErrorBox(), PrintErrorBox("HY000: it's gone")}), desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: HY000: it's gone"}, Events());
    const Lines log = Log();
    ASSERT_EQ(5u, log.size());
    EXPECT_EQ(Queries(3), Lines(log.begin(), log.begin() + 4));
    EXPECT_NE(std::string::npos, log[sentBeforeTheFirstBox - 1].find(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(EachSection, FailingQuery,
                         testing::Values(QueryCase{"formats", "FROM Report_header_formats ", "1.  Regional",
                                                   "\r\r\nHEADINGS"},
                                         QueryCase{"headings", "FROM Report_headers ", "1.  Findings", "\r\r\nCONFIG"},
                                         QueryCase{"configuration", "SELECT DISTINCT", "\r\r\nCONFIG", nullptr}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(SettingsReport, WithAllItsSectionsFailingTellsEachAndReportsTheLast)
{
    const std::string whole = Print();
    desktop.opened.clear();
    Fail(1, "FROM Report_header_formats ", "formats");
    Fail(1, "FROM Report_headers ", "headings");
    Fail(1, "SELECT DISTINCT", "configuration");
    desktop.WillAnswerOk(4);
    EXPECT_EQ(whole.substr(0, whole.find("\r\r\nCONFIG")), Print());
    EXPECT_EQ(
        (Lines{DatabaseErrorBox(), DatabaseErrorBox(), DatabaseErrorBox(), PrintErrorBox("HY000: configuration")}),
        desktop.boxes);
}

TEST_F(SettingsReport, ThatLosesItsRowsInTheMiddleKeepsThoseBefore)
{
    Run(kSite);
    database.FailAtRow(3, 1, "FROM Report_headers ", "lost");
    desktop.WillAnswerOk();
    const std::string report = Print();
    EXPECT_NE(std::string::npos, report.find("CONFIGURATION SETTINGS"));
    EXPECT_EQ(Lines{PrintErrorBox("HY000: lost")}, desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: HY000: lost"}, Events());
}

TEST_F(SettingsReport, WithAFolderInItsPlaceIsReported)
{
    std::filesystem::create_directories(Path());
    desktop.WillAnswerOk();
    report::PrintSettings(nullptr);
    // neither written nor opened: the last error is the one told
    EXPECT_EQ(Lines{PrintErrorBox("File not found")}, desktop.boxes);
    EXPECT_TRUE(std::filesystem::is_directory(Path()));
    EXPECT_EQ(5u, Log().size());
}

#ifdef _WIN32
// The viewer of the report before may still hold its file.
TEST_F(SettingsReport, ThatSomebodyHoldsIsReportedAndLeftAsItIs)
{
    support::WriteFile(Path(), "before");
    std::FILE *const held = _fsopen(Path().c_str(), "rb", _SH_DENYRW);
    ASSERT_NE(nullptr, held);
    desktop.WillAnswerOk();
    report::PrintSettings(nullptr);
    std::fclose(held);
    EXPECT_EQ(Lines{PrintErrorBox("Path/File access error")}, desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: Path/File access error"}, Events());
    EXPECT_EQ("before", support::ReadFile(Path()));
}
#endif

TEST_F(SettingsReport, ThatCannotBeOpenedIsReportedAndStays)
{
    desktop.openFailure = runtime::Error(runtime::kPermissionDenied, "Permission denied");
    desktop.WillAnswerOk();
    report::PrintSettings(nullptr);
    EXPECT_EQ(Lines{PrintErrorBox("Permission denied")}, desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: Permission denied"}, Events());
    EXPECT_EQ(0u, support::ReadFile(Path()).find("GENERAL SETTINGS"));
}

TEST_F(SettingsReport, WithoutASelectedPartitionIsReportedAndWritesNothing)
{
    model::gCurrentPartition = nullptr;
    desktop.WillAnswerOk();
    report::PrintSettings(nullptr);
    EXPECT_EQ(Lines{PrintErrorBox("Object variable or With block variable not set")}, desktop.boxes);
    EXPECT_FALSE(std::filesystem::exists(Path()));
    EXPECT_EQ(1u, Log().size());
}

} // namespace
