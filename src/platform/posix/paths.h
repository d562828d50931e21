// Paths where "/" separates folders.
#pragma once

#include <algorithm>
#include <string>

namespace platform
{

// The component builds its paths with "\", which separates folders here as well.
inline std::string PosixPath(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

} // namespace platform
