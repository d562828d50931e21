// The component as a host has it: see component.h.
#include "windowed/component.h"

#include "platform/windows/wide.h"
#include "script/failure.h"

#include <objbase.h>

namespace scenario
{

namespace
{

void Check(HRESULT result, const char *act)
{
    if (FAILED(result))
        throw Refusal(std::string(act) + " failed with " + std::to_string(result));
}

VARIANT ToVariant(const PropertyValue &value)
{
    VARIANT variant;
    VariantInit(&variant);
    if (const auto *const number = std::get_if<std::int16_t>(&value))
    {
        variant.vt = VT_I2;
        variant.iVal = *number;
    }
    else if (const auto *const number = std::get_if<std::int32_t>(&value))
    {
        variant.vt = VT_I4;
        variant.lVal = *number;
    }
    else
    {
        variant.vt = VT_BSTR;
        variant.bstrVal = SysAllocString(platform::ToWide(std::get<std::string>(value)).c_str());
    }
    return variant;
}

} // namespace

Component::Component()
{
    CLSID id;
    Check(CLSIDFromProgID(L"KVHEADERS.clsConfig", &id), "looking up KVHEADERS.clsConfig");
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void **>(&m_object)),
          "creating KVHEADERS.clsConfig");
}

Component::~Component()
{
    m_object->Release();
}

DISPID Component::Member(const wchar_t *name) const
{
    DISPID member = 0;
    Check(m_object->GetIDsOfNames(IID_NULL, const_cast<wchar_t **>(&name), 1, LOCALE_USER_DEFAULT, &member),
          "looking up a member of KVHEADERS.clsConfig");
    return member;
}

void Component::Invoke(DISPID member, WORD kind, DISPPARAMS &arguments, VARIANT *result) const
{
    EXCEPINFO problem{};
    const HRESULT code =
        m_object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments, result, &problem, nullptr);
    if (code == DISP_E_EXCEPTION && problem.bstrDescription)
        throw Refusal(platform::FromWide(problem.bstrDescription));
    Check(code, "calling KVHEADERS.clsConfig");
}

void Component::Set(const std::string &name, const PropertyValue &value) const
{
    VARIANT variant = ToVariant(value);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS arguments{&variant, &put, 1, 1};
    try
    {
        Invoke(Member(platform::ToWide(name).c_str()), DISPATCH_PROPERTYPUT, arguments, nullptr);
    }
    catch (...)
    {
        VariantClear(&variant);
        throw;
    }
    VariantClear(&variant);
}

int Component::ShowForm() const
{
    VARIANT result;
    VariantInit(&result);
    DISPPARAMS none{};
    Invoke(Member(L"ShowForm"), DISPATCH_METHOD, none, &result);
    return result.vt == VT_UI1 ? result.bVal : -1;
}

} // namespace scenario
