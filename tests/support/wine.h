// Which Wine runs the tests: for those that meet a mistake of one of its versions.
#pragma once

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#endif

namespace support
{

// The major version; 0 where there is no Wine.
inline int WineVersion()
{
#ifdef _WIN32
    using GetVersion = const char *(__cdecl *)();
    const auto get = reinterpret_cast<GetVersion>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
    return get ? std::atoi(get()) : 0;
#else
    return 0;
#endif
}

} // namespace support
