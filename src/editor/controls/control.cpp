// Properties common to all controls, and who may be acted on.
#include "editor/controls/control.h"

#include "editor/controls/control_set.h"
#include "editor/controls/tab_control.h"

namespace editor::controls
{

void Control::SetCaption(const std::string &caption)
{
    if (caption == m_caption)
        return;
    m_caption = caption;
    Notify(Property::Caption);
}

void Control::SetEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    Notify(Property::Enabled);
}

void Control::SetVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    Notify(Property::Visible);
}

void Control::SetTabStop(bool tabStop)
{
    if (tabStop == m_tabStop)
        return;
    m_tabStop = tabStop;
    Notify(Property::TabStop);
}

void Control::SetBounds(const Rectangle &bounds)
{
    if (bounds == m_bounds)
        return;
    m_bounds = bounds;
    Notify(Property::Bounds);
}

void Control::SetContainer(Control *container, int page)
{
    m_container = container;
    m_page = page;
}

bool Control::Shown() const
{
    if (m_set && !m_set->Open())
        return false;
    for (const Control *control = this; control; control = control->m_container)
    {
        if (!control->m_visible)
            return false;
        const auto *const tabs = dynamic_cast<const TabControl *>(control->m_container);
        if (tabs && tabs->Tab() != control->m_page)
            return false;
    }
    return true;
}

bool Control::Reachable() const
{
    for (const Control *control = this; control; control = control->m_container)
        if (!control->m_enabled)
            return false;
    return Shown();
}

void Control::SetFocus()
{
    if (!Reachable())
        return;
    if (m_set)
        m_set->Leave(this);
    Notify(Property::Focus);
}

bool Control::ByUser(std::function<void()> act)
{
    if (!Reachable())
        return false;
    Act(
        [this, act = std::move(act)]
        {
            // What ran on the way here may have disabled it.
            if (Reachable() && (!m_set || m_set->Leave(this)) && Reachable())
                act();
        });
    return true;
}

void Control::Act(std::function<void()> act)
{
    if (m_set)
        m_set->Act(std::move(act));
    else
        RunAct(act);
}

} // namespace editor::controls
