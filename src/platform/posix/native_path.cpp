// Paths where "/" separates folders.
#include "platform/native_path.h"

#include <algorithm>

namespace platform
{

std::filesystem::path NativePath(const std::string &path)
{
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::FILE *OpenForWriting(const std::filesystem::path &path)
{
    return std::fopen(path.c_str(), "wb");
}

} // namespace platform
