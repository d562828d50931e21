// Every statement that the store sends, whole.
#include "store/statements.h"

#include "runtime/ref.h"
#include "store/modDataActivity.h"

#include <gtest/gtest.h>

#include <string>

using namespace store;

namespace
{

runtime::Ref<model::clsFormats> Format(std::int16_t id, const std::string &name, const char *flags)
{
    const auto format = runtime::MakeRef<model::clsFormats>();
    const auto on = [&](int place) { return flags[place] == '1'; };
    format->FillFields(id, name, on(0), on(1), on(2), on(3), on(4), on(5), false, false, true);
    return format;
}

runtime::Ref<model::clsHeadings> Heading(std::int16_t id, const std::string &name)
{
    const auto heading = runtime::MakeRef<model::clsHeadings>();
    heading->FillHeadings(id, name, false, false, true);
    return heading;
}

runtime::Ref<model::clsSettings> Setting(std::int16_t heading, std::int16_t account, std::int16_t reportType,
                                         std::int16_t format, std::int32_t partition)
{
    const auto setting = runtime::MakeRef<model::clsSettings>();
    setting->FillSettings(heading, account, reportType, format, partition, false, true);
    return setting;
}

TEST(DoubleQuotes, DoublesEverySingleQuoteAndNothingElse)
{
    static const std::pair<const char *, const char *> kCases[] = {
        {"", ""},          {"plain", "plain"}, {"O'Brien", "O''Brien"},
        {"'", "''"},       {"''", "''''"},     {"'a'b'", "''a''b''"},
        {"end'", "end''"}, {"\"x\"", "\"x\""}, {"Kr\xC3\xBC'ger", "Kr\xC3\xBC''ger"},
    };
    for (const auto &[text, doubled] : kCases)
        EXPECT_EQ(doubled, DoubleQuotes(text)) << text;
}

TEST(Statements, RaiseAndReadTheCounters)
{
    struct Case
    {
        const sql::Counter &counter;
        std::string key, column, table;
    };
    for (const auto &[counter, key, column, table] :
         {Case{sql::kFormatCounter, "NextSRFormatID", "format_id", "Report_header_formats"},
          Case{sql::kHeadingCounter, "NextSRHeaderID", "heading_id", "Report_headers"}})
    {
        const std::string condition = "WHERE application_id = 1 AND user_id = -1 AND key_name = '" + key + "'";
        EXPECT_EQ("IF NOT EXISTS (SELECT * FROM System_user_cfg \r\n" + condition +
                      ")\r\n"
                      "INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value)\r\n"
                      "SELECT -1, 1, '" +
                      key + "', ISNULL(MAX(" + column + "), 0) + 1\r\nFROM " + table +
                      "\r\nELSE\r\nUPDATE System_user_cfg\r\nSET key_value = STR(CONVERT(int, key_value) + 1)\r\n" +
                      condition,
                  sql::RaiseCounter(counter));
        EXPECT_EQ("SELECT CONVERT(int, key_value) From System_user_cfg\r\n" + condition, sql::ReadCounter(counter));
    }
}

TEST(Statements, InsertFormat)
{
    EXPECT_EQ("INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, "
              "insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) "
              "Values (12, 'O''Brien', 1, 0, 1, 0, 1, 0, 0, 2147483647)",
              sql::InsertFormat(*Format(12, "O'Brien", "101010"), 2147483647));
    EXPECT_EQ("INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, "
              "insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) "
              "Values (-32768, '', 0, 1, 0, 1, 0, 1, 0, -1)",
              sql::InsertFormat(*Format(-32768, "", "010101"), -1));
}

TEST(Statements, ANewFormatIsNeverWrittenAsASystemFormat)
{
    const auto format = Format(1, "x", "000000");
    const std::string plain = sql::InsertFormat(*format, 3);
    format->SystemFormat = true;
    EXPECT_EQ(plain, sql::InsertFormat(*format, 3));
}

TEST(Statements, UpdateFormat)
{
    EXPECT_EQ("UPDATE Report_header_formats SET format_name = 'It''s', insert_empty_line_before = 1, "
              "insert_carriage_return_after = 0, insert_colon = 1, bold = 0, underline = 1, indent = 0 "
              "WHERE format_id = 32767",
              sql::UpdateFormat(*Format(32767, "It's", "101010")));
}

// One flag at a time: each stands behind its own column.
TEST(Statements, EachFormatFlagHasItsColumn)
{
    static const char *const kColumns[] = {
        "insert_empty_line_before", "insert_carriage_return_after", "insert_colon", "bold", "underline", "indent"};
    for (int i = 0; i < 6; ++i)
    {
        std::string flags = "000000";
        flags[static_cast<std::size_t>(i)] = '1';
        const std::string update = sql::UpdateFormat(*Format(1, "x", flags.c_str()));
        for (int j = 0; j < 6; ++j)
            EXPECT_NE(std::string::npos,
                      update.find(std::string(kColumns[j]) + " = " + (i == j ? "1" : "0") + (j == 5 ? " " : ", ")))
                << update;
    }
}

TEST(Statements, DeleteFormat)
{
    EXPECT_EQ("DELETE FROM Report_header_formats WHERE format_id = 7", sql::DeleteFormat(*Format(7, "x", "000000")));
}

TEST(Statements, Headings)
{
    const auto heading = Heading(9, "Patient's History:");
    EXPECT_EQ("INSERT INTO Report_headers (heading_id, heading, flag1) Values (9, 'Patient''s History:', 3)",
              sql::InsertHeading(*heading, 3));
    EXPECT_EQ("UPDATE Report_headers SET heading = 'Patient''s History:' WHERE heading_id = 9",
              sql::UpdateHeading(*heading));
    EXPECT_EQ("DELETE FROM Report_headers WHERE heading_id = 9", sql::DeleteHeading(*heading));
    EXPECT_EQ("DELETE FROM Report_header_settings WHERE heading_id = 9", sql::DeleteSettingsOfHeading(*heading));
}

TEST(Statements, Settings)
{
    const auto setting = Setting(9, -1, 4, 12, 70000);
    EXPECT_EQ("INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) "
              "Values (9, -1, 4, 12, 70000)",
              sql::InsertSetting(*setting));
    EXPECT_EQ("UPDATE Report_header_settings SET format_id = 12 "
              "WHERE heading_id = 9 AND hosp_acct_id = -1 AND report_type_nbr = 4 AND flag1 = 70000",
              sql::UpdateSetting(*setting));
    EXPECT_EQ("DELETE FROM Report_header_settings "
              "WHERE heading_id = 9 AND hosp_acct_id = -1 AND report_type_nbr = 4 AND flag1 = 70000",
              sql::DeleteSetting(*setting));
}

TEST(Statements, DefaultHeadingModeIsHeading0OfAllAccountsAndReportTypes)
{
    EXPECT_TRUE(sql::IsDefaultHeadingMode(*Setting(0, -1, 0, 5, 3)));
    EXPECT_FALSE(sql::IsDefaultHeadingMode(*Setting(1, -1, 0, 5, 3)));
    EXPECT_FALSE(sql::IsDefaultHeadingMode(*Setting(0, 0, 0, 5, 3)));
    EXPECT_FALSE(sql::IsDefaultHeadingMode(*Setting(0, -1, 1, 5, 3)));
}

TEST(Statements, StoreTheDefaultHeadingModeQuotedInTheUpdateAndBareInTheInsert)
{
    EXPECT_EQ(
        "IF EXISTS (SELECT * FROM System_user_cfg \r\n"
        "WHERE key_name = 'DefaultHeadingMode' and partition_id = 3)\r\n"
        "UPDATE system_user_cfg SET key_value = '5' WHERE key_name = 'DefaultHeadingMode' AND partition_id = 3\r\n"
        "ELSE\r\n"
        "INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id)\r\n"
        "VALUES(-1, 1, 'DefaultHeadingMode', 5, 3)",
        sql::StoreDefaultHeadingMode(*Setting(0, -1, 0, 5, 3)));
}

TEST(Statements, TaggingOptions)
{
    EXPECT_EQ("UPDATE system_user_cfg SET key_value = 'True' WHERE key_name = 'TagKnownHeadings' AND partition_id = 3",
              sql::UpdateTaggingOption(3, false, true));
    EXPECT_EQ("UPDATE system_user_cfg SET key_value = 'False' "
              "WHERE key_name = 'TagMixedCaseHeadings' AND partition_id = -2147483648",
              sql::UpdateTaggingOption(-2147483648, true, false));
    EXPECT_EQ("INSERT INTO system_user_cfg (user_id, application_id, key_name, key_value, partition_id) "
              "Values (-1, 1, 'TagKnownHeadings', 'False', 3)",
              sql::InsertTaggingOption(3, false, false));
    EXPECT_EQ("INSERT INTO system_user_cfg (user_id, application_id, key_name, key_value, partition_id) "
              "Values (-1, 1, 'TagMixedCaseHeadings', 'True', 12)",
              sql::InsertTaggingOption(12, true, true));
}

std::string LogEntry(const std::string &user, const std::string &code, const std::string &message)
{
    return "DECLARE @thetime datetime SELECT @thetime = GETDATE() "
           "INSERT INTO System_log (date_timestamp, severity, type, user_id, error_code, hosp_acct_id, dept_id, "
           "physician_id, document_id, schedule_id, batch_nbr, flag1, flag2, flag3, flag4, number1, number2, msg1) "
           "Values (@thetime, 2, 0, " +
           user + ", " + code + ", -1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 0, 0, '" + message + "')";
}

TEST(Statements, LogEntry)
{
    EXPECT_EQ(LogEntry("0", "21010", "Error"), sql::InsertLogEntry(0, 21010, "Error"));
    EXPECT_EQ(LogEntry("-32768", "-2147483648", ""), sql::InsertLogEntry(-32768, -2147483648, ""));
    EXPECT_EQ(LogEntry("7", "1", "O''Brien"), sql::InsertLogEntry(7, 1, "O'Brien"));
}

TEST(Statements, ALogEntryIsCutTo90CharactersBeforeItsQuotesAreDoubled)
{
    const std::string a(89, 'a');
    EXPECT_EQ(LogEntry("7", "1", a + "b"), sql::InsertLogEntry(7, 1, a + "b"));
    EXPECT_EQ(LogEntry("7", "1", a + "b"), sql::InsertLogEntry(7, 1, a + "bc"));
    EXPECT_EQ(LogEntry("7", "1", a + "''"), sql::InsertLogEntry(7, 1, a + "'b"));
    EXPECT_EQ(LogEntry("7", "1", std::string(180, '\'')), sql::InsertLogEntry(7, 1, std::string(200, '\'')));
    // a character beyond ASCII counts once and is not split
    EXPECT_EQ(LogEntry("7", "1", a + "\xC3\xBC"), sql::InsertLogEntry(7, 1, a + "\xC3\xBC" + "b"));
}

} // namespace
