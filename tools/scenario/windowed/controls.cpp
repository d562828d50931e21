// The controls of the editor's window: see controls.h.
#include "windowed/controls.h"

#include "script/failure.h"
#include "window/control_id.h"
#include "windowed/text.h"

#include <commctrl.h>

namespace scenario
{

namespace
{

// The parameter of an item of a virtual list: asked of whoever answers the list's own questions, since the list does
// not pass this one on. In this process it is the item's key.
std::string ItemKey(HWND list, int row)
{
    NMLVDISPINFOW question{};
    question.hdr = {list, static_cast<UINT_PTR>(GetDlgCtrlID(list)), LVN_GETDISPINFOW};
    question.item.mask = LVIF_PARAM;
    question.item.iItem = row;
    SendMessageW(GetParent(list), WM_NOTIFY, question.hdr.idFrom, reinterpret_cast<LPARAM>(&question));
    const auto *const key = reinterpret_cast<const char *>(question.item.lParam);
    return key ? key : "";
}

std::string ItemText(HWND list, int row, int column)
{
    std::wstring text(1024, L'\0');
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    const auto length = SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return platform::FromWide({item.pszText, static_cast<std::size_t>(length)});
}

// The arrow in a column's header tells the order.
void ReadSort(HWND header, ListState &state)
{
    const auto columns = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    state.hasSecondColumn = columns > 1;
    for (int column = 0; column < columns; ++column)
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        if (!(item.fmt & (HDF_SORTUP | HDF_SORTDOWN)))
            continue;
        state.sorted = true;
        state.sortKey = column;
        state.descending = (item.fmt & HDF_SORTDOWN) != 0;
    }
}

ListState ReadList(HWND list)
{
    ListState state;
    state.enabled = IsWindowEnabled(list);
    ReadSort(reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0)), state);
    const auto count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row)
        state.items.push_back({ItemKey(list, row), ItemText(list, row, 0), ItemText(list, row, 1)});
    state.selected = static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    return state;
}

ComboState ReadCombo(HWND combo)
{
    ComboState state;
    state.enabled = IsWindowEnabled(combo);
    const auto count = static_cast<int>(SendMessageW(combo, CB_GETCOUNT, 0, 0));
    for (int entry = 0; entry < count; ++entry)
    {
        const auto length = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry), 0);
        std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
        SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
        text.pop_back();
        const auto data = SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(entry), 0);
        state.entries.push_back({platform::FromWide(text), static_cast<int>(data)});
    }
    state.selected = static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
    return state;
}

ControlState ReadButton(HWND button)
{
    const bool enabled = IsWindowEnabled(button);
    if ((GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK) == BS_CHECKBOX)
        return BoxState{enabled, SendMessageW(button, BM_GETCHECK, 0, 0) == BST_CHECKED};
    return ButtonState{enabled, TextOf(button)};
}

} // namespace

Controls::Controls(HWND form) : m_form(form)
{
    if (form)
        EnumChildWindows(form, &Visit, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK Controls::Visit(HWND control, LPARAM self)
{
    if (const std::string_view name = window::ControlName(GetDlgCtrlID(control)); !name.empty())
        reinterpret_cast<Controls *>(self)->m_windows[std::string(name)] = control;
    return TRUE;
}

HWND Controls::Find(const std::string &name) const
{
    const auto found = m_windows.find(name);
    if (found == m_windows.end())
        throw Refusal("there is no control " + name);
    return found->second;
}

HWND Controls::Reachable(const std::string &name, const wchar_t *className, const char *kind) const
{
    const auto found = m_windows.find(name);
    if (found == m_windows.end() || lstrcmpiW(ClassOf(found->second).c_str(), className) != 0)
        throw Refusal("there is no " + std::string(kind) + " " + name);
    if (!IsWindowVisible(found->second))
        throw Refusal(name + " is hidden");
    if (!IsWindowEnabled(found->second))
        throw Refusal(name + " is disabled");
    return found->second;
}

ControlState Controls::Read(const std::string &name) const
{
    if (name == "frmHeadings")
        return WindowState{(GetWindowLongW(m_form, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0};
    const HWND control = Find(name);
    const std::wstring className = ClassOf(control);
    if (lstrcmpiW(className.c_str(), WC_LISTVIEWW) == 0)
        return ReadList(control);
    if (lstrcmpiW(className.c_str(), WC_COMBOBOXW) == 0)
        return ReadCombo(control);
    if (lstrcmpiW(className.c_str(), WC_BUTTONW) == 0)
        return ReadButton(control);
    throw Refusal("there is no control " + name + " whose state could be read");
}

} // namespace scenario
