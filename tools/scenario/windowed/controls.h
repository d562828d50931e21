// The controls of the editor's window, as a scenario names them.
#pragma once

#include "play/control_state.h"
#include "window_driver/driver.h"

namespace scenario
{

// One of a kind that a user can act on now; a Refusal where there is none, or it is hidden or disabled.
HWND Reachable(const window_driver::Driver &driver, const std::string &name, const std::string &className,
               const char *kind);

// A Refusal for an unknown name.
ControlState Read(const window_driver::Driver &driver, const std::string &name);

} // namespace scenario
