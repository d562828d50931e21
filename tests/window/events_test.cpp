// What a user does to check boxes, buttons, tabs and drop-down lists, and what the program does to them.
#include "platform/windows/wide.h"
#include "runtime/error.h"
#include "window/form_test.h"
#include "window/scale.h"

#include <commctrl.h>

namespace window_tests
{
namespace
{

using namespace editor::controls;

struct Events : FormTest
{
    Log events;
};

TEST_F(Events, ACheckBoxIsToggledByTheMouseAndByTheSpaceBar)
{
    auto &box = form.Get<CheckBox>("chkTagMixed");
    box.OnClick = [&](std::int16_t value) { events.push_back(std::to_string(value)); };
    const Driver &driver = Open();
    driver.Send("chkTagMixed", BM_CLICK);
    EXPECT_TRUE(driver.Checked("chkTagMixed"));
    driver.Focus("chkTagMixed");
    driver.Key(VK_SPACE);
    EXPECT_FALSE(driver.Checked("chkTagMixed"));
    driver.ClickAt(driver.Of("chkTagMixed"), {5, 5});
    EXPECT_TRUE(driver.Checked("chkTagMixed"));
    Close();
    EXPECT_EQ(events, (Log{"-1", "0", "-1"}));
    EXPECT_EQ(box.Value(), 1);
}

TEST_F(Events, WhatTheProgramSetsIsShown)
{
    const Driver &driver = Open();
    driver.InWindow(
        [&]
        {
            form.Get<CheckBox>("chkTagMixed").SetValue(-1);
            form.Controls().Find("btnSave")->SetCaption("Sa&ve \xC3\xA4");
            form.Controls().Find("btnSave")->SetEnabled(false);
            form.Controls().Find("btnPrint")->SetVisible(false);
            form.Controls().Find("chkTagKnown")->SetTabStop(false);
            editor::controls::Rectangle place = form.Controls().Find("btnCancel")->Bounds();
            place.left -= 150;
            form.Controls().Find("btnCancel")->SetBounds(place);
        });
    EXPECT_TRUE(driver.Checked("chkTagMixed"));
    EXPECT_EQ(driver.TextOf("btnSave"), "Sa&ve \u00e4");
    EXPECT_FALSE(driver.Enabled("btnSave"));
    EXPECT_FALSE(driver.Visible("btnPrint"));
    EXPECT_FALSE(GetWindowLongW(driver.Of("chkTagKnown"), GWL_STYLE) & WS_TABSTOP);
    RECT cancel;
    GetWindowRect(driver.Of("btnCancel"), &cancel);
    POINT corner{cancel.left, cancel.top};
    ScreenToClient(driver.Form(), &corner);
    EXPECT_EQ(corner.x, window::Scale::OfScreen().X(9240 - 150));
}

TEST_F(Events, AButtonIsPressedOnce)
{
    form.Get<Button>("btnSave").OnClick = [&] { events.push_back("save"); };
    const Driver &driver = Open();
    driver.Send("btnSave", BM_CLICK);
    driver.ClickAt(driver.Of("btnSave"), {10, 10});
    driver.Focus("btnSave");
    driver.Key(VK_SPACE);
    Close();
    EXPECT_EQ(events.size(), 3u);
}

TEST_F(Events, AnErrorOfAHandlerStaysInside)
{
    form.Get<Button>("btnSave").OnClick = [&]
    {
        events.push_back("save");
        runtime::Raise(runtime::kOverflow);
    };
    form.Get<Button>("btnPrint").OnClick = []() -> void { throw 42; };
    const Driver &driver = Open();
    driver.Send("btnSave", BM_CLICK);
    driver.Send("btnPrint", BM_CLICK);
    driver.Send("btnSave", BM_CLICK);
    EXPECT_TRUE(driver.Open());
    Close();
    EXPECT_EQ(events.size(), 2u);
}

TEST_F(Events, ATabIsChosenByTheMouseAndByTheProgram)
{
    auto &tabs = form.Get<TabControl>("SSTab1");
    tabs.OnClick = [&](int previous) { events.push_back(std::to_string(previous) + ">" + std::to_string(tabs.Tab())); };
    const Driver &driver = Open();
    driver.ClickTab(1);
    EXPECT_TRUE(driver.Visible("lvwFormats"));
    EXPECT_FALSE(driver.Visible("chkTagKnown"));
    EXPECT_EQ(driver.Focused(), "SSTab1");
    driver.ClickTab(1); // the one that is shown: nothing
    driver.InWindow([&] { tabs.SetTab(2); });
    EXPECT_TRUE(driver.Visible("lvwHeadings"));
    EXPECT_EQ(driver.Send("SSTab1", TCM_GETCURSEL), 2);
    driver.Send("SSTab1", TCM_SETCURFOCUS, 0);
    EXPECT_TRUE(driver.Visible("chkTagKnown"));
    Close();
    EXPECT_EQ(events, (Log{"0>1", "1>2", "2>0"}));
}

struct DropDown : Events
{
    ComboBox &combo = form.Get<ComboBox>("cmbPartition");
    // With the keyboard on the list, and its choices noted from now on.
    const Driver &OpenOnCombo()
    {
        const Driver &driver = Open();
        driver.InWindow([&] { combo.OnClick = [this] { events.push_back(std::to_string(combo.ListIndex())); }; });
        driver.Focus("cmbPartition");
        return driver;
    }
};

TEST_F(DropDown, AnEntryIsTakenFromTheOpenListAlsoTheSelectedOne)
{
    const Driver &driver = OpenOnCombo();
    driver.Key(VK_F4);
    EXPECT_TRUE(driver.Dropped("cmbPartition"));
    driver.Key(VK_DOWN);
    driver.Key(VK_DOWN);
    EXPECT_TRUE(events.empty()) << "looking is not choosing";
    driver.Key(VK_RETURN);
    EXPECT_FALSE(driver.Dropped("cmbPartition"));
    EXPECT_EQ(events, (Log{"2"}));
    driver.Key(VK_DOWN, VK_MENU);
    EXPECT_TRUE(driver.Dropped("cmbPartition"));
    driver.Key(VK_RETURN);
    EXPECT_EQ(events, (Log{"2", "2"}));
    driver.Key(VK_F4);
    driver.Key(VK_UP);
    driver.Key(VK_ESCAPE);
    EXPECT_FALSE(driver.Dropped("cmbPartition"));
    EXPECT_EQ(driver.Send("cmbPartition", CB_GETCURSEL), 2) << "looked at, and not taken";
    EXPECT_EQ(events, (Log{"2", "2"}));
    Close();
    EXPECT_EQ(form.closes, 1) << "Enter, F4 and Escape have closed nothing but the list";
}

TEST_F(DropDown, TheOpenListIsAsHighAsItsEntriesUpToTwelve)
{
    const Driver &driver = Open();
    for (const int count : {1, 4, 12, 30})
        driver.InWindow(
            [&]
            {
                combo.Clear();
                for (int i = 0; i < count; ++i)
                    combo.AddItem("Entry " + std::to_string(i));
                driver.Send("cmbPartition", CB_SHOWDROPDOWN, TRUE);
                RECT list;
                GetClientRect(driver.DropDown("cmbPartition"), &list);
                const auto entry = driver.Send("cmbPartition", CB_GETITEMHEIGHT, 0);
                EXPECT_EQ(list.bottom, std::min(count, 12) * entry) << count;
                driver.Send("cmbPartition", CB_SHOWDROPDOWN, FALSE);
            });
}

TEST_F(DropDown, ArrowKeysChooseWhenTheListIsClosed)
{
    const Driver &driver = OpenOnCombo();
    driver.Key(VK_DOWN);
    driver.Key(VK_DOWN);
    driver.Key(VK_DOWN); // at the end already
    driver.Key(VK_UP);
    Close();
    EXPECT_EQ(events, (Log{"1", "2", "1"}));
}

TEST_F(DropDown, TheWheelOverAClosedListChoosesNothing)
{
    const Driver &driver = OpenOnCombo();
    driver.Send("cmbPartition", WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
    EXPECT_EQ(driver.Send("cmbPartition", CB_GETCURSEL), 0);
    Close();
    EXPECT_TRUE(events.empty());
}

} // namespace
} // namespace window_tests
