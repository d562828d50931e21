// The suite's local folder, which a scenario names in the registry.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace scenario
{

// A local root directory on drive C: exists, with the folder for the report in it, for as long as this lives; one on
// any other drive does not. What had to be made is taken away at the end.
class LocalRoot
{
public:
    LocalRoot() = default;
    ~LocalRoot();
    LocalRoot(const LocalRoot &) = delete;
    LocalRoot &operator=(const LocalRoot &) = delete;

    // `root` as it stands in the registry. Refusal when the folder cannot be made.
    void Make(const std::string &root);

private:
    std::vector<std::filesystem::path> m_made; // the outermost folders
};

} // namespace scenario
