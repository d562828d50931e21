// Text values of the registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform
{

enum class RegistryRoot
{
    LocalMachine,
    CurrentUser
};

// An opened key, which stays open to the end of the process.
using RegistryKey = std::uintptr_t; // 0: none

// A value as stored: its type number (1 is a plain string) and its text in UTF-8.
struct RegistryValue
{
    std::uint32_t type;
    std::string text;
};

// Opens a key for reading values (access mask 1). 0 when there is no such key.
RegistryKey OpenRegistryKey(RegistryRoot root, const std::string &path);

// A value of at most 256 characters with its terminating zero; nothing when it is missing or longer.
std::optional<RegistryValue> QueryRegistryValue(RegistryKey key, const std::string &name);

} // namespace platform
