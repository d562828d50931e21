// A window of the host in whose thread the component runs.
#pragma once

#include <windows.h>

namespace window_tests
{

struct HostWindow
{
    explicit HostWindow(DWORD style, const RECT &place = {0, 0, 300, 200})
        : handle(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | style, place.left, place.top,
                                 place.right - place.left, place.bottom - place.top, nullptr, nullptr, nullptr,
                                 nullptr))
    {
    }
    ~HostWindow() { DestroyWindow(handle); }
    HostWindow(const HostWindow &) = delete;
    HostWindow &operator=(const HostWindow &) = delete;
    bool Enabled() const { return IsWindowEnabled(handle) != FALSE; }
    HWND handle;
};

} // namespace window_tests
