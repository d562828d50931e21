// IDispatch for every class, by its description in the type library.
#pragma once

#include "com/kvheaders.h"

namespace com
{

// The members of IDispatch, for an object whose dispatch interface has the identifier `id`.
HRESULT DispatchTypeInfo(REFIID id, UINT index, ITypeInfo **info) noexcept;
HRESULT DispatchNames(REFIID id, REFIID reserved, LPOLESTR *names, UINT count, DISPID *members) noexcept;
HRESULT DispatchCall(REFIID id, IDispatch *object, REFIID reserved, DISPID member, WORD flags, DISPPARAMS *arguments,
                     VARIANT *result, EXCEPINFO *exception, UINT *badArgument) noexcept;

} // namespace com
