// Text values of the registry, and the question whether an ODBC data source is registered.
#pragma once

#include "platform/registry.h"

#include <string>

namespace host
{

// The text of a plain string value; empty when the key or the value is missing or of another type. Raises nothing.
std::string ReadRegistryString(platform::RegistryRoot root, const std::string &path, const std::string &name);

// True when the data source has a DATABASE value under the local machine's or else the current user's ODBC key. An
// empty name is not registered.
bool IsDataSourceRegistered(const std::string &name);

} // namespace host
