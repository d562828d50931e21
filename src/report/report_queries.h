// The four queries of the settings report. Pure functions; every blank and line break in them is intentional.
#pragma once

#include <cstdint>
#include <string>

namespace report
{

// The two tagging options of the partition.
std::string TagOptionQuery(std::int32_t partitionId);

// The formats of the partition and of all its ancestors, by owning partition and name. Columns: format_name, the six
// layout flags, pn (name of the owning partition).
std::string FormatQuery(std::int32_t partitionId);

// The headings of the partition and of all its ancestors, by owning partition and text. Columns: heading, pn.
std::string HeadingQuery(std::int32_t partitionId);

// The settings of the partition's own accounts and its settings for all accounts, by account, report type and heading.
std::string ConfigurationQuery(std::int32_t partitionId);

// Columns of ConfigurationQuery that are printed, by their places.
enum ConfigurationColumn
{
    kAccount = 1,
    kReportType = 2,
    kAccountName = 4,
    kReportName = 5,
    kHeading = 6,
    kFormatName = 7
};

} // namespace report
