// The version of the build.
#include "platform/version.h"

namespace platform
{

Version ComponentVersion()
{
    return {KVHEADERS_VERSION_MAJOR, KVHEADERS_VERSION_MINOR, KVHEADERS_VERSION_PATCH};
}

} // namespace platform
