// Writing and removing files by the calls of POSIX. A test program may have its own in their place.
#include "platform/native_file.h"

#include "platform/posix/paths.h"

#include <unistd.h>

namespace platform
{

std::FILE *OpenForWriting(const std::string &path)
{
    return std::fopen(PosixPath(path).c_str(), "wb");
}

bool TryRemove(const std::string &path)
{
    return unlink(PosixPath(path).c_str()) == 0;
}

} // namespace platform
