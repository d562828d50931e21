// Text output and deletion, and what their failures are called.
#include "platform/files.h"

#include "platform/native_file.h"
#include "runtime/error.h"

#include <cerrno>

namespace platform
{

namespace
{

// What a failed file call means to the user.
[[noreturn]] void RaiseFileError(int error)
{
    switch (error)
    {
    case ENOENT:
    case ENOTDIR:
        runtime::Raise(runtime::kPathNotFound);
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        runtime::Raise(runtime::kPathFileAccess);
    case ENOSPC:
    case EFBIG: // there is room, but not for this file
        runtime::Raise(runtime::kDiskFull);
    default:
        runtime::Raise(runtime::kDeviceIoError);
    }
}

} // namespace

bool FileExists(const std::string &path)
{
    return KindOf(path) == FileKind::File;
}

void RemoveFile(const std::string &path)
{
    switch (KindOf(path))
    {
    case FileKind::None:
        runtime::Raise(runtime::kFileNotFound);
    case FileKind::Folder:
        runtime::Raise(runtime::kPathFileAccess);
    case FileKind::File:
        if (!TryRemove(path))
            runtime::Raise(runtime::kPermissionDenied);
    }
}

TextOutput::TextOutput(const std::string &path)
{
    m_file.reset(OpenForWriting(path));
    if (!m_file)
        RaiseFileError(errno);
}

void TextOutput::Write(std::string_view bytes)
{
    if (!m_file)
        runtime::Raise(runtime::kBadFileMode);
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size())
        RaiseFileError(errno);
}

void TextOutput::Close()
{
    if (!m_file)
        return;
    // Written out before it is closed: not every library reports at closing that there was no space for the rest.
    const bool writtenOut = std::fflush(m_file.get()) == 0;
    const int error = errno;
    if (std::fclose(m_file.release()) != 0 && writtenOut)
        RaiseFileError(errno);
    if (!writtenOut)
        RaiseFileError(error);
}

} // namespace platform
