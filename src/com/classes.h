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
    const wchar_t *name; // behind "KVHEADERS." it is the name by which scripts create it

    // A new object with a reference for the caller.
    IUnknown *(*create)();
};

std::span<const PublicClass> PublicClasses();

} // namespace com
