// Controls that a user only looks at: labels, and the frames and panels that hold other controls.
#pragma once

#include "editor/controls/control.h"

namespace editor::controls
{

class Label : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::Label; }
};

class Frame : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::Frame; }
};

class Panel : public Control
{
public:
    using Control::Control;
    Kind GetKind() const override { return Kind::Panel; }
};

} // namespace editor::controls
