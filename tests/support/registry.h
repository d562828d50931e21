// Registry values for tests.
#pragma once

#include "platform/registry.h"

#include <string>
#include <utility>
#include <vector>

namespace support
{

// Sets plain string values and takes them away again at its end. Under Windows these are real values of the user or the
// machine (of the tests' own Wine prefix), elsewhere the registry in memory is emptied at the end.
class TestRegistry
{
public:
    TestRegistry() = default;
    ~TestRegistry();
    TestRegistry(const TestRegistry &) = delete;
    TestRegistry &operator=(const TestRegistry &) = delete;

    void Set(platform::RegistryRoot root, const std::string &path, const std::string &name, const std::string &text);
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
