// The component's entries in the registry.
#pragma once

namespace com
{

enum class Scope
{
    Machine, // for all users; needs an administrator
    User     // for the current user alone
};

// Writes the entries of the classes and of the type library, over those of an earlier version. Raises a Failure; then
// the registry is as it was before.
void Register(Scope scope);

// Takes them away, and nothing else. Entries that are not there are no error. Raises a Failure.
void Unregister(Scope scope);

} // namespace com
