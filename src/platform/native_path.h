// A path of the component's as the standard library wants it: for programs beside the component, which does without
// std::filesystem, since that would more than double its size.
#pragma once

#include "runtime/text.h"

#include <filesystem>
#include <string>

namespace platform
{

// On Windows the path itself; elsewhere "\" separates folders as well.
inline std::filesystem::path NativePath(const std::string &path)
{
#ifdef _WIN32
    return runtime::ToUtf16(path);
#else
    std::string native = path;
    for (char &c : native)
        if (c == '\\')
            c = '/';
    return native;
#endif
}

} // namespace platform
