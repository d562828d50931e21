// The statements of the headings editor, letter for letter, on a small site whose answers are worked out by hand.
#include "play.h"

#include <algorithm>

namespace
{

class Editor : public tsqltest::PlayTest
{
protected:
    void SetUp() override
    {
        const char *const setUp = "CREATE TABLE System_partitions (partition_id int NOT NULL PRIMARY KEY, "
                                  "partition_name varchar(60) NULL, lineage "
                                  "varchar(255) NULL, delete_date datetime NULL)\n"
                                  "CREATE TABLE Report_header_formats (format_id smallint NOT NULL PRIMARY KEY, "
                                  "format_name varchar(50) NULL, "
                                  "insert_empty_line_before smallint NULL, insert_carriage_return_after smallint NULL, "
                                  "insert_colon smallint NULL, bold "
                                  "smallint NULL, underline smallint NULL, indent smallint NULL, system_format "
                                  "smallint NULL, flag1 int NOT NULL)\n"
                                  "CREATE TABLE Report_headers (heading_id smallint NOT NULL PRIMARY KEY, heading "
                                  "varchar(100) NULL, flag1 int NOT NULL)\n"
                                  "CREATE TABLE Report_header_settings (heading_id smallint NOT NULL, hosp_acct_id "
                                  "smallint NOT NULL, report_type_nbr "
                                  "smallint NOT NULL, format_id smallint NOT NULL, flag1 int NOT NULL, PRIMARY KEY "
                                  "(heading_id, hosp_acct_id, "
                                  "report_type_nbr, flag1))\n"
                                  "CREATE TABLE account_info (hosp_acct_id smallint NOT NULL PRIMARY KEY, "
                                  "hosp_acct_name varchar(60) NULL, is_deleted "
                                  "char(1) NOT NULL, partition_id int NULL)\n"
                                  "CREATE TABLE reports_cfg (hosp_acct_id smallint NOT NULL, report_type_nbr smallint "
                                  "NOT NULL, report_name varchar(60) "
                                  "NULL, is_deleted bit NOT NULL, PRIMARY KEY (hosp_acct_id, report_type_nbr))\n"
                                  "CREATE TABLE System_user_cfg (user_id int NOT NULL, application_id int NOT NULL, "
                                  "key_name varchar(50) NOT NULL, "
                                  "key_value varchar(255) NULL, partition_id int NULL)\n"
                                  "CREATE TABLE System_log (date_timestamp datetime NOT NULL, severity int, type int, "
                                  "user_id smallint, error_code int, "
                                  "hosp_acct_id int, dept_id int, physician_id int, document_id int, schedule_id int, "
                                  "batch_nbr int, flag1 int, flag2 "
                                  "int, flag3 int, flag4 int, number1 int, number2 int, msg1 varchar(90))\n"
                                  // 1 above 5 above 7; 8 below 5 is deleted; 15 stands alone
                                  "INSERT System_partitions VALUES (1, 'Root', '/', NULL), (5, 'Clinic', '/1/', NULL), "
                                  "(7, 'Ward', '/1/5/', NULL), (8, "
                                  "'Gone', '/1/5/', '20050101'), (15, 'Other', '/', NULL)\n"
                                  "INSERT Report_header_formats VALUES (0, 'Plain', 0, 0, 0, 0, 0, 0, 1, 1), (3, "
                                  "'bold', 0, 1, 1, 1, 0, 0, 0, 5), (4, "
                                  "'Indented', 1, 0, 0, 0, 0, 1, 0, 5), (9, 'Foreign', 1, 1, 1, 1, 1, 1, 0, 15)\n"
                                  "INSERT Report_headers VALUES (0, '<Default>', 1), (1, 'Findings', 5), (2, "
                                  "'allergies', 5), (6, '\xC3\x89tat', 5), (7, "
                                  "'Exam', 5), (9, 'Foreign', 15)\n"
                                  "INSERT account_info VALUES (-1, 'All', '0', NULL), (0, 'Zero', '0', 5), (2, 'Hill', "
                                  "'0', 5), (3, 'Lake', '0', 7), (4, "
                                  "'Old', '1', 5), (5, 'Lost', '0', 8), (6, 'Far', '0', 15), (1, 'Abbey', '0', 5)\n"
                                  "INSERT reports_cfg VALUES (-1, 0, 'Any', 0), (2, 0, 'Any', 0), (2, 1, 'X-ray', 0), "
                                  "(2, 2, 'CT', 0), (2, 3, 'Old', 1), "
                                  "(3, 1, 'X-ray', 0)\n"
                                  "INSERT Report_header_settings VALUES (1, -1, 0, 3, 5), (1, 2, 1, 4, 0), (2, 2, 0, "
                                  "0, 0), (2, 3, 1, 3, 0), (1, 4, 0, 3, "
                                  "0), (1, 5, 0, 3, 0), (1, 0, 0, 3, 0), (0, -1, 0, 0, 5), (0, -1, 0, 0, 15)";
        ASSERT_EQ("#5 + #4 + #6 + #8 + #6 + #9", Play(setUp));
    }
};

TEST_F(Editor, LoadsFormats)
{
    const std::string list =
        "SELECT format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, "
        "bold, underline, indent, system_format ";
    EXPECT_EQ("3|bold|0|1|1|1|0|0|0;4|Indented|1|0|0|0|0|1|0",
              Play(list + "FROM Report_header_formats WHERE flag1 = 5\r\nORDER BY system_format DESC, format_name"));
    EXPECT_EQ("0|Plain|0|0|0|0|0|0|1;3|bold|0|1|1|1|0|0|0;9|Foreign|1|1|1|1|1|1|0;4|Indented|1|0|0|0|0|1|0",
              Play(list + "FROM Report_header_formats ORDER BY system_format DESC, format_name"));
}

TEST_F(Editor, LoadsHeadings)
{
    EXPECT_EQ("2|allergies;6|\xC3\x89tat;7|Exam;1|Findings",
              Play("SELECT heading_id, heading FROM Report_headers WHERE flag1 = 5ORDER BY heading ASC"));
    EXPECT_EQ("none", Play("SELECT heading_id, heading FROM Report_headers WHERE flag1 = -1ORDER BY heading ASC"));
}

TEST_F(Editor, LoadsSettings)
{
    const auto scoped = [](const std::string &partition)
    {
        return "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 FROM Report_header_settings\r\n "
               "WHERE hosp_acct_id "
               "IN (SELECT hosp_acct_id FROM account_info WHERE hosp_acct_id = -1 OR (is_deleted = '0' AND "
               "(hosp_acct_id > '0'  AND "
               "partition_id IN (SELECT partition_id FROM System_partitions \r\n   WHERE (partition_id = " +
               partition + "\r\n    OR lineage LIKE '%/' + CAST(" + partition +
               " AS varchar(12)) + '/%')\r\n    AND delete_date IS NULL))))ORDER BY heading_id ASC";
    };
    // Accounts 1 and 2 of partition 5, 3 of 7 below it; not 0, not the deleted 4, not 5 of a deleted partition.
    EXPECT_EQ("6", Play("SELECT COUNT(*) FROM Report_header_settings WHERE hosp_acct_id IN (-1, 1, 2, 3)"));
    m_session->Execute(scoped("5"));
    tsql::Result *rows = m_session->NextResult();
    std::vector<int> accounts;
    std::vector<int> headings;
    while (rows->Step())
    {
        headings.push_back(static_cast<int>(rows->Integer(0)));
        accounts.push_back(static_cast<int>(rows->Integer(1)));
    }
    EXPECT_EQ((std::vector<int>{0, 0, 1, 1, 2, 2}), headings);
    std::sort(accounts.begin(), accounts.end());
    EXPECT_EQ((std::vector<int>{-1, -1, -1, 2, 2, 3}), accounts);
    EXPECT_EQ("0|-1|0|0|5;0|-1|0|0|15;1|-1|0|3|5", Play(scoped("-1")));
    EXPECT_EQ("0;0;1;1;1;1;1;2;2",
              Play("SELECT heading_id FROM (SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 "
                   "FROM Report_header_settings) s ORDER BY heading_id ASC"));
}

TEST_F(Editor, LoadsPartitions)
{
    EXPECT_EQ("5|Clinic|/1/;7|Ward|/1/5/",
              Play("SELECT partition_id, partition_name, lineage FROM System_partitions \r\n   WHERE (partition_id = "
                   "5\r\n    OR lineage "
                   "LIKE '%/' + CAST(5 AS varchar(12)) + '/%')\r\n    AND delete_date IS NULL"));
    EXPECT_EQ("1|Root|/;5|Clinic|/1/",
              Play("SELECT partition_id, partition_name, lineage FROM System_partitions\r\nWHERE (SELECT lineage FROM "
                   "System_partitions "
                   "WHERE partition_id = 7) like '%/' + \r\nRTRIM(CAST(partition_id as varchar(12))) + '/%'"));
    EXPECT_EQ("none", Play("SELECT partition_id, partition_name, lineage FROM System_partitions\r\nWHERE (SELECT "
                           "lineage FROM System_partitions "
                           "WHERE partition_id = 1) like '%/' + \r\nRTRIM(CAST(partition_id as varchar(12))) + '/%'"));
}

TEST_F(Editor, LoadsAccountsAndReportTypes)
{
    EXPECT_EQ("1|Abbey|0;2|Hill|0",
              Play("SELECT DISTINCT hosp_acct_id, hosp_acct_name, is_deleted FROM account_info WHERE is_deleted = "
                   "'0' AND hosp_acct_id > '0'  AND partition_id = 5\r\nGROUP BY hosp_acct_id, hosp_acct_name, "
                   "is_deleted ORDER BY hosp_acct_id"));
    EXPECT_EQ("2|CT|2;1|X-ray|2",
              Play("SELECT DISTINCT report_type_nbr, report_name, hosp_acct_id FROM reports_cfg WHERE is_deleted = "
                   "'0' AND hosp_acct_id = '2' AND report_type_nbr > '0' GROUP BY report_type_nbr, report_name, "
                   "hosp_acct_id ORDER BY report_name"));
}

TEST_F(Editor, CountsIdentifiersUp)
{
    const auto next = [](const std::string &key, const std::string &column, const std::string &table)
    {
        return "IF NOT EXISTS (SELECT * FROM System_user_cfg \r\nWHERE application_id = 1 AND user_id = -1 AND "
               "key_name = '" +
               key +
               "')\r\nINSERT INTO System_user_cfg (user_id, application_id, key_name, key_value)\r\nSELECT -1, 1, '" +
               key + "', ISNULL(MAX(" + column + "), 0) + 1\r\nFROM " + table +
               "\r\nELSE\r\nUPDATE System_user_cfg\r\nSET key_value = STR(CONVERT(int, key_value) + 1)\r\nWHERE "
               "application_id = 1 AND "
               "user_id = -1 AND key_name = '" +
               key + "'";
    };
    const auto read = [](const std::string &key)
    {
        return "SELECT CONVERT(int, key_value) From System_user_cfg\r\nWHERE application_id = 1 AND user_id = -1 AND "
               "key_name = '" +
               key + "'";
    };
    const std::string formats = next("NextSRFormatID", "format_id", "Report_header_formats");
    const std::string headings = next("NextSRHeaderID", "heading_id", "Report_headers");
    EXPECT_EQ("none", Play(read("NextSRFormatID")));
    EXPECT_EQ("#1", Play(formats));
    EXPECT_EQ("10", Play(read("NextSRFormatID")));
    EXPECT_EQ("10", Play("SELECT key_value FROM System_user_cfg")) << "the number without blanks at first";
    EXPECT_EQ("#1", Play(formats));
    EXPECT_EQ("11", Play(read("NextSRFormatID")));
    EXPECT_EQ("        11", Play("SELECT key_value FROM System_user_cfg"));
    EXPECT_EQ("#1", Play(headings));
    EXPECT_EQ("10", Play(read("NextSRHeaderID"))) << "headings count by themselves";
    Play("DELETE Report_headers DELETE System_user_cfg");
    EXPECT_EQ("#1", Play(headings));
    EXPECT_EQ("1", Play(read("NextSRHeaderID"))) << "an empty table";
    Play("UPDATE System_user_cfg SET key_value = '  x'");
    EXPECT_EQ("!245 22018 Conversion failed when converting the varchar value '  x' to data type int.", Play(headings));
}

TEST_F(Editor, SavesFormatsHeadingsAndSettings)
{
    PlayAll({
        {"a new format",
         "INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, "
         "insert_carriage_return_after, "
         "insert_colon, bold, underline, indent, system_format, flag1) Values (12, 'O''Brien', 1, 0, 1, 0, 1, 0, 0, 5)",
         "#1"},
        {"a changed format",
         "UPDATE Report_header_formats SET format_name = 'new', insert_empty_line_before = 0, "
         "insert_carriage_return_after = 1, "
         "insert_colon = 0, bold = 1, underline = 0, indent = 1 WHERE format_id = 12",
         "#1"},
        {"what is there", "SELECT * FROM Report_header_formats WHERE format_id = 12", "12|new|0|1|0|1|0|1|0|5"},
        {"a new heading", "INSERT INTO Report_headers (heading_id, heading, flag1) Values (20, 'It''s', 5)", "#1"},
        {"a changed heading", "UPDATE Report_headers SET heading = 'Its' WHERE heading_id = 20", "#1"},
        {"a new setting",
         "INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) Values (20, "
         "2, 1, 12, 0)",
         "#1"},
        {"a changed setting",
         "UPDATE Report_header_settings SET format_id = 3 WHERE heading_id = 20 AND hosp_acct_id = 2 AND "
         "report_type_nbr = 1 AND "
         "flag1 = 0",
         "#1"},
        {"a removed setting",
         "DELETE FROM Report_header_settings WHERE heading_id = 20 AND hosp_acct_id = 2 AND report_type_nbr = 1 AND "
         "flag1 = 0",
         "#1"},
        {"a removed heading", "DELETE FROM Report_headers WHERE heading_id = 20", "#1"},
        {"its settings", "DELETE FROM Report_header_settings WHERE heading_id = 20", "#0"},
        {"a removed format", "DELETE FROM Report_header_formats WHERE format_id = 12", "#1"},
        {"a name that is too long",
         "UPDATE Report_header_formats SET format_name = '123456789012345678901234567890123456789012345678901' WHERE "
         "format_id = 3",
         "!8152 22001 String or binary data would be truncated."},
    });
}

TEST_F(Editor, SavesTheDefaultHeadingMode)
{
    const auto batch = [](const std::string &format)
    {
        return "IF EXISTS (SELECT * FROM System_user_cfg \r\nWHERE key_name = 'DefaultHeadingMode' and partition_id = "
               "5)\r\nUPDATE "
               "system_user_cfg SET key_value = '" +
               format +
               "' WHERE key_name = 'DefaultHeadingMode' AND partition_id = 5\r\nELSE\r\nINSERT INTO System_user_cfg "
               "(user_id, "
               "application_id, key_name, key_value, partition_id)\r\nVALUES(-1, 1, 'DefaultHeadingMode', " +
               format + ", 5)";
    };
    EXPECT_EQ("#1", Play(batch("3")));
    EXPECT_EQ("3|5", Play("SELECT key_value, partition_id FROM System_user_cfg"));
    EXPECT_EQ("#1", Play(batch("4")));
    EXPECT_EQ("4|5", Play("SELECT key_value, partition_id FROM System_user_cfg"));
}

TEST_F(Editor, SavesAndLoadsTaggingOptions)
{
    PlayAll({
        {"no row yet",
         "UPDATE system_user_cfg SET key_value = 'True' WHERE key_name = 'TagKnownHeadings' AND partition_id = 5",
         "#0"},
        {"a row",
         "INSERT INTO system_user_cfg (user_id, application_id, key_name, key_value, partition_id) Values (-1, 1, "
         "'TagKnownHeadings', 'False', 5)",
         "#1"},
        {"changed",
         "UPDATE system_user_cfg SET key_value = 'True' WHERE key_name = 'TagKnownHeadings' AND partition_id = 5",
         "#1"},
        {"all partitions",
         "SELECT user_id, application_id, key_name, key_value, partition_id FROM system_user_cfg WHERE user_id = -1 "
         "AND "
         "application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings')",
         "-1|1|TagKnownHeadings|True|5"},
        {"of the report",
         "SELECT user_id, application_id, key_name, key_value From system_user_cfg WHERE partition_id = 5 AND user_id "
         "= -1 AND "
         "application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings');",
         "-1|1|TagKnownHeadings|True"},
    });
}

TEST_F(Editor, WritesTheEventLog)
{
    const std::string batch =
        "DECLARE @thetime datetime SELECT @thetime = GETDATE() INSERT INTO System_log (date_timestamp, severity, type, "
        "user_id, "
        "error_code, hosp_acct_id, dept_id, physician_id, document_id, schedule_id, batch_nbr, flag1, flag2, flag3, "
        "flag4, number1, "
        "number2, msg1) Values (@thetime, 2, 0, 7, 21000, -1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 0, 0, ";
    EXPECT_EQ("# + #1", Play(batch + "'O''Brien')")) << "two results, the first without columns";
    EXPECT_EQ("2|0|7|21000|-1|O'Brien",
              Play("SELECT severity, type, user_id, error_code, hosp_acct_id, msg1 FROM System_log WHERE "
                   "date_timestamp > '20200101'"));
    EXPECT_EQ("# + !8152 22001 String or binary data would be truncated.",
              Play(batch + "'" + std::string(91, 'x') + "')"));
}

TEST_F(Editor, ReportsFormatsAndHeadings)
{
    EXPECT_EQ("bold|0|1|1|1|0|0|Clinic;Indented|1|0|0|0|0|1|Clinic;Plain|0|0|0|0|0|0|Root",
              Play("SELECT format_name, insert_empty_line_before, insert_carriage_return_after,insert_colon, bold, "
                   "underline, indent, "
                   "\r\npn = (select partition_name From System_partitions WHERE Report_header_formats.flag1 = "
                   "partition_id)\r\nFROM "
                   "Report_header_formats WHERE flag1 IN (SELECT partition_id FROM System_partitions\r\n      WHERE "
                   "partition_id = 5 OR "
                   "\r\n   (SELECT lineage FROM System_partitions WHERE partition_id = 5) like '%/' "
                   "+\r\nRTRIM(CAST(partition_id as "
                   "varchar(12))) + '/%')\r\nORDER BY pn, format_name ASC"));
    EXPECT_EQ(
        "allergies|Clinic;\xC3\x89tat|Clinic;Exam|Clinic;Findings|Clinic;<Default>|Root",
        Play("SELECT heading, pn = (select partition_name From System_partitions WHERE Report_headers.flag1 = "
             "partition_id)\r\nFROM "
             "Report_headers WHERE flag1 IN (SELECT partition_id FROM System_partitions\r\n      WHERE partition_id = "
             "7 OR \r\n   "
             "(SELECT lineage FROM System_partitions WHERE partition_id = 7) like '%/' +\r\nRTRIM(CAST(partition_id as "
             "varchar(12))) + '/%')\r\nORDER BY pn, heading ASC;"));
}

TEST_F(Editor, ReportsTheConfiguration)
{
    EXPECT_EQ(
        "0|-1|0|0|All|Any|<Default>|Plain|5;1|-1|0|3|All|Any|Findings|bold|5;2|2|0|0|Hill|Any|allergies|Plain|0;"
        "1|2|1|4|Hill|X-ray|Findings|Indented|0",
        Play("SELECT DISTINCT Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, "
             "Report_header_settings.report_type_nbr, Report_header_settings.format_id, Account_info.hosp_acct_name, "
             "reports_cfg.report_name, Report_headers.heading, Report_header_formats.format_name,  "
             "Report_header_settings.flag1 From account_info, report_header_settings, reports_cfg, "
             "report_header_formats, "
             "report_headers WHERE report_header_settings.hosp_acct_id = account_info.hosp_acct_id and "
             "report_header_settings.format_id = report_header_formats.format_id and "
             "report_header_settings.report_type_nbr "
             "= reports_cfg.report_type_nbr And report_header_settings.hosp_acct_id = reports_cfg.hosp_acct_id And "
             "report_header_settings.HEADING_ID = report_headers.HEADING_ID  AND (Account_info.partition_id = 5 OR\r\n "
             "(Report_header_settings.hosp_acct_id = -1 AND Report_header_settings.flag1 = 5))\r\nGROUP BY "
             "Report_header_settings.heading_id, Report_header_settings.hosp_acct_id, "
             "Report_header_settings.report_type_nbr, Report_header_settings.format_id, Report_headers.heading, "
             "Account_info.hosp_acct_name, Reports_cfg.report_name, report_header_formats.format_name, "
             "Report_header_settings.flag1 \r\nORDER BY report_header_settings.hosp_acct_id ASC, "
             "report_header_settings.report_type_nbr ASC, Report_headers.heading ASC;"));
}

} // namespace
