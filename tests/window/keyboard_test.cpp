// The keyboard in the window: tab order, access keys, Enter, Escape, and who has the keyboard after all kinds of
// things.
#include "platform/desktop.h"
#include "window/form_test.h"

#include <thread>

namespace window_tests
{
namespace
{

using namespace editor::controls;

using Keys = FormTest;

// Keys, the mouse and what programs post and send, all while a handler lets messages through: the host's are handled
// there, the others when it has ended.
TEST_F(Keys, AndClicksWaitForTheEndOfAHandlerThatLetsMessagesThrough)
{
    Log events;
    bool go = false;
    form.Get<Button>("btnPrint").OnClick = [&]
    {
        while (!go)
        {
            platform::DoEvents();
            platform::CurrentDesktop().Sleep(5);
        }
        events.push_back("print ends");
    };
    form.Get<TabControl>("SSTab1").OnClick = [&](int) { events.push_back("tab"); };
    form.Get<CheckBox>("chkTagKnown").OnClick = [&](std::int16_t) { events.push_back("known"); };
    form.Get<CheckBox>("chkTagMixed").OnClick = [&](std::int16_t) { events.push_back("mixed"); };
    const Driver &driver = Open();
    driver.InWindow([&] { events.clear(); });
    PostMessageW(driver.Of("btnPrint"), BM_CLICK, 0, 0);
    driver.Key('F', VK_MENU);
    driver.Key(VK_TAB, VK_CONTROL);
    driver.Send("chkTagMixed", BM_CLICK);
    PostMessageW(driver.Of("chkTagKnown"), BM_CLICK, 0, 0);
    driver.Settle();
    driver.InWindow([&] { events.push_back("host"); });
    EXPECT_EQ(events, (Log{"host"}));
    driver.InWindow([&] { go = true; });
    EXPECT_TRUE(WaitUntil([&] { return events.size() == 6; }));
    EXPECT_EQ(events, (Log{"host", "print ends", "mixed", "known", "tab", "tab"}));
}

TEST_F(Keys, EnterPressesTheButtonThatHasTheKeyboardAndNothingElse)
{
    Log pressed;
    for (const char *const name : {"btnSave", "btnCancel", "btnPrint"})
        form.Get<Button>(name).OnClick = [&pressed, name] { pressed.emplace_back(name); };
    const Driver &driver = Open();
    for (const char *const name : {"SSTab1", "chkTagKnown", "cmbPartition"})
    {
        driver.Focus(name);
        driver.Key(VK_RETURN);
    }
    EXPECT_TRUE(pressed.empty());
    EXPECT_EQ(driver.Send("chkTagKnown", BM_GETCHECK), BST_CHECKED);
    driver.Focus("btnPrint");
    driver.Key(VK_RETURN);
    EXPECT_EQ(pressed, (Log{"btnPrint"}));
}

TEST_F(Keys, EscapeAltF4AndTheTitleBarCloseTheForm)
{
    form.stays = true;
    const Driver &driver = Open();
    driver.Key(VK_ESCAPE);
    EXPECT_EQ(form.closes, 1);
    driver.Key(VK_F4, VK_MENU);
    EXPECT_TRUE(WaitUntil([&] { return form.closes == 2; }));
    PostMessageW(driver.Form(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(WaitUntil([&] { return form.closes == 3; }));
    EXPECT_TRUE(driver.Open());
    Close();
    EXPECT_EQ(form.closes, 4);
}

TEST_F(Keys, PagesAreTurnedFromAnywhereAroundTheEnds)
{
    struct Case
    {
        const char *from;
        WORD key;
        std::vector<WORD> held;
        int tab;
        const char *focused;
    };
    const Case cases[] = {
        {"chkTagKnown", VK_TAB, {VK_CONTROL}, 1, "SSTab1"},
        {"lvwFormats", VK_NEXT, {}, 1, "lvwFormats"}, // pages in the list
        {"lvwFormats", VK_NEXT, {VK_CONTROL}, 2, "SSTab1"},
        {"SSTab1", VK_NEXT, {VK_CONTROL}, 0, "SSTab1"},
        {"SSTab1", VK_PRIOR, {VK_CONTROL}, 2, "SSTab1"},
        {"btnSave", VK_TAB, {VK_CONTROL, VK_SHIFT}, 1, "SSTab1"},
        {"SSTab1", VK_LEFT, {}, 0, "SSTab1"},
        {"SSTab1", VK_RIGHT, {}, 1, "SSTab1"},
        {"btnAdd", 'H', {VK_MENU}, 2, "SSTab1"},
        {"cmbPartition", 'G', {VK_MENU}, 0, "SSTab1"},
        {"SSTab1", 'F', {VK_MENU}, 1, "SSTab1"},
    };
    const Driver &driver = Open();
    for (const Case &test : cases)
    {
        driver.Focus(test.from);
        driver.Key(test.key, test.held);
        EXPECT_EQ(form.Get<TabControl>("SSTab1").Tab(), test.tab) << test.key << " from " << test.from;
        EXPECT_EQ(driver.Focused(), test.focused) << test.key << " from " << test.from;
    }
}

TEST_F(Keys, TheKeyboardComesBackAfterAMessageBox)
{
    form.Get<Button>("btnPrint").OnClick = [] { platform::MsgBox("Really?", platform::kYesNoQuestion, "Test Box"); };
    const Driver &driver = Open();
    driver.Focus("btnPrint");
    std::thread press([&] { driver.Send("btnPrint", BM_CLICK); });
    const HWND box = driver.WaitForBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(TextOf(box) + ": " + driver.BoxText(), "Test Box: Really?");
    EXPECT_FALSE(IsWindowEnabled(driver.Form()));
    // What is closed now is the box's business.
    PostMessageW(driver.Form(), WM_CLOSE, 0, 0);
    window_driver::AnswerBox(box, IDNO);
    press.join();
    driver.Settle();
    EXPECT_TRUE(IsWindowEnabled(driver.Form()));
    EXPECT_EQ(driver.Focused(), "btnPrint");
    EXPECT_EQ(form.closes, 0);
}

TEST_F(Keys, TheKeyboardIsGivenOnWhenItsControlGoesAwayOrIsDisabled)
{
    const Driver &driver = Open();
    const auto expectGivenOn = [&](const char *from, const char *to, const std::function<void()> &act)
    {
        ASSERT_TRUE(WaitUntil(
            [&]
            {
                driver.Focus(from);
                return driver.Focused() == from;
            }));
        driver.InWindow(act);
        PostMessageW(driver.Form(), WM_NULL, 0, 0);
        EXPECT_TRUE(WaitUntil([&] { return driver.Focused() == to; })) << driver.Focused();
    };
    expectGivenOn("chkTagMixed", "btnSave", [&] { form.Controls().Find("chkTagMixed")->SetEnabled(false); });
    expectGivenOn("chkTagKnown", "lvwHeadings", [&] { form.Get<TabControl>("SSTab1").SetTab(2); });
}

TEST_F(Keys, TheProgramGivesTheKeyboardAndTakesTabStopsAway)
{
    const Driver &driver = Open();
    driver.InWindow([&] { form.Controls().Find("btnSave")->SetFocus(); });
    EXPECT_EQ(driver.Focused(), "btnSave");
    driver.InWindow([&] { form.Controls().Find("lvwFormats")->SetFocus(); }); // on a hidden page
    EXPECT_EQ(driver.Focused(), "btnSave");
    driver.InWindow([&] { form.Controls().Find("btnCancel")->SetTabStop(false); });
    driver.Key(VK_TAB);
    EXPECT_EQ(driver.Focused(), "btnPrint") << "over what is no tab stop";
}

} // namespace
} // namespace window_tests
