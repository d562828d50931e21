// A registry in memory: keys by root and path, values by name.
#include "platform/posix/registry_store.h"

#include "runtime/text.h"

#include <map>
#include <string>
#include <utility>

namespace platform
{

namespace
{

struct Key
{
    RegistryKey handle;
    std::map<std::string, RegistryValue> values;
};

std::map<std::pair<RegistryRoot, std::string>, Key> &Keys()
{
    static std::map<std::pair<RegistryRoot, std::string>, Key> keys;
    return keys;
}

// The Windows call takes 256 bytes with the terminating zero, and fails for longer values.
constexpr std::size_t kLongestValue = 255;

} // namespace

void SetRegistryValue(RegistryRoot root, const std::string &path, const std::string &name, const std::string &text,
                      std::uint32_t type)
{
    static RegistryKey next = 1;
    Key &key = Keys().try_emplace({root, runtime::UpperCase(path)}, Key{next, {}}).first->second;
    if (key.handle == next)
        ++next;
    key.values[runtime::UpperCase(name)] = {type, text};
}

void ClearRegistry()
{
    Keys().clear();
}

RegistryKey OpenRegistryKey(RegistryRoot root, const std::string &path)
{
    const auto found = Keys().find({root, runtime::UpperCase(path)});
    return found == Keys().end() ? 0 : found->second.handle;
}

std::optional<RegistryValue> QueryRegistryValue(RegistryKey key, const std::string &name)
{
    for (const auto &[place, opened] : Keys())
    {
        if (opened.handle != key)
            continue;
        const auto value = opened.values.find(runtime::UpperCase(name));
        if (value != opened.values.end() && value->second.text.size() <= kLongestValue)
            return value->second;
    }
    return std::nullopt;
}

} // namespace platform
