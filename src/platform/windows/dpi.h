// The DPI awareness in which the component's windows live.
#pragma once

#include <windows.h>

namespace platform
{

// The component's windows have one size, that of the system's resolution; on another monitor the system scales them.
// While this lives, a thread that is aware of the resolution of each monitor makes windows, and counts pixels, in that
// way. Threads of other awareness, and systems before Windows 10, are left as they are: there it is so anyway.
class SystemDpiAwareness
{
public:
    SystemDpiAwareness();
    ~SystemDpiAwareness();
    SystemDpiAwareness(const SystemDpiAwareness &) = delete;
    SystemDpiAwareness &operator=(const SystemDpiAwareness &) = delete;

private:
    HANDLE m_before = nullptr; // DPI_AWARENESS_CONTEXT; null: nothing was changed
};

} // namespace platform
