// A path of the component's as the standard library takes it. The component itself does not use std::filesystem, which
// would more than double its size.
#pragma once

#include "runtime/text.h"

#include <filesystem>
#include <string>

namespace scenario
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

} // namespace scenario
