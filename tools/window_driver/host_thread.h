// The host's thread: a single-threaded apartment with a message loop, in which the component lives.
#pragma once

#include <windows.h>

#include <functional>
#include <thread>

namespace window_driver
{

class HostThread
{
public:
    HostThread();
    // Ends the thread once its loop is reached.
    ~HostThread();
    HostThread(const HostThread &) = delete;
    HostThread &operator=(const HostThread &) = delete;

    // Runs something in the thread and returns when it is done; what it throws is thrown here. Works also while the
    // thread is in a modal loop.
    void Run(const std::function<void()> &act) const;

    // Runs something in the thread, some time; it must throw nothing.
    void Begin(std::function<void()> act) const;

    DWORD Id() const { return m_id; }

private:
    void Loop(HANDLE ready);
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window = nullptr; // takes the orders; never visible
    std::thread m_thread;
    DWORD m_id = 0;
};

} // namespace window_driver
