// A host bound late: members by name, arguments in whatever form a script has them, errors as exceptions.
#include "member_calls.h"

#include <utility>
#include <vector>

namespace com_test
{

namespace
{

using Dispatch = Members;

VARIANT Real(double number)
{
    VARIANT value = OnStack(VT_R8, nullptr);
    value.dblVal = number;
    return value;
}

VARIANT Plain(VARTYPE type, short number = 0)
{
    VARIANT value = OnStack(type, nullptr);
    value.iVal = number;
    return value;
}

TEST_F(Dispatch, TakesArgumentsInEveryForm)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    short integer = 11;
    long wide = 12;
    double real = 13.5;
    const Value text(L" 14 "), truth(L"True"), name(L"M\u00e9ni\u00e8re");
    BSTR string = VARIANT(text).bstrVal;
    VARIANT variable = Value(15);
    VARIANT toInteger = OnStack(VT_BYREF | VT_I2, &integer);
    struct Case
    {
        const char *name;
        const char *member;
        VARIANT argument;
        const char *shown;
    };
    const Case cases[] = {
        {"Integer", "FormatID", Plain(VT_I2, -7), "-7"},
        {"Long", "FormatID", Value(8), "8"},
        {"half to even, down", "FormatID", Real(2.5), "2"},
        {"half to even, up", "FormatID", Real(3.5), "4"},
        {"True", "FormatID", Plain(VT_BOOL, VARIANT_TRUE), "-1"},
        {"Empty", "FormatID", Plain(VT_EMPTY), "0"},
        {"numeric text", "FormatID", text, "14"},
        {"reference to an Integer", "FormatID", OnStack(VT_BYREF | VT_I2, &integer), "11"},
        {"reference to a Long", "FormatID", OnStack(VT_BYREF | VT_I4, &wide), "12"},
        {"reference to a Double", "FormatID", OnStack(VT_BYREF | VT_R8, &real), "14"},
        {"reference to a text", "FormatID", OnStack(VT_BYREF | VT_BSTR, &string), "14"},
        {"reference to a variant", "FormatID", OnStack(VT_BYREF | VT_VARIANT, &variable), "15"},
        {"reference to such a one", "FormatID", OnStack(VT_BYREF | VT_VARIANT, &toInteger), "11"},
        {"letters beyond ASCII", "FormatName", name, "'M\u00e9ni\u00e8re'"},
        {"a number as a text", "FormatName", Value(12), "'12'"},
        {"a number as a truth value", "InsertAfter", Value(1), "True"},
        {"a text as a truth value", "InsertColon", truth, "True"},
    };
    for (const Case &known : cases)
    {
        SCOPED_TRACE(known.name);
        EXPECT_EQ(CallByName(*format.Get(), Wide(known.member), kPut, {known.argument}).result, S_OK);
        EXPECT_EQ(Show(*format.Get(), known.member), known.shown);
    }
    EXPECT_EQ(integer, 11) << "a setter changes none of its arguments";
    EXPECT_EQ(variable.lVal, 15);
}

constexpr char kOverflow[] = "0x800A0006: Overflow (KVHEADERS)";
constexpr char kMismatch[] = "0x800A000D: Type mismatch (KVHEADERS)";
constexpr char kNull[] = "0x800A005E: Invalid use of Null (KVHEADERS)";

TEST_F(Dispatch, TellsWhatIsWrongWithAnArgument)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    const auto partition = component.Create<_clsPartition, clsPartition>();
    const Value text(L"five"), nothing(static_cast<IDispatch *>(nullptr));
    struct Case
    {
        const char *name;
        IDispatch *object;
        const wchar_t *member;
        VARIANT argument;
        const char *told;
    };
    const Case cases[] = {
        {"above 16 bits", format.Get(), L"FormatID", Value(32768), kOverflow},
        {"below 16 bits", format.Get(), L"FormatID", Value(-32769), kOverflow},
        {"rounds up to above", format.Get(), L"FormatID", Real(32767.5), kOverflow},
        {"above 32 bits", partition.Get(), L"m_lngPartitionID", Real(3e9), kOverflow},
        {"above 32 bits, of a method", partition.Get(), L"SetPartitionID", Real(3e9), kOverflow},
        {"a text", format.Get(), L"FormatID", text, kMismatch},
        {"a text, of a method", partition.Get(), L"SetPartitionID", text, kMismatch},
        {"a text that is no truth value", format.Get(), L"Bold", text, kMismatch},
        {"Nothing", format.Get(), L"FormatID", nothing, kMismatch},
        {"Null", format.Get(), L"FormatID", Plain(VT_NULL), kNull},
        {"Null as a text", format.Get(), L"FormatName", Plain(VT_NULL), kNull},
    };
    EXPECT_EQ(CallByName(*format.Get(), L"FormatID", kPut, {Value(5)}).result, S_OK);
    for (const Case &known : cases)
    {
        SCOPED_TRACE(known.name);
        const WORD kind = known.member == std::wstring(L"SetPartitionID") ? kCall : kPut;
        const Outcome outcome = CallByName(*known.object, known.member, kind, {known.argument});
        EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.told, known.told);
    }
    EXPECT_EQ(Show(*format.Get(), "FormatID"), "5");
    EXPECT_EQ(Show(*partition.Get(), "m_lngPartitionID"), "0");
}

TEST_F(Dispatch, TellsWhatIsWrongWithACall)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    const auto result = [&](const wchar_t *name, WORD kind, std::vector<VARIANT> arguments)
    { return CallByName(*config.Get(), name, kind, std::move(arguments)).result; };
    EXPECT_EQ(result(L"User_ID", kPut, {Value::Missing()}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(result(L"ShowForm", kCall, {Value(1)}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(result(L"User_ID", kPut, {}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(result(L"Version", kPut, {Value(1)}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(result(L"User_ID", kPutReference, {Value(config.Get())}), DISP_E_MEMBERNOTFOUND);
    DISPPARAMS none = {};
    const auto invoke = [&](DISPID member, REFIID reserved, DISPPARAMS *arguments)
    { return config->Invoke(member, reserved, LOCALE_USER_DEFAULT, kGet, arguments, nullptr, nullptr, nullptr); };
    EXPECT_EQ(invoke(999, IID_NULL, &none), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(invoke(1, IID_IUnknown, &none), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(invoke(1, IID_NULL, nullptr), DISP_E_EXCEPTION);
    EXPECT_EQ(invoke(1, IID_NULL, &none), S_OK) << "neither result nor exception wanted";

    OLECHAR nope[] = L"Nope";
    LPOLESTR names = nope;
    DISPID id = 5;
    EXPECT_EQ(config->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
    EXPECT_EQ(config->GetIDsOfNames(IID_IUnknown, &names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(config->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_USER_DEFAULT, &id), E_POINTER);
    EXPECT_EQ(CallByName(*config.Get(), L"uSER_id", kGet).result, S_OK)
        << "names are told apart without regard to case";
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
    for (const auto &[member, shown] : {std::pair("HeadID", "21"),
                                        {"HeadingName", "'PLAN'"},
                                        {"SystemHeading", "True"},
                                        {"NewHeading", "False"},
                                        {"HasChanged", "True"}})
        EXPECT_EQ(Show(*heading.Get(), member), shown) << member;
}

// Each argument goes to the property of its position and to no other. A flag that says that a record has been removed
// is none of them and stays.
TEST_F(Dispatch, FillsEachPropertyFromItsArgument)
{
    struct Method
    {
        const CLSID &id;
        const wchar_t *name;
        const char *removed;
        std::vector<const char *> properties;
    };
    const Method methods[] = {
        {__uuidof(clsFormats),
         L"FillFields",
         "RemoveFormat",
         {"FormatID", "FormatName", "InsertBefore", "InsertAfter", "InsertColon", "Bold", "Underline", "Indent",
          "SystemFormat", "NewFormat", "HasChanged"}},
        {__uuidof(clsHeadings),
         L"FillHeadings",
         "RemoveHeader",
         {"HeadID", "HeadingName", "NewHeading", "SystemHeading", "HasChanged"}},
        {__uuidof(clsSettings),
         L"FillSettings",
         "RemoveSetting",
         {"SettingID", "HospitalID", "ReportType", "FormatID", "PartitionID", "NewSetting", "HasChanged"}}};
    for (const Method &method : methods)
    {
        const auto object = Create(method.id);
        EXPECT_EQ(CallByName(*object.Get(), Wide(method.removed), kPut, {Value(1)}).result, S_OK);
        for (const char *const set : method.properties)
        {
            // 1 is a number, a text and a truth value, and so is 0.
            std::vector<VARIANT> arguments;
            for (const char *const property : method.properties)
                arguments.push_back(Value(property == set));
            EXPECT_EQ(CallByName(*object.Get(), method.name, kCall, arguments).result, S_OK);
            for (const char *const property : method.properties)
            {
                const std::string shown = Show(*object.Get(), property);
                EXPECT_EQ(shown == "1" || shown == "'1'" || shown == "True", property == set)
                    << property << " is " << shown << " where " << set << " is set";
            }
            EXPECT_EQ(Show(*object.Get(), method.removed), "True");
        }
    }
}

TEST_F(Dispatch, ReachesTheDefaultMemberOfAnObject)
{
    const auto formats = component.Create<_colFormats, colFormats>();
    const auto format = component.Create<_clsFormats, clsFormats>();
    const Outcome elements = CallByName(*formats.Get(), L"ColFormatInfo", kGet);
    IDispatch *collection = VARIANT(elements.value).pdispVal;
    const Value key(L"Key");
    EXPECT_EQ(CallByName(*collection, L"Add", kCall, {Value(format.Get()), key}).result, S_OK);
    for (const VARIANT &place : {VARIANT(Value(1)), VARIANT(key)})
    {
        // ColFormatInfo(place), and Item of the collection without its name
        const Outcome element = CallByName(*formats.Get(), L"ColFormatInfo", kGet | kCall, {place});
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
    for (const WORD kind : {WORD{kGet}, WORD{kGet | kCall}, WORD{kCall}})
        for (const auto &[object, member] :
             {std::pair<IDispatch *, const wchar_t *>(formats.Get(), L"ColFormatInfo"), {collection, L"Item"}})
            EXPECT_EQ(CallByName(*object, member, kind, {Value(2)}).told,
                      "0x800A0009: Subscript out of range (KVHEADERS)");
}

} // namespace

} // namespace com_test
