// The properties that a host sets.
#pragma once

#include "play/stage.h"

#include <string>

namespace scenario
{

// The text of a scenario as the type of the property of that name. Refusal for an unknown name, and for a number that
// is none or does not fit.
PropertyValue ToProperty(const std::string &name, const std::string &text);

} // namespace scenario
