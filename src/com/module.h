// The DLL itself: its file, and what keeps it loaded.
#pragma once

#include <windows.h>

#include <string>

namespace com
{

// Full path of the DLL's file.
std::wstring ModuleFile();

// Counts a reason for the DLL to stay: an object that a host holds, a class factory, a host's lock.
void AddReason() noexcept;
void RemoveReason() noexcept;

// True when there is no such reason left.
bool CanUnload() noexcept;

// A reason for as long as it lives.
class KeepsLoaded
{
public:
    KeepsLoaded() noexcept { AddReason(); }
    ~KeepsLoaded() { RemoveReason(); }
    KeepsLoaded(const KeepsLoaded &) = delete;
    KeepsLoaded &operator=(const KeepsLoaded &) = delete;
};

} // namespace com
