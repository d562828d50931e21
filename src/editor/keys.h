// Keys of list items and drop-down entries: the id of a record and the partition that owns it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace editor
{

struct RecordKey
{
    std::int16_t id = 0;
    std::int32_t partition = 0;
    friend bool operator==(const RecordKey &, const RecordKey &) = default;
};

// "12-3": of the entries of cmbFormats.
std::string PlainKey(std::int16_t id, std::int32_t partition);
// "Key12-3": of the items of lvwFormats and lvwHeadings.
std::string ListKey(std::int16_t id, std::int32_t partition);
// "Key4": of the items of lvwReportType. The number is the text from the database.
std::string ReportTypeKey(std::string_view number);

// Parsing back, at the first "-". Errors: 5 without one, 6 and 13 for what is no 16- or 32-bit number.
RecordKey ParsePlainKey(std::string_view key);
RecordKey ParseListKey(std::string_view key);
// The number of a report type: the key, trimmed, without its first three characters. Errors 6 and 13.
std::int16_t ParseReportTypeKey(std::string_view key);

} // namespace editor
