// The window classes of the module.
#pragma once

#include <windows.h>

namespace window
{

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
