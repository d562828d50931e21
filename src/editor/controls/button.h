// A command button.
#pragma once

#include "editor/controls/control.h"

#include <functional>

namespace editor::controls
{

class Button : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::Button; }

    std::function<void()> OnClick;

    // A user presses it. False: disabled or hidden.
    bool Click();
};

} // namespace editor::controls
