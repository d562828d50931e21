// A key/value store in place of the registry, where the system has none.
#pragma once

#include "platform/registry.h"

#include <string>

namespace platform
{

// Sets a value; keys and names are looked up without regard to case. Type 1 is a plain string.
void SetRegistryValue(RegistryRoot root, const std::string &path, const std::string &name, const std::string &text,
                      std::uint32_t type = 1);

// Forgets every value.
void ClearRegistry();

} // namespace platform
