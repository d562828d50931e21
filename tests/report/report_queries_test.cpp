// The report's queries, whole.
#include "report/report_queries.h"

#include <gtest/gtest.h>

namespace
{

TEST(ReportQueries, TagOptions)
{
    EXPECT_EQ("SELECT user_id, application_id, key_name, key_value From system_user_cfg WHERE partition_id = 3 "
              "AND user_id = -1 AND application_id = 1 "
              "AND (key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings');",
              report::TagOptionQuery(3));
}

TEST(ReportQueries, Formats)
{
    EXPECT_EQ("SELECT format_name, insert_empty_line_before, insert_carriage_return_after,insert_colon, bold, "
              "underline, indent, \r\n"
              "pn = (select partition_name From System_partitions WHERE Report_header_formats.flag1 = partition_id)\r\n"
              "FROM Report_header_formats WHERE flag1 IN (SELECT partition_id FROM System_partitions\r\n"
              "      WHERE partition_id = 12 OR \r\n"
              "   (SELECT lineage FROM System_partitions WHERE partition_id = 12) like '%/' +\r\n"
              "RTRIM(CAST(partition_id as varchar(12))) + '/%')\r\n"
              "ORDER BY pn, format_name ASC",
              report::FormatQuery(12));
}

TEST(ReportQueries, Headings)
{
    EXPECT_EQ("SELECT heading, "
              "pn = (select partition_name From System_partitions WHERE Report_headers.flag1 = partition_id)\r\n"
              "FROM Report_headers WHERE flag1 IN (SELECT partition_id FROM System_partitions\r\n"
              "      WHERE partition_id = -1 OR \r\n"
              "   (SELECT lineage FROM System_partitions WHERE partition_id = -1) like '%/' +\r\n"
              "RTRIM(CAST(partition_id as varchar(12))) + '/%')\r\n"
              "ORDER BY pn, heading ASC;",
              report::HeadingQuery(-1));
}

TEST(ReportQueries, Configuration)
{
    EXPECT_EQ("SELECT DISTINCT Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, "
              "Report_header_settings.report_type_nbr, Report_header_settings.format_id, Account_info.hosp_acct_name, "
              "reports_cfg.report_name, Report_headers.heading, Report_header_formats.format_name,  "
              "Report_header_settings.flag1 "
              "From account_info, report_header_settings, reports_cfg, report_header_formats, report_headers "
              "WHERE report_header_settings.hosp_acct_id = account_info.hosp_acct_id and "
              "report_header_settings.format_id = report_header_formats.format_id and "
              "report_header_settings.report_type_nbr = reports_cfg.report_type_nbr And "
              "report_header_settings.hosp_acct_id = reports_cfg.hosp_acct_id And "
              "report_header_settings.HEADING_ID = report_headers.HEADING_ID  "
              "AND (Account_info.partition_id = 2147483647 OR\r\n"
              " (Report_header_settings.hosp_acct_id = -1 AND Report_header_settings.flag1 = 2147483647))\r\n"
              "GROUP BY Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, "
              "Report_header_settings.report_type_nbr, Report_header_settings.format_id, Report_headers.heading, "
              "Account_info.hosp_acct_name, Reports_cfg.report_name, report_header_formats.format_name, "
              "Report_header_settings.flag1 \r\n"
              "ORDER BY report_header_settings.hosp_acct_id ASC, report_header_settings.report_type_nbr ASC, "
              "Report_headers.heading ASC;",
              report::ConfigurationQuery(2147483647));
}

} // namespace
