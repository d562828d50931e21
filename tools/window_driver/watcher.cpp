// Waits for the editor and for message boxes to come up: see watcher.h.
#include "window_driver/watcher.h"

#include <map>

namespace window_driver
{

namespace
{

constexpr UINT kEvery = 10; // milliseconds

thread_local std::map<UINT_PTR, Watcher *> watchers; // by their timers

} // namespace

Watcher::Watcher(Acts acts)
    : m_owner{GetCurrentProcessId(), GetCurrentThreadId()}, m_acts(std::move(acts)),
      m_timer(SetTimer(nullptr, 0, kEvery, &Tick))
{
    watchers[m_timer] = this;
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
    if (m_timer && watchers.erase(m_timer))
        KillTimer(nullptr, m_timer);
    if (m_thread.joinable())
        m_thread.join();
}

void CALLBACK Watcher::Tick(HWND, UINT, UINT_PTR timer, DWORD)
{
    if (const auto found = watchers.find(timer); found != watchers.end())
        found->second->Look();
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
