// The last section of the report: which format each heading has, account by account and report type by report type.
#pragma once

#include "report/report_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace report
{

// Writes the section's head and its rows, which come sorted by account and report type.
class ConfigurationSection
{
public:
    // Gives the text of a ConfigurationColumn of the row that is being added.
    using TextOf = std::function<std::string(int column)>;

    explicit ConfigurationSection(ReportFile &file);

    // Writes a row of an account (-1: the default of all accounts) and a report type (0: the default of the account's
    // report types). `text` is asked for what is printed only: names are, where they change.
    void Add(std::int32_t account, std::int32_t reportType, const TextOf &text);

private:
    ReportFile &m_file;
    std::optional<std::int32_t> m_account;    // of the row before; none before the first
    std::optional<std::int32_t> m_reportType; // none also at the start of an account
};

} // namespace report
