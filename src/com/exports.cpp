// The entry points of the DLL.
#include "com/class_factory.h"
#include "com/errors.h"
#include "com/module.h"
#include "com/prepare.h"
#include "com/registration.h"
#include "host/modMain.h"

#include <olectl.h>

#include <cwchar>

namespace
{

HRESULT Install(com::Scope scope) noexcept
{
    return com::Guarded(IID_IUnknown, [&] { com::Register(scope); });
}

HRESULT Uninstall(com::Scope scope) noexcept
{
    return com::Guarded(IID_IUnknown, [&] { com::Unregister(scope); });
}

} // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void **object)
{
    return com::Guarded(IID_IClassFactory,
                        [&]
                        {
                            com::Checked(object) = nullptr;
                            for (const com::PublicClass &publicClass : com::PublicClasses())
                            {
                                if (*publicClass.id != classId)
                                    continue;
                                com::PrepareOnce();
                                IClassFactory *factory = com::NewClassFactory(publicClass);
                                const HRESULT result = factory->QueryInterface(id, object);
                                factory->Release();
                                com::Check(result);
                                return;
                            }
                            throw com::Failure{CLASS_E_CLASSNOTAVAILABLE};
                        });
}

STDAPI DllCanUnloadNow()
{
    if (!com::CanUnload())
        return S_FALSE;
    // The last window may have left the connection open for the next one. This is the last call in which ODBC may be
    // called.
    host::ReleaseConnection();
    return S_OK;
}

STDAPI DllRegisterServer()
{
    return Install(com::Scope::Machine);
}

STDAPI DllUnregisterServer()
{
    return Uninstall(com::Scope::Machine);
}

// With "user" as the command line: for the current user alone; with none: for the machine.
STDAPI DllInstall(BOOL install, PCWSTR commandLine)
{
    com::Scope scope = com::Scope::Machine;
    if (commandLine && _wcsicmp(commandLine, L"user") == 0)
        scope = com::Scope::User;
    else if (commandLine && *commandLine)
        return E_INVALIDARG;
    return install ? Install(scope) : Uninstall(scope);
}
