// The settings report: the saved configuration of the current partition as a text file, opened in the system's viewer.
#include "report/settings_report.h"

#include "host/General_Registry.h"
#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "model/globals.h"
#include "report/report_file.h"
#include "report/report_queries.h"
#include "runtime/convert.h"
#include "runtime/text.h"
#include "store/modDataActivity.h"

#include <optional>
#include <string>

namespace report
{

namespace
{

// The two defaults have different numbers, which is intentional.
constexpr std::int32_t kAllAccounts = -1;
constexpr std::int32_t kAllReportTypes = 0;

// One print of the report. A step that fails is left out; the last error is in the trap.
class Printing
{
public:
    Printing(runtime::ErrorTrap &trap, const model::clsPartition &partition)
        : m_trap(trap), m_partition(partition), m_id(partition.m_lngPartitionID)
    {
    }

    // Writes the file. False when not even the tagging options could be read, and no file was made.
    bool Write(const std::string &path);

private:
    bool Open(const std::string &query);
    template <class Row>
    void ForEachRow(Row &&row);
    void WriteGeneral(ReportFile &file);
    void WriteFormats(ReportFile &file);
    void WriteHeadings(ReportFile &file);
    void WriteConfiguration(ReportFile &file);

    runtime::ErrorTrap &m_trap;
    const model::clsPartition &m_partition;
    std::int32_t m_id;
};

// A column of the current row as text; NULL is the empty text.
std::string Text(int column)
{
    const odbc::rdoColumn value = host::gResultset->rdoColumns(column);
    return value.IsNull() ? std::string() : value.Text();
}

const char *YesOrNo(bool yes)
{
    return yes ? "Yes" : "No";
}

void WriteLabel(ReportFile &file, const char *indent, const std::string &name, std::int32_t number)
{
    file << indent << name << "(" << std::to_string(number) << ")";
    file.EndLine();
}

// Opens the shared result set. When that fails, the user is told at once, besides the report of the error at the end.
bool Printing::Open(const std::string &query)
{
    if (m_trap.Try([&] { host::gResultset = host::OpenResultset(query); }))
        return true;
    platform::MsgBox("Database error.  Unable to retrieve configuration.", platform::kOkOnly);
    return false;
}

// Visits the rows of the shared result set and closes it. An error between two rows ends the walk.
template <class Row>
void Printing::ForEachRow(Row &&row)
{
    m_trap.Try(
        [&]
        {
            while (!host::gResultset->AtEnd())
            {
                m_trap.Try(row);
                host::gResultset->MoveNext();
            }
        });
    m_trap.Try([&] { host::gResultset->Close(); });
    host::gResultset.reset();
}

bool Printing::Write(const std::string &path)
{
    if (!Open(TagOptionQuery(m_id)))
        return false;
    ReportFile file(m_trap, path);
    WriteGeneral(file);
    WriteFormats(file);
    WriteHeadings(file);
    WriteConfiguration(file);
    file.Close();
    return true;
}

void Printing::WriteGeneral(ReportFile &file)
{
    file << "GENERAL SETTINGS\t\t\t" << platform::CurrentDesktop().NowText();
    file.EndLine();
    file << "Partition: " << m_partition.m_strPartitionName;
    file.EndLine();
    file.Rule();
    // An option without a row prints nothing, one with two rows two lines.
    ForEachRow(
        [&]
        {
            const std::string key = runtime::UpperCase(runtime::Trim(Text(2)));
            const char *value = YesOrNo(runtime::UpperCase(Text(3)) == "TRUE");
            if (key == "TAGKNOWNHEADINGS")
                file << "Tag Only Known Headings: " << value << "\r\n";
            else if (key == "TAGMIXEDCASEHEADINGS")
                file << "Tag Mixed Case Headings: " << value << "\r\n";
        });
}

void Printing::WriteFormats(ReportFile &file)
{
    file.Separator();
    file.Line("HEADING FORMATS");
    file.Rule();
    if (!Open(FormatQuery(m_id)))
        return;
    static constexpr const char *kAttributes[] = {
        "CR Before: ", "CR After: ", "Colon: ", "Bold: ", "Underline: ", "Indent: "};
    int number = 0;
    ForEachRow(
        [&]
        {
            file << std::to_string(++number) << ".  " << Text(0) << " \\ " << Text(7) << "\r\n";
            int column = 0;
            for (const char *attribute : kAttributes)
                file << "\t" << attribute << YesOrNo(host::gResultset->rdoColumns(++column).IsOne()) << "\r\n";
        });
}

void Printing::WriteHeadings(ReportFile &file)
{
    file.Separator();
    file.Line("HEADINGS");
    file.Rule();
    if (!Open(HeadingQuery(m_id)))
        return;
    int number = 0;
    ForEachRow([&] { file << std::to_string(++number) << ".  " << Text(0) << " \\ " << Text(1) << "\r\n"; });
}

// Which format each heading has, account by account and report type by report type. The rows come sorted by both; a
// name is printed where its number changes.
void Printing::WriteConfiguration(ReportFile &file)
{
    if (!Open(ConfigurationQuery(m_id)))
        return;
    file.Separator();
    for (const char *const head : {"CONFIGURATION SETTINGS", "ACCT(#)", "\tREPORT(#)", "\t\tHEADER - FORMAT"})
        file.Line(head);
    file.Rule();
    std::optional<std::int32_t> account;
    std::optional<std::int32_t> reportType;
    ForEachRow(
        [&]
        {
            const std::int32_t rowAccount = host::gResultset->rdoColumns(kAccount).Long();
            const std::int32_t rowReportType = host::gResultset->rdoColumns(kReportType).Long();
            if (account != rowAccount)
            {
                if (account)
                    file.Separator();
                account = rowAccount;
                reportType.reset();
                WriteLabel(file, "", *account == kAllAccounts ? "Account Default" : Text(kAccountName), *account);
            }
            if (reportType != rowReportType)
            {
                reportType = rowReportType;
                WriteLabel(file, "\t", *reportType == kAllReportTypes ? "Report Default" : Text(kReportName),
                           *reportType);
            }
            file << "\t\t" << Text(kHeading) << " - " << Text(kFormatName);
            file.EndLine();
        });
}

} // namespace

void PrintSettings(platform::WindowHandle owner)
{
    const std::string rootDirectory =
        host::ReadRegistryString(platform::RegistryRoot::LocalMachine,
                                 "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0", "LocalRootDir");
    if (rootDirectory.empty())
    {
        platform::MsgBox("Local root directory is not set", platform::kOkOnly, "Missing: LocalRootDir");
        return;
    }

    const host::DatabaseAction print;
    runtime::ErrorTrap trap;
    const std::string path = ReportPath(rootDirectory);
    if (platform::FileExists(path))
        trap.Try([&] { platform::RemoveFile(path); });

    // Held, since the boxes that come up let the host's code run.
    const runtime::Ref<model::clsPartition> partition = model::gCurrentPartition;
    bool written = false;
    trap.Try(
        [&]
        {
            if (!partition)
                runtime::Raise(runtime::kObjectNotSet);
            written = Printing(trap, *partition).Write(path);
        });
    // The working directory is the file's own path, intentionally.
    if (written)
        trap.Try([&] { platform::CurrentDesktop().OpenFile(owner, path, path); });
    store::ReportError(trap, "Error encountered while printing settings: ", store::kPrintingSettings);
}

} // namespace report
