// The texts of the statements that the store sends. Pure functions; every blank and line break in them is intentional.
#pragma once

#include "model/clsFormats.h"
#include "model/clsHeadings.h"
#include "model/clsSettings.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace store::sql
{

// One of the two identifier counters of System_user_cfg, and the column after whose greatest value it starts.
struct Counter
{
    std::string_view key;
    std::string_view table;
    std::string_view column;
};
inline constexpr Counter kFormatCounter{"NextSRFormatID", "Report_header_formats", "format_id"};
inline constexpr Counter kHeadingCounter{"NextSRHeaderID", "Report_headers", "heading_id"};

// Raises the counter by one, or makes its row.
std::string RaiseCounter(const Counter &counter);
std::string ReadCounter(const Counter &counter);

// A new format is never a system format; an update leaves that and the owner alone.
std::string InsertFormat(const model::clsFormats &format, std::int32_t partitionId);
std::string UpdateFormat(const model::clsFormats &format);
std::string DeleteFormat(const model::clsFormats &format);

std::string InsertHeading(const model::clsHeadings &heading, std::int32_t partitionId);
std::string UpdateHeading(const model::clsHeadings &heading);
std::string DeleteHeading(const model::clsHeadings &heading);
// The heading's settings in every partition, for every account and report type.
std::string DeleteSettingsOfHeading(const model::clsHeadings &heading);

std::string InsertSetting(const model::clsSettings &setting);
std::string UpdateSetting(const model::clsSettings &setting);
std::string DeleteSetting(const model::clsSettings &setting);

// True for the setting that represents its partition's default heading mode: heading 0, all accounts, all report types.
bool IsDefaultHeadingMode(const model::clsSettings &setting);
// Stores the setting's format as its partition's default heading mode. The value is quoted in the update and bare in
// the insert.
std::string StoreDefaultHeadingMode(const model::clsSettings &setting);

// The option's value is stored as the word True or False.
std::string UpdateTaggingOption(std::int32_t partitionId, bool mixedCase, bool value);
std::string InsertTaggingOption(std::int32_t partitionId, bool mixedCase, bool value);

// A row of the event log. The message is cut to its first 90 characters, then its quotes are doubled.
std::string InsertLogEntry(std::int16_t userId, std::int32_t code, std::string_view message);

} // namespace store::sql
