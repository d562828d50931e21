// The host's windows while the component is modal.
#pragma once

#include <windows.h>

#include <vector>

namespace platform
{

// One state for the component, whose windows and the host's live in one thread.
class HostWindows
{
public:
    // The top-level windows of this thread that are visible and enabled now stop answering. Nothing while they are
    // disabled already.
    void Disable();

    // Exactly those answer again, and the window that was active before is active again, with the keyboard where it
    // was. Nothing when they do already.
    void Enable();

    // The window that was active when Disable was called, for as long as the windows are disabled and where it can own
    // others: visible and not minimised. Else null.
    HWND Owner() const;

    // True for a window that is disabled by this.
    bool Holds(HWND window) const;

private:
    static BOOL CALLBACK Collect(HWND window, LPARAM self);

    bool m_disabled = false;
    std::vector<HWND> m_windows;
    HWND m_active = nullptr;
    HWND m_focus = nullptr;
    bool m_activeIsTopmost = false;
};

HostWindows &TheHostWindows();

} // namespace platform
