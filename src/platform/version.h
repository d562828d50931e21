// The component's own version.
#pragma once

namespace platform
{

struct Version
{
    int major;
    int minor;
    int revision;
};

// From the version resource of the module this code is in; from the build where there is no such resource.
Version ComponentVersion();

} // namespace platform
