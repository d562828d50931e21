// Class objects: what the system requests when a host creates an object.
#pragma once

#include "com/classes.h"

namespace com
{

// A class object, with a reference for the caller.
IClassFactory *NewClassFactory(const PublicClass &publicClass);

} // namespace com
