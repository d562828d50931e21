// Waits for the editor and for message boxes to come up: see watcher.h.
#include "window_driver/watcher.h"

#include <utility>

namespace window_driver
{

namespace
{

constexpr UINT kEvery = 10; // milliseconds

// The watchers of this thread's windows. No container: MinGW's threads free what is thread_local before its destructor
// would run.
thread_local Watcher *watchers = nullptr;

} // namespace

Watcher::Watcher(Acts acts)
    : m_owner{GetCurrentProcessId(), GetCurrentThreadId()}, m_acts(std::move(acts)),
      m_timer(SetTimer(nullptr, 0, kEvery, &Tick)), m_next(std::exchange(watchers, this))
{
}

Watcher::Watcher(DWORD process, Acts acts) : m_owner{process, 0}, m_acts(std::move(acts))
{
    m_thread = std::thread(
        [this]
        {
            for (; !m_ends; Sleep(kEvery))
                Look();
        });
}

void Watcher::End()
{
    m_ends = true;
    for (Watcher **place = &watchers; *place; place = &(*place)->m_next)
        if (*place == this)
        {
            KillTimer(nullptr, m_timer);
            *place = m_next;
            break;
        }
    if (m_thread.joinable())
        m_thread.join();
}

void CALLBACK Watcher::Tick(HWND, UINT, UINT_PTR timer, DWORD)
{
    for (Watcher *watcher = watchers; watcher; watcher = watcher->m_next)
        if (watcher->m_timer == timer)
            return watcher->Look();
}

void Watcher::Look()
{
    std::erase_if(m_known, [](HWND window) { return !IsWindow(window); });
    if (const HWND box = FindMessageBox(m_owner))
    {
        if (!IsNew(box))
            return;
        if (const int button = m_acts.box ? m_acts.box(box) : IDOK)
            AnswerBox(box, button);
    }
    else if (const HWND editor = FindEditor(m_owner); IsNew(editor) && m_acts.editor)
        m_acts.editor(editor);
}

} // namespace window_driver
