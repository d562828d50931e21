// The little that the component does with files: test, delete, write text.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace platform
{

// True when the path's attributes can be read and it is no folder. Never fails.
bool FileExists(const std::string &path);

// Deletes a file. Errors: 53 (not found), 70 (permission denied), 75 (a folder is in the way).
void RemoveFile(const std::string &path);

// A new text file, written byte by byte as given. Errors of opening: 76 (folder missing), 75 (no access, a folder).
class TextOutput
{
public:
    explicit TextOutput(const std::string &path);

    // Appends bytes. Errors: 61 (disk full), 57 (any other failure).
    void Write(std::string_view bytes);

    // Writes out what is buffered and closes. Errors as Write's. Without it the file is closed all the same, silently.
    void Close();

private:
    struct Closer
    {
        void operator()(std::FILE *file) const noexcept { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> m_file;
};

} // namespace platform
