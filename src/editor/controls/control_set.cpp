// Looking controls up, and the one label edit that may be open among them.
#include "editor/controls/control_set.h"

namespace editor::controls
{

Control *ControlSet::Find(std::string_view name) const
{
    for (const auto &control : m_controls)
        if (control->Name() == name)
            return control.get();
    return nullptr;
}

void ControlSet::Leave(const Control *to)
{
    for (const auto &control : m_controls)
        if (control.get() != to)
            control->Leave();
}

} // namespace editor::controls
