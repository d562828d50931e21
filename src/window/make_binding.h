// The binding for a control.
#pragma once

#include "window/binding.h"

#include <memory>

namespace window
{

std::unique_ptr<Binding> MakeBinding(editor::controls::Control &control, const BindingContext &context);

} // namespace window
