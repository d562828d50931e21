// Where the report stands, and how its lines become bytes.
#include "report/report_file.h"

#include "report/report_queries.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>

using report::ReportFile;

namespace
{

struct PathCase
{
    const char *root;
    const char *path;
};

TEST(ReportPath, JoinsTheRootDirectoryWithOneBackslash)
{
    static const PathCase kCases[] = {
        {"C:\\ROOT\\", "C:\\ROOT\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"C:\\ROOT", "C:\\ROOT\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"C:\\", "C:\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"C:", "C:\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"\\\\server\\share", "\\\\server\\share\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        // blanks are ignored by the question alone
        {"C:\\ROOT\\ ", "C:\\ROOT\\ ZENTRA\\TEMP\\HEADINGS.TXT"},
        {" C:\\ROOT", " C:\\ROOT\\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"C:\\ROOT ", "C:\\ROOT \\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {" ", " \\ZENTRA\\TEMP\\HEADINGS.TXT"},
        {"/", "/\\ZENTRA\\TEMP\\HEADINGS.TXT"},
    };
    for (const auto &[root, path] : kCases)
        EXPECT_EQ(path, report::ReportPath(root)) << '"' << root << '"';
}

class ReportFileTest : public testing::Test
{
protected:
    std::string Path() const { return m_folder.Path("r.txt"); }
    std::string Written() const { return support::ReadFile(Path()); }

    runtime::ErrorTrap m_trap;
    support::TestFolder m_folder;
};

TEST_F(ReportFileTest, LinesEndInCarriageReturnAndLineFeed)
{
    ReportFile file(m_trap, Path());
    file << "a"
         << "b";
    file.EndLine();
    file.Separator();
    file.Rule();
    file.Close();
    EXPECT_EQ("ab\r\n\r\r\n" + std::string(76, '-') + "\r\n", Written());
    EXPECT_FALSE(m_trap.Pending());
}

TEST_F(ReportFileTest, TextsBecomeBytesOfTheAnsiCodePage)
{
    ReportFile file(m_trap, Path());
    file.Line("Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC");
    file.Line("\xE4\xB8\xAD");
    file.Close();
    EXPECT_EQ("Gr\xFC\xDF \x80\r\n?\r\n", Written());
}

TEST_F(ReportFileTest, ALongReportIsWrittenWhole)
{
    ReportFile file(m_trap, Path());
    std::string expected;
    for (int i = 0; i < 50000; ++i)
    {
        const std::string number = std::to_string(i);
        file.Line("\xC3\xA4 " + number);
        expected += "\xE4 " + number + "\r\n";
    }
    file.Close();
    EXPECT_EQ(expected, Written());
}

TEST_F(ReportFileTest, AFileThatCannotBeMadeIsOneErrorAndTakesNothing)
{
    ReportFile file(m_trap, m_folder.Path("missing/r.txt"));
    EXPECT_EQ(runtime::kPathNotFound, m_trap.Number());
    m_trap = runtime::ErrorTrap();
    file.Line(std::string(1000000, 'x'));
    file.Close();
    EXPECT_FALSE(m_trap.Pending());
}

} // namespace
