// The host's windows while a form is modal.
#include "window/host_windows.h"

#include "window/guard.h"

namespace window
{

DisabledHostWindows::DisabledHostWindows(HWND form) : m_form(form), m_wasActive(GetActiveWindow())
{
    EnumThreadWindows(GetCurrentThreadId(), &Visit, reinterpret_cast<LPARAM>(this));
    // Disabled after all of them are known: it makes windows act.
    for (const HWND window : m_windows)
        EnableWindow(window, FALSE);
}

DisabledHostWindows::~DisabledHostWindows()
{
    for (const HWND window : m_windows)
        if (IsWindow(window) && GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId())
            EnableWindow(window, TRUE);
}

BOOL CALLBACK DisabledHostWindows::Visit(HWND window, LPARAM self)
{
    auto &windows = *reinterpret_cast<DisabledHostWindows *>(self);
    if (window != windows.m_form && GetWindow(window, GW_OWNER) != windows.m_form && IsWindowEnabled(window))
        Guarded([&] { windows.m_windows.push_back(window); });
    return TRUE;
}

} // namespace window
