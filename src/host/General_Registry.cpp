// Registry look-ups.
#include "host/General_Registry.h"

namespace host
{

std::string ReadRegistryString(platform::RegistryRoot root, const std::string &path, const std::string &name)
{
    constexpr std::uint32_t kPlainString = 1;
    const platform::RegistryKey key = platform::OpenRegistryKey(root, path);
    if (key == 0)
        return {};
    // The key is never closed, which is intentional: the process is short-lived.
    const auto value = platform::QueryRegistryValue(key, name);
    return value && value->type == kPlainString ? value->text : std::string();
}

bool IsDataSourceRegistered(const std::string &name)
{
    if (name.empty())
        return false;
    const std::string path = "SOFTWARE\\ODBC\\ODBC.INI\\" + name;
    return !ReadRegistryString(platform::RegistryRoot::LocalMachine, path, "DATABASE").empty() ||
           !ReadRegistryString(platform::RegistryRoot::CurrentUser, path, "DATABASE").empty();
}

} // namespace host
