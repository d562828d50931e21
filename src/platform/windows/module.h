// The module that this code is in: the DLL, or a test program.
#pragma once

#include <windows.h>

namespace platform
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

} // namespace platform
