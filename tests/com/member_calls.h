// Every member of every class, found by the type library: how the tests call them.
#pragma once

#include "component.h"

#include <functional>
#include <vector>

namespace com_test
{

inline VARIANTARG OnStack(VARTYPE type, const void *pointer)
{
    VARIANTARG argument;
    VariantInit(&argument);
    argument.vt = type;
    argument.byref = const_cast<void *>(pointer);
    return argument;
}

class Members : public ComponentTest
{
protected:
    using ComponentTest::ComponentTest;

    ComPtr<IDispatch> Create(const CLSID &id)
    {
        ComPtr<IClassFactory> factory;
        ComPtr<IDispatch> object;
        EXPECT_EQ(component.GetClassObject(id, IID_PPV_ARGS(&factory)), S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&object)), S_OK);
        return object;
    }

    // Visits the functions of the object's interface.
    void Visit(IDispatch &object, const std::function<void(const std::string &name, const FUNCDESC &)> &visit)
    {
        ComPtr<ITypeInfo> dispatch;
        ASSERT_EQ(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &dispatch), S_OK);
        VisitMembers(*dispatch.Get(),
                     [&](ITypeInfo &type, const FUNCDESC &function)
                     {
                         Text name;
                         EXPECT_EQ(type.GetDocumentation(function.memid, &name, nullptr, nullptr, nullptr), S_OK);
                         visit(Narrow(name.str()), function);
                     });
    }

    // Calls a function of the object's table with these arguments, each in its place on the stack.
    static HRESULT CallDirectly(IDispatch &object, const FUNCDESC &function, std::vector<VARIANTARG> arguments)
    {
        std::vector<VARTYPE> types;
        std::vector<VARIANTARG *> pointers;
        for (VARIANTARG &argument : arguments)
        {
            types.push_back(argument.vt);
            pointers.push_back(&argument);
        }
        Value result;
        EXPECT_EQ(DispCallFunc(&object, static_cast<ULONG_PTR>(function.oVft), CC_STDCALL, VT_I4,
                               static_cast<UINT>(arguments.size()), types.data(), pointers.data(), &result),
                  S_OK);
        return result->lVal;
    }

    // With zero for every argument; an empty VARIANT takes four places on the stack.
    static HRESULT CallWithNulls(IDispatch &object, const FUNCDESC &function)
    {
        std::vector<VARIANTARG> arguments;
        for (int i = 0; i < function.cParams; ++i)
            arguments.insert(arguments.end(), function.lprgelemdescParam[i].tdesc.vt == VT_VARIANT ? 4 : 1,
                             OnStack(VT_I4, nullptr));
        return CallDirectly(object, function, std::move(arguments));
    }
};

// What an error of the component must come with.
inline void ExpectTold(HRESULT result)
{
    const std::string told = Told(result);
    EXPECT_NE(told.find(" (KVHEADERS)"), std::string::npos) << told;
}

// A property of a plain value.
struct Property
{
    std::string name;
    FUNCDESC put;
    VARTYPE type;
    bool byReference;
};

inline std::string Show(const VARIANT &value)
{
    return value.vt == VT_I2     ? std::to_string(value.iVal)
           : value.vt == VT_I4   ? std::to_string(value.lVal)
           : value.vt == VT_BOOL ? (value.boolVal == VARIANT_TRUE ? "True" : "False")
           : value.vt == VT_BSTR ? "'" + Narrow({value.bstrVal, SysStringLen(value.bstrVal)}) + "'"
                                 : "(type " + std::to_string(value.vt) + ")";
}

// A property as a script sees it.
inline std::string Show(IDispatch &object, const std::string &name)
{
    return Show(CallByName(object, Wide(name), kGet).value);
}

class Properties : public Members
{
protected:
    using Members::Members;

    std::vector<Property> Of(IDispatch &object)
    {
        std::vector<Property> properties;
        FUNCDESC put = {};
        put.memid = DISPID_UNKNOWN;
        VARTYPE type = VT_EMPTY;
        bool byReference = false;
        Visit(object,
              [&](const std::string &name, const FUNCDESC &function)
              {
                  if (function.invkind == INVOKE_PROPERTYPUT)
                  {
                      const TYPEDESC &argument = function.lprgelemdescParam[0].tdesc;
                      byReference = argument.vt == VT_PTR;
                      type = byReference ? argument.lptdesc->vt : argument.vt;
                      put = function;
                  }
                  else if (function.invkind == INVOKE_PROPERTYGET && function.memid == put.memid &&
                           type != VT_USERDEFINED)
                      properties.push_back({name, put, type, byReference});
              });
        return properties;
    }

    std::vector<std::string> Values(IDispatch &object)
    {
        std::vector<std::string> values;
        for (const Property &property : Of(object))
            values.push_back(Show(object, property.name));
        return values;
    }

    // Sets a value directly: a number, a truth value, or a text.
    static HRESULT Set(IDispatch &object, const Property &property, LONG number, BSTR text)
    {
        const void *value = property.type == VT_BSTR ? static_cast<void *>(text) : reinterpret_cast<void *>(number);
        return CallDirectly(object, property.put, {OnStack(VT_I4, property.byReference ? &value : value)});
    }
};

} // namespace com_test
