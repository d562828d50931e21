// The controls of a window made once more, by plain calls of the system: the bare limit of opening it.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace bench
{

class PlainWindow
{
public:
    // Notes what is in a window: its controls with their texts, places, styles and contents.
    explicit PlainWindow(HWND model);

    // Makes such a window with such controls, shows it, and takes it away when everything has been painted and nothing
    // waits. Returns the seconds until then.
    double Open() const;

private:
    struct Control
    {
        HWND model;
        std::wstring windowClass, text;
        DWORD style, extendedStyle;
        RECT place;         // in the parent
        std::size_t parent; // 0: the window; else the place in m_controls, from 1
        bool bold;
        std::vector<std::vector<std::wstring>> rows; // a list's, a drop-down list's and a tab control's texts
        std::vector<std::wstring> columns;
        std::vector<int> widths;
        int selected = -1;
        HIMAGELIST pictures = nullptr; // a button's; they stay until the process ends
    };

    static BOOL CALLBACK Visit(HWND control, LPARAM self);
    void Note(HWND control);
    static void NoteContents(Control &control);
    void Make(HWND window) const;
    static void Fill(HWND window, const Control &control);

    std::wstring m_caption;
    DWORD m_style, m_extendedStyle;
    RECT m_bounds;
    std::vector<Control> m_controls;
};

} // namespace bench
