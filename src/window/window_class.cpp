// The window classes of the module.
#include "window/window_class.h"

#include "platform/windows/module.h"

namespace window
{

using platform::ThisModule;

WindowClass::WindowClass(const wchar_t *name, WNDPROC procedure) : m_name(name)
{
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = ThisModule();
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512) /* the arrow */);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = name;
    m_registered = RegisterClassExW(&description) != 0;
}

WindowClass::~WindowClass()
{
    if (m_registered)
        UnregisterClassW(m_name, ThisModule());
}

} // namespace window
