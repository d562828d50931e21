// The module that this code is in: the DLL, or a test program.
#pragma once

#include <windows.h>

namespace window
{

HINSTANCE ThisModule() noexcept;

// Makes the module's manifest count for the windows that are made while it lives: themed controls. Without such a
// manifest everything stays as it is.
class ThemedControls
{
public:
    ThemedControls();
    ~ThemedControls();
    ThemedControls(const ThemedControls &) = delete;
    ThemedControls &operator=(const ThemedControls &) = delete;

private:
    HANDLE m_context;
    ULONG_PTR m_cookie = 0;
    bool m_active = false;
};

// A window class of the module for as long as it lives. A class of that name that is there already is used as it is.
class WindowClass
{
public:
    WindowClass(const wchar_t *name, WNDPROC procedure);
    ~WindowClass();
    WindowClass(const WindowClass &) = delete;
    WindowClass &operator=(const WindowClass &) = delete;

private:
    const wchar_t *m_name;
    bool m_registered;
};

} // namespace window
