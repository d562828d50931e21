// A user at the real editor, with real hands: keys and clicks come from outside, through the display, as those of a
// keyboard and a mouse do. What the user sees is read from the window.
#pragma once

#include "editor/frmHeadings.h"
#include "support/test_database.h"
#include "support/test_folder.h"

#include <windows.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace input_tests
{

class Person
{
public:
    explicit Person(editor::frmHeadings &form);

    // --- Hands. They return when the keys and the button are up again; what that brings about is to be waited for.
    // Keys by their names, one after the other: "Tab", "shift+Tab", "alt+f Down Down".
    void Press(const std::string &keys) const;
    void Type(const std::string &text) const;
    // The left button at a place of a window's client area, in its pixels.
    void ClickAt(HWND window, POINT place) const;
    void Click(const std::string &control) const;                // in its middle
    void ClickRow(const std::string &list, int row) const;       // from 0; brought into view first
    POINT PlaceOfRow(const std::string &list, int row) const;    // where that is
    void ClickHeader(const std::string &list, int column) const; // from 0
    void ClickTab(int tab) const;
    void ClickButtonOf(HWND box, const wchar_t *caption) const;

    // --- Eyes
    // The control that has the keyboard; "(edit)" for the field of a label, "(box)" for a message box.
    std::string Focused() const;
    std::wstring TextOf(const std::string &control) const; // of a combo box: the entry shown
    bool Checked(const std::string &box) const;
    bool Enabled(const std::string &control) const;
    bool Dropped(const std::string &combo) const;
    int Tab() const;                                          // whose page is seen
    std::wstring Row(const std::string &list, int row) const; // its first column
    int SelectedRow(const std::string &list) const;           // -1: none
    std::wstring SelectedText(const std::string &list) const;
    // The text in the field of the label that is being edited, or "(none)".
    std::wstring Edited(const std::string &list) const;
    // -1, 0 or 1: the arrow in a column's header points down, is not there, or points up.
    int Arrow(const std::string &list, int column) const;
    // The message box that is open: its text, or "".
    std::wstring BoxText() const;
    HWND Box() const;
    bool Open() const { return IsWindow(m_window) && IsWindowVisible(m_window); }

    // While the editor works at something, or has keys or clicks to work at.
    bool Busy() const;

    HWND Of(const std::string &control) const;
    HWND Window() const { return m_window; }

    // Runs something in the window's thread.
    void InWindow(const std::function<void()> &act) const;

    // Looks until it sees what is expected, for half a minute at most; gives what it has seen last.
    template <class T, class Look>
    static T Until(const T &expected, Look &&look)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        for (;;)
        {
            T seen = look();
            if (seen == expected || std::chrono::steady_clock::now() > end)
                return seen;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

private:
    void Act(const std::string &words) const;

    editor::frmHeadings &m_form;
    HWND m_window;
    DWORD m_thread;
    support::TestFolder m_folder;
    mutable int m_acts = 0;
};

// A sample site, opened for its partition 3 as a host does. `person` acts on it while it is open; if the window is
// still open then, it is taken away without a question.
void AtTheEditor(support::TestDatabase &site, const std::function<void(Person &)> &person);

} // namespace input_tests

// What the user is to see, sooner or later.
#define SEES(expected, look) EXPECT_EQ(input_tests::Person::Until(expected, [&] { return look; }), expected)
