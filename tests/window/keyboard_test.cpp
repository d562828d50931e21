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

TEST_F(Keys, ShiftTabWalksBackAndStopsAtNothingThatIsNoTabStop)
{
    const Driver &driver = Open();
    driver.InWindow([&] { form.Controls().Find("btnCancel")->SetTabStop(false); });
    for (const char *const name : {"cmbPartition", "btnPrint", "btnSave", "chkTagMixed"})
    {
        driver.Key(VK_TAB, VK_SHIFT);
        EXPECT_EQ(driver.Focused(), name);
    }
}

TEST_F(Keys, AccessKeysReachTabsAndTheVisiblePageAlone)
{
    Log pressed;
    for (const char *const name : {"btnAdd", "btnAddHead", "btnDelete", "btnDeleteHead", "btnPrint"})
        form.Get<Button>(name).OnClick = [&pressed, name] { pressed.emplace_back(name); };
    const Driver &driver = Open();
    driver.Key('A', VK_MENU);
    EXPECT_TRUE(pressed.empty());
    driver.Key('F', VK_MENU);
    EXPECT_TRUE(driver.Visible("lvwFormats"));
    EXPECT_EQ(driver.Focused(), "SSTab1");
    driver.Key('A', VK_MENU);
    driver.Key('D', VK_MENU); // disabled
    EXPECT_EQ(driver.Focused(), "btnAdd");
    driver.Key('H', VK_MENU);
    EXPECT_TRUE(driver.Visible("lvwHeadings"));
    driver.Key('A', VK_MENU);
    driver.Key('D', VK_MENU);
    driver.Key('P', VK_MENU);
    driver.Key('G', VK_MENU);
    EXPECT_TRUE(driver.Visible("chkTagKnown"));
    Close();
    EXPECT_EQ(pressed, (Log{"btnAdd", "btnAddHead", "btnDeleteHead", "btnPrint"}));
}

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
    const Driver &driver = Open();
    const auto tab = [&] { return form.Get<TabControl>("SSTab1").Tab(); };
    driver.Focus("chkTagKnown");
    driver.Key(VK_TAB, VK_CONTROL);
    EXPECT_EQ(tab(), 1);
    EXPECT_EQ(driver.Focused(), "SSTab1");
    driver.Focus("lvwFormats");
    driver.Key(VK_NEXT, VK_CONTROL);
    EXPECT_EQ(tab(), 2);
    driver.Key(VK_NEXT, VK_CONTROL);
    EXPECT_EQ(tab(), 0);
    driver.Key(VK_PRIOR, VK_CONTROL);
    EXPECT_EQ(tab(), 2);
    driver.Focus("btnSave");
    driver.Key(VK_TAB, {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ(tab(), 1);
    EXPECT_EQ(driver.Focused(), "SSTab1");
    driver.Focus("lvwFormats");
    driver.Key(VK_NEXT); // pages in the list
    EXPECT_EQ(tab(), 1);
    EXPECT_EQ(driver.Focused(), "lvwFormats");
}

TEST_F(Keys, TurningThePageLeavesALabelThatIsEdited)
{
    auto &list = form.Get<ListView>("lvwFormats");
    std::string renamed;
    list.OnAfterLabelEdit = [&](bool &, const std::string &text)
    { renamed = text + " on page " + std::to_string(form.Get<TabControl>("SSTab1").Tab()); };
    const Driver &driver = Open();
    ShowTab(1);
    driver.Focus("lvwFormats");
    driver.Key(VK_F2);
    driver.Key('X');
    driver.Key(VK_TAB, VK_CONTROL);
    EXPECT_TRUE(WaitUntil([&] { return form.Get<TabControl>("SSTab1").Tab() == 2; }));
    EXPECT_TRUE(WaitUntil([&] { return !renamed.empty(); }));
    Close();
    EXPECT_EQ(renamed, "x on page 1");
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

TEST_F(Keys, TheProgramGivesTheKeyboard)
{
    const Driver &driver = Open();
    driver.InWindow([&] { form.Controls().Find("btnSave")->SetFocus(); });
    EXPECT_EQ(driver.Focused(), "btnSave");
    driver.InWindow([&] { form.Controls().Find("lvwFormats")->SetFocus(); }); // on a hidden page
    EXPECT_EQ(driver.Focused(), "btnSave");
}

} // namespace
} // namespace window_tests
