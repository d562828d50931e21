// Making and removing a test's folder.
#include "support/scratch_folder.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace support
{

ScratchFolder::ScratchFolder()
{
    std::random_device random;
    m_path = (std::filesystem::temp_directory_path() /
              ("kvheaders-" + std::to_string(random()) + "-" +
               std::to_string(std::chrono::steady_clock::now().time_since_epoch().count())))
                 .string();
    std::filesystem::create_directories(m_path);
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string ScratchFolder::Path(const std::string &name) const
{
    return name.empty() ? m_path : (std::filesystem::path(m_path) / name).string();
}

std::string ScratchFolder::Write(const std::string &name, const std::string &bytes) const
{
    const std::string path = Path(name);
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

std::string ScratchFolder::Read(const std::string &name) const
{
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace support
