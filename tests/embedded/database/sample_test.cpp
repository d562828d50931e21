// The sample site, asked with the component's own statements, to the byte: each must run and give what the site holds.
#include "support/test_database.h"
#include "support/test_folder.h"

#include "runtime/error.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using Lines = std::vector<std::string>;

class SampleTest : public testing::Test
{
protected:
    SampleTest() { database.Run(support::ReadFile(support::SourcePath("embedded/database/sample.sql"))); }

    Lines Query(const std::string &sql) { return database.Query(sql); }
    std::string One(const std::string &sql)
    {
        const Lines lines = Query(sql);
        return lines.size() == 1 ? lines[0] : std::to_string(lines.size()) + " rows";
    }

    support::TestDatabase database;
};

TEST_F(SampleTest, PartitionsOfTheHostAndBelow)
{
    EXPECT_EQ(Query("SELECT partition_id, partition_name, lineage FROM System_partitions\r\n"
                    "   WHERE (partition_id = 3\r\n"
                    "    OR lineage LIKE '%/' + CAST(3 AS varchar(12)) + '/%')\r\n"
                    "    AND delete_date IS NULL"),
              (Lines{"3 | Lakeside Hospital | /1/2/", "5 | Lakeside Imaging Center | /1/2/3/",
                     "6 | Lakeside Heart Institute | /1/2/3/"}));
}

TEST_F(SampleTest, PartitionsAboveTheHost)
{
    EXPECT_EQ(Query("SELECT partition_id, partition_name, lineage FROM System_partitions\r\n"
                    "WHERE (SELECT lineage FROM System_partitions WHERE partition_id = 3) like '%/' + \r\n"
                    "RTRIM(CAST(partition_id as varchar(12))) + '/%'"),
              (Lines{"1 | Northfield Health Network | /", "2 | Eastern Region | /1/"}));
}

TEST_F(SampleTest, FormatsOfAPartition)
{
    EXPECT_EQ(
        Query("SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, "
              "bold, underline, indent, system_format FROM Report_header_formats WHERE flag1 = 1\r\n"
              "ORDER BY system_format DESC, format_name"),
        (Lines{"0 | Default | 0 | 0 | 1 | 0 | 0 | 0 | 1", "1 | Own Line | 1 | 1 | 1 | 1 | 0 | 0 | 1",
               "3 | Plain Text | 0 | 0 | 0 | 0 | 0 | 0 | 1", "2 | Run In | 0 | 0 | 1 | 1 | 0 | 0 | 1",
               "5 | Subheading | 0 | 1 | 1 | 0 | 1 | 1 | 1", "4 | Title | 1 | 1 | 0 | 1 | 1 | 0 | 1",
               "10 | Network Bold | 1 | 1 | 1 | 1 | 0 | 0 | 0",
               "11 | Network Underlined | 1 | 1 | 1 | 0 | 1 | 0 | 0"}));
    EXPECT_EQ(
        Query("SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, "
              "bold, underline, indent, system_format FROM Report_header_formats ORDER BY system_format DESC, "
              "format_name")
            .size(),
        26u);
}

TEST_F(SampleTest, HeadingsOfAPartition)
{
    EXPECT_EQ(Query("SELECT heading_id, heading FROM Report_headers WHERE flag1 = 8ORDER BY heading ASC"),
              (Lines{"295 | DISCREPANCY", "294 | NIGHT READ"}));
    EXPECT_EQ(Query("SELECT heading_id, heading FROM Report_headers WHERE flag1 = 1ORDER BY heading ASC")[0],
              "0 | <Default>");
    EXPECT_EQ(Query("SELECT heading_id, heading FROM Report_headers WHERE flag1 = -1ORDER BY heading ASC"), Lines{});
}

TEST_F(SampleTest, SettingsInScope)
{
    const auto settings = [&](const std::string &partition)
    {
        return Query(
            "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings\r\n"
            " WHERE hosp_acct_id IN (SELECT hosp_acct_id FROM account_info WHERE hosp_acct_id = -1 OR "
            "(is_deleted = '0' AND (hosp_acct_id > '0'  AND partition_id IN (SELECT partition_id FROM "
            "System_partitions \r\n   WHERE (partition_id = " +
            partition + "\r\n    OR lineage LIKE '%/' + CAST(" + partition +
            " AS varchar(12)) + '/%')\r\n    AND delete_date IS NULL)))" + ")ORDER BY heading_id ASC");
    };
    const Lines all = Query("SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 "
                            "FROM Report_header_settings ORDER BY heading_id ASC");
    const Lines ours = settings("3");
    const auto count = [](const Lines &lines, const std::string &account)
    {
        return std::count_if(lines.begin(), lines.end(),
                             [&](const std::string &line)
                             { return line.find(" | " + account + " | ") == line.find(" | "); });
    };
    EXPECT_EQ(all.size(), 299u);
    EXPECT_EQ(count(ours, "-1"), count(all, "-1")) << "those of all accounts always";
    EXPECT_EQ(count(ours, "101"), 15) << "an account of the partition";
    EXPECT_EQ(count(ours, "110"), 2) << "an account of a partition below";
    EXPECT_EQ(count(ours, "104"), 0) << "a deleted account";
    EXPECT_EQ(count(ours, "130"), 0) << "an account of a deleted partition";
    EXPECT_EQ(count(ours, "140"), 0) << "an account of another partition";
    EXPECT_EQ(settings("-1").size(), static_cast<size_t>(count(all, "-1"))) << "no partition set";
}

TEST_F(SampleTest, AccountsOfAPartition)
{
    EXPECT_EQ(
        Query("SELECT DISTINCT hosp_acct_id, hosp_acct_name, is_deleted FROM account_info WHERE is_deleted = '0' AND "
              "hosp_acct_id > '0'  AND partition_id = 3\r\nGROUP BY hosp_acct_id, hosp_acct_name, is_deleted ORDER BY "
              "hosp_acct_id"),
        (Lines{"101 | Lakeside Medical Group   | 0", "102 | Lakeside Orthopedics | 0",
               "103 | O'Brien & Partners Radiology | 0"}));
}

TEST_F(SampleTest, ReportTypesOfAnAccount)
{
    EXPECT_EQ(
        Query("SELECT DISTINCT report_type_nbr, report_name, hosp_acct_id FROM reports_cfg WHERE is_deleted = '0' AND "
              "hosp_acct_id = '102' AND report_type_nbr > '0' GROUP BY report_type_nbr, report_name, hosp_acct_id "
              "ORDER BY report_name"),
        (Lines{"4 | Consultation | 102", "13 | MRI Knee | 102", "3 | Operative Report | 102"}));
}

TEST_F(SampleTest, TaggingOptions)
{
    EXPECT_EQ(
        Query("SELECT user_id, application_id, key_name, key_value, partition_id FROM system_user_cfg WHERE user_id = "
              "-1 AND application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings')"),
        (Lines{"-1 | 1 | TagKnownHeadings | True | 3", "-1 | 1 | TagMixedCaseHeadings | False | 3",
               "-1 | 1 | TagKnownHeadings | False | 5", "-1 | 1 | TagMixedCaseHeadings | True | 5",
               "-1 | 1 | TagKnownHeadings | true | 6", "-1 | 1 | TagKnownHeadings | True | 8",
               "-1 | 1 | TagMixedCaseHeadings | True | 21"}));
    EXPECT_EQ(
        Query("SELECT user_id, application_id, key_name, key_value From system_user_cfg WHERE partition_id = 3 AND "
              "user_id = -1 AND application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = "
              "'TagMixedCaseHeadings');"),
        (Lines{"-1 | 1 | TagKnownHeadings | True", "-1 | 1 | TagMixedCaseHeadings | False"}));
}

std::string Increment(const std::string &key, const std::string &column, const std::string &table)
{
    return "IF NOT EXISTS (SELECT * FROM System_user_cfg \r\n"
           "WHERE application_id = 1 AND user_id = -1 AND key_name = '" +
           key +
           "')\r\n"
           "INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value)\r\n"
           "SELECT -1, 1, '" +
           key + "', ISNULL(MAX(" + column + "), 0) + 1\r\nFROM " + table +
           "\r\nELSE\r\nUPDATE System_user_cfg\r\nSET key_value = STR(CONVERT(int, key_value) + 1)\r\n"
           "WHERE application_id = 1 AND user_id = -1 AND key_name = '" +
           key + "'";
}

std::string ReadBack(const std::string &key)
{
    return "SELECT CONVERT(int, key_value) From System_user_cfg\r\n"
           "WHERE application_id = 1 AND user_id = -1 AND key_name = '" +
           key + "'";
}

TEST_F(SampleTest, Identifiers)
{
    // the counter of formats is stored, that of headings is not
    EXPECT_EQ(One(ReadBack("NextSRFormatID")), "29");
    database.Run(Increment("NextSRFormatID", "format_id", "Report_header_formats"));
    EXPECT_EQ(One(ReadBack("NextSRFormatID")), "30");
    EXPECT_EQ(One("SELECT key_value FROM System_user_cfg WHERE key_name = 'NextSRFormatID'"), "        30");
    EXPECT_EQ(Query(ReadBack("NextSRHeaderID")), Lines{});
    database.Run(Increment("NextSRHeaderID", "heading_id", "Report_headers"));
    EXPECT_EQ(One(ReadBack("NextSRHeaderID")), "313");
    EXPECT_EQ(One("SELECT key_value FROM System_user_cfg WHERE key_name = 'NextSRHeaderID'"), "313");
    database.Run(Increment("NextSRHeaderID", "heading_id", "Report_headers"));
    EXPECT_EQ(One(ReadBack("NextSRHeaderID")), "314");
}

TEST_F(SampleTest, SavingFormats)
{
    database.Run(
        "INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, "
        "insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) Values (30, "
        "'O''Brien''s', 1, 0, 1, 0, 1, 0, 0, 3)");
    const std::string query = "SELECT * FROM Report_header_formats WHERE format_id = 30";
    EXPECT_EQ(One(query), "30 | O'Brien's | 1 | 0 | 1 | 0 | 1 | 0 | 0 | 3");
    database.Run(
        "UPDATE Report_header_formats SET format_name = 'Plain', insert_empty_line_before = 0, "
        "insert_carriage_return_after = 1, insert_colon = 0, bold = 1, underline = 0, indent = 1 WHERE format_id = "
        "30");
    EXPECT_EQ(One(query), "30 | Plain | 0 | 1 | 0 | 1 | 0 | 1 | 0 | 3");
    database.Run("DELETE FROM Report_header_formats WHERE format_id = 30");
    EXPECT_EQ(Query(query), Lines{});
    database.Run("DELETE FROM Report_header_formats WHERE format_id = 30");
}

TEST_F(SampleTest, SavingHeadings)
{
    database.Run("INSERT INTO Report_headers (heading_id, heading, flag1) Values (313, 'PARENT''S VIEW', 3)");
    EXPECT_EQ(One("SELECT heading FROM Report_headers WHERE heading_id = 313"), "PARENT'S VIEW");
    database.Run("UPDATE Report_headers SET heading = 'VIEW' WHERE heading_id = 313");
    EXPECT_EQ(One("SELECT heading, flag1 FROM Report_headers WHERE heading_id = 313"), "VIEW | 3");
    database.Run("DELETE FROM Report_headers WHERE heading_id = 313");
    database.Run("DELETE FROM Report_header_settings WHERE heading_id = 41");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_header_settings WHERE heading_id = 41"), "0");
}

TEST_F(SampleTest, SavingSettings)
{
    const std::string where = "WHERE heading_id = 0 AND hosp_acct_id = -1 AND report_type_nbr = 0 AND flag1 = 3";
    EXPECT_EQ(One("SELECT format_id FROM Report_header_settings " + where), "14");
    database.Run("UPDATE Report_header_settings SET format_id = 16 " + where);
    EXPECT_EQ(One("SELECT format_id FROM Report_header_settings " + where), "16");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_header_settings WHERE heading_id = 0 AND hosp_acct_id = -1"), "5")
        << "the same setting of other partitions";
    database.Run("DELETE FROM Report_header_settings " + where);
    database.Run(
        "INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) Values "
        "(0, -1, 0, 17, 3)");
    EXPECT_EQ(One("SELECT format_id FROM Report_header_settings " + where), "17");
    // a copied heading may bring the defaults of two partitions along, both without a partition
    for (const std::string format : {"14", "17"})
        database.Run("INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, "
                     "flag1) Values (4000, -1, 0, " +
                     format + ", 0)");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_header_settings WHERE heading_id = 4000 AND flag1 = 0"), "2");
}

TEST_F(SampleTest, DefaultHeadingMode)
{
    const auto batch = [](const std::string &format, const std::string &partition)
    {
        return "IF EXISTS (SELECT * FROM System_user_cfg \r\n"
               "WHERE key_name = 'DefaultHeadingMode' and partition_id = " +
               partition + ")\r\nUPDATE system_user_cfg SET key_value = '" + format +
               "' WHERE key_name = 'DefaultHeadingMode' AND partition_id = " + partition +
               "\r\nELSE\r\nINSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, "
               "partition_id)\r\n"
               "VALUES(-1, 1, 'DefaultHeadingMode', " +
               format + ", " + partition + ")";
    };
    const std::string query =
        "SELECT partition_id, key_value FROM System_user_cfg WHERE key_name = 'DefaultHeadingMode' "
        "ORDER BY partition_id";
    EXPECT_EQ(Query(query), (Lines{"1 | 2", "3 | 14"}));
    database.Run(batch("16", "3"));
    database.Run(batch("20", "5"));
    EXPECT_EQ(Query(query), (Lines{"1 | 2", "3 | 16", "5 | 20"}));
}

TEST_F(SampleTest, SavingTaggingOptions)
{
    database.Run(
        "UPDATE system_user_cfg SET key_value = 'False' WHERE key_name = 'TagKnownHeadings' AND partition_id = 3");
    EXPECT_EQ(
        Query("SELECT user_id, key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' AND partition_id = 3 "
              "ORDER BY user_id"),
        (Lines{"-1 | False", "-1 | False", "12 | False"}));
    database.Run(
        "INSERT INTO system_user_cfg (user_id, application_id, key_name, key_value, partition_id) Values (-1, 1, "
        "'TagMixedCaseHeadings', 'True', 6)");
    EXPECT_EQ(One("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagMixedCaseHeadings' AND partition_id = 6"),
              "True");
}

TEST_F(SampleTest, EventLog)
{
    const auto entry = [](const std::string &message)
    {
        return "DECLARE @thetime datetime SELECT @thetime = GETDATE() INSERT INTO System_log (date_timestamp, "
               "severity, type, "
               "user_id, error_code, hosp_acct_id, dept_id, physician_id, document_id, schedule_id, batch_nbr, flag1, "
               "flag2, "
               "flag3, flag4, number1, number2, msg1) Values (@thetime, 2, 0, 12, 21010, -1, -1, -1, 0, 0, 0, 0, 0, 0, "
               "0, 0, "
               "0, '" +
               message + "')";
    };
    database.Run(entry("It''s " + std::string(85, 'x')));
    EXPECT_EQ(
        One("SELECT severity, type, user_id, error_code, hosp_acct_id, dept_id, physician_id, document_id, "
            "schedule_id, "
            "batch_nbr, flag1, flag2, flag3, flag4, number1, number2, msg1 FROM System_log WHERE date_timestamp > "
            "'2020-01-01'"),
        "2 | 0 | 12 | 21010 | -1 | -1 | -1 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | 0 | It's " + std::string(85, 'x'));
    EXPECT_THROW(database.Run(entry(std::string(91, 'x'))), runtime::Error)
        << "the insert is the batch's second result";
}

std::string OfPartitionAndAbove(const std::string &partition)
{
    return "WHERE flag1 IN (SELECT partition_id FROM System_partitions\r\n      WHERE partition_id = " + partition +
           " OR \r\n   (SELECT lineage FROM System_partitions WHERE partition_id = " + partition +
           ") like '%/' +\r\nRTRIM(CAST(partition_id as varchar(12))) + '/%')\r\n";
}

TEST_F(SampleTest, ReportOfFormats)
{
    const Lines lines = Query(
        "SELECT format_name, insert_empty_line_before, insert_carriage_return_after,insert_colon, bold, underline, "
        "indent, \r\npn = (select partition_name From System_partitions WHERE Report_header_formats.flag1 = "
        "partition_id)\r\nFROM Report_header_formats " +
        OfPartitionAndAbove("21") + "ORDER BY pn, format_name ASC");
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[0], "Großer Abstand | 1 | 1 | 0 | 0 | 1 | 0 | Klinikum Grünwald");
    EXPECT_EQ(lines[1], "Überschrift | 1 | 1 | 1 | 1 | 0 | 0 | Klinikum Grünwald");
    EXPECT_EQ(lines[2], "Default | 0 | 0 | 1 | 0 | 0 | 0 | Northfield Health Network");
    EXPECT_EQ(lines[10], "Western Bold | 1 | 1 | 1 | 1 | 0 | 0 | Western Region");
}

TEST_F(SampleTest, ReportOfHeadings)
{
    const Lines lines = Query("SELECT heading, pn = (select partition_name From System_partitions WHERE "
                              "Report_headers.flag1 = partition_id)\r\nFROM Report_headers " +
                              OfPartitionAndAbove("8") + "ORDER BY pn, heading ASC;");
    ASSERT_EQ(lines.size(), 14u + 111u + 2u + 72u);
    EXPECT_EQ(lines[0], "BILLING CODE | Eastern Region");
    EXPECT_EQ(lines[14].substr(lines[14].find(" | ")), " | Lakeside Hospital");
    EXPECT_EQ(lines[14 + 111], "DISCREPANCY | Lakeside Night Reading");
    EXPECT_EQ(lines[14 + 111 + 2], "<Default> | Northfield Health Network");
}

TEST_F(SampleTest, ReportOfSettings)
{
    const Lines lines = Query(
        "SELECT DISTINCT Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, "
        "Report_header_settings.report_type_nbr, Report_header_settings.format_id, Account_info.hosp_acct_name, "
        "reports_cfg.report_name, Report_headers.heading, Report_header_formats.format_name,  "
        "Report_header_settings.flag1 From account_info, report_header_settings, reports_cfg, report_header_formats, "
        "report_headers WHERE report_header_settings.hosp_acct_id = account_info.hosp_acct_id and "
        "report_header_settings.format_id = report_header_formats.format_id and "
        "report_header_settings.report_type_nbr = reports_cfg.report_type_nbr And "
        "report_header_settings.hosp_acct_id = reports_cfg.hosp_acct_id And report_header_settings.HEADING_ID = "
        "report_headers.HEADING_ID  AND (Account_info.partition_id = 5 OR\r\n (Report_header_settings.hosp_acct_id = "
        "-1 "
        "AND Report_header_settings.flag1 = 5))\r\nGROUP BY Report_header_settings.heading_id, "
        "Report_header_settings.hosp_acct_id, Report_header_settings.report_type_nbr, "
        "Report_header_settings.format_id, Report_headers.heading, Account_info.hosp_acct_name, "
        "Reports_cfg.report_name, report_header_formats.format_name, Report_header_settings.flag1 \r\nORDER BY "
        "report_header_settings.hosp_acct_id ASC, report_header_settings.report_type_nbr ASC, Report_headers.heading "
        "ASC;");
    EXPECT_EQ(lines,
              (Lines{
                  "0 | -1 | 0 | 20 | All Accounts | Report Default | <Default> | Imaging Run In | 5",
                  "36 | -1 | 0 | 21 | All Accounts | Report Default | FINDINGS | Imaging Block | 5",
                  "41 | -1 | 0 | 21 | All Accounts | Report Default | IMPRESSION | Imaging Block | 5",
                  "143 | 110 | 10 | 21 | Imaging Center North | Chest X-Ray | LUNGS | Imaging Block | 0",
                  "36 | 110 | 11 | 20 | Imaging Center North | CT Abdomen and Pelvis | FINDINGS | Imaging Run In | 0",
                  "198 | 111 | 0 | 21 | Imaging Center South | Report Default | BI-RADS | Imaging Block | 0",
                  "41 | 111 | 0 | 21 | Imaging Center South | Report Default | IMPRESSION | Imaging Block | 0",
                  "205 | 111 | 0 | 20 | Imaging Center South | Report Default | LEFT BREAST | Imaging Run In | 0",
                  "207 | 111 | 0 | 20 | Imaging Center South | Report Default | RIGHT BREAST | Imaging Run In | 0",
              }));
}

TEST_F(SampleTest, WhatMakesItWorthLookingAt)
{
    EXPECT_EQ(One("SELECT COUNT(*) FROM System_partitions WHERE delete_date IS NOT NULL"), "1");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_headers"), "313");
    EXPECT_EQ(One("SELECT COUNT(*) FROM account_info WHERE is_deleted = '1'"), "1");
    EXPECT_EQ(One("SELECT format_name + '|' FROM Report_header_formats WHERE format_id = 19"), "Trailing Blanks  |");
    EXPECT_EQ(One("SELECT heading FROM Report_headers WHERE heading = N'résumé'"), "Résumé");
    // nothing refers to what is not there
    EXPECT_EQ(
        One("SELECT COUNT(*) FROM Report_header_settings s WHERE NOT EXISTS (SELECT * FROM Report_headers h WHERE "
            "h.heading_id = s.heading_id) OR NOT EXISTS (SELECT * FROM Report_header_formats f WHERE f.format_id = "
            "s.format_id) OR NOT EXISTS (SELECT * FROM reports_cfg r WHERE r.hosp_acct_id = s.hosp_acct_id AND "
            "r.report_type_nbr = s.report_type_nbr)"),
        "0");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_header_settings WHERE hosp_acct_id > 0 AND flag1 <> 0"), "0");
    EXPECT_EQ(One("SELECT COUNT(*) FROM Report_header_settings WHERE hosp_acct_id = -1 AND flag1 = 0"), "0");
}

} // namespace
