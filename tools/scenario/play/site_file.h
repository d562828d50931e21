// The site INI file that a scenario sets key by key.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace scenario
{

class SiteFile
{
public:
    // Sets a key and writes the file anew, in the ANSI code page. Refusal when it cannot be written.
    void Set(const std::filesystem::path &file, const std::string &section, const std::string &key,
             const std::string &value);

private:
    using Keys = std::vector<std::pair<std::string, std::string>>;
    std::vector<std::pair<std::string, Keys>> m_sections;
};

} // namespace scenario
