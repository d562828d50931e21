// A user at the window of a test form: a second thread that presses keys, clicks, and looks at what the window shows.
#pragma once

#include "window/test_form.h"

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace window_tests
{

class Driver
{
public:
    explicit Driver(TestForm &form);

    HWND Form() const { return m_form; }
    // The native window of a control.
    HWND Of(const std::string &control) const;
    // The name of the control that has the keyboard; "(form)", "(edit)" for the field of a label, or "".
    std::string Focused() const;

    LRESULT Send(const std::string &control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

    // Real keys, to whatever has the keyboard. With `held` (VK_SHIFT, VK_MENU ...) down.
    void Key(WORD key, const std::vector<WORD> &held) const;
    void Key(WORD key, WORD held = 0) const { Key(key, held ? std::vector<WORD>{held} : std::vector<WORD>()); }
    void Focus(const std::string &control) const;
    // A click of the left mouse button at a place of a window, in its pixels.
    void ClickAt(HWND window, int x, int y) const;
    void ClickRow(const std::string &list, int row) const;

    // Runs something in the window's thread, between two messages of it.
    void InWindow(const std::function<void()> &act) const;
    // Lets the window deal with all that waits for it.
    void Settle() const;

    // Waits until something is true; false after five seconds.
    static bool Wait(const std::function<bool()> &what);

    // The message box that is open, by title; null after five seconds without one.
    static HWND MessageBox(const std::wstring &title);
    static std::wstring BoxText(HWND box);
    static void Answer(HWND box, WPARAM button);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR data);
    HWND m_form;
    std::map<std::string, HWND> m_windows;
    DWORD m_thread;
};

// Loads the form, shows it, lets the user act, closes what is still open, and returns when the window is gone.
void Play(TestForm &form, const std::function<void(Driver &)> &person);

// What is drawn on a square of one colour: the colours of its pixels.
std::vector<COLORREF> Drawn(int size, COLORREF ground, const std::function<void(HDC)> &draw);

// The text of a window of any thread.
std::wstring TextOf(HWND window);

} // namespace window_tests
