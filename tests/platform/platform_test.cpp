// The seam to the system: what an INI file, the registry, the code page and files give.
#include "platform/code_page.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "platform/version.h"
#include "runtime/error_trap.h"
#include "runtime/handler.h"
#include "support/error_number.h"
#include "support/fake_desktop.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using platform::ReadProfileString;
using support::NumberOf;

// A file of the folder with these bytes; gives its path.
std::string Make(const support::TestFolder &folder, const std::string &name, const std::string &bytes)
{
    support::WriteFile(folder.Path(name), bytes);
    return folder.Path(name);
}

class Profile : public testing::Test
{
protected:
    std::string Write(const std::string &content) { return Make(m_folder, "site.ini", content); }
    support::TestFolder m_folder;
};

TEST_F(Profile, FindsTheFirstKeyInItsSectionTrimmedAndUnquoted)
{
    const std::string file = Write("[Other]\r\nKey=wrong\r\n[sYSTEM]\r\n;kEY=no\r\nkEY=right\r\nKey=second\r\n"
                                   "[S]\nA=  x y  \nB=\"  in quotes \"\nC='single'\nD=\"half\n E = 1\nF=caf\xE9\nG=" +
                                   std::string(127, 'a') + "\nH=" + std::string(128, 'b') + "\n");
    struct Case
    {
        const char *section;
        const char *key;
        std::string value;
    };
    const Case cases[] = {{"System", "Key", "right"},
                          {"S", "A", "x y"},
                          {"S", "B", "  in quotes "},
                          {"S", "C", "single"},
                          {"S", "D", "\"half"},
                          {"S", "E", "1"},
                          {"S", "F", "café"},
                          {"S", "G", std::string(127, 'a')},
                          {"S", "H", std::string(127, 'b')}};
    for (const Case &c : cases)
        EXPECT_EQ(ReadProfileString(c.section, c.key, file), c.value) << c.key;
}

TEST_F(Profile, MissingFileSectionOrKeyIsEmpty)
{
    const std::string file = Write("[S]\nA=1\n");
    EXPECT_EQ(ReadProfileString("S", "B", file), "");
    EXPECT_EQ(ReadProfileString("T", "A", file), "");
    EXPECT_EQ(ReadProfileString("S", "A", m_folder.Path("none.ini")), "");
    EXPECT_EQ(ReadProfileString("S", "A", m_folder.Path()), "") << "a folder";
}

TEST_F(Profile, SurvivesGarbage)
{
    std::string garbage(10'000'000, '\0');
    unsigned state = 12345;
    for (char &c : garbage)
    {
        state = state * 1103515245u + 12345u;
        c = static_cast<char>(state >> 16);
    }
    EXPECT_EQ(ReadProfileString("System", "NetworkRootDir", Write(garbage)), "");
}

TEST(CodePage, IsWindows1252)
{
    EXPECT_EQ(platform::FromAnsi("\x80\xE9\xFF z"), "€éÿ z");
    EXPECT_EQ(platform::ToAnsi("€éÿ z"), "\x80\xE9\xFF z");
    EXPECT_EQ(platform::ToAnsi("日"), "?");
    EXPECT_EQ(platform::ToAnsi("\u007F\u0080\u00A0"), "\x7F?\xA0");
    EXPECT_EQ(platform::ToAnsi(""), "");
}

TEST(Files, ExistsForFilesOnly)
{
    support::TestFolder folder;
    const std::string file = Make(folder, "a.txt", "x");
    EXPECT_TRUE(platform::FileExists(file));
    EXPECT_FALSE(platform::FileExists(folder.Path("b.txt")));
    EXPECT_FALSE(platform::FileExists(folder.Path()));
}

TEST(Files, RemoveSaysWhatIsWrong)
{
    support::TestFolder folder;
    const std::string file = Make(folder, "a.txt", "x");
    platform::RemoveFile(file);
    EXPECT_FALSE(platform::FileExists(file));
    EXPECT_EQ(NumberOf([&] { platform::RemoveFile(file); }), 53);
    EXPECT_EQ(NumberOf([&] { platform::RemoveFile(folder.Path()); }), 75);
}

TEST(Files, TextOutputWritesBytesAsTheyAre)
{
    support::TestFolder folder;
    const std::string path = folder.Path("out.txt");
    platform::TextOutput output(path);
    output.Write("a\r\r\n");
    output.Write(std::string("\0b", 2));
    output.Close();
    EXPECT_EQ(support::ReadFile(path), std::string("a\r\r\n\0b", 6));
    EXPECT_EQ(NumberOf([&] { output.Write("more"); }), 54);
}

TEST(Files, TextOutputIntoAMissingFolderIsPathNotFound)
{
    support::TestFolder folder;
    EXPECT_EQ(NumberOf([&] { platform::TextOutput output(folder.Path("none") + "/x/out.txt"); }), 76);
    EXPECT_EQ(NumberOf([&] { platform::TextOutput output(folder.Path()); }), 75) << "a folder";
}

TEST(Version, IsTheBuilds)
{
    const platform::Version version = platform::ComponentVersion();
    EXPECT_EQ(version.major, KVHEADERS_VERSION_MAJOR);
    EXPECT_EQ(version.minor, KVHEADERS_VERSION_MINOR);
    EXPECT_EQ(version.revision, KVHEADERS_VERSION_PATCH);
}

#ifndef _WIN32
// Where there is no desktop: what a program gets that puts none in its place.
TEST(Desktop, OfASystemWithoutOneChangesNothing)
{
    platform::Desktop &desktop = platform::SystemDesktop();
    EXPECT_EQ(desktop.ShowMessage("Save?", 36, "Question"), platform::Answer::No);
    EXPECT_EQ(desktop.ShowMessage("Saved.", 0, "Notice"), platform::Answer::Ok);
    runtime::ErrorTrap trap;
    trap.Try([&] { desktop.OpenFile(nullptr, "a.txt", "a.txt"); });
    EXPECT_EQ(trap.Number(), runtime::kFileNotFound);
    EXPECT_EQ(desktop.TwipsPerPixelX() * desktop.TwipsPerPixelY(), 225);
    EXPECT_EQ(desktop.NowText().size(), std::string("02/11/2003 09:05:00 AM").size());
    desktop.WaitCursor(true);
    desktop.DoEvents();
    desktop.Sleep(1);
    desktop.SetWindowPos(nullptr, 0, 0, 0, 0, 0);
}
#endif

// Behind the end of its window a box asked about nothing, and what it had asked before was acted on.
TEST(Desktop, ABoxEndsTheHandlerWhoseWindowIsGone)
{
    support::FakeDesktop desktop;
    desktop.WillAnswerOk(2);
    desktop.whileBoxIsOpen = [](const std::string &) { runtime::CancelHandler(); };
    const runtime::HandlerScope handler;
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(platform::MsgBox("text", platform::kOkOnly), runtime::HandlerCancelled);
    EXPECT_EQ(1u, desktop.boxes.size());
    desktop.ForgetAnswers();
}

} // namespace
