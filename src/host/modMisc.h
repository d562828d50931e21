// Two services around the component's windows: is one loaded, and keeping one above all others.
#pragma once

#include "host/forms.h"

#include <string>

namespace host
{

// True when a window of that name is loaded; names are compared without regard to case.
bool IsFormLoaded(const std::string &name);

// Keeps a window above all others, or lets it go. Errors are ignored.
void KeepOnTop(const Form &form, bool onTop);

} // namespace host
