// The last section of the report: which format each heading has, account by account and report type by report type.
#include "report/configuration_section.h"

#include "report/report_queries.h"

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

void ConfigurationSection::Add(std::int32_t account, std::int32_t reportType, const TextOf &text)
{
    if (m_account != account)
    {
        if (m_account)
            m_file.Separator();
        m_account = account;
        m_reportType.reset();
        m_file << (account == kAllAccounts ? "Account Default" : text(kAccountName)) << "(" << std::to_string(account)
               << ")";
        m_file.EndLine();
    }
    if (m_reportType != reportType)
    {
        m_reportType = reportType;
        m_file << "\t" << (reportType == kAllReportTypes ? "Report Default" : text(kReportName)) << "("
               << std::to_string(reportType) << ")";
        m_file.EndLine();
    }
    m_file << "\t\t" << text(kHeading) << " - " << text(kFormatName);
    m_file.EndLine();
}

} // namespace report
