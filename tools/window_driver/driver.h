// A user at the editor's window: finds its controls by the names of the layout, reads off what they show, presses keys
// and clicks.
#pragma once

#include "window_driver/windows.h"

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace window_driver
{

class Driver
{
public:
    // Of an open window; null has no controls. To be made in the thread of the window and used from any thread.
    explicit Driver(HWND form);
    virtual ~Driver() = default;

    HWND Form() const { return m_form; }
    bool Open() const { return IsWindow(m_form) && IsWindowVisible(m_form); }
    // The native window of a control; throws std::out_of_range for an unknown name.
    HWND Of(const std::string &control) const { return m_windows.at(control); }
    // The same; null for an unknown name.
    HWND Find(const std::string &control) const;

    // Runs something in the thread of the window, between two messages of it; what it throws is thrown here. Nothing is
    // run when the window is gone.
    void InWindow(const std::function<void()> &act) const;
    // Lets the window deal with all that waits for it.
    void Settle() const;

    // --- What is shown
    // The control that has the keyboard; "(form)", "(edit)" for the field of a label, "(box)" for another window of the
    // thread, "" for none.
    std::string Focused() const;
    std::string TextOf(const std::string &control) const; // of a combo box: the entry shown
    bool Enabled(const std::string &control) const { return IsWindowEnabled(Of(control)) != FALSE; }
    bool Visible(const std::string &control) const { return IsWindowVisible(Of(control)) != FALSE; }
    bool Checked(const std::string &box) const { return Send(box, BM_GETCHECK) == BST_CHECKED; }
    bool Dropped(const std::string &combo) const { return Send(combo, CB_GETDROPPEDSTATE) != 0; }
    HWND DropDown(const std::string &combo) const; // the list that it opens
    int Tab() const;                               // whose page is seen, -1 when that is not exactly one
    // Rows and columns of lists count from 0.
    std::string Cell(const std::string &list, int row, int column = 0) const;
    int SelectedRow(const std::string &list) const; // -1: none
    std::string SelectedText(const std::string &list) const { return Cell(list, SelectedRow(list)); }
    HWND HeaderOf(const std::string &list) const;
    int Arrow(const std::string &list, int column) const; // of a header: 1 points up, -1 down, 0 is none
    HWND LabelField(const std::string &list) const;       // of the label that is being edited, or null
    // The text in that field when it has the keyboard, otherwise "(none)".
    std::string Edited(const std::string &list) const;
    // The message box of the window's thread that is open, or null; its text, "" unless it takes keys.
    HWND Box() const { return FindMessageBox({GetCurrentProcessId(), m_thread}); }
    std::string BoxText() const;
    HWND WaitForBox() const; // null after five seconds without one

    // --- Where things are: in the client area of the list, of its header, or of the tab control. A row is brought into
    // view first; a place that there is not is empty.
    RECT PlaceOfRow(const std::string &list, int row, int column = 0) const;
    RECT PlaceOfHeader(const std::string &list, int column) const;
    RECT PlaceOfTab(int tab) const;

    // --- What is done
    LRESULT Send(const std::string &control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(Of(control), message, wParam, lParam);
    }
    void Focus(const std::string &control) const;
    // The left button at a place of a window's client area; returns when that has been dealt with.
    virtual void ClickAt(HWND window, POINT place) const;
    void Click(const std::string &control) const; // in its middle
    void ClickRow(const std::string &list, int row) const;
    void ClickHeader(const std::string &list, int column) const;
    void ClickTab(int tab) const;
    // A key to whatever has the keyboard, with others (VK_SHIFT, VK_MENU ...) held down.
    void Key(WORD key, const std::vector<WORD> &held) const;
    void Key(WORD key, WORD held = 0) const { Key(key, held ? std::vector<WORD>{held} : std::vector<WORD>()); }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR data);
    static BOOL CALLBACK Visit(HWND control, LPARAM self);

    HWND m_form;
    DWORD m_thread;
    std::map<std::string, HWND> m_windows;
};

POINT MiddleOf(const RECT &place);
// The left button at a place of a window, sent: returns when the window has dealt with it.
void SendClick(HWND window, POINT place);
// A key, sent.
void SendKey(HWND window, WPARAM key);
// Types over a label whose field is open, and presses Enter.
void SendLabel(HWND field, const std::string &text);

// Looks until it sees what is expected, for half a minute at most; gives what it has seen last.
template <class T, class Look>
auto Until(const T &expected, Look &&look)
{
    std::decay_t<decltype(look())> seen{};
    WaitUntil([&] { return (seen = look()) == expected; }, 30000);
    return seen;
}

} // namespace window_driver
