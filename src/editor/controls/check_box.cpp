// The value of a check box.
#include "editor/controls/check_box.h"

#include "runtime/error.h"

namespace editor::controls
{

void CheckBox::SetValue(int value)
{
    if (value < -1 || value > 1)
        runtime::Raise(runtime::kInvalidPropertyValue);
    const int shown = value == 0 ? 0 : 1;
    if (shown != m_value)
        Change(shown);
}

bool CheckBox::Toggle()
{
    return ByUser([this] { Change(1 - m_value); });
}

void CheckBox::Change(int value)
{
    m_value = value;
    Notify(Property::Value);
    if (OnClick)
        OnClick(static_cast<std::int16_t>(-value));
}

} // namespace editor::controls
