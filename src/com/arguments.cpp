// A script's arguments, converted to what the type library declares for the member.
#include "com/arguments.h"

#include "com/errors.h"
#include "com/type_library.h"
#include "runtime/error.h"

namespace com
{

namespace
{

// The description of a member for one way of calling it; null when there is none.
class Function
{
public:
    Function(ITypeInfo &type, DISPID member, WORD flags) : m_type(type)
    {
        TYPEATTR *attributes = nullptr;
        Check(type.GetTypeAttr(&attributes));
        const UINT count = attributes->cFuncs;
        type.ReleaseTypeAttr(attributes);
        for (UINT i = 0; i < count; ++i)
        {
            FUNCDESC *function = nullptr;
            Check(type.GetFuncDesc(i, &function));
            if (function->memid == member && (function->invkind & flags))
            {
                m_function = function;
                return;
            }
            type.ReleaseFuncDesc(function);
        }
    }
    ~Function()
    {
        if (m_function)
            m_type.ReleaseFuncDesc(m_function);
    }
    Function(const Function &) = delete;
    Function &operator=(const Function &) = delete;

    const FUNCDESC *get() const { return m_function; }

private:
    ITypeInfo &m_type;
    FUNCDESC *m_function = nullptr;
};

// The interface of a parameter of an object type.
IID InterfaceOf(ITypeInfo &type, const TYPEDESC &parameter)
{
    const TYPEDESC *described = &parameter;
    while (described->vt == VT_PTR)
        described = described->lptdesc;
    ComPtr<ITypeInfo> wanted;
    Check(type.GetRefTypeInfo(described->hreftype, &wanted));
    TYPEATTR *attributes = nullptr;
    Check(wanted->GetTypeAttr(&attributes));
    const IID id = attributes->guid;
    wanted->ReleaseTypeAttr(attributes);
    return id;
}

// The arguments that a caller passes: the result is not one of them.
struct Inputs
{
    explicit Inputs(const FUNCDESC &function)
    {
        for (int i = 0; i < function.cParams; ++i)
        {
            const USHORT flags = function.lprgelemdescParam[i].paramdesc.wParamFlags;
            count += (flags & PARAMFLAG_FRETVAL) == 0;
            required += (flags & (PARAMFLAG_FRETVAL | PARAMFLAG_FOPT)) == 0;
        }
    }
    UINT count = 0;
    UINT required = 0;
};

// A host's structure must at least be what it says.
void CheckShape(const DISPPARAMS &given)
{
    if (given.cNamedArgs > given.cArgs)
        throw Failure{DISP_E_BADPARAMCOUNT};
    if (given.cArgs > 0)
        Checked(given.rgvarg);
    if (given.cNamedArgs > 0)
        Checked(given.rgdispidNamedArgs);
}

} // namespace

Arguments::Arguments(ITypeInfo &type, DISPID member, WORD flags, const DISPPARAMS &given) : m_arguments(given)
{
    CheckShape(given);
    const Function function(type, member, flags);
    if (!function.get())
        throw Failure{DISP_E_MEMBERNOTFOUND};
    const Inputs inputs(*function.get());
    if (inputs.count == 0 && given.cArgs > 0 && (function.get()->invkind & INVOKE_PROPERTYGET))
        m_areForResult = true;
    else if (given.cArgs < inputs.required || given.cArgs > inputs.count)
        throw Failure{DISP_E_BADPARAMCOUNT};
    else
        Convert(type, *function.get(), given);
}

void Arguments::Convert(ITypeInfo &type, const FUNCDESC &function, const DISPPARAMS &given)
{
    const UINT inputs = Inputs(function).count;
    m_passed.assign(given.rgvarg, given.rgvarg + given.cArgs);
    for (UINT i = 0; i < given.cArgs; ++i)
    {
        // Named arguments come first; the others follow, the last one first.
        UINT position = given.cArgs - 1 - i;
        if (i < given.cNamedArgs)
        {
            const DISPID name = given.rgdispidNamedArgs[i];
            const bool assigned =
                name == DISPID_PROPERTYPUT && function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF);
            position = assigned ? inputs - 1 : static_cast<UINT>(name);
        }
        if (position >= inputs)
            throw Failure{DISP_E_PARAMNOTFOUND};
        Convert(type, m_passed[i], given.rgvarg[i], function.lprgelemdescParam[position]);
    }
    m_arguments.rgvarg = m_passed.data();
}

void Arguments::Convert(ITypeInfo &info, VARIANTARG &to, const VARIANT &from, const ELEMDESC &wanted)
{
    Variant &value = m_values.emplace_back(from);
    const bool byReference = wanted.tdesc.vt == VT_PTR;
    const VARTYPE type = byReference ? wanted.tdesc.lptdesc->vt : wanted.tdesc.vt;
    if (IsMissing(*value) && !(wanted.paramdesc.wParamFlags & PARAMFLAG_FOPT))
        throw Failure{DISP_E_PARAMNOTOPTIONAL};
    if (type == VT_USERDEFINED || type == VT_PTR) // an object
    {
        if (value->vt != VT_DISPATCH && value->vt != VT_UNKNOWN)
            runtime::Raise(runtime::kTypeMismatch);
        if (IUnknown *given = value->punkVal)
        {
            void *object = nullptr;
            if (FAILED(given->QueryInterface(InterfaceOf(info, wanted.tdesc), &object)))
                runtime::Raise(runtime::kTypeMismatch);
            value->punkVal = static_cast<IUnknown *>(object);
            given->Release();
        }
        value->vt = VT_DISPATCH;
    }
    else if (type != VT_VARIANT)
    {
        if (value->vt == VT_NULL)
            runtime::Raise(runtime::kInvalidUseOfNull);
        const HRESULT changed = VariantChangeType(&value, &value, 0, type);
        if (changed == DISP_E_OVERFLOW)
            runtime::Raise(runtime::kOverflow);
        if (FAILED(changed))
            runtime::Raise(runtime::kTypeMismatch);
    }
    if (!byReference || type == VT_USERDEFINED)
        to = *value;
    else
    {
        to.vt = static_cast<VARTYPE>(VT_BYREF | (type == VT_PTR ? VARTYPE{VT_DISPATCH} : type));
        to.byref = type == VT_VARIANT ? static_cast<void *>(&value) : static_cast<void *>(&value->byref);
    }
}

} // namespace com
