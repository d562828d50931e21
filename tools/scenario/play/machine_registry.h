// Text values of the machine's registry for the length of a play.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace scenario
{

// Sets values under HKEY_LOCAL_MACHINE; at the end each is what it was, or gone with the keys that had to be made.
class MachineRegistry
{
public:
    MachineRegistry() = default;
    ~MachineRegistry();
    MachineRegistry(const MachineRegistry &) = delete;
    MachineRegistry &operator=(const MachineRegistry &) = delete;

    // Refusal when the registry cannot be written.
    void Set(const std::string &key, const std::string &name, const std::string &value);

private:
    struct Before
    {
        std::wstring key;
        std::wstring name;
        std::optional<std::wstring> value;
    };
    std::vector<Before> m_before;
};

} // namespace scenario
