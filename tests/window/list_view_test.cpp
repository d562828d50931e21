// Lists in the window: rows, selection, sorting, typing, and labels edited in place.
#include "platform/desktop.h"
#include "platform/windows/wide.h"
#include "window/form_test.h"
#include "window/scale.h"

#include <commctrl.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace window_tests
{
namespace
{

using namespace editor::controls;

// The list of formats has the keyboard, and its events are noted.
struct Lists : FormTest
{
    ListView &list = form.Get<ListView>("lvwFormats");
    Log events;
    bool refuse = false;

    const Driver &OpenOnList()
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
            cancel = text == "t";
        };
        const Driver &driver = Open();
        ShowTab(1);
        driver.Focus("lvwFormats");
        events.clear();
        return driver;
    }
};

TEST_F(Lists, ShowRowsColumnsAndSelection)
{
    const Driver &driver = OpenOnList();
    EXPECT_EQ(driver.Send("lvwFormats", LVM_GETITEMCOUNT), 5);
    EXPECT_EQ(driver.Cell("lvwFormats", 1, 0), "Default");
    EXPECT_EQ(driver.Cell("lvwFormats", 1, 1), "Mercy Hospital");
    EXPECT_EQ(driver.Cell("lvwReportType", 2, 0), "CT abdomen");
    EXPECT_EQ(driver.SelectedRow("lvwFormats"), 0);

    const auto header = driver.HeaderOf("lvwFormats");
    EXPECT_EQ(Header_GetItemCount(header), 2);
    EXPECT_TRUE(IsWindowVisible(header));
    for (const auto &[column, caption, arrow] : {std::tuple(0, L"Format Name", 1), {1, L"Partition", 0}})
    {
        wchar_t text[64];
        HDITEMW item{};
        item.mask = HDI_TEXT;
        item.pszText = text;
        item.cchTextMax = 64;
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        EXPECT_STREQ(text, caption);
        EXPECT_EQ(driver.Arrow("lvwFormats", column), arrow) << column;
    }
}

TEST_F(Lists, TheSelectedRowIsPlainToSeeWithAndWithoutTheKeyboard)
{
    const Driver &driver = OpenOnList();
    const HWND window = driver.Of("lvwFormats");
    const auto colour = [&](int row)
    {
        COLORREF found = 0;
        driver.InWindow(
            [&]
            {
                RECT place{LVIR_BOUNDS, 0, 0, 0};
                SendMessageW(window, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
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
    EXPECT_TRUE(WaitUntil([&] { return colour(0) == GetSysColor(COLOR_HIGHLIGHT); }));
    driver.Focus("btnSave");
    EXPECT_TRUE(WaitUntil([&] { return colour(0) != GetSysColor(COLOR_HIGHLIGHT); }));
    EXPECT_EQ(colour(1), GetSysColor(COLOR_WINDOW));
    EXPECT_GT(distance(colour(0), GetSysColor(COLOR_WINDOW)), 100);
    EXPECT_GT(distance(colour(0), GetSysColor(COLOR_WINDOWTEXT)), 200);
}

TEST_F(Lists, AClickRaisesTheClickAlsoOnTheSelectedItem)
{
    const Driver &driver = OpenOnList();
    driver.ClickRow("lvwFormats", 2);
    EXPECT_EQ(events, (Log{"click Indented"}));
    std::this_thread::sleep_for(std::chrono::milliseconds(600)); // no double click
    driver.InWindow([&] { refuse = true; });
    driver.ClickRow("lvwFormats", 2);
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events[1], "click Indented");
}

TEST_F(Lists, AClickBesideTheItemsLeavesTheSelection)
{
    const Driver &driver = OpenOnList();
    const window::Scale scale = window::Scale::OfScreen();
    driver.ClickAt(driver.Of("lvwFormats"), {scale.Pixels(20), scale.Pixels(180)});
    EXPECT_EQ(driver.SelectedRow("lvwFormats"), 0);
    EXPECT_EQ(events, Log{});
}

TEST_F(Lists, AClickOnAHeaderTellsItsColumn)
{
    const Driver &driver = OpenOnList();
    driver.ClickHeader("lvwFormats", 1);
    driver.ClickHeader("lvwFormats", 0);
    EXPECT_EQ(events, (Log{"column 2", "column 1"}));
}

TEST_F(Lists, ARefusedEditIsNotOpenedAndAListWithoutEditingOpensNone)
{
    const Driver &driver = OpenOnList();
    driver.InWindow([&] { refuse = true; });
    driver.Key(VK_F2);
    EXPECT_EQ(driver.LabelField("lvwFormats"), nullptr);
    driver.Send("lvwFormats", LVM_EDITLABELW, 0);
    EXPECT_EQ(driver.LabelField("lvwFormats"), nullptr);
    EXPECT_FALSE(list.Editing());
    EXPECT_EQ(events, (Log{"before Bold with colon", "before Bold with colon"}));
    ShowTab(2);
    driver.Focus("lvwReportType");
    driver.Key(VK_F2);
    driver.Send("lvwReportType", LVM_EDITLABELW, 0);
    EXPECT_EQ(driver.LabelField("lvwReportType"), nullptr);
}

// What the keyboard does in a list. The first row is selected in the beginning.
TEST_F(Lists, FollowTheKeyboard)
{
    constexpr WORD kAltP = 0xFFFF;
    const std::string first = "Bold with colon";
    struct Case
    {
        std::vector<WORD> keys;
        Log events;
        std::string cell; // of the first row
        std::string focused;
    };
    const Case cases[] = {
        {{VK_DOWN, VK_DOWN, VK_UP, VK_END},
         {"click Default", "click Indented", "click Default", "click Underlined"},
         first,
         "lvwFormats"},
        {{'U'}, {"click Underlined"}, first, "lvwFormats"},
        {{VK_F2}, {"before " + first}, first, "(edit)"},
        {{VK_F2, VK_RETURN}, {"before " + first, "after " + first}, first, "lvwFormats"},
        {{VK_F2, 'X', VK_RETURN}, {"before " + first, "after x"}, "x", "lvwFormats"},
        {{VK_F2, 'X', VK_ESCAPE}, {"before " + first}, first, "lvwFormats"},
        {{VK_F2, 'T', VK_RETURN}, {"before " + first, "after t"}, first, "lvwFormats"}, // refused
        {{VK_F2, 'Q', kAltP}, {"before " + first, "after q", "print"}, "q", "btnPrint"},
    };
    form.Get<Button>("btnPrint").OnClick = [&] { events.push_back("print"); };
    const Driver &driver = OpenOnList();
    for (const Case &known : cases)
    {
        SCOPED_TRACE(testing::PrintToString(known.keys));
        driver.InWindow(
            [&]
            {
                list.Clear();
                for (const char *const name : {"Bold with colon", "Default", "Indented", "New line", "Underlined"})
                    list.Add("Key" + std::string(name) + "-1", name, "Mercy Hospital");
            });
        driver.Focus("lvwFormats");
        events.clear();
        for (const WORD key : known.keys)
            key == kAltP ? driver.Key('P', VK_MENU) : driver.Key(key);
        EXPECT_EQ(events, known.events);
        EXPECT_EQ(driver.Cell("lvwFormats", 0, 0), known.cell);
        EXPECT_EQ(driver.Focused(), known.focused);
        EXPECT_EQ(list.Editing(), known.focused == "(edit)");
        EXPECT_EQ(form.closes, 0);
        if (list.Editing())
            driver.Key(VK_ESCAPE);
    }
}

// An act of the program's, a click elsewhere, the next control, and another page; at last with nothing typed.
TEST_F(Lists, LeavingEndsTheEditFirst)
{
    form.Get<Button>("btnPrint").OnClick = [&] { events.push_back("print"); };
    const Driver &driver = OpenOnList();
    form.Get<TabControl>("SSTab1").OnClick = [&](int tab) { events.push_back("from tab " + std::to_string(tab)); };
    const std::pair<WORD, std::function<void()>> acts[] = {
        {'Z', [&] { driver.Send("btnPrint", BM_CLICK); }},
        {'Y', [&] { driver.ClickRow("lvwFormats", 3); }},
        {'W',
         [&]
         {
             driver.Key(VK_TAB);
             EXPECT_EQ(driver.Focused(), "btnAdd");
         }},
        {VK_HOME, [&] { driver.Key(VK_TAB); }},
        {'X', [&] { driver.Key(VK_TAB, VK_CONTROL); }},
    };
    for (const auto &[letter, act] : acts)
    {
        driver.Focus("lvwFormats");
        driver.Key(VK_F2);
        driver.Key(letter);
        act();
    }
    EXPECT_EQ(events, (Log{"before Bold with colon", "after z", "print", "before z", "after y", "click New line",
                           "before New line", "after w", "before w", "before w", "after x", "from tab 1"}));
    EXPECT_EQ(driver.LabelField("lvwFormats"), nullptr);
}

TEST_F(Lists, LeavingForAnotherWindowEndsTheEdit)
{
    const Driver &driver = OpenOnList();
    driver.Key(VK_F2);
    driver.Key('Z');
    // The question of closing comes after the edit.
    driver.InWindow(
        [&]
        {
            form.stays = true;
            HWND other = CreateWindowExW(0, L"Static", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                         nullptr, nullptr);
            SetActiveWindow(other);
            DestroyWindow(other);
        });
    driver.Settle();
    EXPECT_EQ(events, (Log{"before Bold with colon", "after z"}));
    EXPECT_EQ(driver.Focused(), "lvwFormats") << "and the keyboard is back";
}

// Whatever way the user turns elsewhere: the message comes, and nothing else.
TEST_F(Lists, WhatARefusedNameWasLeftForIsNotCarriedOut)
{
    form.Get<Button>("btnPrint").OnClick = [&] { events.push_back("print"); };
    form.Get<TabControl>("SSTab1").OnClick = [&](int tab) { events.push_back("from tab " + std::to_string(tab)); };
    const Driver &driver = OpenOnList();
    const auto at = [&driver](HWND window, int x, int y) { return [=, &driver] { driver.ClickAt(window, {x, y}); }; };
    const auto header = driver.HeaderOf("lvwFormats");
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
        const HWND box = driver.WaitForBox();
        EXPECT_EQ(TextOf(box), "Refused");
        window_driver::AnswerBox(box, IDOK);
        doing.join();
        driver.Settle();
        EXPECT_EQ(events, (Log{"before Bold with colon", "refused"}));
        EXPECT_EQ(driver.Cell("lvwFormats", 0, 0), "Bold with colon");
        EXPECT_EQ(driver.SelectedRow("lvwFormats"), 0);
        EXPECT_EQ(driver.Focused(), "lvwFormats") << "and the user can go on there";
        EXPECT_FALSE(driver.Dropped("cmbPartition"));
    }
}

} // namespace
} // namespace window_tests
