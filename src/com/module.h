// The DLL itself: its file, and what keeps it loaded.
#pragma once

#include <windows.h>

#include <string>

namespace com
{

// Full path of the DLL's file.
std::wstring ModuleFile();

// Counts what keeps the DLL loaded: an object that a host holds, a class factory, a host's lock.
void LockModule() noexcept;
void UnlockModule() noexcept;

// True when nothing keeps it loaded.
bool CanUnload() noexcept;

// Keeps the DLL loaded while it lives.
class ModuleLock
{
public:
    ModuleLock() noexcept { LockModule(); }
    ~ModuleLock() { UnlockModule(); }
    ModuleLock(const ModuleLock &) = delete;
    ModuleLock &operator=(const ModuleLock &) = delete;
};

} // namespace com
