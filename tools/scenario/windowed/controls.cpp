// The controls of the editor's window: see controls.h.
#include "windowed/controls.h"

#include "platform/windows/wide.h"
#include "script/failure.h"

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

ListState ReadList(const window_driver::Driver &driver, const std::string &name)
{
    ListState state;
    const HWND list = driver.Of(name);
    state.enabled = driver.Enabled(name);
    const auto columns = static_cast<int>(SendMessageW(driver.HeaderOf(name), HDM_GETITEMCOUNT, 0, 0));
    state.hasSecondColumn = columns > 1;
    for (int column = 0; column < columns; ++column)
        if (const int arrow = driver.Arrow(name, column); arrow != 0)
        {
            state.sorted = true;
            state.sortKey = column;
            state.descending = arrow < 0;
        }
    const auto count = static_cast<int>(driver.Send(name, LVM_GETITEMCOUNT));
    for (int row = 0; row < count; ++row)
        state.items.push_back({ItemKey(list, row), driver.Cell(name, row), driver.Cell(name, row, 1)});
    state.selected = driver.SelectedRow(name);
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
    return ButtonState{enabled, window_driver::TextOf(button)};
}

} // namespace

HWND Reachable(const window_driver::Driver &driver, const std::string &name, const std::string &className,
               const char *kind)
{
    const HWND control = driver.Find(name);
    if (!control || window_driver::ClassOf(control) != className)
        throw Refusal("there is no " + std::string(kind) + " " + name);
    if (!IsWindowVisible(control))
        throw Refusal(name + " is hidden");
    if (!IsWindowEnabled(control))
        throw Refusal(name + " is disabled");
    return control;
}

ControlState Read(const window_driver::Driver &driver, const std::string &name)
{
    if (name == "frmHeadings")
        return WindowState{window_driver::IsTopmost(driver.Form())};
    const HWND control = driver.Find(name);
    if (!control)
        throw Refusal("there is no control " + name);
    const std::string className = window_driver::ClassOf(control);
    if (className == WC_LISTVIEWA)
        return ReadList(driver, name);
    if (className == WC_COMBOBOXA)
        return ReadCombo(control);
    if (className == WC_BUTTONA)
        return ReadButton(control);
    throw Refusal("there is no control " + name + " whose state could be read");
}

} // namespace scenario
