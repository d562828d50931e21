// A user at the editor's window: see driver.h.
#include "window_driver/driver.h"

#include "platform/windows/wide.h"
#include "window/control_id.h"
#include "window_driver/order.h"

#include <commctrl.h>

namespace window_driver
{

namespace
{

const UINT kRun = RegisterWindowMessageW(L"KVHEADERS.Driver.Run");

} // namespace

Driver::Driver(HWND form) : m_form(form), m_thread(form ? GetWindowThreadProcessId(form, nullptr) : 0)
{
    if (!form)
        return;
    EnumChildWindows(form, &Visit, reinterpret_cast<LPARAM>(this));
    SetWindowSubclass(form, &Procedure, 0, 0);
}

BOOL CALLBACK Driver::Visit(HWND control, LPARAM self)
{
    if (const std::string_view name = window::ControlName(GetDlgCtrlID(control)); !name.empty())
        reinterpret_cast<Driver *>(self)->m_windows[std::string(name)] = control;
    return TRUE;
}

LRESULT CALLBACK Driver::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, &Procedure, 0);
    if (message != kRun)
        return DefSubclassProc(window, message, wParam, lParam);
    reinterpret_cast<Order *>(lParam)->CarryOut();
    return 0;
}

HWND Driver::Find(const std::string &control) const
{
    const auto found = m_windows.find(control);
    return found == m_windows.end() ? nullptr : found->second;
}

void Driver::InWindow(const std::function<void()> &act) const
{
    Order order(act);
    SendMessageW(m_form, kRun, 0, reinterpret_cast<LPARAM>(&order));
    order.ThrowProblem();
}

void Driver::Settle() const
{
    // What was dealt with may have posted another message: twice nothing is nothing. Input stays in the queue while a
    // handler runs that lets messages through: it is not waited for.
    constexpr int kLooks = 40;
    for (int look = 0, idle = 0; look < kLooks && idle < 2; ++look)
    {
        bool waiting = false;
        InWindow([&] { waiting = HIWORD(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE)) != 0; });
        idle = waiting ? 0 : idle + 1;
        Sleep(2);
    }
}

std::string Driver::Focused() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!GetGUIThreadInfo(m_thread, &info) || !info.hwndFocus)
        return "";
    for (const auto &[name, window] : m_windows)
        if (window == info.hwndFocus)
            return name;
    return info.hwndFocus == m_form ? "(form)" : IsChild(m_form, info.hwndFocus) ? "(edit)" : "(box)";
}

std::string Driver::TextOf(const std::string &control) const
{
    return window_driver::TextOf(Of(control));
}

HWND Driver::DropDown(const std::string &combo) const
{
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    return GetComboBoxInfo(Of(combo), &info) ? info.hwndList : nullptr;
}

int Driver::Tab() const
{
    const char *const first[] = {"chkTagKnown", "lvwFormats", "lvwHeadings"};
    int shown = -1;
    for (int tab = 0; tab < 3; ++tab)
        if (Visible(first[tab]))
        {
            if (shown >= 0)
                return -1;
            shown = tab;
        }
    return shown;
}

std::string Driver::Cell(const std::string &list, int row, int column) const
{
    std::wstring text(1024, L'\0');
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    const auto length = Send(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return platform::FromWide({item.pszText, static_cast<std::size_t>(length)});
}

int Driver::SelectedRow(const std::string &list) const
{
    return static_cast<int>(Send(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

HWND Driver::HeaderOf(const std::string &list) const
{
    return reinterpret_cast<HWND>(Send(list, LVM_GETHEADER));
}

int Driver::Arrow(const std::string &list, int column) const
{
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    SendMessageW(HeaderOf(list), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    return item.fmt & HDF_SORTUP ? 1 : item.fmt & HDF_SORTDOWN ? -1 : 0;
}

HWND Driver::LabelField(const std::string &list) const
{
    return reinterpret_cast<HWND>(Send(list, LVM_GETEDITCONTROL));
}

std::string Driver::Edited(const std::string &list) const
{
    std::string text = "(none)";
    InWindow(
        [&]
        {
            if (const HWND field = LabelField(list); field && GetFocus() == field)
                text = window_driver::TextOf(field);
        });
    return text;
}

std::string Driver::BoxText() const
{
    const HWND box = Box();
    return box && Focused() == "(box)" ? window_driver::BoxText(box) : std::string();
}

HWND Driver::WaitForBox() const
{
    HWND box = nullptr;
    WaitUntil([&] { return (box = Box()) != nullptr; });
    return box;
}

RECT Driver::PlaceOfRow(const std::string &list, int row, int column) const
{
    // Asked in the window's thread, so that nothing moves between.
    RECT place{};
    place.left = LVIR_LABEL;
    place.top = column;
    InWindow(
        [&]
        {
            Send(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
            Send(list, column > 0 ? LVM_GETSUBITEMRECT : LVM_GETITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&place));
        });
    return place;
}

RECT Driver::PlaceOfHeader(const std::string &list, int column) const
{
    RECT place{};
    const HWND header = HeaderOf(list);
    if (!IsWindowVisible(header) ||
        !SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place)))
        return {};
    return place;
}

RECT Driver::PlaceOfTab(int tab) const
{
    RECT place{};
    return Send("SSTab1", TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place)) ? place : RECT{};
}

void Driver::Focus(const std::string &control) const
{
    InWindow([&] { SetFocus(Of(control)); });
}

void Driver::ClickAt(HWND window, POINT place) const
{
    if (GetCurrentThreadId() == m_thread) // which takes no posted message meanwhile
        return SendClick(window, place);
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
    Settle();
}

void Driver::Click(const std::string &control) const
{
    RECT client;
    GetClientRect(Of(control), &client);
    ClickAt(Of(control), MiddleOf(client));
}

void Driver::ClickRow(const std::string &list, int row) const
{
    const RECT place = PlaceOfRow(list, row);
    ClickAt(Of(list), {place.left + 10, MiddleOf(place).y});
}

void Driver::ClickHeader(const std::string &list, int column) const
{
    ClickAt(HeaderOf(list), MiddleOf(PlaceOfHeader(list, column)));
}

void Driver::ClickTab(int tab) const
{
    ClickAt(Of("SSTab1"), MiddleOf(PlaceOfTab(tab)));
}

void Driver::Key(WORD key, const std::vector<WORD> &held) const
{
    std::vector<INPUT> inputs;
    const auto add = [&](WORD code, DWORD flags)
    {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (const WORD modifier : held)
        add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    for (const WORD modifier : held)
        add(modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    Settle();
}

POINT MiddleOf(const RECT &place)
{
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

void SendClick(HWND window, POINT place)
{
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.x, place.y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(place.x, place.y));
}

void SendKey(HWND window, WPARAM key)
{
    SendMessageW(window, WM_KEYDOWN, key, 1);
    SendMessageW(window, WM_KEYUP, key, 1);
}

void SendLabel(HWND field, const std::string &text)
{
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(platform::ToWide(text).c_str()));
    SendMessageW(field, WM_KEYDOWN, VK_RETURN, 1);
}

} // namespace window_driver
