// What has to be ready before the first object of a host.
#pragma once

namespace com
{

// Names the component's windows to the rest of it, at the first call; later calls do nothing.
void PrepareOnce();

} // namespace com
