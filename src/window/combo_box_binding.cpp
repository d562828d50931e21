// A drop-down list's native window.
#include "window/combo_box_binding.h"

#include "platform/windows/wide.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace window
{

using editor::controls::Property;

namespace
{

constexpr int kEntriesShown = 12;
constexpr UINT kSetMinVisible = 0x1701; // CB_SETMINVISIBLE

} // namespace

Binding::Make ComboBoxBinding::Describe() const
{
    return {L"COMBOBOX", CBS_DROPDOWNLIST | CBS_HASSTRINGS | WS_VSCROLL};
}

void ComboBoxBinding::Fill()
{
    Send(WM_SETREDRAW, FALSE);
    Send(CB_RESETCONTENT);
    Send(CB_INITSTORAGE, static_cast<WPARAM>(m_control.ListCount()), 32 * m_control.ListCount());
    for (int i = 0; i < m_control.ListCount(); ++i)
    {
        const auto entry = static_cast<WPARAM>(Send(CB_ADDSTRING, 0, platform::ToWide(m_control.List(i)).c_str()));
        if (const std::int32_t data = m_control.ItemData(i))
            Send(CB_SETITEMDATA, entry, static_cast<LPARAM>(data));
    }
    Send(WM_SETREDRAW, TRUE);
    ShowIndex();
}

// The field keeps the height of its font, in the middle of its bounds; the height that the system is given
// is that with the list open, which it makes less where there are fewer entries.
void ComboBoxBinding::Move(const RECT &bounds)
{
    Send(kSetMinVisible, kEntriesShown);
    RECT field;
    GetWindowRect(Window(), &field);
    const int height = field.bottom - field.top;
    const int top = bounds.top + (bounds.bottom - bounds.top - height) / 2;
    const int entry = static_cast<int>(Send(CB_GETITEMHEIGHT, 0));
    SetWindowPos(Window(), nullptr, bounds.left, top, bounds.right - bounds.left, height + entry * kEntriesShown + 2,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void ComboBoxBinding::WidenList()
{
    const HDC context = GetDC(Window());
    const HGDIOBJ before = SelectObject(context, Context().fonts.Get(Entry().bold));
    LONG widest = 0;
    for (int i = 0; i < m_control.ListCount(); ++i)
    {
        const std::wstring text = platform::ToWide(m_control.List(i));
        SIZE size{};
        GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
        widest = std::max(widest, size.cx);
    }
    SelectObject(context, before);
    ReleaseDC(Window(), context);
    const int beside = GetSystemMetrics(SM_CXVSCROLL) + Context().scale.Pixels(8);
    Send(CB_SETDROPPEDWIDTH, static_cast<WPARAM>(widest + beside));
}

void ComboBoxBinding::ShowIndex()
{
    if (NativeIndex() != m_control.ListIndex())
        Send(CB_SETCURSEL, static_cast<WPARAM>(m_control.ListIndex()));
}

void ComboBoxBinding::OnChanged(Property property, int position)
{
    if (property == Property::Items)
    {
        Fill();
        InvalidateRect(Window(), nullptr, TRUE);
    }
    else if (property == Property::Selection)
        ShowIndex();
    else
        Binding::OnChanged(property, position);
}

// With the list open, moving in it is looking: the entry counts when it has been taken and the list is closed, also
// when it is the one that was selected. With the list closed every move counts.
void ComboBoxBinding::OnCommand(int code)
{
    switch (code)
    {
    case CBN_DROPDOWN:
        WidenList();
        m_dropped = true;
        m_accepted = false;
        break;
    case CBN_SELENDOK:
        m_accepted = true;
        break;
    case CBN_SELENDCANCEL:
        m_accepted = false;
        break;
    case CBN_CLOSEUP:
        m_dropped = false;
        if (m_accepted)
            Choose();
        else
            ShowIndex();
        break;
    case CBN_SELCHANGE:
        // After the closing of the list this may tell of what has been dealt with.
        if (!m_dropped && NativeIndex() != m_control.ListIndex())
            Choose();
        break;
    default:
        break;
    }
}

void ComboBoxBinding::Choose()
{
    m_accepted = false;
    m_control.Choose(NativeIndex());
    if (Window())
        ShowIndex();
}

bool ComboBoxBinding::WantsKey(WPARAM key) const
{
    return (key == VK_RETURN || key == VK_ESCAPE) && Dropped();
}

std::optional<LRESULT> ComboBoxBinding::OnMessage(UINT message, WPARAM, LPARAM)
{
    // Turning the wheel over a closed list would choose entries by accident.
    if (message == WM_MOUSEWHEEL && !Dropped())
        return 0;
    return std::nullopt;
}

} // namespace window
