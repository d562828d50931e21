// Every allocation of every member fails once: the host is told, nothing has changed, and nothing is left behind.
#include "member_calls.h"

#include "window_driver/driver.h"
#include "window_driver/watcher.h"

#include <ocidl.h>

#include <cstdio>
#include <cstdlib>

namespace com_test
{

namespace
{

constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x800A0007);

// The values behind a member's arguments, which the member takes, and what it has given.
class Arguments
{
public:
    // `self` is passed where a record, a collection or an item is expected.
    Arguments(const FUNCDESC &function, IUnknown *self)
        : m_storage(static_cast<std::size_t>(function.cParams)), m_places(m_storage.size())
    {
        for (std::size_t i = 0; i < m_storage.size(); ++i)
        {
            const ELEMDESC &parameter = function.lprgelemdescParam[i];
            const bool given = parameter.paramdesc.wParamFlags & PARAMFLAG_FIN;
            VARTYPE type = parameter.tdesc.vt;
            const bool byReference = type == VT_PTR && parameter.tdesc.lptdesc->vt != VT_USERDEFINED;
            if (byReference)
                type = parameter.tdesc.lptdesc->vt;
            VARIANT &value = m_storage[i];
            VariantInit(&value);
            if (given)
                Fill(value, type, i, self);
            else
                m_results.push_back({type, &value});
            if (byReference)
            {
                m_places[i] = type == VT_VARIANT ? static_cast<void *>(&value) : &value.byref;
                m_stack.push_back(OnStack(VT_I4, m_places[i]));
            }
            else if (type == VT_VARIANT) // four places on the stack
                for (std::size_t word = 0; word < 4; ++word)
                    m_stack.push_back(OnStack(VT_I4, reinterpret_cast<void *const *>(&value)[word]));
            else
                m_stack.push_back(OnStack(VT_I4, value.byref));
        }
    }
    ~Arguments()
    {
        for (const auto &[type, value] : m_results)
            if (type == VT_BSTR)
                SysFreeString(value->bstrVal);
            else if (type == VT_VARIANT)
                VariantClear(value);
            else if ((type == VT_PTR || type == VT_UNKNOWN) && value->punkVal)
                value->punkVal->Release();
    }
    Arguments(const Arguments &) = delete;
    Arguments &operator=(const Arguments &) = delete;

    const std::vector<VARIANTARG> &Stack() const { return m_stack; }

private:
    void Fill(VARIANT &value, VARTYPE type, std::size_t index, IUnknown *self)
    {
        if (type == VT_BSTR)
            value.bstrVal = m_text.get();
        else if (type == VT_PTR)
            value.punkVal = self;
        else if (type != VT_VARIANT)
            value.lVal = 1;
        else if (index == 0 && self) // of Add: the item
        {
            value.vt = VT_UNKNOWN;
            value.punkVal = self;
        }
        else if (index > 1)
            value = Value::Missing();
        else
        {
            value.vt = self ? VT_BSTR : VT_I4; // a key, or a position
            self ? void(value.bstrVal = m_text.get()) : void(value.lVal = 1);
        }
    }

    const Text m_text{L"a text that is longer than a short text"};
    std::vector<VARIANT> m_storage;
    std::vector<void *> m_places;
    std::vector<std::pair<VARTYPE, VARIANT *>> m_results;
    std::vector<VARIANTARG> m_stack;
};

class Memory : public Properties
{
protected:
    Memory() : Properties(L"KVHEADERS_failing.dll") {}

    std::vector<std::string> Values(IDispatch &object)
    {
        std::vector<std::string> values;
        for (const Property &property : Of(object))
            values.push_back(Show(property, object));
        return values;
    }

    // Lets the first allocation of an act fail, then the second and so on until the act needs no more. `act` gives its
    // result, `prepare` stands before each and `check` looks at what has become of it.
    int CountDown(
        const std::function<HRESULT()> &act, const std::function<void()> &check = [] {},
        const std::function<void()> &prepare = [] {})
    {
        prepare();
        const HRESULT expected = act();
        SetErrorInfo(0, nullptr);
        for (int place = 1;; ++place)
        {
            SCOPED_TRACE("allocation " + std::to_string(place));
            prepare();
            const long before = liveAllocations();
            failAllocation(place);
            const HRESULT result = act();
            if (!failAllocation(0))
                return place - 1;
            EXPECT_TRUE(result == E_OUTOFMEMORY || result == kOutOfMemory || (FAILED(expected) && result == expected))
                << std::hex << result;
            SetErrorInfo(0, nullptr);
            EXPECT_EQ(liveAllocations(), before) << "something was left behind";
            check();
            if (HasFailure())
                return place;
        }
    }

    const std::function<bool(long)> failAllocation = component.EntryPoint<bool (*)(long)>("FailAllocation");
    const std::function<long()> liveAllocations = component.EntryPoint<long (*)()>("LiveAllocations");
};

// What a member takes in the place of an object: one of the class that its collection holds, or its own getter's.
ComPtr<IUnknown> ObjectFor(const std::string &className, const FUNCDESC &function, IDispatch &object,
                           const Component &component)
{
    if (className == "Collection")
        return component.Create<IUnknown, clsHeadings>();
    if (className == "colSettings" && function.invkind == INVOKE_FUNC)
        return component.Create<IUnknown, clsSettings>();
    if (function.invkind != INVOKE_PROPERTYPUTREF && function.invkind != INVOKE_PROPERTYPUT)
        return nullptr;
    Value current;
    DISPPARAMS none = {};
    object.Invoke(function.memid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &current, nullptr,
                  nullptr);
    return current->vt == VT_DISPATCH ? current->pdispVal : nullptr;
}

TEST_F(Memory, RunsOutInEveryMember)
{
    const Value kKey(L"a text that is longer than a short text");
    int places = 0;
    for (const PublicClass &known : kClasses)
        Visit(*Create(known.id).Get(),
              [&](const std::string &name, const FUNCDESC &function)
              {
                  if (name == "ShowForm" || HasFailure())
                      return;
                  SCOPED_TRACE(std::string(known.name) + "." + name);
                  const auto object = Create(known.id);
                  const ComPtr<IUnknown> argument = ObjectFor(known.name, function, *object.Get(), component);
                  std::vector<std::string> before;
                  LONG elements = 0;
                  const auto prepare = [&]
                  {
                      ComPtr<_Collection> collection;
                      if (FAILED(object.As(&collection)))
                          return;
                      while (collection->Remove(Value(1)) == S_OK)
                          ;
                      if (name != "Add")
                      {
                          EXPECT_EQ(collection->Add(Value(component.Create<_clsHeadings, clsHeadings>().Get()), kKey,
                                                    Value::Missing(), Value::Missing()),
                                    S_OK);
                      }
                      EXPECT_EQ(collection->get_Count(&elements), S_OK);
                  };
                  places += CountDown(
                      [&]
                      {
                          const Arguments arguments(function, argument.Get());
                          return CallDirectly(*object.Get(), function, arguments.Stack());
                      },
                      [&]
                      {
                          if (before.empty())
                              before = Values(*object.Get());
                          EXPECT_EQ(Values(*object.Get()), before);
                          ComPtr<_Collection> collection;
                          LONG count = elements;
                          if (SUCCEEDED(object.As(&collection)))
                          {
                              EXPECT_EQ(collection->get_Count(&count), S_OK);
                          }
                          EXPECT_EQ(count, elements) << "it is as it was";
                          collection.Reset();
                          object->AddRef();
                          EXPECT_EQ(object->Release(), 1u);
                      },
                      prepare);
              });
    std::printf("%d allocations\n", places);
    EXPECT_GT(places, 80);
}

TEST_F(Memory, RunsOutInLateCallsAndInWhatMakesObjects)
{
    const auto format = component.Create<_clsFormats, clsFormats>();
    const auto formats = component.Create<_colFormats, colFormats>();
    ComPtr<_Collection> collection;
    ASSERT_EQ(formats->get_ColFormatInfo(&collection), S_OK);
    ASSERT_EQ(collection->Add(Value(format.Get()), Value::Missing(), Value::Missing(), Value::Missing()), S_OK);
    ComPtr<IUnknown> unknown;
    ComPtr<IEnumVARIANT> elements;
    ASSERT_EQ(collection->get__NewEnum(&unknown), S_OK);
    ASSERT_EQ(unknown.As(&elements), S_OK);
    const auto invoke = [&](IDispatch &object, std::wstring name, WORD kind, VARIANT argument)
    {
        LPOLESTR text = name.data();
        DISPID member = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
        if (const HRESULT result = object.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &member);
            FAILED(result))
            return result;
        DISPPARAMS arguments = {&argument, kind == DISPATCH_PROPERTYPUT ? &put : nullptr, 1,
                                kind == DISPATCH_PROPERTYPUT};
        Value value;
        EXCEPINFO exception = {};
        const HRESULT result =
            object.Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments, &value, &exception, nullptr);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        return result == DISP_E_EXCEPTION ? exception.scode : result;
    };
    const Value text(L"a name that is longer than a short text");
    const std::pair<const char *, std::function<HRESULT()>> acts[] = {
        {"a class object and an object",
         [&]
         {
             ComPtr<IClassFactory> factory;
             ComPtr<IDispatch> object;
             const HRESULT result = component.GetClassObject(__uuidof(clsPartition), IID_PPV_ARGS(&factory));
             return FAILED(result) ? result : factory->CreateInstance(nullptr, IID_PPV_ARGS(&object));
         }},
        {"an error object", [&] { return invoke(*format.Get(), L"FormatID", DISPATCH_PROPERTYPUT, text); }},
        {"a property by name", [&] { return invoke(*format.Get(), L"FormatName", DISPATCH_PROPERTYPUT, text); }},
        {"an item by name", [&] { return invoke(*formats.Get(), L"Item", DISPATCH_PROPERTYGET, Value(1)); }},
        {"the item of a collection that it gives",
         [&] { return invoke(*formats.Get(), L"ColFormatInfo", DISPATCH_PROPERTYGET, Value(1)); }},
        {"an enumeration",
         [&]
         {
             ComPtr<IUnknown> another;
             return collection->get__NewEnum(&another);
         }},
        {"its elements",
         [&]
         {
             Value element;
             elements->Reset();
             return elements->Next(1, &element, nullptr);
         }},
        {"its copy",
         [&]
         {
             ComPtr<IEnumVARIANT> copy;
             return elements->Clone(&copy);
         }},
        {"type information",
         [&]
         {
             ComPtr<IProvideClassInfo> provider;
             ComPtr<ITypeInfo> type;
             const HRESULT result = format.As(&provider);
             return FAILED(result) ? result : provider->GetClassInfo(&type);
         }},
    };
    for (const auto &[name, act] : acts)
    {
        SCOPED_TRACE(name);
        std::printf("%s: %d allocations\n", name, CountDown(act));
    }
}

// A host opens the editor, and a user works in it: whatever the memory does, both live on, and what the window shows at
// last is what a Save stores.
class MemoryOfTheEditor : public Memory
{
protected:
    MemoryOfTheEditor()
    {
        database.Run(R"(
INSERT INTO System_partitions (partition_id, partition_name, lineage) VALUES (3, 'Lakeside', '/')
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, 'Group', '0', 3)
INSERT INTO Report_header_formats VALUES (1, 'A format with quite a long name', 0, 0, 1, 0, 0, 0, 0, 3)
INSERT INTO Report_headers VALUES (7, 'A HEADING WITH QUITE A LONG NAME', 3))");
        SetUpHost(*config.Get(), database);
    }

    // Calls ShowForm, lets `user` act and closes the editor; message boxes are answered with Yes or OK. Gives the
    // result.
    HRESULT Show(const std::function<void(const window_driver::Driver &)> &user)
    {
        const window_driver::Watcher watcher({[](HWND box) { return GetDlgItem(box, IDYES) ? IDYES : IDOK; },
                                              [&](HWND editor)
                                              {
                                                  user(window_driver::Driver(editor));
                                                  PostMessageW(editor, WM_CLOSE, 0, 0);
                                              }});
        unsigned char result = 9;
        return config->ShowForm(&result);
    }

    support::TestDatabase database;
    const ComPtr<_clsConfig> config = component.Create<_clsConfig, clsConfig>();
};

// How far apart the places are: there are thousands.
int Stride(int otherwise)
{
    const char *const asked = std::getenv("KV_STRIDE");
    return asked ? std::atoi(asked) : otherwise;
}

TEST_F(MemoryOfTheEditor, RunsOutWhileItOpens)
{
    Show([](const auto &) {});
    int places = 0, opened = 0;
    for (int place = 1;; place += Stride(61))
    {
        SCOPED_TRACE("allocation " + std::to_string(place));
        bool fired = false, open = false;
        failAllocation(place);
        const HRESULT result = Show(
            [&](const auto &)
            {
                fired = failAllocation(0);
                open = true;
            });
        if (!open)
            fired = failAllocation(0);
        if (!fired)
            break;
        ++places;
        opened += open;
        EXPECT_TRUE(open || result == S_OK || result == E_OUTOFMEMORY || result == kOutOfMemory) << std::hex << result;
        EXPECT_EQ(window_driver::FindEditor(), nullptr);
        bool again = false;
        EXPECT_EQ(Show([&](const auto &) { again = true; }), S_OK);
        ASSERT_TRUE(again) << "the editor opens when there is memory again";
    }
    std::printf("%d places, the editor opened at %d of them\n", places, opened);
    EXPECT_GT(places, 3);
}

TEST_F(MemoryOfTheEditor, RunsOutWhileAUserWorks)
{
    int places = 0, shown = 0;
    bool fired = true;
    for (int place = 1; fired; place += Stride(5))
    {
        SCOPED_TRACE("allocation " + std::to_string(place));
        std::string format, heading;
        bool known = false, carriage = false;
        const HRESULT result = Show(
            [&](const window_driver::Driver &driver)
            {
                driver.Send("chkTagKnown", BM_CLICK);
                known = driver.Checked("chkTagKnown");
                failAllocation(place);
                driver.ClickTab(1);
                driver.Send("SSCheck1(1)", BM_CLICK);
                driver.Focus("lvwFormats");
                window_driver::SendKey(driver.Of("lvwFormats"), VK_F2);
                if (const HWND field = driver.LabelField("lvwFormats"))
                    window_driver::SendLabel(field, "Format " + std::to_string(place) + " with another long name");
                driver.ClickTab(2);
                driver.Focus("lvwHeadings");
                window_driver::SendKey(driver.Of("lvwHeadings"), VK_F2);
                if (const HWND field = driver.LabelField("lvwHeadings"))
                    window_driver::SendLabel(field, "HEADING " + std::to_string(place) + " WITH ANOTHER LONG NAME");
                fired = failAllocation(0);
                // A label whose field the system has closed is left by a message.
                for (MSG message; PeekMessageW(&message, nullptr, WM_APP, 0xBFFF, PM_REMOVE);)
                    DispatchMessageW(&message);
                EXPECT_EQ(driver.Checked("chkTagKnown"), known) << "what was edited before";
                carriage = driver.Checked("SSCheck1(1)");
                format = driver.Cell("lvwFormats", 0);
                heading = driver.Cell("lvwHeadings", 0);
                driver.Send("btnSave", BM_CLICK);
            });
        EXPECT_EQ(result, S_OK);
        // A list that could not be filled shows nothing, which is no edit.
        if (!format.empty())
        {
            EXPECT_EQ(database.Query("SELECT format_name, insert_carriage_return_after FROM Report_header_formats"),
                      std::vector<std::string>{format + " | " + (carriage ? "1" : "0")});
        }
        if (!heading.empty())
        {
            EXPECT_EQ(database.Query("SELECT heading FROM Report_headers"), std::vector<std::string>{heading});
        }
        shown += !format.empty() && !heading.empty();
        EXPECT_EQ(database.Query("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings'"),
                  std::vector<std::string>{known ? "True" : "False"});
        ++places;
        if (HasFailure())
            break;
    }
    std::printf("%d places, both lists shown at %d of them\n", places, shown);
    EXPECT_GT(shown, places / 2);
}

} // namespace

} // namespace com_test
