// The DLL itself.
#include "com/module.h"

#include "com/type_library.h"
#include "platform/windows/module.h"

#include <atomic>

namespace com
{

namespace
{
std::atomic<long> locks = 0;
} // namespace

std::wstring ModuleFile()
{
    std::wstring file(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = GetModuleFileNameW(platform::ThisModule(), file.data(), static_cast<DWORD>(file.size()));
        if (length < file.size())
        {
            file.resize(length);
            return file;
        }
        file.resize(file.size() * 2);
    }
}

void LockModule() noexcept
{
    ++locks;
}

void UnlockModule() noexcept
{
    // What is kept of the type library belongs to the system: it is given back before the DLL can go.
    if (--locks == 0)
        ForgetTypeLibrary();
}

bool CanUnload() noexcept
{
    return locks == 0;
}

} // namespace com
