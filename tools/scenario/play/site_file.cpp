// The site INI file that a scenario sets key by key: see site_file.h.
#include "play/site_file.h"

#include "platform/code_page.h"
#include "script/failure.h"

#include <algorithm>
#include <fstream>

namespace scenario
{

namespace
{

// The element of that name, added at the end when there is none.
template <class Value>
Value &Named(std::vector<std::pair<std::string, Value>> &list, const std::string &name)
{
    const auto found = std::ranges::find(list, name, [](const auto &entry) { return entry.first; });
    return found != list.end() ? found->second : list.emplace_back(name, Value{}).second;
}

} // namespace

void SiteFile::Set(const std::filesystem::path &file, const std::string &section, const std::string &key,
                   const std::string &value)
{
    Named(Named(m_sections, section), key) = value;
    std::string text;
    for (const auto &[name, keys] : m_sections)
    {
        text += "[" + name + "]\r\n";
        for (const auto &[entry, setting] : keys)
            text += entry + "=" + setting + "\r\n";
    }
    std::ofstream stream(file, std::ios::binary);
    stream << platform::ToAnsi(text);
    if (!stream.flush())
        throw Refusal("cannot write " + file.string());
}

} // namespace scenario
