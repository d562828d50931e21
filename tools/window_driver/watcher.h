// Waits for the editor and for message boxes to come up, and acts on them.
#pragma once

#include "window_driver/windows.h"

#include <atomic>
#include <set>
#include <thread>

namespace window_driver
{

// Acts once on each window that comes up while it lives.
class Watcher
{
public:
    struct Acts
    {
        // Gives the button to be pressed, IDOK without a function; 0 leaves the box open.
        std::function<int(HWND box)> box;
        // Without one the editor stays as it is.
        std::function<void(HWND editor)> editor;
    };

    // Watches the calling thread's windows from a timer of that thread: the acts may run inside one another, such as
    // those on a box that an act on the editor brings up.
    explicit Watcher(Acts acts);
    // Watches a process from a thread of its own.
    Watcher(DWORD process, Acts acts);
    ~Watcher() { End(); }
    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

    // From now on nothing is watched any more; an act that has begun has ended.
    void End();

private:
    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
    void Look();
    bool IsNew(HWND window) { return window && m_known.insert(window).second; }

    Owner m_owner;
    Acts m_acts;
    std::set<HWND> m_known; // acted on
    UINT_PTR m_timer = 0;
    Watcher *m_next = nullptr; // of the same thread
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

} // namespace window_driver
