// Lists in the window: rows, selection, sorting, typing, and labels edited in place.
#include "platform/desktop.h"
#include "platform/windows/wide.h"
#include "window/driver.h"
#include "window/scale.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace window_tests
{
namespace
{

using namespace editor::controls;

struct Lists : testing::Test
{
    TestForm form;
    ListView &list = form.Get<ListView>("lvwFormats");
    std::vector<std::string> events;

    void Act(const std::function<void(Driver &)> &person)
    {
        list.OnItemClick = [this](int position) { events.push_back("click " + list.Item(position).text); };
        list.OnColumnClick = [this](int column) { events.push_back("column " + std::to_string(column)); };
        list.OnBeforeLabelEdit = [this](bool &cancel)
        {
            events.push_back("before " + list.SelectedItem().text);
            cancel = refuse;
        };
        list.OnAfterLabelEdit = [this](bool &cancel, const std::string &text)
        {
            events.push_back("after " + text);
            cancel = text == "taken";
        };
        Play(form,
             [&](Driver &driver)
             {
                 driver.InWindow([&] { form.Get<TabControl>("SSTab1").SetTab(1); });
                 driver.Focus("lvwFormats");
                 events.clear();
                 person(driver);
             });
    }

    static std::wstring Cell(const Driver &driver, const char *name, int row, int column)
    {
        wchar_t text[128] = L"";
        driver.InWindow(
            [&]
            {
                LVITEMW item{};
                item.iSubItem = column;
                item.pszText = text;
                item.cchTextMax = 128;
                SendMessageW(driver.Of(name), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                             reinterpret_cast<LPARAM>(&item));
            });
        return text;
    }

    static int Selected(const Driver &driver, const char *name = "lvwFormats")
    {
        return static_cast<int>(driver.Send(name, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    }

    static HWND Field(const Driver &driver)
    {
        return reinterpret_cast<HWND>(driver.Send("lvwFormats", LVM_GETEDITCONTROL));
    }

    bool refuse = false;
};

using Log = std::vector<std::string>;

TEST_F(Lists, ShowRowsColumnsAndSelection)
{
    Act(
        [&](Driver &driver)
        {
            EXPECT_EQ(driver.Send("lvwFormats", LVM_GETITEMCOUNT), 5);
            EXPECT_EQ(Cell(driver, "lvwFormats", 1, 0), L"Default");
            EXPECT_EQ(Cell(driver, "lvwFormats", 1, 1), L"Mercy Hospital");
            EXPECT_EQ(Cell(driver, "lvwReportType", 2, 0), L"CT abdomen");
            EXPECT_EQ(Selected(driver), 0);

            driver.InWindow(
                [&]
                {
                    const auto header = reinterpret_cast<HWND>(driver.Send("lvwFormats", LVM_GETHEADER));
                    EXPECT_EQ(Header_GetItemCount(header), 2);
                    EXPECT_TRUE(IsWindowVisible(header));
                    wchar_t text[64];
                    HDITEMW item{};
                    item.mask = HDI_TEXT | HDI_FORMAT;
                    item.pszText = text;
                    item.cchTextMax = 64;
                    SendMessageW(header, HDM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
                    EXPECT_STREQ(text, L"Format Name");
                    EXPECT_TRUE(item.fmt & HDF_SORTUP);
                    SendMessageW(header, HDM_GETITEMW, 1, reinterpret_cast<LPARAM>(&item));
                    EXPECT_STREQ(text, L"Partition");
                    EXPECT_FALSE(item.fmt & (HDF_SORTUP | HDF_SORTDOWN));
                });
        });
}

TEST_F(Lists, FollowTheProgram)
{
    Act(
        [&](Driver &driver)
        {
            driver.InWindow([&] { list.SetSelectedItem(4); });
            EXPECT_EQ(Selected(driver), 3);
            driver.InWindow([&] { list.SetSortOrder(SortOrder::Descending); });
            EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"Underlined");
            EXPECT_EQ(Selected(driver), 1) << "the selection stays with its item";
            driver.InWindow(
                [&]
                {
                    list.Clear();
                    EXPECT_EQ(driver.Send("lvwFormats", LVM_GETITEMCOUNT), 0);
                    list.Add("Key1-1", "\xE6\x97\xA5\xE6\x9C\xAC", "x");
                });
            EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"\u65e5\u672c");
            EXPECT_EQ(Selected(driver), 0);
            EXPECT_EQ(events, Log{}) << "nothing of this is a user's act";
        });
}

TEST_F(Lists, TheSelectedRowIsPlainToSeeWithAndWithoutTheKeyboard)
{
    Act(
        [&](Driver &driver)
        {
            const HWND window = driver.Of("lvwFormats");
            const auto colour = [&](int row)
            {
                COLORREF found = 0;
                driver.InWindow(
                    [&]
                    {
                        RECT place{LVIR_BOUNDS, 0, 0, 0};
                        SendMessageW(window, LVM_GETITEMRECT, static_cast<WPARAM>(row),
                                     reinterpret_cast<LPARAM>(&place));
                        UpdateWindow(window);
                        const HDC context = GetDC(window);
                        found = GetPixel(context, place.right - 4, (place.top + place.bottom) / 2);
                        ReleaseDC(window, context);
                    });
                return found;
            };
            const auto distance = [](COLORREF a, COLORREF b)
            {
                return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
                       std::abs(GetBValue(a) - GetBValue(b));
            };
            EXPECT_TRUE(Driver::Wait([&] { return colour(0) == GetSysColor(COLOR_HIGHLIGHT); }));
            driver.Focus("btnSave");
            EXPECT_TRUE(Driver::Wait([&] { return colour(0) != GetSysColor(COLOR_HIGHLIGHT); }));
            EXPECT_EQ(colour(1), GetSysColor(COLOR_WINDOW));
            EXPECT_GT(distance(colour(0), GetSysColor(COLOR_WINDOW)), 100);
            EXPECT_GT(distance(colour(0), GetSysColor(COLOR_WINDOWTEXT)), 200);
        });
}

TEST_F(Lists, ArrowKeysSelectAndRaiseTheClick)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_DOWN);
            driver.Key(VK_DOWN);
            driver.Key(VK_UP);
            driver.Key(VK_END);
            EXPECT_EQ(events, (Log{"click Default", "click Indented", "click Default", "click Underlined"}));
            EXPECT_EQ(list.SelectedPosition(), 5);
        });
}

TEST_F(Lists, AClickRaisesTheClickAlsoOnTheSelectedItem)
{
    Act(
        [&](Driver &driver)
        {
            driver.ClickRow("lvwFormats", 2);
            EXPECT_EQ(events, (Log{"click Indented"}));
            std::this_thread::sleep_for(std::chrono::milliseconds(600)); // no double click
            driver.InWindow([&] { refuse = true; });
            driver.ClickRow("lvwFormats", 2);
            ASSERT_GE(events.size(), 2u);
            EXPECT_EQ(events[1], "click Indented");
        });
}

TEST_F(Lists, AClickOnTheSelectedLabelEditsItAMomentLater)
{
    Act(
        [&](Driver &driver)
        {
            driver.ClickRow("lvwFormats", 0);
            EXPECT_TRUE(Driver::Wait([&] { return Field(driver) != nullptr; }));
            driver.Settle();
            EXPECT_EQ(events, (Log{"click Bold with colon", "before Bold with colon"}));
            driver.Key('N');
            driver.Key(VK_RETURN);
            EXPECT_EQ(events.back(), "after n");
        });
}

TEST_F(Lists, AClickBesideTheItemsLeavesTheSelection)
{
    Act(
        [&](Driver &driver)
        {
            const window::Scale scale = window::Scale::OfScreen();
            driver.ClickAt(driver.Of("lvwFormats"), scale.Pixels(20), scale.Pixels(180));
            EXPECT_EQ(Selected(driver), 0);
            EXPECT_EQ(events, Log{});
        });
}

TEST_F(Lists, AClickOnAHeaderTellsItsColumn)
{
    Act(
        [&](Driver &driver)
        {
            const auto header = reinterpret_cast<HWND>(driver.Send("lvwFormats", LVM_GETHEADER));
            const window::Scale scale = window::Scale::OfScreen();
            driver.ClickAt(header, scale.Pixels(200), scale.Pixels(8));
            driver.ClickAt(header, scale.Pixels(20), scale.Pixels(8));
            EXPECT_EQ(events, (Log{"column 2", "column 1"}));
        });
}

TEST_F(Lists, TypingFindsTheNextLabelThatStartsSo)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key('U');
            EXPECT_EQ(list.SelectedItem().text, "Underlined");
            driver.InWindow([&] { form.Get<TabControl>("SSTab1").SetTab(2); });
            driver.Focus("lvwHeadings");
            for (const char key : std::string("IND"))
                driver.Key(static_cast<WORD>(key));
            EXPECT_EQ(form.Get<ListView>("lvwHeadings").SelectedItem().text, "INDICATION");
        });
}

TEST_F(Lists, F2AndEnterRename)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            ASSERT_NE(Field(driver), nullptr);
            EXPECT_EQ(TextOf(Field(driver)), L"Bold with colon");
            EXPECT_EQ(driver.Focused(), "(edit)");
            driver.Key('X');
            driver.Key(VK_RETURN);
            EXPECT_EQ(Field(driver), nullptr);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after x"}));
            EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"x");
            EXPECT_EQ(driver.Focused(), "lvwFormats");
            EXPECT_EQ(form.closes, 0);
        });
}

TEST_F(Lists, EnterTellsOfAnUnchangedLabelToo)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key(VK_RETURN);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after Bold with colon"}));
        });
}

TEST_F(Lists, EscapeEndsTheEditAndNothingElse)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('X');
            driver.Key(VK_ESCAPE);
            EXPECT_EQ(Field(driver), nullptr);
            EXPECT_EQ(events, (Log{"before Bold with colon"}));
            EXPECT_FALSE(list.Editing());
            EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"Bold with colon");
            EXPECT_EQ(form.closes, 0);
        });
}

TEST_F(Lists, ARefusedEditIsNotOpened)
{
    Act(
        [&](Driver &driver)
        {
            driver.InWindow([&] { refuse = true; });
            driver.Key(VK_F2);
            EXPECT_EQ(Field(driver), nullptr);
            driver.Send("lvwFormats", LVM_EDITLABELW, 0);
            EXPECT_EQ(Field(driver), nullptr);
            EXPECT_FALSE(list.Editing());
            EXPECT_EQ(events, (Log{"before Bold with colon", "before Bold with colon"}));
        });
}

TEST_F(Lists, AListWithoutLabelEditingOpensNone)
{
    Act(
        [&](Driver &driver)
        {
            driver.InWindow([&] { form.Get<TabControl>("SSTab1").SetTab(2); });
            driver.Focus("lvwReportType");
            driver.Key(VK_F2);
            driver.Send("lvwReportType", LVM_EDITLABELW, 0);
            EXPECT_EQ(driver.Send("lvwReportType", LVM_GETEDITCONTROL), 0);
        });
}

TEST_F(Lists, ARefusedNameStaysAsItWas)
{
    Act(
        [&](Driver &driver)
        {
            driver.Send("lvwFormats", LVM_EDITLABELW, 0);
            ASSERT_NE(Field(driver), nullptr);
            SendMessageW(Field(driver), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"taken"));
            SendMessageW(Field(driver), WM_KEYDOWN, VK_RETURN, 0);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after taken"}));
            EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"Bold with colon");
        });
}

TEST_F(Lists, TheProgramOpensAnEditAndTheListGetsTheKeyboard)
{
    Act(
        [&](Driver &driver)
        {
            driver.Focus("btnAdd");
            driver.InWindow(
                [&]
                {
                    list.SetSelectedItem(3);
                    list.SetFocus();
                    list.StartLabelEdit();
                });
            ASSERT_NE(Field(driver), nullptr);
            EXPECT_EQ(TextOf(Field(driver)), L"Indented");
            EXPECT_EQ(driver.Focused(), "(edit)");
            driver.Key('Y');
            driver.Key(VK_RETURN);
            EXPECT_EQ(events, (Log{"before Indented", "after y"}));
        });
}

TEST_F(Lists, LeavingByTabKeepsWhatWasTyped)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('Z');
            driver.Key(VK_TAB);
            EXPECT_EQ(driver.Focused(), "btnAdd");
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z"}));
            EXPECT_FALSE(list.Editing());
            driver.Focus("lvwFormats");
            driver.Key(VK_F2);
            driver.Key(VK_TAB);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z", "before z"})) << "nothing was typed";
        });
}

TEST_F(Lists, LeavingForAButtonEndsTheEditBeforeTheButtonActs)
{
    form.Get<Button>("btnPrint").OnClick = [&] { events.push_back("print"); };
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('Z');
            driver.Send("btnPrint", BM_CLICK);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z", "print"}));
            driver.Focus("lvwFormats");
            driver.Key(VK_F2);
            driver.Key('Q');
            driver.Key('P', VK_MENU);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z", "print", "before z", "after q", "print"}));
        });
}

TEST_F(Lists, LeavingForAnotherItemEndsTheEditFirst)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('Z');
            driver.ClickRow("lvwFormats", 3);
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z", "click New line"}));
            EXPECT_EQ(Field(driver), nullptr);
        });
}

TEST_F(Lists, LeavingForAnotherWindowEndsTheEdit)
{
    Act(
        [&](Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('Z');
            // The question of closing comes after the edit.
            driver.InWindow([&] { form.stays = true; });
            driver.InWindow(
                [&]
                {
                    HWND other = CreateWindowExW(0, L"Static", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                                                 nullptr, nullptr, nullptr);
                    SetActiveWindow(other);
                    DestroyWindow(other);
                });
            driver.Settle();
            EXPECT_EQ(events, (Log{"before Bold with colon", "after z"}));
            EXPECT_EQ(driver.Focused(), "lvwFormats") << "and the keyboard is back";
        });
}

// Whatever way the user turns elsewhere: the message comes, and nothing else.
TEST_F(Lists, WhatARefusedNameWasLeftForIsNotCarriedOut)
{
    form.Get<Button>("btnPrint").OnClick = [&] { events.push_back("print"); };
    form.Get<TabControl>("SSTab1").OnClick = [&](int tab) { events.push_back("from tab " + std::to_string(tab)); };
    Act(
        [&](Driver &driver)
        {
            const auto at = [&driver](HWND window, int x, int y)
            { return [=, &driver] { driver.ClickAt(window, x, y); }; };
            const auto header = reinterpret_cast<HWND>(driver.Send("lvwFormats", LVM_GETHEADER));
            const std::pair<const char *, std::function<void()>> acts[] = {
                {"a program's click", [&] { PostMessageW(driver.Of("btnPrint"), BM_CLICK, 0, 0); }},
                {"a button", at(driver.Of("btnPrint"), 10, 10)},
                {"its letter", [&] { driver.Key('P', VK_MENU); }},
                {"a tab", at(driver.Of("SSTab1"), 20, 10)},
                {"its letter", [&] { driver.Key('G', VK_MENU); }},
                {"the next page", [&] { driver.Key(VK_TAB, VK_CONTROL); }},
                {"Tab", [&] { driver.Key(VK_TAB); }},
                {"another row", [&] { driver.ClickRow("lvwFormats", 3); }},
                {"a column", at(header, 10, 5)},
                {"a drop-down list", at(driver.Of("cmbPartition"), 10, 5)},
            };
            for (const auto &[name, act] : acts)
            {
                SCOPED_TRACE(name);
                events.clear();
                driver.InWindow(
                    [&]
                    {
                        list.OnAfterLabelEdit = [&](bool &cancel, const std::string &)
                        {
                            events.push_back("refused");
                            platform::MsgBox("No", 0, "Refused");
                            cancel = true;
                        };
                    });
                driver.Key(VK_F2);
                driver.Key('Z');
                std::thread doing(act);
                const HWND box = Driver::MessageBox(L"Refused");
                EXPECT_NE(box, nullptr);
                if (box)
                    Driver::Answer(box, IDOK);
                doing.join();
                driver.Settle();
                EXPECT_EQ(events, (Log{"before Bold with colon", "refused"}));
                EXPECT_EQ(Cell(driver, "lvwFormats", 0, 0), L"Bold with colon");
                EXPECT_EQ(Selected(driver), 0);
                EXPECT_EQ(driver.Focused(), "lvwFormats") << "and the user can go on there";
                EXPECT_FALSE(driver.Send("cmbPartition", CB_GETDROPPEDSTATE));
            }
        });
}

TEST_F(Lists, ThirtyThousandRowsAreThereInABlink)
{
    auto &headings = form.Get<ListView>("lvwHeadings");
    Act(
        [&](Driver &driver)
        {
            driver.InWindow([&] { form.Get<TabControl>("SSTab1").SetTab(2); });
            using Clock = std::chrono::steady_clock;
            Clock::duration shown{}, jumped{};
            driver.InWindow(
                [&]
                {
                    headings.BeginUpdate();
                    headings.Clear();
                    for (int i = 0; i < 30000; ++i)
                        headings.Add("Key" + std::to_string(i) + "-1", "HEADING " + std::to_string(i), "A");
                    const auto start = Clock::now();
                    headings.EndUpdate();
                    UpdateWindow(driver.Of("lvwHeadings"));
                    shown = Clock::now() - start;
                    headings.SetSelectedItem(29999);
                    UpdateWindow(driver.Of("lvwHeadings"));
                    jumped = Clock::now() - start - shown;
                });
            EXPECT_EQ(driver.Send("lvwHeadings", LVM_GETITEMCOUNT), 30000);
            EXPECT_EQ(Cell(driver, "lvwHeadings", 29999, 0), L"HEADING 29999");
            EXPECT_LT(shown, std::chrono::milliseconds(500));
            EXPECT_LT(jumped, std::chrono::milliseconds(500));
            RecordProperty("shown_us", static_cast<int>(shown / std::chrono::microseconds(1)));
            std::printf("shown in %.1f ms, jumped in %.1f ms\n", shown.count() / 1e6, jumped.count() / 1e6);
        });
}

} // namespace
} // namespace window_tests
