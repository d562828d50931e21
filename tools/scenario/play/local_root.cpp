// The suite's local folder: see local_root.h.
#include "play/local_root.h"

#include "play/native_path.h"

#include "runtime/text.h"
#include "script/failure.h"

namespace scenario
{

namespace fs = std::filesystem;

LocalRoot::~LocalRoot()
{
    std::error_code ignored;
    for (const fs::path &folder : m_made)
        fs::remove_all(folder, ignored);
}

void LocalRoot::Make(const std::string &root)
{
    if (!root.starts_with("C:\\"))
        return;
    const std::string end = runtime::Trim(root).ends_with('\\') ? "ZENTRA\\TEMP" : "\\ZENTRA\\TEMP";
    const fs::path folder = scenario::NativePath(root + end);
    fs::path outermost;
    for (fs::path above = folder; !above.empty() && !fs::exists(above); above = above.parent_path())
        outermost = above;
    if (!outermost.empty())
        m_made.push_back(outermost);
    std::error_code problem;
    fs::create_directories(folder, problem);
    if (problem)
        throw Refusal("cannot make the folder " + folder.string() + ": " + problem.message());
}

} // namespace scenario
