// A host bound late: members by name, arguments in whatever form a script has them, errors as exceptions.
#include "component.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace com_test
{

namespace
{

// The outcome of a call through IDispatch.
struct Outcome
{
    HRESULT result = S_OK;
    Value value;
    std::string told; // "0x800A0006 Overflow (KVHEADERS)" of an exception
};

class Dispatch : public ComponentTest
{
protected:
    DISPID Member(IDispatch *object, std::wstring name)
    {
        LPOLESTR names = name.data();
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), S_OK) << Narrow(name);
        return id;
    }

    // The arguments in the order in which they are written.
    Outcome Call(IDispatch *object, const std::wstring &name, WORD flags, std::vector<VARIANT> arguments)
    {
        std::reverse(arguments.begin(), arguments.end());
        DISPID put = DISPID_PROPERTYPUT;
        const bool assigns = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
        DISPPARAMS parameters = {arguments.data(), assigns ? &put : nullptr, static_cast<UINT>(arguments.size()),
                                 assigns ? 1u : 0u};
        EXCEPINFO exception = {};
        Outcome outcome;
        outcome.result = object->Invoke(Member(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &outcome.value, &exception, nullptr);
        if (outcome.result == DISP_E_EXCEPTION)
        {
            char number[16];
            std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(exception.scode));
            outcome.told = std::string(number) + " " +
                           Narrow(exception.bstrDescription ? exception.bstrDescription : L"") + " (" +
                           Narrow(exception.bstrSource ? exception.bstrSource : L"") + ")";
            SysFreeString(exception.bstrDescription);
            SysFreeString(exception.bstrSource);
        }
        return outcome;
    }
};

constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kPutReference = DISPATCH_PROPERTYPUTREF;
constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kCall = DISPATCH_METHOD;

VARIANT Of(VARTYPE type, void *reference)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(type | VT_BYREF);
    value.byref = reference;
    return value;
}

VARIANT Real(double number)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_R8;
    value.dblVal = number;
    return value;
}

VARIANT Plain(VARTYPE type, short number = 0)
{
    VARIANT value;
    VariantInit(&value);
    value.vt = type;
    value.iVal = number;
    return value;
}

TEST_F(Dispatch, TakesArgumentsInEveryForm)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    short integer = 11;
    long wide = 12;
    double real = 13.5;
    const Value text(L" 14 ");
    BSTR string = VARIANT(text).bstrVal;
    VARIANT variable = Value(15);
    VARIANT toInteger = Of(VT_I2, &integer);
    struct Case
    {
        const char *name;
        VARIANT argument;
        int expected;
    };
    const Case cases[] = {
        {"Integer", Plain(VT_I2, -7), -7},
        {"Long", Value(8), 8},
        {"half to even, down", Real(2.5), 2},
        {"half to even, up", Real(3.5), 4},
        {"True", Plain(VT_BOOL, VARIANT_TRUE), -1},
        {"Empty", Plain(VT_EMPTY), 0},
        {"numeric text", text, 14},
        {"reference to an Integer", Of(VT_I2, &integer), 11},
        {"reference to a Long", Of(VT_I4, &wide), 12},
        {"reference to a Double", Of(VT_R8, &real), 14},
        {"reference to a text", Of(VT_BSTR, &string), 14},
        {"reference to a variant", Of(VT_VARIANT, &variable), 15},
        {"reference to a variant that is a reference", Of(VT_VARIANT, &toInteger), 11},
    };
    for (const Case &known : cases)
    {
        SCOPED_TRACE(known.name);
        EXPECT_EQ(Call(format.Get(), L"FormatID", kPut, {known.argument}).result, S_OK);
        const Outcome back = Call(format.Get(), L"FormatID", kGet, {});
        EXPECT_EQ(VARIANT(back.value).vt, VT_I2);
        EXPECT_EQ(VARIANT(back.value).iVal, known.expected);
    }
    EXPECT_EQ(integer, 11) << "a setter changes none of its arguments";
    EXPECT_EQ(variable.lVal, 15);
}

TEST_F(Dispatch, TellsWhatIsWrongWithAnArgument)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    EXPECT_EQ(Call(format.Get(), L"FormatID", kPut, {Value(5)}).result, S_OK);
    const Value text(L"five");
    const Value object(format.Get());
    const Value nothing(static_cast<IDispatch *>(nullptr));
    struct Case
    {
        const char *name;
        VARIANT argument;
        const char *told;
    };
    const Case cases[] = {
        {"above 16 bits", Value(32768), "0x800A0006 Overflow (KVHEADERS)"},
        {"below 16 bits", Value(-32769), "0x800A0006 Overflow (KVHEADERS)"},
        {"rounds up to above", Real(32767.5), "0x800A0006 Overflow (KVHEADERS)"},
        {"a text", text, "0x800A000D Type mismatch (KVHEADERS)"},
        {"Null", Plain(VT_NULL), "0x800A005E Invalid use of Null (KVHEADERS)"},
        {"Nothing", nothing, "0x800A000D Type mismatch (KVHEADERS)"},
    };
    for (const Case &known : cases)
    {
        SCOPED_TRACE(known.name);
        const Outcome outcome = Call(format.Get(), L"FormatID", kPut, {known.argument});
        EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.told, known.told);
    }
    EXPECT_EQ(VARIANT(Call(format.Get(), L"FormatID", kGet, {}).value).iVal, 5);
}

TEST_F(Dispatch, TellsWhatIsWrongWithACall)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    const VARIANT missing = Value::Missing();
    EXPECT_EQ(Call(config.Get(), L"User_ID", kPut, {missing}).result, DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(Call(config.Get(), L"ShowForm", kCall, {Value(1)}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(config.Get(), L"User_ID", kPut, {}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(config.Get(), L"Version", kPut, {Value(1)}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Call(config.Get(), L"User_ID", kPutReference, {Value(config.Get())}).result, DISP_E_MEMBERNOTFOUND);
    DISPPARAMS none = {};
    EXPECT_EQ(config->Invoke(999, IID_NULL, LOCALE_USER_DEFAULT, kGet, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(config->Invoke(1, IID_IUnknown, LOCALE_USER_DEFAULT, kGet, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(config->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, kGet, nullptr, nullptr, nullptr, nullptr),
              DISP_E_EXCEPTION);
    // Neither result nor exception wanted.
    EXPECT_EQ(config->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, kGet, &none, nullptr, nullptr, nullptr), S_OK);

    OLECHAR nope[] = L"Nope";
    LPOLESTR names = nope;
    DISPID id = 5;
    EXPECT_EQ(config->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(config->GetIDsOfNames(IID_IUnknown, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(config->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, &id), E_POINTER);
    EXPECT_EQ(Member(config.Get(), L"user_id"), 1) << "names are told apart without regard to case";
}

TEST_F(Dispatch, DescribesItself)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    UINT count = 0;
    EXPECT_EQ(config->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(config->GetTypeInfoCount(nullptr), E_POINTER);
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(config->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type), S_OK);
    Text name;
    EXPECT_EQ(type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.str(), L"_clsConfig");
    EXPECT_EQ(config->GetTypeInfo(1, LOCALE_USER_DEFAULT, &type), DISP_E_BADINDEX);
    EXPECT_EQ(config->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
}

TEST_F(Dispatch, TakesNamedArguments)
{
    const auto heading = component.Create<_clsHeadings, clsHeadings>();
    std::wstring names[] = {L"FillHeadings", L"p_haschanged", L"p_new_heading", L"p_system_heading", L"p_heading_name"};
    LPOLESTR texts[] = {names[0].data(), names[1].data(), names[2].data(), names[3].data(), names[4].data()};
    DISPID ids[5];
    ASSERT_EQ(heading->GetIDsOfNames(IID_NULL, texts, 5, LOCALE_USER_DEFAULT, ids), S_OK);
    const Value name(L"PLAN");
    VARIANT arguments[] = {Plain(VT_BOOL, VARIANT_TRUE), Plain(VT_BOOL), Plain(VT_BOOL, VARIANT_TRUE), name, Value(21)};
    DISPPARAMS parameters = {arguments, ids + 1, 5, 4};
    EXPECT_EQ(heading->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, kCall, &parameters, nullptr, nullptr, nullptr),
              S_OK);
    SHORT id = 0;
    VARIANT_BOOL flag = 0;
    Text back;
    EXPECT_EQ(heading->get_HeadID(&id), S_OK);
    EXPECT_EQ(id, 21);
    EXPECT_EQ(heading->get_HeadingName(&back), S_OK);
    EXPECT_EQ(back.str(), L"PLAN");
    EXPECT_EQ(heading->get_HasChanged(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_TRUE);
    EXPECT_EQ(heading->get_NewHeading(&flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
}

TEST_F(Dispatch, ReachesTheDefaultMemberOfAnObject)
{
    const auto formats = component.Create<_colFormats, colFormats>();
    const auto format = component.Create<_clsFormats, clsFormats>();
    const Outcome elements = Call(formats.Get(), L"ColFormatInfo", kGet, {});
    IDispatch *collection = VARIANT(elements.value).pdispVal;
    const Value key(L"Key");
    EXPECT_EQ(Call(collection, L"Add", kCall, {Value(format.Get()), key}).result, S_OK);
    for (const VARIANT &place : {VARIANT(Value(1)), VARIANT(key)})
    {
        // ColFormatInfo(place), and Item of the collection without its name
        const Outcome element = Call(formats.Get(), L"ColFormatInfo", kGet | kCall, {place});
        EXPECT_EQ(element.result, S_OK);
        EXPECT_EQ(VARIANT(element.value).pdispVal, static_cast<IDispatch *>(format.Get()));
        VARIANT argument = place;
        DISPPARAMS parameters = {&argument, nullptr, 1, 0};
        Value item;
        EXPECT_EQ(
            collection->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, kGet, &parameters, &item, nullptr, nullptr),
            S_OK);
        EXPECT_EQ(item->pdispVal, static_cast<IDispatch *>(format.Get()));
    }
    for (const WORD flags : {WORD{kGet}, WORD{kGet | kCall}, WORD{kCall}})
    {
        EXPECT_EQ(Call(formats.Get(), L"ColFormatInfo", flags, {Value(2)}).told,
                  "0x800A0009 Subscript out of range (KVHEADERS)");
        EXPECT_EQ(Call(collection, L"Item", flags, {Value(2)}).told, "0x800A0009 Subscript out of range (KVHEADERS)");
    }
}

TEST_F(Dispatch, AssignsObjectsByReferenceAlone)
{
    const auto formats = component.Create<_colFormats, colFormats>();
    const auto other = component.Create<_colFormats, colFormats>();
    const Outcome collection = Call(other.Get(), L"ColFormatInfo", kGet, {});
    EXPECT_EQ(Call(formats.Get(), L"ColFormatInfo", kPut, {collection.value}).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Call(formats.Get(), L"ColFormatInfo", kPutReference, {collection.value}).result, S_OK);
    const Outcome back = Call(formats.Get(), L"ColFormatInfo", kGet, {});
    EXPECT_EQ(VARIANT(back.value).pdispVal, VARIANT(collection.value).pdispVal);
    EXPECT_EQ(Call(formats.Get(), L"ColFormatInfo", kPutReference, {Value(other.Get())}).told,
              "0x800A000D Type mismatch (KVHEADERS)");
    EXPECT_EQ(Call(formats.Get(), L"ColFormatInfo", kPutReference, {Value(1)}).told,
              "0x800A000D Type mismatch (KVHEADERS)");
}

TEST_F(Dispatch, AssignsTheCollectionOfPartitionsInBothWays)
{
    const auto partitions = component.Create<_colPartitions, colPartitions>();
    for (const WORD way : {kPut, kPutReference, static_cast<WORD>(kPut | kPutReference)})
    {
        const auto collection = component.Create<_Collection, Collection>();
        EXPECT_EQ(Call(partitions.Get(), L"colPartitions", way, {Value(collection.Get())}).result, S_OK);
        const Outcome back = Call(partitions.Get(), L"colPartitions", kGet, {});
        EXPECT_EQ(VARIANT(back.value).pdispVal, collection.Get());
    }
}

TEST_F(Dispatch, TellsAnErrorInsideTheComponent)
{
    // Nobody has connected.
    for (const auto &[object, member] :
         {std::pair<ComPtr<IDispatch>, const wchar_t *>{component.Create<_colFormats, colFormats>(), L"GetFormatInfo"},
          {component.Create<_colHeadings, colHeadings>(), L"GetHeadingInfo"},
          {component.Create<_colSettings, colSettings>(), L"GetSettingInfo"}})
        EXPECT_EQ(Call(object.Get(), member, kCall, {}).told,
                  "0x800A005B Object variable or With block variable not set (KVHEADERS)");
}

} // namespace

} // namespace com_test
