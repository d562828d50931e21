// Files by the calls of Windows.
#include "platform/native_file.h"

#include "platform/windows/wide.h"

#include <windows.h>

namespace platform
{

FileKind KindOf(const std::string &path)
{
    const DWORD attributes = GetFileAttributesW(ToWide(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return FileKind::None;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? FileKind::Folder : FileKind::File;
}

std::FILE *OpenForWriting(const std::string &path)
{
    return _wfopen(ToWide(path).c_str(), L"wb");
}

bool TryRemove(const std::string &path)
{
    return DeleteFileW(ToWide(path).c_str()) != 0;
}

} // namespace platform
