// The settings report, beside its four queries sent bare.
#include "bare_odbc.h"
#include "editor_session.h"
#include "platform/posix/registry_store.h"
#include "report/settings_report.h"
#include "rows.h"

#include <filesystem>

namespace bench
{

namespace
{

double Print()
{
    const auto root = std::filesystem::temp_directory_path() / "kvheaders-bench";
    std::filesystem::create_directories(root / "ZENTRA" / "TEMP");
    platform::SetRegistryValue(platform::RegistryRoot::LocalMachine,
                               "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0", "LocalRootDir",
                               root.string());
    Site site("report");
    double seconds = 0;
    site.Open([&](editor::frmHeadings &) { seconds = Time([] { report::PrintSettings(nullptr); }); });
    std::filesystem::remove_all(root);
    return seconds;
}

double FetchBare()
{
    Site site("report", true);
    std::vector<std::string> queries;
    const auto root = std::filesystem::temp_directory_path() / "kvheaders-bench";
    std::filesystem::create_directories(root / "ZENTRA" / "TEMP");
    site.Open(
        [&](editor::frmHeadings &)
        {
            site.Sent();
            report::PrintSettings(nullptr);
            queries = site.Sent();
        });
    std::filesystem::remove_all(root);
    BareOdbc bare(site.File());
    return Time([&] { bare.Fetch(queries); });
}

} // namespace

void AddReportRows()
{
    AddRow("print the settings", "100000 rows", {.ratio = 1.25}, Print, FetchBare, 3);
}

} // namespace bench
