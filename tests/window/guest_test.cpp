// The editor as a guest in a host's thread: opened through the object that hosts use, with nothing put in the place of
// the system's desktop.
#include "editor/frmHeadings.h"
#include "host/forms.h"
#include "platform/windows/wide.h"
#include "support/child.h"
#include "window/editor_host.h"
#include "window/pixels.h"
#include "window/resources.h"
#include "window_driver/driver.h"
#include "window_driver/watcher.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <imm.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace window_tests
{
namespace
{

using window_driver::ClassOf;
using window_driver::FindEditor;
using window_driver::IsTopmost;

using Log = std::vector<std::string>;

constexpr char kSite[] = R"(
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (3, 'Lakeside', '/', NULL)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, 'Group', '0', 3)
INSERT INTO Report_header_formats VALUES (1, 'Bold', 0, 0, 1, 1, 0, 0, 0, 3)
INSERT INTO Report_headers VALUES (7, 'PLAN', 3)
)";

BOOL CALLBACK Take(HWND window, LPARAM found)
{
    reinterpret_cast<std::vector<HWND> *>(found)->push_back(window);
    return TRUE;
}

std::vector<HWND> WindowsOfThread()
{
    std::vector<HWND> windows;
    EnumThreadWindows(GetCurrentThreadId(), &Take, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

// A window of the host in whose thread the component runs.
struct HostWindow
{
    explicit HostWindow(DWORD style, const RECT &place = {0, 0, 300, 200})
        : handle(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | style, place.left, place.top,
                                 place.right - place.left, place.bottom - place.top, nullptr, nullptr, nullptr,
                                 nullptr))
    {
    }
    ~HostWindow() { DestroyWindow(handle); }
    HostWindow(const HostWindow &) = delete;
    HostWindow &operator=(const HostWindow &) = delete;
    bool Enabled() const { return IsWindowEnabled(handle) != FALSE; }
    HWND handle;
};

// Of the one call of ShowForm that is under way.
class Guest : public testing::Test
{
protected:
    Guest()
    {
        site.Run(kSite);
        SetActiveWindow(second.handle);
        SetFocus(field);
    }

    // Calls ShowForm. `atBox` is called at each message box that opens and gives its answer, IDOK without one;
    // `whileOpen` once when the editor is open, which is closed then if `closes`. All in this thread, from a timer.
    void Show(std::function<void()> whileOpen = {}, std::function<int(HWND)> atBox = {})
    {
        const window_driver::Watcher watcher({[&](HWND box)
                                              {
                                                  seen.push_back(window_driver::BoxText(box));
                                                  return atBox ? atBox(box) : IDOK;
                                              },
                                              [&](HWND)
                                              {
                                                  if (whileOpen)
                                                      whileOpen();
                                                  if (closes && Editor())
                                                      PostMessageW(Editor(), WM_CLOSE, 0, 0);
                                              }});
        EXPECT_EQ(config->ShowForm(), 0);
    }

    static editor::frmHeadings *Form()
    {
        return host::LoadedForms().empty() ? nullptr : dynamic_cast<editor::frmHeadings *>(host::LoadedForms().back());
    }
    static HWND Editor() { return Form() ? static_cast<HWND>(Form()->Handle()) : nullptr; }
    static HWND Of(const char *control) { return window_driver::Driver(Editor()).Of(control); }

    void ExpectHostAnswers(bool answers, const char *when) const
    {
        EXPECT_EQ(first.Enabled(), answers) << when;
        EXPECT_EQ(second.Enabled(), answers) << when;
        EXPECT_TRUE(hidden.Enabled()) << when;
        EXPECT_FALSE(disabled.Enabled()) << when;
    }

    support::TestDatabase site;
    const EditorHost editorHost{site};
    host::clsConfig *const config = editorHost.config.get();
    HostWindow first{WS_VISIBLE};
    HostWindow second{WS_VISIBLE, {400, 300, 800, 600}};
    HostWindow hidden{0};
    HostWindow disabled{WS_VISIBLE | WS_DISABLED};
    HWND field =
        CreateWindowExW(0, L"Edit", L"", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, second.handle, nullptr, nullptr, nullptr);
    Log seen; // the texts of the boxes
    bool closes = true;
};

TEST_F(Guest, WhileItIsOpenTheHostDoesNotAnswerAndTheEditorsOwnWindowsDo)
{
    // Of the thread, not of the editor.
    const bool inputMethodAnswers = IsWindowEnabled(ImmGetDefaultIMEWnd(first.handle)) != FALSE;
    Show(
        [&]
        {
            ExpectHostAnswers(false, "open");
            int tips = 0;
            for (const HWND window : WindowsOfThread())
                if (ClassOf(window) == TOOLTIPS_CLASSA)
                    tips += IsWindowEnabled(window);
            EXPECT_GT(tips, 0);
            EXPECT_TRUE(IsWindowEnabled(Editor()));
            EXPECT_EQ(IsWindowEnabled(ImmGetDefaultIMEWnd(Editor())) != FALSE, inputMethodAnswers);
            for (const char *const list : {"cmbPartition", "cmbAccList", "cmbFormats"})
                EXPECT_TRUE(IsWindowEnabled(window_driver::Driver(Editor()).DropDown(list))) << list;
        });
    ExpectHostAnswers(true, "closed");
    EXPECT_EQ(GetActiveWindow(), second.handle);
}

// The call fails, or the load does, or neither: in the end everything is as it was.
TEST_F(Guest, InTheEndTheHostIsAsItWasWhateverHappened)
{
    struct Case
    {
        const char *what;
        std::function<void()> before, whileOpen;
        Log boxes;
        int quits = 0;
    };
    auto third = std::make_unique<HostWindow>(WS_VISIBLE);
    SetActiveWindow(second.handle);
    SetFocus(field);
    const Case cases[] = {
        {"closed", [] {}, [] {}, {}},
        {"destroyed by the host", [] {}, [] { DestroyWindow(Editor()); }, {}},
        {"destroyed with an edit",
         [] {},
         []
         {
             Form()->chkTagKnown.Toggle();
             DestroyWindow(Editor());
         },
         {}},
        {"told to quit", [] {}, [] { PostQuitMessage(7); }, {}, 1},
        {"saved",
         [] {},
         [this]
         {
             Form()->chkTagKnown.Toggle();
             Form()->btnSave.Click();
             ExpectHostAnswers(true, "as soon as the window has gone");
         },
         {}},
        {"a failed load",
         [&] { site.Fail(1, "FROM Report_headers", "broken", "42000"); },
         [] {},
         {"Error encountered while writing to error log file: 42000: broken"}},
        {"another window active meanwhile", [] {}, [&] { SetActiveWindow(first.handle); }, {}},
        {"a window of the host destroyed", [] {}, [&] { third.reset(); }, {}},
    };
    for (const Case &test : cases)
    {
        SCOPED_TRACE(test.what);
        seen.clear();
        test.before();
        closes = test.quits == 0; // a window that is told to close does so before it sees the request to quit
        Show(test.whileOpen,
             [&](HWND)
             {
                 ExpectHostAnswers(false, "at the box");
                 return IDOK;
             });
        int quits = 0; // the host's own loop is to see it
        for (MSG message; PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE); ++quits)
            EXPECT_EQ(message.wParam, 7u);
        EXPECT_EQ(quits, test.quits);
        EXPECT_EQ(seen, test.boxes);
        ExpectHostAnswers(true, "afterwards");
        EXPECT_EQ(GetActiveWindow(), second.handle);
        EXPECT_EQ(GetFocus(), field);
        EXPECT_EQ(FindEditor(), nullptr);
    }
}

TEST_F(Guest, AConnectionThatFailsIsToldOverTheHostWhichDoesNotAnswer)
{
    config->SetSqlDbName("/no/such/file");
    int boxes = 0;
    Show({},
         [&](HWND box)
         {
             ++boxes;
             ExpectHostAnswers(false, "at the box");
             EXPECT_EQ(GetWindow(box, GW_OWNER), second.handle);
             // A call from here comes back at once.
             EXPECT_EQ(config->ShowForm(), 0);
             EXPECT_EQ(Editor(), nullptr);
             return IDOK;
         });
    EXPECT_EQ(boxes, 2);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1], "Connection to the Corvane database cannot be established.");
    ExpectHostAnswers(true, "afterwards");
    EXPECT_EQ(GetActiveWindow(), second.handle);
    EXPECT_EQ(GetFocus(), field);
}

TEST_F(Guest, ACallFromWithinTheLoadComesBackAtOnceAndTheSessionMayEnd)
{
    site.Run("INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) "
             "VALUES (-1, 1, 'TagKnownHeadings', 'True', 3)");
    site.Fail(1, "FROM account_info", "broken", "42000");
    int opened = 0;
    Show([&] { ++opened; },
         [&](HWND box)
         {
             EXPECT_EQ(GetWindow(box, GW_OWNER), second.handle) << "the editor is not to be seen yet";
             EXPECT_EQ(config->ShowForm(), 0);
             EXPECT_EQ(host::LoadedForms().size(), 1u);
             EXPECT_TRUE(SendMessageW(Editor(), WM_QUERYENDSESSION, 0, 0)) << "nothing has been edited";
             return IDOK;
         });
    EXPECT_EQ(seen.size(), 1u);
    EXPECT_EQ(opened, 1);
}

TEST_F(Guest, TheEditorBelongsToTheActiveWindowAndIsKeptOnTopUntilTheAnswerIsNo)
{
    for (const bool hostIsTopmost : {false, true})
    {
        SetWindowPos(second.handle, hostIsTopmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        int answer = IDNO;
        Show(
            [&]
            {
                EXPECT_EQ(GetWindow(Editor(), GW_OWNER), second.handle);
                EXPECT_EQ(GetActiveWindow(), Editor());
                RECT area, place;
                SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
                GetWindowRect(Editor(), &place);
                EXPECT_NEAR(place.left + place.right, area.left + area.right, 2);
                EXPECT_NEAR(place.top + place.bottom, area.top + area.bottom, 2);
                EXPECT_TRUE(IsTopmost(Editor()));

                Form()->chkTagKnown.Toggle();
                SendMessageW(Editor(), WM_CLOSE, 0, 0);
                ASSERT_NE(Editor(), nullptr) << "the answer was No";
                EXPECT_EQ(IsTopmost(Editor()), hostIsTopmost) << "it stays above its owner";
                EXPECT_EQ(GetWindow(Editor(), GW_OWNER), second.handle) << "which it cannot get behind";
                answer = IDYES;
            },
            [&](HWND box)
            {
                EXPECT_EQ(GetWindow(box, GW_OWNER), Editor());
                return answer;
            });
        EXPECT_EQ(IsTopmost(second.handle), hostIsTopmost);
    }
}

TEST_F(Guest, WithoutAWindowToBelongToItHasNoOwner)
{
    ShowWindow(first.handle, SW_HIDE);
    ShowWindow(second.handle, SW_HIDE);
    ShowWindow(disabled.handle, SW_HIDE);
    Show(
        []
        {
            EXPECT_EQ(GetWindow(Editor(), GW_OWNER), nullptr);
            EXPECT_TRUE(IsTopmost(Editor()));
        });
}

// This test alone, in a process that was started like that.
TEST_F(Guest, DISABLED_IsSeen)
{
    int shown = 0;
    Show(
        [&]
        {
            ++shown;
            EXPECT_TRUE(IsWindowVisible(Editor()));
            EXPECT_FALSE(IsIconic(Editor()));
            RECT client;
            GetClientRect(Editor(), &client);
            EXPECT_GT(client.right, 100);
        });
    EXPECT_EQ(shown, 1);
}

TEST(GuestOfAProcess, IsSeenHoweverTheProcessWasStarted)
{
    for (const WORD show : {SW_HIDE, SW_SHOWMINIMIZED, SW_SHOWMINNOACTIVE, SW_SHOWMAXIMIZED})
        EXPECT_EQ(support::RunTestsInChild(L"Guest.DISABLED_IsSeen", show), 0u) << show;
}

std::vector<COLORREF> Drawn(HICON icon)
{
    return window_tests::Drawn(32, RGB(0, 0, 0),
                               [icon](HDC device) { DrawIconEx(device, 0, 0, icon, 32, 32, 0, nullptr, DI_NORMAL); });
}

TEST_F(Guest, ItsCaptionHasTheIconOfTheHostOrItsOwn)
{
    const HICON hosts = LoadIconW(nullptr, MAKEINTRESOURCEW(32515) /* a warning */);
    const HICON own = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(KV_ICON_COMPONENT));
    ASSERT_NE(own, nullptr);
    for (const HICON icon : {HICON{}, hosts})
    {
        SendMessageW(second.handle, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
        Show(
            [&]
            {
                const auto shown = reinterpret_cast<HICON>(SendMessageW(Editor(), WM_GETICON, ICON_BIG, 0));
                EXPECT_EQ(Drawn(shown), Drawn(icon ? icon : own));
                EXPECT_NE(SendMessageW(Editor(), WM_GETICON, ICON_SMALL, 0), 0);
                const LONG style = GetWindowLongW(Editor(), GWL_EXSTYLE);
                EXPECT_FALSE(style & (WS_EX_DLGMODALFRAME | WS_EX_TOOLWINDOW)) << "such a caption shows no icon";
            });
    }
    EXPECT_NE(Drawn(own), Drawn(hosts));
}

TEST_F(Guest, AWaitCursorGoesAndTheOneBeforeComesBack)
{
    const HCURSOR before = LoadCursorW(nullptr, MAKEINTRESOURCEW(32515) /* a cross */);
    const HCURSOR wait = LoadCursorW(nullptr, MAKEINTRESOURCEW(32514));
    SetCursor(before);
    {
        const platform::WaitCursor outer;
        EXPECT_EQ(GetCursor(), wait);
        {
            const platform::WaitCursor inner;
        }
        EXPECT_EQ(GetCursor(), wait);
    }
    EXPECT_EQ(GetCursor(), before);
}

TEST_F(Guest, TheEndOfTheSessionWaitsForUnsavedEditsAlone)
{
    const std::string question = "Are you sure you want to cancel all changes?";
    int answer = IDNO;
    bool askedAgain = true;
    Show(
        [&]
        {
            const auto ask = [] { return SendMessageW(Editor(), WM_QUERYENDSESSION, 0, 0); };
            EXPECT_TRUE(ask());
            EXPECT_TRUE(seen.empty());
            ASSERT_NE(Editor(), nullptr) << "it may be that the session does not end";
            SendMessageW(Editor(), WM_ENDSESSION, FALSE, 0);

            Form()->chkTagKnown.Toggle();
            EXPECT_FALSE(ask());
            EXPECT_EQ(seen, Log{question});
            ASSERT_NE(Editor(), nullptr);
            EXPECT_TRUE(Form()->HasUnsavedEdits());
            EXPECT_FALSE(askedAgain) << "a second request while the question is open waits without another";
            SendMessageW(Editor(), WM_ENDSESSION, FALSE, 0);

            answer = IDYES;
            EXPECT_TRUE(ask());
            EXPECT_EQ(Editor(), nullptr);
        },
        [&](HWND)
        {
            askedAgain = SendMessageW(Editor(), WM_QUERYENDSESSION, 0, 0) != 0;
            return answer;
        });
    EXPECT_EQ(seen, Log(2, question));
    EXPECT_EQ(site.Query("SELECT COUNT(*) FROM System_user_cfg"), std::vector<std::string>{"0"});
    ExpectHostAnswers(true, "afterwards");
}

TEST_F(Guest, TheEndOfTheSessionAsksForALabelThatIsBeingTyped)
{
    Show(
        [&]
        {
            Form()->SSTab1.ClickTab(1);
            ASSERT_TRUE(Form()->lvwFormats.BeginLabelEdit());
            const auto field = reinterpret_cast<HWND>(SendMessageW(Of("lvwFormats"), LVM_GETEDITCONTROL, 0, 0));
            SetWindowTextW(field, L"Bolder");
            EXPECT_FALSE(SendMessageW(Editor(), WM_QUERYENDSESSION, 0, 0));
            EXPECT_EQ(seen.size(), 1u);
            ASSERT_NE(Editor(), nullptr);
            EXPECT_EQ(Form()->lvwFormats.Item(1).text, "Bolder");
            DestroyWindow(Editor());
        },
        [](HWND) { return IDNO; });
}

TEST_F(Guest, TheSessionEndsAllTheSame)
{
    Show(
        [&]
        {
            Form()->chkTagKnown.Toggle();
            SendMessageW(Editor(), WM_ENDSESSION, TRUE, 0);
            EXPECT_EQ(Editor(), nullptr);
        });
    EXPECT_TRUE(seen.empty());
}

// A host's thread may be unaware of the resolution, know that of the system, or those of all monitors in two ways.
TEST_F(Guest, IsMadeForTheResolutionOfTheSystemInHostsThatKnowThoseOfMonitors)
{
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    const auto function = [user](const char *name) { return reinterpret_cast<void *>(GetProcAddress(user, name)); };
    const auto set = reinterpret_cast<HANDLE(WINAPI *)(HANDLE)>(function("SetThreadDpiAwarenessContext"));
    const auto get = reinterpret_cast<HANDLE(WINAPI *)()>(function("GetThreadDpiAwarenessContext"));
    const auto of = reinterpret_cast<HANDLE(WINAPI *)(HWND)>(function("GetWindowDpiAwarenessContext"));
    const auto awareness = reinterpret_cast<int(WINAPI *)(HANDLE)>(function("GetAwarenessFromDpiAwarenessContext"));
    if (!set || !get || !of || !awareness)
        GTEST_SKIP() << "the system does not know awareness by thread";
    for (const auto &[context, expected] : {std::pair{-1, 0}, {-2, 1}, {-3, 1}, {-4, 1}})
    {
        const HANDLE before = set(reinterpret_cast<HANDLE>(static_cast<INT_PTR>(context)));
        if (!before && context == -4)
            continue; // Wine does not know it
        ASSERT_NE(before, nullptr) << context;
        const int hosts = awareness(get());
        Show(
            [&, expected = expected]
            {
                EXPECT_EQ(awareness(of(Editor())), expected);
                EXPECT_EQ(awareness(of(Of("lvwFormats"))), expected);
                RECT client;
                const HANDLE timers = set(of(Editor()));
                const HDC screen = GetDC(nullptr);
                GetClientRect(Editor(), &client);
                EXPECT_EQ(client.right, MulDiv(10725, GetDeviceCaps(screen, LOGPIXELSX), 1440));
                ReleaseDC(nullptr, screen);
                set(timers);
            });
        EXPECT_EQ(awareness(get()), hosts) << context;
        set(before);
    }
}

} // namespace
} // namespace window_tests
