// Looking controls up, and the one label edit that may be open among them.
#include "editor/controls/control_set.h"

#include "runtime/handler.h"
#include "runtime/scoped_flag.h"

#include <algorithm>
#include <utility>

namespace editor::controls
{

void RunAct(const std::function<void()> &act) noexcept
{
    try
    {
        const runtime::HandlerScope handler;
        act();
    }
    catch (...)
    {
        // The window stays as it is.
    }
}

Control *ControlSet::Find(std::string_view name) const
{
    for (const auto &control : m_controls)
        if (control->Name() == name)
            return control.get();
    return nullptr;
}

bool ControlSet::Leave(const Control *to)
{
    return std::all_of(m_controls.begin(), m_controls.end(),
                       [to](const auto &control) { return control.get() == to || control->Leave(); });
}

bool ControlSet::LeaveByUser()
{
    // Inside a handler nothing is ended: the act that waits does it.
    bool mayGoOn = true;
    if (!m_acting)
        Act([&] { mayGoOn = Leave(nullptr); });
    return mayGoOn;
}

void ControlSet::Act(std::function<void()> act)
{
    m_acts.push_back(std::move(act));
    if (m_acting)
        return;
    const runtime::ScopedFlag acting(m_acting);
    while (!m_acts.empty())
    {
        const std::function<void()> next = std::move(m_acts.front());
        m_acts.pop_front();
        RunAct(next);
    }
}

} // namespace editor::controls
