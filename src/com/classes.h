// The classes that a host can create, in one table.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

namespace com
{

struct PublicClass
{
    const CLSID *id;
    const wchar_t *name; // scripts create it under this name with "KVHEADERS." before it

    // A new object with a reference for the caller.
    IUnknown *(*create)();
};

std::span<const PublicClass> PublicClasses();

} // namespace com
