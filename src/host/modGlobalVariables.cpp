// The globals that need their classes whole.
#include "host/modGlobalVariables.h"

#include "host/clsConfig.h"
#include "runtime/error.h"

namespace host
{

runtime::Ref<clsConfig> gConfig;

odbc::rdoConnection &Connection()
{
    if (!gConnection)
        runtime::Raise(runtime::kObjectNotSet);
    return *gConnection;
}

} // namespace host
