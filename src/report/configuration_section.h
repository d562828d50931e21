// The last section of the report: which format each heading has, account by account and report type by report type.
#pragma once

#include "report/report_file.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace report
{

// One setting as it is printed.
struct ConfigurationRow
{
    std::int32_t account; // -1: the default of all accounts
    std::string_view accountName;
    std::int32_t reportType; // 0: the default of the account's report types
    std::string_view reportName;
    std::string_view heading;
    std::string_view format;
};

// Writes the section's head and its rows, which come sorted by account and report type.
class ConfigurationSection
{
public:
    explicit ConfigurationSection(ReportFile &file);

    void Add(const ConfigurationRow &row);

private:
    ReportFile &m_file;
    std::optional<std::int32_t> m_account;    // of the row before; none before the first
    std::optional<std::int32_t> m_reportType; // none also at the start of an account
};

} // namespace report
