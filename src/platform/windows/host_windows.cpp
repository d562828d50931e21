// The host's windows while the component is modal.
#include "platform/windows/host_windows.h"

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{

// Windows may go meanwhile, and their handles be used again.
bool IsOfThisThread(HWND window)
{
    return window && GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
}

bool IsTopmost(HWND window)
{
    return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

} // namespace

void HostWindows::Disable()
{
    if (m_disabled)
        return;
    m_disabled = true;
    m_active = GetActiveWindow();
    m_focus = GetFocus();
    m_activeIsTopmost = m_active && IsTopmost(m_active);
    EnumThreadWindows(GetCurrentThreadId(), &Collect, reinterpret_cast<LPARAM>(this));
    // After all of them are known: disabling makes windows act.
    const std::vector<HWND> windows = m_windows;
    for (const HWND window : windows)
        EnableWindow(window, FALSE);
}

void HostWindows::Enable()
{
    if (!std::exchange(m_disabled, false))
        return;
    for (const HWND window : std::exchange(m_windows, {}))
        if (IsOfThisThread(window))
            EnableWindow(window, TRUE);
    const HWND active = std::exchange(m_active, nullptr);
    if (!IsOfThisThread(active) || !IsWindowVisible(active))
        return;
    // A window that stops being topmost takes its owner along.
    if (m_activeIsTopmost && !IsTopmost(active))
        SetWindowPos(active, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if (GetActiveWindow() != active)
        SetActiveWindow(active);
    // A disabled window loses the keyboard. Where the host has given it to one of its controls already, that stays.
    const HWND now = GetFocus();
    if ((!now || now == active) && IsOfThisThread(m_focus) && IsChild(active, m_focus))
        SetFocus(m_focus);
}

HWND HostWindows::Owner() const
{
    const bool usable = m_disabled && IsOfThisThread(m_active) && IsWindowVisible(m_active) && !IsIconic(m_active);
    return usable ? m_active : nullptr;
}

bool HostWindows::Holds(HWND window) const
{
    return std::find(m_windows.begin(), m_windows.end(), window) != m_windows.end();
}

BOOL CALLBACK HostWindows::Collect(HWND window, LPARAM self)
{
    if (!IsWindowVisible(window) || !IsWindowEnabled(window))
        return TRUE;
    try
    {
        reinterpret_cast<HostWindows *>(self)->m_windows.push_back(window);
    }
    catch (...)
    {
        return FALSE; // out of memory: the rest stay enabled
    }
    return TRUE;
}

HostWindows &TheHostWindows()
{
    static HostWindows windows;
    return windows;
}

} // namespace platform
