// The controls of a window made once more, by plain calls of the system.
#include "window/plain_window.h"

#include <chrono>

namespace bench
{

namespace
{

constexpr wchar_t kPlain[] = L"KVHEADERS.Bench.Plain";

std::wstring TextOf(HWND window)
{
    wchar_t text[256] = L"";
    GetWindowTextW(window, text, 256);
    return text;
}

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return SendMessageW(window, message, wParam, lParam);
}

std::wstring ItemText(HWND list, int row, int column)
{
    wchar_t text[256] = L"";
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 256;
    Send(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

HFONT MakeFont(int weight, int height)
{
    return CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, L"MS Sans Serif");
}

bool idle = false;
void CALLBACK WhenIdle(HWND, UINT, UINT_PTR, DWORD)
{
    idle = true;
}

} // namespace

PlainWindow::PlainWindow(HWND model)
    : m_caption(TextOf(model)), m_style(static_cast<DWORD>(GetWindowLongW(model, GWL_STYLE)) & ~WS_VISIBLE),
      m_extendedStyle(static_cast<DWORD>(GetWindowLongW(model, GWL_EXSTYLE)))
{
    GetWindowRect(model, &m_bounds);
    EnumChildWindows(model, &Visit, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK PlainWindow::Visit(HWND control, LPARAM self)
{
    reinterpret_cast<PlainWindow *>(self)->Note(control);
    return TRUE;
}

void PlainWindow::Note(HWND window)
{
    wchar_t name[64];
    GetClassNameW(window, name, 64);
    Control control{window,
                    name,
                    TextOf(window),
                    static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE)),
                    static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE)),
                    {},
                    0,
                    false,
                    {},
                    {},
                    {},
                    -1,
                    nullptr};
    const HWND parent = GetParent(window);
    for (std::size_t i = 0; i < m_controls.size(); ++i)
        if (m_controls[i].model == parent)
            control.parent = i + 1;
    // What a control has made itself comes with it.
    if (control.parent > 0 && m_controls[control.parent - 1].windowClass != kPlain)
        return;
    if (control.windowClass == L"KVHEADERS.Container")
        control.windowClass = kPlain;
    GetWindowRect(window, &control.place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT *>(&control.place), 2);
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(Send(window, WM_GETFONT)), sizeof font, &font);
    control.bold = font.lfWeight == FW_BOLD;
    NoteContents(control);
    m_controls.push_back(control);
}

void PlainWindow::NoteContents(Control &control)
{
    const HWND window = control.model;
    if (control.windowClass == L"ComboBox")
    {
        for (int i = 0; i < static_cast<int>(Send(window, CB_GETCOUNT)); ++i)
        {
            wchar_t text[256];
            Send(window, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            control.rows.push_back({text});
        }
        control.selected = static_cast<int>(Send(window, CB_GETCURSEL));
    }
    else if (control.windowClass == WC_BUTTONW)
    {
        BUTTON_IMAGELIST list{};
        Send(window, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&list));
        control.pictures = list.himl ? ImageList_Duplicate(list.himl) : nullptr;
    }
    else if (control.windowClass == WC_TABCONTROLW)
    {
        control.rows = {{L"&General Settings"}, {L"Heading &Formats"}, {L"&Headings"}};
    }
    else if (control.windowClass == WC_LISTVIEWW)
    {
        control.style &= ~static_cast<DWORD>(LVS_OWNERDATA);
        const auto header = reinterpret_cast<HWND>(Send(window, LVM_GETHEADER));
        for (int i = 0; i < static_cast<int>(Send(header, HDM_GETITEMCOUNT)); ++i)
        {
            control.columns.push_back(L"Column");
            control.widths.push_back(static_cast<int>(Send(window, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i))));
        }
        for (int row = 0; row < static_cast<int>(Send(window, LVM_GETITEMCOUNT)); ++row)
            control.rows.push_back({ItemText(window, row, 0), ItemText(window, row, 1)});
    }
}

double PlainWindow::Open() const
{
    WNDCLASSW plain{};
    plain.lpfnWndProc = DefWindowProcW;
    plain.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    plain.lpszClassName = kPlain;
    RegisterClassW(&plain);
    const auto start = std::chrono::steady_clock::now();
    const HWND window = CreateWindowExW(m_extendedStyle, kPlain, m_caption.c_str(), m_style, m_bounds.left,
                                        m_bounds.top, m_bounds.right - m_bounds.left, m_bounds.bottom - m_bounds.top,
                                        nullptr, nullptr, nullptr, nullptr);
    Make(window);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    // The thread's timer has its turn when nothing else waits, paintings included.
    idle = false;
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, WhenIdle);
    for (MSG message; !idle && GetMessageW(&message, nullptr, 0, 0) > 0;)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    KillTimer(nullptr, timer);
    DestroyWindow(window);
    return seconds;
}

void PlainWindow::Make(HWND window) const
{
    const HFONT fonts[] = {MakeFont(FW_NORMAL, -11), MakeFont(FW_BOLD, -11)};
    std::vector<HWND> made;
    for (const Control &control : m_controls)
    {
        const HWND parent = control.parent > 0 ? made[control.parent - 1] : window;
        const HWND child =
            CreateWindowExW(control.extendedStyle, control.windowClass.c_str(), control.text.c_str(), control.style,
                            control.place.left, control.place.top, control.place.right - control.place.left,
                            control.place.bottom - control.place.top, parent, nullptr, nullptr, nullptr);
        Send(child, WM_SETFONT, reinterpret_cast<WPARAM>(fonts[control.bold]));
        Fill(child, control);
        made.push_back(child);
    }
    // The fonts stay until the process ends: the controls use them.
}

void PlainWindow::Fill(HWND window, const Control &control)
{
    for (std::size_t i = 0; i < control.columns.size(); ++i)
    {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = const_cast<wchar_t *>(control.columns[i].c_str());
        column.cx = control.widths[i];
        Send(window, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    for (std::size_t row = 0; row < control.rows.size(); ++row)
    {
        wchar_t *const text = const_cast<wchar_t *>(control.rows[row][0].c_str());
        if (control.windowClass == L"ComboBox")
        {
            Send(window, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        }
        else if (control.windowClass == WC_TABCONTROLW)
        {
            TCITEMW item{};
            item.mask = TCIF_TEXT;
            item.pszText = text;
            Send(window, TCM_INSERTITEMW, row, reinterpret_cast<LPARAM>(&item));
        }
        else
        {
            LVITEMW item{};
            item.mask = LVIF_TEXT;
            item.iItem = static_cast<int>(row);
            item.pszText = text;
            Send(window, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
            item.iSubItem = 1;
            item.pszText = const_cast<wchar_t *>(control.rows[row][1].c_str());
            Send(window, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        }
    }
    if (control.pictures)
    {
        BUTTON_IMAGELIST list{control.pictures, {}, BUTTON_IMAGELIST_ALIGN_LEFT};
        Send(window, BCM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(&list));
    }
    if (control.selected >= 0)
        Send(window, CB_SETCURSEL, static_cast<WPARAM>(control.selected));
}

} // namespace bench
