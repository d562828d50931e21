// The machine's registry where the system has none: see machine_registry.h.
#include "play/machine_registry.h"

#include "platform/posix/registry_store.h"

namespace scenario
{

MachineRegistry::~MachineRegistry() = default; // it goes with the process

void MachineRegistry::Set(const std::string &key, const std::string &name, const std::string &value)
{
    platform::SetRegistryValue(platform::RegistryRoot::LocalMachine, key, name, value);
}

} // namespace scenario
