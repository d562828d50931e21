// Every file operation of the report fails; the INI file and the registry hold anything.
#include "day.h"

#include "host/modGlobalVariables.h"
#include "host/modReadZentraINI.h"
#include "platform/native_file.h"
#include "platform/posix/paths.h"
#include "report/report_file.h"
#include "report/settings_report.h"

#include <algorithm>
#include <cerrno>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

int s_left = -1; // operations that are still let through before one fails
bool s_fired = false;
int s_error = ENOSPC;

// True when this operation is the one that fails.
bool Fails()
{
    if (s_left < 0 || s_left-- > 0)
        return false;
    s_fired = true;
    errno = s_error;
    return true;
}

} // namespace

// The seam of the platform, with files whose every operation can fail: this program's own in place of the library's.
namespace platform
{

std::FILE *OpenForWriting(const std::string &path)
{
    if (Fails())
        return nullptr;
    std::FILE *const file = std::fopen(PosixPath(path).c_str(), "wb");
    if (!file)
        return nullptr;
    cookie_io_functions_t operations{};
    operations.write = [](void *to, const char *bytes, std::size_t size) -> ssize_t
    { return Fails() ? 0 : static_cast<ssize_t>(std::fwrite(bytes, 1, size, static_cast<std::FILE *>(to))); };
    operations.close = [](void *to)
    {
        const int code = std::fclose(static_cast<std::FILE *>(to));
        return Fails() ? EOF : code;
    };
    return fopencookie(file, "wb", operations);
}

bool TryRemove(const std::string &path)
{
    return !Fails() && unlink(PosixPath(path).c_str()) == 0;
}

} // namespace platform

namespace faults
{

namespace
{

using support::Lines;

class FailingFile final : public Fault
{
public:
    explicit FailingFile(int place)
    {
        s_left = place - 1;
        s_fired = false;
    }
    ~FailingFile() override { s_left = -1; }
    bool Fired(const support::TestDatabase &) const override { return s_fired; }
};

TEST(Files, OfAReportFailOneByOneAndTheUserIsTold)
{
    CountDown(1, [](int place) { return std::make_unique<FailingFile>(place); });
}

TEST(Files, OfALongReportFailOneByOneWithOneError)
{
    const support::TestFolder folder;
    for (int place = 1;; ++place)
    {
        s_error = place % 2 ? ENOSPC : EIO;
        const FailingFile fault(place);
        runtime::ErrorTrap trap;
        report::ReportFile file(trap, folder.Path("r.txt"));
        for (int i = 0; i < 4; ++i)
            file.Line(std::string(300000, 'x'));
        file.Close();
        EXPECT_EQ(!s_fired    ? 0
                  : place % 2 ? runtime::kDiskFull
                              : runtime::kDeviceIoError,
                  trap.Number())
            << "operation " << place;
        if (!s_fired)
        {
            EXPECT_GT(place, 5);
            return;
        }
    }
}

class Outside : public support::DatabaseTest
{
protected:
    void SetUp() override {}
    Outside() { runtime::MakeRef<host::clsConfig>()->SetZentra_INIFile(m_ini); }
    ~Outside() override { host::gZentraINIFile.clear(); }

    // Reads the site INI file with these bytes; true when the user was told that the root directory is missing.
    bool ReadIni(const std::string &bytes)
    {
        support::WriteFile(m_ini, bytes);
        desktop.boxes.clear();
        desktop.ForgetAnswers();
        desktop.WillAnswerOk();
        host::gIniTagKnownHeadings = host::gIniTagMixedCaseHeadings = false;
        host::ReadSiteIni();
        desktop.ForgetAnswers();
        EXPECT_EQ(host::gNetworkRootDir.empty() ? 1u : 0u, desktop.boxes.size());
        return !desktop.boxes.empty();
    }
    static std::string Random(std::size_t size)
    {
        std::mt19937 random(1);
        std::string bytes(size, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
        return bytes;
    }

    const std::string m_ini = database.Folder().Path("ZENTRA.INI");
};

TEST_F(Outside, AnIniFileThatIsCutShortGivesWhatIsLeft)
{
    const std::string whole = "[System]\r\nNetworkRootDir=C:\\ROOT\r\n[EditDesktop]\r\nTagMixedCaseHeadings=yes\r\n"
                              "TagKnownHeadings=on\r\n";
    const std::size_t start = whole.find("C:\\"), end = start + 7, yes = whole.find("yes");
    for (std::size_t size = 0; size <= whole.size(); ++size)
    {
        SCOPED_TRACE(size);
        EXPECT_EQ(size <= start, ReadIni(whole.substr(0, size)));
        EXPECT_EQ(size <= start ? "" : whole.substr(start, std::min(size, end) - start), host::gNetworkRootDir);
        EXPECT_EQ(size == yes + 1 || size >= yes + 3, host::gIniTagMixedCaseHeadings); // "y" is one, "ye" is none
        EXPECT_EQ(size >= whole.find("on\r\n") + 2, host::gIniTagKnownHeadings);
    }
}

TEST_F(Outside, AnIniFileOfAnyBytesGivesAValueOrAMessage)
{
    constexpr std::size_t kLarge = 10 * 1024 * 1024;
    EXPECT_TRUE(ReadIni(Random(kLarge)));
    EXPECT_TRUE(ReadIni(std::string(100000, '[')));
    EXPECT_TRUE(ReadIni(std::string(100000, '\0')));
    EXPECT_FALSE(ReadIni("[System]\nNetworkRootDir=" + std::string(kLarge, 'x')));
    EXPECT_EQ(std::string(127, 'x'), host::gNetworkRootDir);
    unlink(m_ini.c_str());
    mkdir(m_ini.c_str(), 0777); // a folder of that name cannot be read
    host::gNetworkRootDir = "before";
    desktop.WillAnswerOk();
    host::ReadSiteIni();
    EXPECT_EQ("", host::gNetworkRootDir);
}

TEST_F(Outside, ARegistryValueOfAnythingIsToldAndOpensNothing)
{
    Connect();
    constexpr char kKey[] = "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0";
    const std::string missing = support::Box(0, "Missing: LocalRootDir", "Local root directory is not set");
    struct Value
    {
        std::string text;
        std::uint32_t type;
        bool isPlace;
    };
    for (const Value &value : {Value{"", 1, false}, Value{Random(10 * 1024 * 1024), 1, false},
                               Value{std::string(256, 'x'), 1, false}, Value{"C:\\ROOT", 2, false},
                               Value{"C:\\ROOT", 4, false}, Value{Random(200), 1, true}, Value{"\xFF\xFE", 1, true}})
    {
        support::TestRegistry registry;
        registry.Set(platform::RegistryRoot::LocalMachine, kKey, "LocalRootDir", value.text, value.type);
        desktop.boxes.clear();
        desktop.WillAnswerOk();
        report::PrintSettings(nullptr);
        ASSERT_EQ(1u, desktop.boxes.size());
        EXPECT_EQ(!value.isPlace, desktop.boxes[0] == missing) << desktop.boxes[0];
        EXPECT_TRUE(desktop.opened.empty());
    }
}

} // namespace

} // namespace faults
