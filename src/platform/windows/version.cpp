// The version resource of the module.
#include "platform/version.h"

#include "platform/windows/module.h"

#include <windows.h>

#include <cstring>

namespace platform
{

namespace
{

// The fixed part of a version resource starts with this signature.
const VS_FIXEDFILEINFO *FixedVersion(HMODULE module)
{
    const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16) /* RT_VERSION */);
    const HGLOBAL loaded = place ? LoadResource(module, place) : nullptr;
    const auto *bytes = loaded ? static_cast<const char *>(LockResource(loaded)) : nullptr;
    if (!bytes)
        return nullptr;
    const DWORD size = SizeofResource(module, place);
    constexpr DWORD kSignature = 0xFEEF04BD;
    for (DWORD i = 0; i + sizeof(VS_FIXEDFILEINFO) <= size; i += sizeof(DWORD))
        if (std::memcmp(bytes + i, &kSignature, sizeof kSignature) == 0)
            return reinterpret_cast<const VS_FIXEDFILEINFO *>(bytes + i);
    return nullptr;
}

} // namespace

Version ComponentVersion()
{
    if (const VS_FIXEDFILEINFO *fixed = FixedVersion(ThisModule()))
        return {HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS), HIWORD(fixed->dwFileVersionLS)};
    return {KVHEADERS_VERSION_MAJOR, KVHEADERS_VERSION_MINOR, KVHEADERS_VERSION_PATCH};
}

} // namespace platform
