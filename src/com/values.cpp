// Values on their way between a host and the records.
#include "com/values.h"

#include "com/errors.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"

#include <string_view>

namespace com
{

template <>
std::string FromHost<std::string>(BSTR value)
{
    return platform::FromWide(std::wstring_view(value ? value : L"", SysStringLen(value)));
}

BSTR ToHost(const std::string &value)
{
    const std::wstring wide = platform::ToWide(value);
    const BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (!text)
        throw Failure{E_OUTOFMEMORY};
    return text;
}

Variant::Variant(const VARIANT &argument)
{
    VariantInit(&m_value);
    // The system's own function follows null pointers. Records are nothing that a member takes.
    const VARIANT *from = &argument;
    if (from->vt == (VT_BYREF | VT_VARIANT))
        from = &Checked(from->pvarVal);
    if ((from->vt & VT_TYPEMASK) == VT_RECORD)
        throw Failure{DISP_E_BADVARTYPE};
    if (from->vt & (VT_BYREF | VT_ARRAY))
        Checked(from->pbVal);
    Check(VariantCopyInd(&m_value, const_cast<VARIANT *>(from))); // it only reads it
}

runtime::Value ToValue(const VARIANT &argument)
{
    Variant value(argument);
    switch (value->vt)
    {
    case VT_EMPTY:
        return std::int64_t{0};
    case VT_NULL:
        return runtime::Null{};
    case VT_BOOL:
        return value->boolVal != VARIANT_FALSE;
    case VT_BSTR:
        return FromHost<std::string>(value->bstrVal);
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
        if (SUCCEEDED(VariantChangeType(&value, &value, 0, VT_I8)))
            return static_cast<std::int64_t>(value->llVal);
        break;
    case VT_R4:
    case VT_R8:
    case VT_UI8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
        if (SUCCEEDED(VariantChangeType(&value, &value, 0, VT_R8)))
            return value->dblVal;
        break;
    }
    runtime::Raise(runtime::kTypeMismatch);
}

} // namespace com
