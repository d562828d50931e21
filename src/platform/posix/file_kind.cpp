// What exists at a path, by the calls of POSIX.
#include "platform/native_file.h"

#include "platform/posix/paths.h"

#include <sys/stat.h>

namespace platform
{

FileKind KindOf(const std::string &path)
{
    struct stat status;
    if (stat(PosixPath(path).c_str(), &status) != 0)
        return FileKind::None;
    return S_ISDIR(status.st_mode) ? FileKind::Folder : FileKind::File;
}

} // namespace platform
