// Registry values for tests.
#pragma once

#include "platform/registry.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace support
{

// Sets text values, plain strings where no other type is given, and takes them away again at its end. Under Windows
// these are real values of the user or the machine (of the tests' own Wine prefix), elsewhere the registry in memory is
// emptied at the end.
class TestRegistry
{
public:
    static constexpr std::uint32_t kPlainString = 1;

    TestRegistry() = default;
    ~TestRegistry();
    TestRegistry(const TestRegistry &) = delete;
    TestRegistry &operator=(const TestRegistry &) = delete;

    void Set(platform::RegistryRoot root, const std::string &path, const std::string &name, const std::string &text,
             std::uint32_t type = kPlainString);
    void Remove(platform::RegistryRoot root, const std::string &path, const std::string &name);

private:
    struct Place
    {
        platform::RegistryRoot root;
        std::string path;
        std::string name;
    };
    std::vector<Place> m_set;
};

} // namespace support
