// Registering the component: see registration.h.
#include "acceptance/windows/registration.h"

#include "acceptance/windows/problem.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdio>

namespace acceptance
{

namespace
{

using Key = platform::UniqueHandle<HKEY, &RegCloseKey>;

std::string Code(HRESULT result)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(result));
    return text;
}

bool IsRegistered()
{
    HKEY key = nullptr;
    return RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Classes\\KVHEADERS.clsConfig", 0, KEY_READ, &key) ==
               ERROR_SUCCESS &&
           Key(key);
}

// What `regsvr32 /n /i:user` and `regsvr32 /u /n /i:user` do.
HRESULT Install(const std::filesystem::path &component, bool on)
{
    using DllInstall = HRESULT(WINAPI *)(BOOL, PCWSTR);
    const platform::UniqueHandle<HMODULE, &FreeLibrary> library(LoadLibraryW(component.c_str()));
    if (!library)
        return HRESULT_FROM_WIN32(GetLastError());
    const auto install =
        reinterpret_cast<DllInstall>(reinterpret_cast<void *>(GetProcAddress(library.get(), "DllInstall")));
    return install ? install(on, L"user") : E_NOTIMPL;
}

void Check(HRESULT result, const std::string &act)
{
    if (FAILED(result))
        throw Problem(act + " failed with " + Code(result));
}

std::string VersionOf(IDispatch &host)
{
    wchar_t name[] = L"Version";
    wchar_t *names[] = {name};
    DISPID member = 0;
    Check(host.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), "asking for the version");
    VARIANT version;
    VariantInit(&version);
    DISPPARAMS none{};
    Check(host.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &version, nullptr, nullptr),
          "asking for the version");
    std::string text = version.vt == VT_BSTR ? platform::FromWide(version.bstrVal) : "";
    VariantClear(&version);
    return text;
}

// Creates the component as a host does, sees that it comes from that file, and gives its version.
std::string CreatedVersion(const std::filesystem::path &component)
{
    CLSID id;
    IDispatch *host = nullptr;
    Check(CLSIDFromProgID(L"KVHEADERS.clsConfig", &id), "looking up KVHEADERS.clsConfig");
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void **>(&host)),
          "creating KVHEADERS.clsConfig");
    wchar_t loaded[MAX_PATH + 1] = L"";
    GetModuleFileNameW(GetModuleHandleW(L"KVHEADERS.dll"), loaded, MAX_PATH);
    const std::string version = VersionOf(*host);
    host->Release();
    CoFreeUnusedLibrariesEx(0, 0);
    std::error_code ignored;
    if (!std::filesystem::equivalent(loaded, component, ignored))
        throw Problem("hosts get " + platform::FromWide(loaded) +
                      " instead: an elevated program passes over what is registered for the user");
    return version;
}

} // namespace

Registration::Registration(const std::filesystem::path &component) : m_component(component)
{
    if (IsRegistered())
        throw Problem("the component is registered for this user already: remove that registration first");
    try
    {
        Check(Install(m_component, true), "registering KVHEADERS.dll");
        m_version = CreatedVersion(m_component);
    }
    catch (const Problem &)
    {
        Install(m_component, false);
        throw;
    }
}

Registration::~Registration()
{
    if (const HRESULT result = Install(m_component, false); FAILED(result))
        std::fprintf(stderr, "removing the registration failed with %s\n", Code(result).c_str());
}

} // namespace acceptance
