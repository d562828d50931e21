// Paths on Windows: UTF-16.
#include "platform/native_path.h"

#include "runtime/text.h"

namespace platform
{

std::filesystem::path NativePath(const std::string &path)
{
    return runtime::ToUtf16(path);
}

std::FILE *OpenForWriting(const std::filesystem::path &path)
{
    return _wfopen(path.c_str(), L"wb");
}

} // namespace platform
