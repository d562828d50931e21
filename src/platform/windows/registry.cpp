// The Windows registry.
#include "platform/registry.h"

#include "platform/code_page.h"

#include <windows.h>

namespace platform
{

RegistryKey OpenRegistryKey(RegistryRoot root, const std::string &path)
{
    const HKEY rootKey = root == RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    HKEY key = nullptr;
    if (RegOpenKeyExA(rootKey, ToAnsi(path).c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return 0;
    return reinterpret_cast<RegistryKey>(key);
}

std::optional<RegistryValue> QueryRegistryValue(RegistryKey key, const std::string &name)
{
    char buffer[256];
    DWORD length = sizeof buffer;
    DWORD type = 0;
    if (RegQueryValueExA(reinterpret_cast<HKEY>(key), ToAnsi(name).c_str(), nullptr, &type,
                         reinterpret_cast<BYTE *>(buffer), &length) != ERROR_SUCCESS)
        return std::nullopt;
    // The stored length counts the terminating zero.
    return RegistryValue{type, length > 0 ? FromAnsi({buffer, length - 1}) : std::string()};
}

} // namespace platform
