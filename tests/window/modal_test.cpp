// The modal state: the host's windows, the host's messages, and every way in which a form can end.
#include "platform/desktop.h"
#include "window/host_window.h"
#include "window/test_form.h"
#include "window_driver/driver.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace window_tests
{
namespace
{

using namespace editor::controls;
using window_driver::Driver;
using window_driver::WaitUntil;

int ticks = 0;
void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD)
{
    ++ticks;
}

struct Modal : testing::Test
{
    std::unique_ptr<TestForm> form = std::make_unique<TestForm>();
    HostWindow shown{WS_VISIBLE};
    HostWindow hidden{0};
    HostWindow disabled{WS_VISIBLE | WS_DISABLED};

    // Shows the form in this thread, within a call of the host's, with the user in another one; closes what is still
    // open then.
    void PlayModal(const std::function<void(const Driver &)> &user)
    {
        const platform::ModalToHost modal;
        form->Load();
        const Driver driver(static_cast<HWND>(form->View().Handle()));
        std::thread thread(
            [&]
            {
                EXPECT_TRUE(WaitUntil([&] { return driver.Open(); }));
                driver.Settle();
                user(driver);
                PostMessageW(driver.Form(), WM_CLOSE, 0, 0);
            });
        form->Run();
        thread.join();
    }
    void ExpectHostAsBefore() const
    {
        EXPECT_TRUE(shown.Enabled());
        EXPECT_TRUE(hidden.Enabled());
        EXPECT_FALSE(disabled.Enabled());
    }
};

TEST_F(Modal, TheHostsWindowsDoNotAnswerMeanwhileAndDoAgainAfterwards)
{
    PlayModal(
        [&](const Driver &driver)
        {
            EXPECT_FALSE(shown.Enabled());
            EXPECT_TRUE(hidden.Enabled()) << "nobody can reach it";
            EXPECT_FALSE(disabled.Enabled());
            EXPECT_TRUE(IsWindowEnabled(driver.Form()));
        });
    ExpectHostAsBefore();
    EXPECT_EQ(form->View().Handle(), nullptr);
}

TEST_F(Modal, TheHostsMessagesKeepFlowing)
{
    ticks = 0;
    const UINT_PTR timer = SetTimer(shown.handle, 1, 10, &Tick);
    PlayModal([&](const Driver &) { EXPECT_TRUE(WaitUntil([] { return ticks >= 5; })); });
    KillTimer(shown.handle, timer);
}

TEST_F(Modal, UnloadingInAHandlerEndsItAtOnce)
{
    form->Get<Button>("btnSave").OnClick = [&]
    {
        form->Unload();
        EXPECT_FALSE(IsWindowVisible(static_cast<HWND>(form->View().Handle())));
        EXPECT_TRUE(shown.Enabled()) << "the host answers as soon as the window has gone";
    };
    PlayModal([&](const Driver &driver) { driver.Send("btnSave", BM_CLICK); });
    EXPECT_EQ(form->closes, 0);
    ExpectHostAsBefore();
}

TEST_F(Modal, TheHostDestroysTheWindow)
{
    PlayModal([&](const Driver &driver) { driver.InWindow([&] { DestroyWindow(driver.Form()); }); });
    EXPECT_EQ(form->destroyed, 1);
    EXPECT_EQ(form->View().Handle(), nullptr);
    ExpectHostAsBefore();
    // What the form still does to its controls goes nowhere.
    form->Get<ComboBox>("cmbPartition").Clear();
    form->Get<TabControl>("SSTab1").SetTab(1);
}

// While a handler runs, from within a list's click, and while a label is edited.
TEST_F(Modal, TheHostDestroysTheWindowAtAnyTime)
{
    const std::function<void(const Driver &)> acts[] = {
        [](const Driver &driver) { driver.Send("btnSave", BM_CLICK); },
        [](const Driver &driver) { PostMessageW(driver.Of("lvwFormats"), WM_KEYDOWN, VK_DOWN, 0); },
        [](const Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('X');
            driver.InWindow([&] { DestroyWindow(driver.Form()); });
        }};
    for (const auto &act : acts)
    {
        form = std::make_unique<TestForm>();
        const auto destroy = [&] { DestroyWindow(static_cast<HWND>(form->View().Handle())); };
        form->Get<Button>("btnSave").OnClick = [&]
        {
            destroy();
            form->Get<ListView>("lvwFormats").Clear();
        };
        form->Get<ListView>("lvwFormats").OnItemClick = [&](int) { destroy(); };
        PlayModal(
            [&](const Driver &driver)
            {
                driver.InWindow([&] { form->Get<TabControl>("SSTab1").SetTab(1); });
                driver.Focus("lvwFormats");
                act(driver);
                EXPECT_TRUE(WaitUntil([&] { return form->destroyed == 1; }));
            });
        EXPECT_EQ(form->destroyed, 1);
        ExpectHostAsBefore();
    }
}

TEST_F(Modal, TheHostQuits)
{
    PlayModal(
        [&](const Driver &driver)
        {
            driver.InWindow([] { PostQuitMessage(7); });
            EXPECT_TRUE(WaitUntil([&] { return form->destroyed == 1; }));
        });
    EXPECT_EQ(form->destroyed, 1);
    ExpectHostAsBefore();
    MSG message;
    bool quit = false;
    while (!quit && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        if (message.message == WM_QUIT)
        {
            quit = true;
            EXPECT_EQ(message.wParam, 7u);
        }
        else
            DispatchMessageW(&message); // a request to paint comes again until somebody paints
    EXPECT_TRUE(quit) << "the host's own loop is to see it";
}

TEST_F(Modal, AHostWindowThatGoesMeanwhileIsNoTrouble)
{
    auto third = std::make_unique<HostWindow>(WS_VISIBLE);
    PlayModal([&](const Driver &driver) { driver.InWindow([&] { third.reset(); }); });
    ExpectHostAsBefore();
}

// A procedure of the host's over a control's own.
WNDPROC under = nullptr;
int passedOn = 0;
LRESULT CALLBACK PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    ++passedOn;
    return CallWindowProcW(under, window, message, wParam, lParam);
}

TEST_F(Modal, AHostsProcedureOverAControlsMayStayToTheEnd)
{
    int clicks = 0;
    form->Get<Button>("btnPrint").OnClick = [&] { ++clicks; };
    int seenWhileOpen = 0;
    PlayModal(
        [&](const Driver &driver)
        {
            driver.InWindow(
                [&]
                {
                    under = reinterpret_cast<WNDPROC>(
                        SetWindowLongPtrW(driver.Of("btnPrint"), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PassOn)));
                });
            driver.Send("btnPrint", BM_CLICK);
            EXPECT_EQ(clicks, 1);
            seenWhileOpen = passedOn;
        });
    EXPECT_GT(seenWhileOpen, 0);
    EXPECT_GT(passedOn, seenWhileOpen) << "its end too";
    ExpectHostAsBefore();
}

TEST_F(Modal, AFormIsShownAgainAndAgain)
{
    for (int i = 0; i < 3; ++i)
    {
        form = std::make_unique<TestForm>();
        PlayModal([](const Driver &) {});
        EXPECT_EQ(form->closes, 1);
    }
    ExpectHostAsBefore();
}

TEST_F(Modal, AFormThatIsUnloadedBeforeItIsShownIsNeverShown)
{
    form->Load();
    form->Unload();
    form->Run();
    ExpectHostAsBefore();
}

TEST_F(Modal, AFormThatIsNeverShownLeavesNothingBehind)
{
    form->Load();
    form.reset();
    EXPECT_EQ(FindWindowW(L"KVHEADERS.Form", nullptr), nullptr);
    WNDCLASSW description;
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"KVHEADERS.Form", &description));
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"KVHEADERS.Container", &description));
}

} // namespace
} // namespace window_tests
