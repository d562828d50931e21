// The DLL's end: by a host that frees it, or with the process.
#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "odbc/handles.h"

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void *processEnds)
{
    if (reason != DLL_PROCESS_DETACH)
        return TRUE;
    // With the process the driver manager may be gone already; its handles go with it. A host that frees the DLL gets
    // the connection closed that the last window left open.
    if (processEnds)
        odbc::AbandonHandles();
    else
        host::Disconnect();
    host::gResultset.reset();
    host::gConnection.reset();
    host::gEnvironment.reset();
    host::gConfig = nullptr;
    return TRUE;
}
