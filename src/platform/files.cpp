// Text output and deletion, on top of the standard library.
#include "platform/files.h"

#include "platform/native_path.h"
#include "runtime/error.h"

#include <cerrno>
#include <system_error>

namespace platform
{

namespace
{

// What a failed file call means to the person.
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
        runtime::Raise(runtime::kDiskFull);
    default:
        runtime::Raise(runtime::kDeviceIoError);
    }
}

} // namespace

bool FileExists(const std::string &path)
{
    std::error_code failure;
    const auto status = std::filesystem::status(NativePath(path), failure);
    return !failure && std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

void RemoveFile(const std::string &path)
{
    std::error_code failure;
    const auto native = NativePath(path);
    if (std::filesystem::is_directory(native, failure))
        runtime::Raise(runtime::kPathFileAccess);
    const bool removed = std::filesystem::remove(native, failure);
    if (failure)
        runtime::Raise(runtime::kPermissionDenied);
    if (!removed)
        runtime::Raise(runtime::kFileNotFound);
}

TextOutput::TextOutput(const std::string &path)
{
    m_file.reset(OpenForWriting(NativePath(path)));
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
    if (m_file && std::fclose(m_file.release()) != 0)
        RaiseFileError(errno);
}

} // namespace platform
