// The DLL's end: by a host that frees it, or with the process.
#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "odbc/handles.h"

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void *)
{
    if (reason != DLL_PROCESS_DETACH)
        return TRUE;
    // ODBC must not be called here: the driver manager may be gone already. A host that asks whether the DLL may be
    // unloaded got the connection closed then; one that does not ask, or ends, leaves its handles to the system.
    odbc::AbandonHandles();
    host::gResultset.reset();
    host::gConnection.reset();
    host::gEnvironment.reset();
    host::gConfig = nullptr;
    return TRUE;
}
