// IDispatch for every class, by its description in the type library.
#include "com/dispatch.h"

#include "com/arguments.h"
#include "com/errors.h"
#include "com/type_library.h"

namespace com
{

namespace
{

// The contents of the thread's error object, for the caller of IDispatch in a structure.
HRESULT FillException(HRESULT result, EXCEPINFO *exception)
{
    // Mistakes in the call itself keep their own results.
    if (HRESULT_FACILITY(result) == FACILITY_DISPATCH)
        return result;
    if (exception)
    {
        *exception = {};
        exception->scode = result;
        ComPtr<IErrorInfo> info;
        if (GetErrorInfo(0, &info) == S_OK)
        {
            info->GetSource(&exception->bstrSource);
            info->GetDescription(&exception->bstrDescription);
        }
    }
    return DISP_E_EXCEPTION;
}

HRESULT Call(REFIID id, IDispatch *object, DISPID member, WORD flags, DISPPARAMS &given, VARIANT *result,
             EXCEPINFO *exception, UINT *badArgument)
{
    const ComPtr<IDispatch> alive = object; // a script may let go of the object while its member runs
    const ComPtr<ITypeInfo> type = TypeInfo(id);
    if (flags & DISPATCH_METHOD)
        flags |= DISPATCH_PROPERTYGET; // some hosts call whatever precedes parentheses
    Arguments arguments(*type.Get(), member, flags, given);
    if (!arguments.AreForResult())
        return type->Invoke(object, member, flags, arguments.Get(), result, exception, badArgument);

    Variant inner;
    DISPPARAMS none = {};
    const HRESULT called = type->Invoke(object, member, DISPATCH_PROPERTYGET, &none, &inner, exception, badArgument);
    if (FAILED(called))
        return called;
    if (inner->vt != VT_DISPATCH || !inner->pdispVal)
        return DISP_E_BADPARAMCOUNT;
    return inner->pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, flags, &given, result, exception,
                                   badArgument);
}

} // namespace

HRESULT DispatchTypeInfo(REFIID id, UINT index, ITypeInfo **info) noexcept
{
    return Guarded(id,
                   [&]
                   {
                       Checked(info) = nullptr;
                       if (index != 0)
                           throw Failure{DISP_E_BADINDEX};
                       *info = TypeInfo(id).Detach();
                   });
}

HRESULT DispatchNames(REFIID id, REFIID reserved, LPOLESTR *names, UINT count, DISPID *members) noexcept
{
    if (!IsEqualIID(reserved, IID_NULL))
        return DISP_E_UNKNOWNINTERFACE;
    if (count == 0)
        return S_OK;
    HRESULT found = S_OK; // an unknown name is an answer, not an error to tell
    const HRESULT asked = Guarded(id,
                                  [&]
                                  {
                                      Checked(names);
                                      Checked(members);
                                      found = TypeInfo(id)->GetIDsOfNames(names, count, members);
                                  });
    return FAILED(asked) ? asked : found;
}

HRESULT DispatchCall(REFIID id, IDispatch *object, REFIID reserved, DISPID member, WORD flags, DISPPARAMS *arguments,
                     VARIANT *result, EXCEPINFO *exception, UINT *badArgument) noexcept
{
    if (!IsEqualIID(reserved, IID_NULL))
        return DISP_E_UNKNOWNINTERFACE;
    try
    {
        return Call(id, object, member, flags, Checked(arguments), result, exception, badArgument);
    }
    catch (...)
    {
        return FillException(SetErrorInfoFromException(id), exception);
    }
}

} // namespace com
