// The settings report, beside its four queries sent bare.
#include "bare_odbc.h"
#include "editor_session.h"
#include "platform/posix/registry_store.h"
#include "report/settings_report.h"
#include "rows.h"

#include <filesystem>
#include <unistd.h>

namespace bench
{

namespace
{

// The folder that the report is written to, found as on a workstation.
class ReportFolder
{
public:
    ReportFolder() : m_root(std::filesystem::temp_directory_path() / ("kvheaders-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_root / "ZENTRA" / "TEMP");
        platform::SetRegistryValue(platform::RegistryRoot::LocalMachine,
                                   "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0", "LocalRootDir",
                                   m_root.string());
    }
    ~ReportFolder() { std::filesystem::remove_all(m_root); }
    ReportFolder(const ReportFolder &) = delete;
    ReportFolder &operator=(const ReportFolder &) = delete;

private:
    std::filesystem::path m_root;
};

double PrintReport()
{
    const ReportFolder folder;
    Site site("report");
    double seconds = 0;
    site.WhileOpen([&](editor::frmHeadings &) { seconds = Time([] { report::PrintSettings(nullptr); }); });
    return seconds;
}

std::vector<std::string> Queries()
{
    const ReportFolder folder;
    Site site("report", true);
    std::vector<std::string> queries;
    site.WhileOpen(
        [&](editor::frmHeadings &)
        {
            site.Sent();
            report::PrintSettings(nullptr);
            queries = site.Sent();
        });
    return queries;
}

double FetchBare()
{
    static const std::vector<std::string> queries = Queries();
    BareOdbc bare(SiteFile("report"));
    return TimeBare([&] { bare.Fetch(queries); });
}

} // namespace

void AddReportRows()
{
    AddRow("print the settings", "100000", {.ratio = 1.25}, PrintReport, FetchBare);
}

} // namespace bench
