// Text values of the machine's registry for the length of a play: see machine_registry.h.
#include "play/machine_registry.h"

#include "platform/windows/wide.h"
#include "script/failure.h"

#include <windows.h>

namespace scenario
{

namespace
{

std::optional<std::wstring> Read(const std::wstring &key, const std::wstring &name)
{
    wchar_t text[1024];
    DWORD size = sizeof text;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text, &size) !=
        ERROR_SUCCESS)
        return std::nullopt;
    return text;
}

LSTATUS Write(const std::wstring &key, const std::wstring &name, const std::wstring &value)
{
    HKEY opened = nullptr;
    LSTATUS status =
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS)
        return status;
    status = RegSetValueExW(opened, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()),
                            static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(opened);
    return status;
}

// Takes the value away, and each key above it that is empty then.
void Remove(std::wstring key, const std::wstring &name)
{
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str());
    for (std::size_t end = key.size(); end != std::wstring::npos; end = key.rfind(L'\\'))
    {
        key.resize(end);
        HKEY opened = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS)
            return;
        DWORD keys = 0, values = 0;
        RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                         nullptr);
        RegCloseKey(opened);
        if (keys + values > 0 || RegDeleteKeyW(HKEY_LOCAL_MACHINE, key.c_str()) != ERROR_SUCCESS)
            return;
    }
}

} // namespace

MachineRegistry::~MachineRegistry()
{
    for (auto before = m_before.rbegin(); before != m_before.rend(); ++before)
        if (before->value)
            Write(before->key, before->name, *before->value);
        else
            Remove(before->key, before->name);
}

void MachineRegistry::Set(const std::string &key, const std::string &name, const std::string &value)
{
    const std::wstring wideKey = platform::ToWide(key);
    const std::wstring wideName = platform::ToWide(name);
    m_before.push_back({wideKey, wideName, Read(wideKey, wideName)});
    if (Write(wideKey, wideName, platform::ToWide(value)) != ERROR_SUCCESS)
        throw Refusal("the registry cannot be written: " + key);
}

} // namespace scenario
