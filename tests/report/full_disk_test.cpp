// A report that does not fit on the disk.
#include "report/report_file.h"
#include "report/settings_report.h"

#include "model/globals.h"
#include "support/database_fixture.h"
#include "support/registry.h"

#include <filesystem>
#include <string>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

using support::Lines;

namespace
{

// A device that takes nothing, as a full disk does.
std::string FullDisk()
{
    return support::ProgramPath("/dev/full");
}

TEST(FullDisk, IsFoundAtTheLatestWhenTheReportIsClosed)
{
    runtime::ErrorTrap trap;
    report::ReportFile file(trap, FullDisk());
    file.Line("short");
    EXPECT_FALSE(trap.Pending());
    file.Close();
    EXPECT_EQ(runtime::kDiskFull, trap.Number());
    EXPECT_EQ("Disk full", trap.Description());
}

TEST(FullDisk, EndsALongReportWithOneError)
{
    runtime::ErrorTrap trap;
    report::ReportFile file(trap, FullDisk());
    file.Line(std::string(1000000, 'x'));
    EXPECT_EQ(runtime::kDiskFull, trap.Number());
    trap = runtime::ErrorTrap();
    file.Line(std::string(1000000, 'y'));
    file.Close();
    EXPECT_FALSE(trap.Pending());
}

#ifndef _WIN32

constexpr const char *kKey = "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0";

// No file of this process may grow beyond so many bytes, for as long as it lives.
class SmallFiles
{
public:
    explicit SmallFiles(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

class ReportOnAFullDisk : public support::DatabaseTest
{
};

TEST_F(ReportOnAFullDisk, IsReportedAndWhatWasWrittenRemains)
{
    const std::string folder = database.Folder().Path();
    std::filesystem::create_directories(folder + "/ZENTRA/TEMP");
    support::TestRegistry registry;
    registry.Set(platform::RegistryRoot::LocalMachine, kKey, "LocalRootDir", folder);
    Run("INSERT INTO System_partitions VALUES (3, 'Lakeside', '/', NULL)");
    model::gCurrentPartition = runtime::MakeRef<model::clsPartition>();
    model::gCurrentPartition->SetPartitionID(3);
    constexpr std::size_t kRoom = 100;
    std::optional<SmallFiles> small(kRoom);
    desktop.WillAnswerOk();
    // There is room again before the event log is written.
    desktop.whileBoxIsOpen = [&](const std::string &) { small.reset(); };
    report::PrintSettings(nullptr);
    EXPECT_EQ(Lines{support::ErrorBox("Error encountered while printing settings: Disk full")}, desktop.boxes);
    EXPECT_EQ(Lines{"21011 | Error encountered while printing settings: Disk full"},
              Query("SELECT error_code, msg1 FROM System_log"));
    const std::string written = support::ReadFile(folder + "/ZENTRA/TEMP/HEADINGS.TXT");
    EXPECT_EQ(kRoom, written.size());
    EXPECT_TRUE(written.starts_with("GENERAL SETTINGS\t\t\t")) << written;
    ASSERT_EQ(1u, desktop.opened.size()) << "it is opened all the same";
    EXPECT_EQ(written, desktop.opened[0].content);
}

#endif

} // namespace
