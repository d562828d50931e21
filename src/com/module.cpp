// The DLL itself.
#include "com/module.h"

#include "com/type_library.h"

#include <atomic>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace com
{

namespace
{
std::atomic<long> reasons = 0;
} // namespace

std::wstring ModuleFile()
{
    std::wstring file(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length =
            GetModuleFileNameW(reinterpret_cast<HINSTANCE>(&__ImageBase), file.data(), static_cast<DWORD>(file.size()));
        if (length < file.size())
        {
            file.resize(length);
            return file;
        }
        file.resize(file.size() * 2);
    }
}

void AddReason() noexcept
{
    ++reasons;
}

void RemoveReason() noexcept
{
    // What is kept of the type library belongs to the system: it is given back before the DLL can go.
    if (--reasons == 0)
        ForgetTypeLibrary();
}

bool CanUnload() noexcept
{
    return reasons == 0;
}

} // namespace com
