// The texts of the statements that the store sends.
#include "store/statements.h"

#include "runtime/convert.h"
#include "runtime/text.h"
#include "store/modDataActivity.h"

namespace store::sql
{

namespace
{

std::string Number(std::int32_t value)
{
    return std::to_string(value);
}

std::string Flag(bool value)
{
    return value ? "1" : "0";
}

// A text between single quotes.
std::string Quoted(std::string_view text)
{
    return "'" + DoubleQuotes(text) + "'";
}

std::string CounterCondition(const Counter &counter)
{
    return "WHERE application_id = 1 AND user_id = -1 AND key_name = '" + std::string(counter.key) + "'";
}

// A setting has no key of its own.
std::string SettingCondition(const model::clsSettings &setting)
{
    return "WHERE heading_id = " + Number(setting.SettingID()) + " AND hosp_acct_id = " + Number(setting.HospitalID) +
           " AND report_type_nbr = " + Number(setting.ReportType) + " AND flag1 = " + Number(setting.PartitionID);
}

std::string TaggingKey(bool mixedCase)
{
    return mixedCase ? "'TagMixedCaseHeadings'" : "'TagKnownHeadings'";
}

// What a log row holds of a message.
constexpr std::size_t kLogMessageLength = 90;

} // namespace

std::string RaiseCounter(const Counter &counter)
{
    const std::string key(counter.key);
    return "IF NOT EXISTS (SELECT * FROM System_user_cfg \r\n" + CounterCondition(counter) +
           ")\r\n"
           "INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value)\r\n"
           "SELECT -1, 1, '" +
           key + "', ISNULL(MAX(" + std::string(counter.column) + "), 0) + 1\r\n" + "FROM " +
           std::string(counter.table) +
           "\r\n"
           "ELSE\r\n"
           "UPDATE System_user_cfg\r\n"
           "SET key_value = STR(CONVERT(int, key_value) + 1)\r\n" +
           CounterCondition(counter);
}

std::string ReadCounter(const Counter &counter)
{
    return "SELECT CONVERT(int, key_value) From System_user_cfg\r\n" + CounterCondition(counter);
}

std::string InsertFormat(const model::clsFormats &format, std::int32_t partitionId)
{
    return "INSERT INTO Report_header_formats (format_id, "
           "format_name, insert_empty_line_before, insert_carriage_return_after, "
           "insert_colon, bold, underline, indent, system_format, flag1) "
           "Values (" +
           Number(format.FormatID) + ", " + Quoted(format.FormatName) + ", " + Flag(format.InsertBefore) + ", " +
           Flag(format.InsertAfter) + ", " + Flag(format.InsertColon) + ", " + Flag(format.Bold) + ", " +
           Flag(format.Underline) + ", " + Flag(format.Indent) + ", 0, " + Number(partitionId) + ")";
}

std::string UpdateFormat(const model::clsFormats &format)
{
    return "UPDATE Report_header_formats SET format_name = " + Quoted(format.FormatName) +
           ", insert_empty_line_before = " + Flag(format.InsertBefore) +
           ", insert_carriage_return_after = " + Flag(format.InsertAfter) +
           ", insert_colon = " + Flag(format.InsertColon) + ", bold = " + Flag(format.Bold) +
           ", underline = " + Flag(format.Underline) + ", indent = " + Flag(format.Indent) +
           " WHERE format_id = " + Number(format.FormatID);
}

std::string DeleteFormat(const model::clsFormats &format)
{
    return "DELETE FROM Report_header_formats WHERE format_id = " + Number(format.FormatID);
}

std::string InsertHeading(const model::clsHeadings &heading, std::int32_t partitionId)
{
    return "INSERT INTO Report_headers (heading_id, heading, flag1) Values (" + Number(heading.HeadID) + ", " +
           Quoted(heading.HeadingName) + ", " + Number(partitionId) + ")";
}

std::string UpdateHeading(const model::clsHeadings &heading)
{
    return "UPDATE Report_headers SET heading = " + Quoted(heading.HeadingName) +
           " WHERE heading_id = " + Number(heading.HeadID);
}

std::string DeleteHeading(const model::clsHeadings &heading)
{
    return "DELETE FROM Report_headers WHERE heading_id = " + Number(heading.HeadID);
}

std::string DeleteSettingsOfHeading(const model::clsHeadings &heading)
{
    return "DELETE FROM Report_header_settings WHERE heading_id = " + Number(heading.HeadID);
}

std::string InsertSetting(const model::clsSettings &setting)
{
    return "INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) Values (" +
           Number(setting.SettingID()) + ", " + Number(setting.HospitalID) + ", " + Number(setting.ReportType) + ", " +
           Number(setting.FormatID) + ", " + Number(setting.PartitionID) + ")";
}

std::string UpdateSetting(const model::clsSettings &setting)
{
    return "UPDATE Report_header_settings SET format_id = " + Number(setting.FormatID) + " " +
           SettingCondition(setting);
}

std::string DeleteSetting(const model::clsSettings &setting)
{
    return "DELETE FROM Report_header_settings " + SettingCondition(setting);
}

bool IsDefaultHeadingMode(const model::clsSettings &setting)
{
    return setting.SettingID() == 0 && setting.ReportType == 0 && setting.HospitalID == -1;
}

std::string StoreDefaultHeadingMode(const model::clsSettings &setting)
{
    const std::string format = Number(setting.FormatID);
    const std::string partition = Number(setting.PartitionID);
    return "IF EXISTS (SELECT * FROM System_user_cfg \r\n"
           "WHERE key_name = 'DefaultHeadingMode' and partition_id = " +
           partition +
           ")\r\n"
           "UPDATE system_user_cfg SET key_value = '" +
           format + "' WHERE key_name = 'DefaultHeadingMode' AND partition_id = " + partition +
           "\r\n"
           "ELSE\r\n"
           "INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id)\r\n"
           "VALUES(-1, 1, 'DefaultHeadingMode', " +
           format + ", " + partition + ")";
}

std::string UpdateTaggingOption(std::int32_t partitionId, bool mixedCase, bool value)
{
    return "UPDATE system_user_cfg SET key_value = '" + runtime::ToText(value) +
           "' WHERE key_name = " + TaggingKey(mixedCase) + " AND partition_id = " + Number(partitionId);
}

std::string InsertTaggingOption(std::int32_t partitionId, bool mixedCase, bool value)
{
    return "INSERT INTO system_user_cfg (user_id, application_id, key_name, key_value, partition_id) Values (-1, 1, " +
           TaggingKey(mixedCase) + ", '" + runtime::ToText(value) + "', " + Number(partitionId) + ")";
}

std::string InsertLogEntry(std::int16_t userId, std::int32_t code, std::string_view message)
{
    return "DECLARE @thetime datetime "
           "SELECT @thetime = GETDATE() "
           "INSERT INTO System_log (date_timestamp, severity, type, user_id, error_code, "
           "hosp_acct_id, dept_id, physician_id, document_id, schedule_id, batch_nbr, "
           "flag1, flag2, flag3, flag4, number1, number2, msg1) "
           "Values (@thetime, 2, 0, " +
           Number(userId) + ", " + Number(code) + ", -1, -1, -1, 0, 0, 0, 0, 0, 0, 0, 0, 0, " +
           Quoted(runtime::Left(message, kLogMessageLength)) + ")";
}

} // namespace store::sql
