// The last section of the report: which format each heading has, account by account and report type by report type.
#include "report/configuration_section.h"

#include <string>

namespace report
{

namespace
{

// The two defaults are told by different numbers, and are meant to be.
constexpr std::int32_t kAllAccounts = -1;
constexpr std::int32_t kAllReportTypes = 0;

} // namespace

ConfigurationSection::ConfigurationSection(ReportFile &file) : m_file(file)
{
    m_file.Separator();
    m_file.Line("CONFIGURATION SETTINGS");
    m_file.Line("ACCT(#)");
    m_file.Line("\tREPORT(#)");
    m_file.Line("\t\tHEADER - FORMAT");
    m_file.Rule();
}

void ConfigurationSection::Add(const ConfigurationRow &row)
{
    if (m_account != row.account)
    {
        if (m_account)
            m_file.Separator();
        m_account = row.account;
        m_reportType.reset();
        m_file << (row.account == kAllAccounts ? "Account Default" : row.accountName) << "("
               << std::to_string(row.account) << ")";
        m_file.EndLine();
    }
    if (m_reportType != row.reportType)
    {
        m_reportType = row.reportType;
        m_file << "\t" << (row.reportType == kAllReportTypes ? "Report Default" : row.reportName) << "("
               << std::to_string(row.reportType) << ")";
        m_file.EndLine();
    }
    m_file << "\t\t" << row.heading << " - " << row.format;
    m_file.EndLine();
}

} // namespace report
