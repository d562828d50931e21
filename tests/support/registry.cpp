// Registry values for tests.
#include "support/registry.h"

#ifdef _WIN32

#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace support
{

namespace
{

HKEY Root(platform::RegistryRoot root)
{
    return root == platform::RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

} // namespace

TestRegistry::~TestRegistry()
{
    for (const Place &place : m_set)
        Remove(place.root, place.path, place.name);
}

void TestRegistry::Set(platform::RegistryRoot root, const std::string &path, const std::string &name,
                       const std::string &text, std::uint32_t type)
{
    HKEY key = nullptr;
    ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExA(Root(root), platform::ToAnsi(path).c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                             nullptr, &key, nullptr));
    const std::string bytes = platform::ToAnsi(text);
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExA(key, platform::ToAnsi(name).c_str(), 0, type,
                             reinterpret_cast<const BYTE *>(bytes.c_str()), static_cast<DWORD>(bytes.size() + 1)));
    RegCloseKey(key);
    m_set.push_back({root, path, name});
}

void TestRegistry::Remove(platform::RegistryRoot root, const std::string &path, const std::string &name)
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(Root(root), platform::ToAnsi(path).c_str(), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS)
        return;
    RegDeleteValueA(key, platform::ToAnsi(name).c_str());
    RegCloseKey(key);
}

} // namespace support

#else

#include "platform/posix/registry_store.h"

namespace support
{

TestRegistry::~TestRegistry()
{
    if (!m_set.empty())
        platform::ClearRegistry();
}

void TestRegistry::Set(platform::RegistryRoot root, const std::string &path, const std::string &name,
                       const std::string &text, std::uint32_t type)
{
    platform::SetRegistryValue(root, path, name, text, type);
    m_set.push_back({root, path, name});
}

void TestRegistry::Remove(platform::RegistryRoot root, const std::string &path, const std::string &name)
{
    // A value of another type reads as empty, as a missing one does.
    platform::SetRegistryValue(root, path, name, {}, 0);
}

} // namespace support

#endif
