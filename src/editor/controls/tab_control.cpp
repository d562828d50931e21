// Which page of a tab control is shown.
#include "editor/controls/tab_control.h"

#include "runtime/error.h"

namespace editor::controls
{

void TabControl::SetTab(int tab)
{
    if (tab < 0 || tab >= static_cast<int>(m_captions.size()))
        runtime::Raise(runtime::kInvalidPropertyValue);
    if (tab != m_tab)
        Change(tab);
}

bool TabControl::ClickTab(int tab)
{
    if (tab < 0 || tab >= static_cast<int>(m_captions.size()))
        return false;
    return ByUser(
        [this, tab]
        {
            if (tab != m_tab)
                Change(tab);
        });
}

void TabControl::Change(int tab)
{
    const int previous = m_tab;
    m_tab = tab;
    Notify(Property::Value);
    if (OnClick)
        OnClick(previous);
}

} // namespace editor::controls
