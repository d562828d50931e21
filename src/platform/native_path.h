// A path of the component's (UTF-8) as the system wants it.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace platform
{

// On Windows the path itself; elsewhere "\" separates folders as well, so that the paths that the component builds name
// the same folders on both.
std::filesystem::path NativePath(const std::string &path);

// A new file, in binary mode; null with errno set when it cannot be made.
std::FILE *OpenForWriting(const std::filesystem::path &path);

} // namespace platform
