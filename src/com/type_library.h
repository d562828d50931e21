// The type library inside the DLL.
#pragma once

#include "com/kvheaders.h"

#include <wrl/client.h>

namespace com
{

using Microsoft::WRL::ComPtr;

// The library, read from the DLL's own file: it need not be registered. Raises a Failure.
ComPtr<ITypeLib> TypeLibrary();

// The description of an interface or a class. Raises a Failure.
ComPtr<ITypeInfo> TypeInfo(REFGUID id);

// Lets go of what the two functions above keep for the next call.
void ForgetTypeLibrary() noexcept;

} // namespace com
