// Every member of every class, found by the type library: what it keeps, and what it makes of a hostile caller.
#include "member_calls.h"

#include "window_driver/watcher.h"

#include <ocidl.h>

#include <limits>
#include <span>
#include <thread>
#include <vector>

namespace com_test
{

namespace
{

TEST_F(Properties, KeepTheirValuesAndLeaveTheOthers)
{
    for (const PublicClass &known : kClasses)
    {
        SCOPED_TRACE(known.name);
        const auto object = Create(known.id);
        const std::vector<Property> properties = Of(*object.Get());
        std::vector<std::string> expected = Values(*object.Get());
        for (std::size_t i = 0; i < properties.size(); ++i)
        {
            const Property &property = properties[i];
            SCOPED_TRACE(property.name);
            EXPECT_EQ(expected[i], property.name == "PartitionID" && known.id == __uuidof(clsConfig) ? "-1"
                                   : property.type == VT_BSTR                                        ? "''"
                                   : property.type == VT_BOOL                                        ? "False"
                                                                                                     : "0");
            const Text text(std::wstring_view(L"M\u00e9ni\u00e8re \u03a9 \U0001F600 a\0b", 17));
            struct Case
            {
                LONG number;
                BSTR text;
                std::string shown;
            };
            std::vector<Case> cases = {{0, text.get(), "'" + Narrow(text.str()) + "'"}, {0, nullptr, "''"}};
            if (property.type == VT_I2)
                cases = {{32767, nullptr, "32767"}, {-32768, nullptr, "-32768"}};
            else if (property.type == VT_I4)
                cases = {{2147483647, nullptr, "2147483647"}, {-2147483647 - 1, nullptr, "-2147483648"}};
            else if (property.type == VT_BOOL) // whatever is not 0 is true
                cases = {{VARIANT_FALSE, nullptr, "False"}, {VARIANT_TRUE, nullptr, "True"}, {1, nullptr, "True"}};
            for (const Case &value : cases)
            {
                EXPECT_EQ(Set(*object.Get(), property, value.number, value.text), S_OK);
                expected[i] = value.shown;
                EXPECT_EQ(Values(*object.Get()), expected);
            }
        }
    }
}

// --- Hostile callers

// By every member of every class; what takes nothing needs a connection.
class HostileCallers : public Members
{
protected:
    void ExpectNullsRefused(bool isConnected)
    {
        for (const PublicClass &known : kClasses)
        {
            const auto object = Create(known.id);
            Visit(*object.Get(),
                  [&](const std::string &name, const FUNCDESC &function)
                  {
                      SCOPED_TRACE(std::string(known.name) + "." + name);
                      bool needed = false; // a place for a result, or a value by reference
                      for (int i = 0; i < function.cParams; ++i)
                      {
                          const TYPEDESC &type = function.lprgelemdescParam[i].tdesc;
                          needed = needed || (type.vt == VT_PTR && type.lptdesc->vt != VT_USERDEFINED);
                      }
                      const HRESULT result = CallWithNulls(*object.Get(), function);
                      const bool plain =
                          function.invkind == INVOKE_PROPERTYPUT && function.lprgelemdescParam[0].tdesc.vt != VT_PTR;
                      EXPECT_EQ(result == E_POINTER, needed) << std::hex << result;
                      EXPECT_EQ(result == S_OK, plain || (isConnected && function.cParams == 0)) << std::hex << result;
                      if (FAILED(result))
                          ExpectTold(result);
                  });
        }
    }
};

TEST_F(HostileCallers, RefuseNullPointers)
{
    ExpectNullsRefused(false);
}

TEST_F(HostileCallers, RefuseNullPointersWhileTheEditorIsOpen)
{
    support::TestDatabase database;
    database.Run("INSERT INTO System_partitions (partition_id, partition_name, lineage) VALUES (3, 'Clinic', '/')");
    const auto config = component.Create<_clsConfig, clsConfig>();
    SetUpHost(*config.Get(), database);
    int calls = 0;
    const window_driver::Watcher watcher({{}, // there is no INI file, which is told
                                          [&](HWND editor)
                                          {
                                              ++calls;
                                              ExpectNullsRefused(true);
                                              PostMessageW(editor, WM_CLOSE, 0, 0);
                                          }});
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(calls, 1);
    ExpectNullsRefused(true); // the connection stays open
}

TEST_F(Members, AnswerTheSameForEachWayToTheirInterfacesAndHaveNoOthers)
{
    for (const PublicClass &known : kClasses)
    {
        SCOPED_TRACE(known.name);
        const auto object = Create(known.id);
        ComPtr<IUnknown> identity;
        ASSERT_EQ(object.As(&identity), S_OK);
        const IID own[] = {IID_IUnknown, IID_IDispatch, known.interfaceId, IID_ISupportErrorInfo,
                           IID_IProvideClassInfo};
        for (const IID &from : own)
            for (const IID &to : own)
            {
                ComPtr<IUnknown> first, second, back;
                ASSERT_EQ(object->QueryInterface(from, reinterpret_cast<void **>(first.GetAddressOf())), S_OK);
                ASSERT_EQ(first->QueryInterface(to, reinterpret_cast<void **>(second.GetAddressOf())), S_OK);
                ASSERT_EQ(second.As(&back), S_OK);
                EXPECT_EQ(back.Get(), identity.Get());
            }
        identity.Reset();
        std::vector<IID> foreign = {IID_IPersist, IID_IMarshal, IID_IClassFactory, IID_NULL, known.id};
        for (const PublicClass &other : kClasses)
            if (&other != &known)
                foreign.push_back(other.interfaceId);
        for (const IID &id : foreign)
        {
            void *given = &foreign;
            EXPECT_EQ(object->QueryInterface(id, &given), E_NOINTERFACE);
            EXPECT_EQ(given, nullptr);
        }
        EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        object->AddRef();
        EXPECT_EQ(object->Release(), 1u);
    }
}

// Values of every type, plain and by reference, right and wrong.
class HostileValues
{
public:
    explicit HostileValues(IDispatch *object) : m_object(object)
    {
        m_array = SafeArrayCreateVector(VT_VARIANT, 0, 2);
        m_self = OnStack(VT_BYREF | VT_VARIANT, &m_self);
        m_toNothing = OnStack(VT_BYREF | VT_I4, nullptr);
        m_noNumber = OnStack(VT_R8, nullptr);
        m_noNumber.dblVal = std::numeric_limits<double>::quiet_NaN();
        VARIANT large = m_noNumber;
        large.dblVal = 1e300;
        m_values = {m_self, m_noNumber, large, Value::Missing()};
        for (const VARIANT *to : {&m_toNothing, &m_noNumber})
            m_values.push_back(OnStack(VT_BYREF | VT_VARIANT, to));
        for (const VARENUM type : {VT_DISPATCH, VT_UNKNOWN})
            m_values.push_back(OnStack(static_cast<VARTYPE>(type), object));
        m_values.push_back(OnStack(VT_BYREF | VT_DISPATCH, &m_object));
        m_values.push_back(OnStack(VT_ARRAY | VT_VARIANT, m_array));
        m_values.push_back(OnStack(VT_BYREF | VT_ARRAY | VT_VARIANT, &m_array));
        for (VARTYPE type = 0; type <= VT_UINT_PTR; ++type)
        {
            // VARIANTs of these types hold a null object, text or array, or zero.
            m_values.push_back(OnStack(type, nullptr));
            m_values.push_back(OnStack(static_cast<VARTYPE>(type | VT_BYREF), nullptr));
            m_values.push_back(OnStack(static_cast<VARTYPE>(type | VT_BYREF), m_zero));
            m_values.push_back(OnStack(static_cast<VARTYPE>(type | VT_BYREF | VT_ARRAY), m_zero));
        }
        for (const int type : {0x1000, 0x8000, 0xFFF, 0xFFFF})
            m_values.push_back(OnStack(static_cast<VARTYPE>(type), nullptr));
    }
    ~HostileValues() { SafeArrayDestroy(m_array); }
    HostileValues(const HostileValues &) = delete;
    HostileValues &operator=(const HostileValues &) = delete;

    const std::vector<VARIANT> &Get() const { return m_values; }

private:
    IDispatch *m_object;
    SAFEARRAY *m_array;
    VARIANT m_self;
    VARIANT m_toNothing;
    VARIANT m_noNumber;
    const LONGLONG m_zero[4] = {};
    std::vector<VARIANT> m_values;
};

// A call by IDispatch ends well, says what is wrong with the call, or tells an error of the component.
void ExpectAnswered(IDispatch &object, DISPID member, WORD flags, DISPPARAMS *arguments)
{
    Value result;
    EXCEPINFO exception = {};
    UINT bad = 0;
    const HRESULT called =
        object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, arguments, &result, &exception, &bad);
    if (called == DISP_E_EXCEPTION)
    {
        EXPECT_LT(exception.scode, 0);
        EXPECT_EQ(std::wstring(exception.bstrSource ? exception.bstrSource : L""), L"KVHEADERS");
        EXPECT_GT(SysStringLen(exception.bstrDescription), 0u);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
    }
    else
        EXPECT_TRUE(called == S_OK || HRESULT_FACILITY(called) == FACILITY_DISPATCH) << std::hex << called;
    object.AddRef();
    EXPECT_EQ(object.Release(), 1u) << "the call has kept a reference, or given one away";
}

constexpr WORD kKinds[] = {DISPATCH_METHOD | DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                           DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF, 0xFFFF};

// One member called with so many arguments of each value.
void ExpectAnyArgumentsAnswered(IDispatch &object, const HostileValues &values, DISPID member, UINT count)
{
    const std::size_t kinds = count > 2 ? 1 : std::size(kKinds); // methods alone take more than two
    for (const WORD kind : std::span(kKinds).first(kinds))
        for (const VARIANT &value : values.Get())
        {
            std::vector<VARIANT> arguments(count, value);
            DISPID put = DISPID_PROPERTYPUT;
            const bool named = count > 0 && (kind & DISPATCH_PROPERTYPUT);
            DISPPARAMS given = {arguments.data(), named ? &put : nullptr, count, named};
            ExpectAnswered(object, member, kind, &given);
            ASSERT_FALSE(testing::Test::HasFailure())
                << count << " arguments of type " << value.vt << ", kind " << kind;
        }
}

TEST_F(Members, AnswerCallsWithAnyArguments)
{
    for (const PublicClass &known : kClasses)
    {
        const auto object = Create(known.id);
        const HostileValues values(object.Get());
        for (DISPID member = -5; member <= 14; ++member)
        {
            SCOPED_TRACE(std::string(known.name) + " member " + std::to_string(member));
            for (const UINT count : {1u, 2u, 5u, 7u, 11u})
                ExpectAnyArgumentsAnswered(*object.Get(), values, member, count);
        }
    }
}

TEST_F(Members, AnswerCallsWithBrokenArguments)
{
    for (const PublicClass &known : kClasses)
    {
        const auto object = Create(known.id);
        VARIANT values[2] = {Value(1), Value(1)};
        DISPID names[] = {DISPID_PROPERTYPUT, 0};
        DISPID beyond[] = {0x7FFFFFFF, -1};
        DISPID same[] = {0, 0};
        DISPPARAMS broken[] = {{nullptr, nullptr, 1, 0}, {values, nullptr, 1, 1},    {values, names, 1, 2},
                               {nullptr, names, 0, 1},   {values, beyond, 2, 2},     {values, same, 2, 2},
                               {values, names, 2, 2},    {nullptr, nullptr, ~0u, 0}, {values, nullptr, 2, ~0u}};
        for (DISPID member = 0; member <= 15; ++member)
            for (const WORD kind : kKinds)
            {
                SCOPED_TRACE(std::string(known.name) + " member " + std::to_string(member));
                for (DISPPARAMS &given : broken)
                    ExpectAnswered(*object.Get(), member, kind, &given);
                ExpectAnswered(*object.Get(), member, kind, nullptr);
            }
    }
}

TEST_F(Members, RefuseCallsOfAnotherThread)
{
    for (const PublicClass &known : kClasses)
    {
        const auto object = Create(known.id);
        Visit(*object.Get(),
              [&](const std::string &name, const FUNCDESC &function)
              {
                  SCOPED_TRACE(std::string(known.name) + "." + name);
                  std::thread(
                      [&]
                      {
                          const HRESULT result = CallWithNulls(*object.Get(), function);
                          EXPECT_EQ(result, RPC_E_WRONG_THREAD);
                          ExpectTold(result);
                      })
                      .join();
              });
    }
}

// --- Callers that hold an object longer than what gave it to them, or go on when it has been taken out. The component
// under test overwrites the memory that it gives back.

class Outliving : public Properties
{
protected:
    Outliving() : Properties(L"KVHEADERS_failing.dll") {}

    // Every member answers as that of a new object does, and every value can be set and read.
    void ExpectAsNew(const ComPtr<IDispatch> &object)
    {
        ComPtr<IProvideClassInfo> provider;
        ComPtr<ITypeInfo> type;
        TYPEATTR *attributes = nullptr;
        ASSERT_EQ(object.As(&provider), S_OK);
        ASSERT_EQ(provider->GetClassInfo(&type), S_OK);
        provider.Reset();
        ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
        const auto fresh = Create(attributes->guid);
        type->ReleaseTypeAttr(attributes);
        Visit(*object.Get(), [&](const std::string &name, const FUNCDESC &function)
              { EXPECT_EQ(CallWithNulls(*object.Get(), function), CallWithNulls(*fresh.Get(), function)) << name; });
        const Text text(L"a text that is longer than a short text");
        for (const Property &property : Of(*object.Get()))
            for (IDispatch *const set : {object.Get(), fresh.Get()})
                EXPECT_EQ(Set(*set, property, 1, text.get()), S_OK) << property.name;
        EXPECT_EQ(Values(*object.Get()), Values(*fresh.Get()));
        object->AddRef();
        EXPECT_EQ(object->Release(), 1u) << "nobody else holds it";
    }
};

TEST_F(Outliving, WhatAPropertyGaveAnswersAsNewWhenTheObjectIsGone)
{
    int given = 0;
    for (const PublicClass &known : kClasses)
    {
        auto owner = Create(known.id);
        std::vector<std::pair<std::string, ComPtr<IDispatch>>> objects;
        Visit(*owner.Get(),
              [&](const std::string &name, const FUNCDESC &function)
              {
                  const Outcome outcome = CallByName(*owner.Get(), Wide(name), kGet);
                  if (const VARIANT value = outcome.value;
                      function.invkind == INVOKE_PROPERTYGET && value.vt == VT_DISPATCH)
                      objects.emplace_back(name, value.pdispVal);
              });
        owner.Reset();
        for (const auto &[name, object] : objects)
        {
            SCOPED_TRACE(std::string(known.name) + "." + name);
            ++given;
            ExpectAsNew(object);
        }
    }
    EXPECT_EQ(given, 6) << "four collections, and the formats and headings of a partition";
}

TEST_F(Outliving, AConfigurationAnswersAsNewWhenTheFirstIsGone)
{
    auto first = Create(__uuidof(clsConfig));
    const auto second = Create(__uuidof(clsConfig));
    first.Reset();
    ExpectAsNew(second);
}

TEST_F(Outliving, RecordsAndEnumerationsAnswerWhenTheirCollectionHasBeenClearedAndIsGone)
{
    for (const CLSID &id : {__uuidof(clsFormats), __uuidof(clsHeadings), __uuidof(clsSettings), __uuidof(clsPartition)})
        for (const bool cleared : {false, true})
        {
            auto collection = component.Create<_Collection, Collection>();
            const VARIANT none = Value::Missing();
            for (int i = 0; i < 2; ++i)
                EXPECT_EQ(collection->Add(Value(Create(id).Get()), none, none, none), S_OK);
            Value first;
            ComPtr<IUnknown> unknown;
            ComPtr<IEnumVARIANT> elements, copy;
            EXPECT_EQ(collection->get_Item(Value(1), &first), S_OK);
            ASSERT_EQ(collection->get__NewEnum(&unknown), S_OK);
            ASSERT_EQ(unknown.As(&elements), S_OK);
            while (cleared && collection->Remove(Value(1)) == S_OK)
                ;
            collection.Reset();
            EXPECT_EQ(elements->Clone(&copy), S_OK);
            for (IEnumVARIANT *const each : {elements.Get(), copy.Get()})
            {
                Value element;
                EXPECT_EQ(each->Next(1, &element, nullptr), cleared ? S_FALSE : S_OK);
                EXPECT_EQ(element->vt == VT_DISPATCH ? element->pdispVal : nullptr,
                          cleared ? nullptr : first->pdispVal);
                EXPECT_EQ(each->Skip(1), cleared ? S_FALSE : S_OK);
                EXPECT_EQ(each->Skip(1), S_FALSE);
                EXPECT_EQ(each->Reset(), S_OK);
            }
            const ComPtr<IDispatch> record = first->pdispVal;
            VariantClear(&first);
            ExpectAsNew(record);
        }
}

} // namespace

} // namespace com_test
