// The sample site, asked with the component's own statements, to the byte: each must run and give what the site holds.
#include "support/test_database.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

using Lines = std::vector<std::string>;

// What a statement gives, line by line, on the site as it is. A line break in
// a statement is sent as \r\n.
struct Case
{
    const char *name, *sql, *rows;
};
constexpr Case cases[] = {
    {"partitions of the host and below", R"(SELECT partition_id, partition_name, lineage FROM System_partitions
   WHERE (partition_id = 3
    OR lineage LIKE '%/' + CAST(3 AS varchar(12)) + '/%')
    AND delete_date IS NULL)",
     R"(3 | Lakeside Hospital | /1/2/
5 | Lakeside Imaging Center | /1/2/3/
6 | Lakeside Heart Institute | /1/2/3/)"},
    {"partitions above the host", R"(SELECT partition_id, partition_name, lineage FROM System_partitions
WHERE (SELECT lineage FROM System_partitions WHERE partition_id = 3) like '%/' + 
RTRIM(CAST(partition_id as varchar(12))) + '/%')",
     R"(1 | Northfield Health Network | /
2 | Eastern Region | /1/)"},
    {"formats",
     R"(SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format FROM Report_header_formats WHERE flag1 = 1
ORDER BY system_format DESC, format_name)",
     R"(0 | Default | 0 | 0 | 1 | 0 | 0 | 0 | 1
1 | Own Line | 1 | 1 | 1 | 1 | 0 | 0 | 1
3 | Plain Text | 0 | 0 | 0 | 0 | 0 | 0 | 1
2 | Run In | 0 | 0 | 1 | 1 | 0 | 0 | 1
5 | Subheading | 0 | 1 | 1 | 0 | 1 | 1 | 1
4 | Title | 1 | 1 | 0 | 1 | 1 | 0 | 1
10 | Network Bold | 1 | 1 | 1 | 1 | 0 | 0 | 0
11 | Network Underlined | 1 | 1 | 1 | 0 | 1 | 0 | 0)"},
    {"headings", "SELECT heading_id, heading FROM Report_headers WHERE flag1 = 8ORDER BY heading ASC",
     "295 | DISCREPANCY\n294 | NIGHT READ"},
    {"accounts",
     R"(SELECT DISTINCT hosp_acct_id, hosp_acct_name, is_deleted FROM account_info WHERE is_deleted = '0' AND hosp_acct_id > '0'  AND partition_id = 3
GROUP BY hosp_acct_id, hosp_acct_name, is_deleted ORDER BY hosp_acct_id)",
     R"(101 | Lakeside Medical Group   | 0
102 | Lakeside Orthopedics | 0
103 | O'Brien & Partners Radiology | 0)"},
    {"report types",
     R"(SELECT DISTINCT report_type_nbr, report_name, hosp_acct_id FROM reports_cfg WHERE is_deleted = '0' AND hosp_acct_id = '102' AND report_type_nbr > '0' GROUP BY report_type_nbr, report_name, hosp_acct_id ORDER BY report_name)",
     "4 | Consultation | 102\n13 | MRI Knee | 102\n3 | Operative Report | 102"},
    {"tagging options",
     R"(SELECT user_id, application_id, key_name, key_value, partition_id FROM system_user_cfg WHERE user_id = -1 AND application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings'))",
     R"(-1 | 1 | TagKnownHeadings | True | 3
-1 | 1 | TagMixedCaseHeadings | False | 3
-1 | 1 | TagKnownHeadings | False | 5
-1 | 1 | TagMixedCaseHeadings | True | 5
-1 | 1 | TagKnownHeadings | true | 6
-1 | 1 | TagKnownHeadings | True | 8
-1 | 1 | TagMixedCaseHeadings | True | 21)"},
    {"the report's formats",
     R"(SELECT format_name, insert_empty_line_before, insert_carriage_return_after,insert_colon, bold, underline, indent, 
pn = (select partition_name From System_partitions WHERE Report_header_formats.flag1 = partition_id)
FROM Report_header_formats WHERE flag1 IN (SELECT partition_id FROM System_partitions
      WHERE partition_id = 5 OR 
   (SELECT lineage FROM System_partitions WHERE partition_id = 5) like '%/' +
RTRIM(CAST(partition_id as varchar(12))) + '/%') AND flag1 > 2
ORDER BY pn, format_name ASC)",
     R"(Bold with Line | 1 | 1 | 1 | 1 | 0 | 0 | Lakeside Hospital
Copy of Bold with Line | 1 | 1 | 1 | 1 | 1 | 0 | Lakeside Hospital
Impression | 1 | 1 | 1 | 1 | 1 | 0 | Lakeside Hospital
Indented List | 0 | 1 | 0 | 0 | 0 | 1 | Lakeside Hospital
Physician's Choice | 1 | 0 | 1 | 1 | 0 | 0 | Lakeside Hospital
Trailing Blanks   | 0 | 0 | 1 | 0 | 0 | 0 | Lakeside Hospital
Imaging Block | 1 | 1 | 1 | 1 | 0 | 1 | Lakeside Imaging Center
Imaging Run In | 0 | 0 | 1 | 1 | 0 | 0 | Lakeside Imaging Center)"},
    {"the report's settings",
     R"(SELECT DISTINCT Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, Report_header_settings.report_type_nbr, Report_header_settings.format_id, Account_info.hosp_acct_name, reports_cfg.report_name, Report_headers.heading, Report_header_formats.format_name,  Report_header_settings.flag1 From account_info, report_header_settings, reports_cfg, report_header_formats, report_headers WHERE report_header_settings.hosp_acct_id = account_info.hosp_acct_id and report_header_settings.format_id = report_header_formats.format_id and report_header_settings.report_type_nbr = reports_cfg.report_type_nbr And report_header_settings.hosp_acct_id = reports_cfg.hosp_acct_id And report_header_settings.HEADING_ID = report_headers.HEADING_ID  AND (Account_info.partition_id = 5 OR
 (Report_header_settings.hosp_acct_id = -1 AND Report_header_settings.flag1 = 5))
GROUP BY Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, Report_header_settings.report_type_nbr, Report_header_settings.format_id, Report_headers.heading, Account_info.hosp_acct_name, Reports_cfg.report_name, report_header_formats.format_name, Report_header_settings.flag1 
ORDER BY report_header_settings.hosp_acct_id ASC, report_header_settings.report_type_nbr ASC, Report_headers.heading ASC;)",
     R"(0 | -1 | 0 | 20 | All Accounts | Report Default | <Default> | Imaging Run In | 5
36 | -1 | 0 | 21 | All Accounts | Report Default | FINDINGS | Imaging Block | 5
41 | -1 | 0 | 21 | All Accounts | Report Default | IMPRESSION | Imaging Block | 5
143 | 110 | 10 | 21 | Imaging Center North | Chest X-Ray | LUNGS | Imaging Block | 0
36 | 110 | 11 | 20 | Imaging Center North | CT Abdomen and Pelvis | FINDINGS | Imaging Run In | 0
198 | 111 | 0 | 21 | Imaging Center South | Report Default | BI-RADS | Imaging Block | 0
41 | 111 | 0 | 21 | Imaging Center South | Report Default | IMPRESSION | Imaging Block | 0
205 | 111 | 0 | 20 | Imaging Center South | Report Default | LEFT BREAST | Imaging Run In | 0
207 | 111 | 0 | 20 | Imaging Center South | Report Default | RIGHT BREAST | Imaging Run In | 0)"},
    {"how much there is",
     R"(SELECT (SELECT COUNT(*) FROM Report_headers), (SELECT COUNT(*) FROM Report_header_formats), (SELECT COUNT(*) FROM Report_header_settings), (SELECT COUNT(*) FROM System_partitions WHERE delete_date IS NOT NULL), (SELECT COUNT(*) FROM account_info WHERE is_deleted = '1'))",
     "313 | 26 | 299 | 1 | 1"},
    {"blanks behind a name", "SELECT format_name + '|' FROM Report_header_formats WHERE format_id = 19",
     "Trailing Blanks  |"},
    {"letters beyond ASCII", "SELECT heading FROM Report_headers WHERE heading = N'r\u00e9sum\u00e9'",
     "R\u00e9sum\u00e9"},
};

TEST(Sample, QueriesOfTheComponent)
{
    support::TestDatabase database;
    database.Run(support::ReadFile(support::SourcePath("embedded/database/sample.sql")));
    for (const auto &[name, sql, rows] : cases)
    {
        std::string sent;
        for (const char *at = sql; *at != '\0'; ++at)
            sent.append(*at == '\n' ? "\r\n" : std::string(1, *at));
        Lines expected;
        std::istringstream in(rows);
        for (std::string line; std::getline(in, line);)
            expected.push_back(line);
        EXPECT_EQ(database.Query(sent), expected) << name;
    }
}

} // namespace
