// A check box.
#pragma once

#include "editor/controls/control.h"

#include <cstdint>
#include <functional>

namespace editor::controls
{

class CheckBox : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::CheckBox; }

    // Gets the new value: -1 checked, 0 not.
    std::function<void(std::int16_t value)> OnClick;

    // 1 checked, 0 not.
    int Value() const { return m_value; }
    // -1 and 1 both check it; error 380 for anything but these and 0. Raises the click when the value changes.
    void SetValue(int value);

    // A user switches it. False: disabled or hidden.
    bool Toggle();

private:
    void Change(int value);
    int m_value = 0;
};

} // namespace editor::controls
