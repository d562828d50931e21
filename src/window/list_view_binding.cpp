// A list's native window: a virtual list, which asks for the texts of the rows that it shows.
#include "window/list_view_binding.h"

#include "platform/windows/wide.h"
#include "runtime/scoped_flag.h"
#include "runtime/text.h"
#include "window/guard.h"

#include <algorithm>

namespace window
{

using editor::controls::Property;
using editor::controls::SortOrder;

namespace
{

// The selection of the native list has been changed in a way that the control does not know.
constexpr UINT kShowSelection = WM_APP + 1;

// Half way between two colours of the system.
COLORREF Between(int one, int other)
{
    const COLORREF a = GetSysColor(one), b = GetSysColor(other);
    return RGB((GetRValue(a) + GetRValue(b)) / 2, (GetGValue(a) + GetGValue(b)) / 2, (GetBValue(a) + GetBValue(b)) / 2);
}

constexpr UINT kRowState = LVIS_SELECTED | LVIS_FOCUSED;

} // namespace

Binding::Make ListViewBinding::Describe() const
{
    return {WC_LISTVIEWW, LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_EDITLABELS,
            WS_EX_CLIENTEDGE};
}

void ListViewBinding::Fill()
{
    constexpr DWORD extended = LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, extended, static_cast<LPARAM>(extended));
    Send(LVM_SETUNICODEFORMAT, TRUE);
    ShowAccessibleName();
    ShowColumns();
    ShowItems();
    ShowSelection(true);
}

// A list keeps the colours that it was made with.
void ListViewBinding::ShowColours() const
{
    Send(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
    Send(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
    Send(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOWTEXT)));
}

void ListViewBinding::ShowColumns()
{
    const runtime::ScopedFlag showing(m_showing);
    while (Send(LVM_DELETECOLUMN, 0))
    {
    }
    int index = 0;
    for (const editor::controls::Column &column : m_control.Columns())
    {
        std::wstring text = platform::ToWide(column.text);
        LVCOLUMNW native{};
        native.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        native.pszText = text.data();
        native.cx = Context().scale.X(column.width);
        native.iSubItem = index;
        Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++), &native);
    }
    SetStyle(LVS_NOCOLUMNHEADER, m_control.HideColumnHeaders());
    ShowSort();
}

// An arrow in the header of the column that the rows are sorted by.
void ListViewBinding::ShowSort() const
{
    const auto header = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    for (int i = 0; i < static_cast<int>(m_control.Columns().size()); ++i)
    {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        if (!SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item)))
            continue;
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (m_control.Sorted() && m_control.SortKey() == i)
            item.fmt |= m_control.GetSortOrder() == SortOrder::Ascending ? HDF_SORTUP : HDF_SORTDOWN;
        SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
}

void ListViewBinding::ShowItems()
{
    const runtime::ScopedFlag showing(m_showing);
    Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(m_control.Count()), LVSICF_NOSCROLL);
    InvalidateRect(Window(), nullptr, FALSE);
}

void ListViewBinding::ShowSelection(bool bringIntoView)
{
    const runtime::ScopedFlag showing(m_showing);
    const int row = m_control.SelectedPosition() - 1;
    if (row >= 0 && Send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), kRowState) != kRowState)
    {
        // One row is selected at a time: the one before is not any more.
        LVITEMW item{};
        item.stateMask = kRowState;
        item.state = kRowState;
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), &item);
    }
    if (row >= 0 && bringIntoView)
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

void ListViewBinding::OnChanged(Property property, int position)
{
    switch (property)
    {
    case Property::Items:
        ShowItems();
        ShowSelection(false);
        break;
    case Property::ItemText:
        Send(LVM_REDRAWITEMS, static_cast<WPARAM>(position - 1), position - 1);
        break;
    case Property::Selection:
        ShowSelection(true);
        break;
    case Property::Columns:
        ShowColumns();
        break;
    case Property::Sort:
        ShowSort();
        break;
    case Property::LabelEditStarted:
        if (m_edit.Wanted(position - 1))
        {
            const runtime::ScopedFlag showing(m_showing);
            Context().giveFocus(Window());
            Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(position - 1), FALSE);
            m_edit.Open(Window(), position - 1);
        }
        break;
    case Property::LabelEditEnded:
        m_edit.Close(Window());
        break;
    default:
        Binding::OnChanged(property, position);
        break;
    }
}

LRESULT ListViewBinding::OnNotify(NMHDR &header)
{
    switch (header.code)
    {
    case LVN_GETDISPINFOW:
        GiveItem(reinterpret_cast<NMLVDISPINFOW &>(header).item);
        return 0;
    case LVN_ODFINDITEMW:
        return FindItem(reinterpret_cast<NMLVFINDITEMW &>(header));
    case LVN_ITEMCHANGED:
        StateChanged(reinterpret_cast<NMLISTVIEW &>(header));
        return 0;
    case NM_CLICK:
    case NM_RCLICK:
        Clicked(reinterpret_cast<NMITEMACTIVATE &>(header).iItem);
        return 0;
    case NM_CUSTOMDRAW:
        return Draw(reinterpret_cast<NMLVCUSTOMDRAW &>(header));
    case LVN_COLUMNCLICK:
        m_control.ClickColumn(reinterpret_cast<NMLISTVIEW &>(header).iSubItem + 1);
        return 0;
    case LVN_KEYDOWN:
        if (reinterpret_cast<NMLVKEYDOWN &>(header).wVKey == VK_F2)
            m_control.BeginLabelEdit();
        return 0;
    case LVN_BEGINLABELEDITW:
    {
        // With an error the edit has not begun: the native list is not to open the field either.
        const int row = reinterpret_cast<NMLVDISPINFOW &>(header).item.iItem;
        return Guarded(false, [&] { return m_edit.Begins(Window(), row); }) ? FALSE : TRUE;
    }
    case LVN_ENDLABELEDITW:
        m_edit.Ended(Window());
        return FALSE; // the control keeps the text
    default:
        return 0;
    }
}

// The parameter of an item is its key, valid until the list changes: what asks in this process need not know the
// record.
void ListViewBinding::GiveItem(LVITEMW &item) const
{
    const bool exists = item.iItem >= 0 && item.iItem < m_control.Count();
    if (item.mask & LVIF_PARAM)
        item.lParam = exists ? reinterpret_cast<LPARAM>(m_control.Item(item.iItem + 1).key.c_str()) : 0;
    if (!(item.mask & LVIF_TEXT) || !item.pszText || item.cchTextMax <= 0)
        return;
    std::wstring text;
    if (exists)
    {
        const editor::controls::ListItem &row = m_control.Item(item.iItem + 1);
        text = platform::ToWide(item.iSubItem == 0 ? row.text : item.iSubItem == 1 ? row.second : std::string());
    }
    lstrcpynW(item.pszText, text.c_str(), item.cchTextMax);
}

// The selected row of a list without the keyboard focus tells whose settings are shown beside it; the system's colour
// for it, that of dialogs, is hardly distinguishable from white.
LRESULT ListViewBinding::Draw(NMLVCUSTOMDRAW &drawing) const
{
    switch (drawing.nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        return GetFocus() == Window() || !m_control.Enabled() ? CDRF_DODEFAULT : CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        if (static_cast<int>(drawing.nmcd.dwItemSpec) + 1 == m_control.SelectedPosition())
        {
            drawing.clrText = GetSysColor(COLOR_WINDOWTEXT);
            drawing.clrTextBk = Between(COLOR_WINDOW, COLOR_BTNSHADOW);
            drawing.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED); // or its colours count
        }
        return CDRF_DODEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

// The next row whose label starts with what has been typed, without regard to case.
LRESULT ListViewBinding::FindItem(const NMLVFINDITEMW &sought) const
{
    if (!(sought.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !sought.lvfi.psz || m_control.Count() == 0)
        return -1;
    const bool partial = (sought.lvfi.flags & LVFI_PARTIAL) != 0;
    const std::string start = runtime::UpperCase(platform::FromWide(sought.lvfi.psz));
    const int count = m_control.Count();
    const int first = std::clamp(sought.iStart, 0, count);
    const int rows = sought.lvfi.flags & LVFI_WRAP ? count : count - first;
    for (int i = 0; i < rows; ++i)
    {
        const int row = (first + i) % count;
        const std::string label = runtime::UpperCase(m_control.Item(row + 1).text);
        if (partial ? label.starts_with(start) : label == start)
            return row;
    }
    return -1;
}

// Arrow keys, typing and the mouse select in the native list first. Where it selects the selected row once more, it is
// about to edit its label.
void ListViewBinding::StateChanged(const NMLISTVIEW &change)
{
    if (m_showing || !(change.uChanged & LVIF_STATE))
        return;
    const bool selected = (change.uNewState & LVIS_SELECTED) != 0;
    if (selected == ((change.uOldState & LVIS_SELECTED) != 0))
        return;
    if (selected && change.iItem >= 0)
    {
        if (change.iItem + 1 == m_control.SelectedPosition())
            return;
        m_clickDone = m_clicking;
        m_control.Select(change.iItem + 1);
        if (Window() && m_control.SelectedPosition() != change.iItem + 1)
            PostMessageW(Window(), kShowSelection, 0, 0);
    }
    else if (!selected)
    {
        // Something stays selected.
        PostMessageW(Window(), kShowSelection, 0, 0);
    }
}

void ListViewBinding::Clicked(int row)
{
    if (row >= 0 && !m_clickDone)
        m_control.Select(row + 1);
    m_clicking = m_clickDone = false;
}

bool ListViewBinding::WantsKey(WPARAM key) const
{
    return (key == VK_RETURN || key == VK_ESCAPE) && LabelEdit::Field(Window());
}

std::optional<LRESULT> ListViewBinding::OnMessage(UINT message, WPARAM wParam, LPARAM)
{
    switch (message)
    {
    case LVM_EDITLABELW:
        // From elsewhere: it is for the control to open the edit.
        if (m_edit.Opening())
            return std::nullopt;
        if (static_cast<int>(wParam) + 1 == m_control.SelectedPosition())
            m_control.BeginLabelEdit();
        return reinterpret_cast<LRESULT>(LabelEdit::Field(Window()));
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        m_clicking = true;
        m_clickDone = false;
        return std::nullopt;
    case WM_SYSCOLORCHANGE:
        ShowColours();
        return std::nullopt;
    case kShowSelection:
        ShowSelection(false);
        return 0;
    case LabelEdit::kLeft:
        m_edit.Leave();
        return 0;
    default:
        return std::nullopt;
    }
}

} // namespace window
