// What text output and deletion ask of the system, by a path of the component's (UTF-8, "\" between folders).
#pragma once

#include <cstdio>
#include <string>

namespace platform
{

enum class FileKind
{
    None, // nothing there, or not to be seen
    File,
    Folder
};

FileKind KindOf(const std::string &path);

// A new file, in binary mode; null with errno set when it cannot be made.
std::FILE *OpenForWriting(const std::string &path);

// False when the file cannot be deleted.
bool TryRemove(const std::string &path);

} // namespace platform
