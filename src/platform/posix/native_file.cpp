// Files by the calls of POSIX.
#include "platform/native_file.h"

#include "platform/posix/paths.h"

#include <sys/stat.h>
#include <unistd.h>

namespace platform
{

FileKind KindOf(const std::string &path)
{
    struct stat status;
    if (stat(PosixPath(path).c_str(), &status) != 0)
        return FileKind::None;
    return S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::File;
}

std::FILE *OpenForWriting(const std::string &path)
{
    return std::fopen(PosixPath(path).c_str(), "wb");
}

bool TryRemove(const std::string &path)
{
    return unlink(PosixPath(path).c_str()) == 0;
}

} // namespace platform
