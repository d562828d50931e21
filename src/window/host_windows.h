// The host's windows while a form is modal.
#pragma once

#include <windows.h>

#include <vector>

namespace window
{

// Disables the other top-level windows of this thread that answer, and enables exactly those again at its end. What
// `form` owns is left alone.
class DisabledHostWindows
{
public:
    explicit DisabledHostWindows(HWND form);
    ~DisabledHostWindows();
    DisabledHostWindows(const DisabledHostWindows &) = delete;
    DisabledHostWindows &operator=(const DisabledHostWindows &) = delete;

    // The window that was in front before.
    HWND WasActive() const { return m_wasActive; }

private:
    static BOOL CALLBACK Visit(HWND window, LPARAM self);

    HWND m_form;
    HWND m_wasActive;
    std::vector<HWND> m_windows;
};

} // namespace window
