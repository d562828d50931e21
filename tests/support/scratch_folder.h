// A folder of a test's own, gone when the test is over.
#pragma once

#include <string>

namespace support
{

class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    // The path of a file in it; of the folder itself for the empty name.
    std::string Path(const std::string &name) const;

    // Makes a file of these bytes and gives its path.
    std::string Write(const std::string &name, const std::string &bytes) const;

    // The bytes of a file; empty when it does not exist.
    std::string Read(const std::string &name) const;

private:
    std::string m_path;
};

} // namespace support
