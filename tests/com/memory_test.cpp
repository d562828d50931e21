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

class Memory : public Properties
{
protected:
    Memory() : Properties(L"KVHEADERS_failing.dll") {}

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

// What a member takes: 1 for numbers, truth values and positions, a text that is not short, and `object` for an object.
std::vector<VARIANT> ArgumentsFor(const FUNCDESC &function, const VARIANT &text, const VARIANT &object)
{
    std::vector<VARIANT> arguments;
    for (int i = 0; i < function.cParams; ++i)
    {
        const ELEMDESC &parameter = function.lprgelemdescParam[i];
        const TYPEDESC &type = parameter.tdesc.vt == VT_PTR ? *parameter.tdesc.lptdesc : parameter.tdesc;
        const bool isObject = type.vt == VT_PTR || type.vt == VT_USERDEFINED;
        if (parameter.paramdesc.wParamFlags & PARAMFLAG_FIN && !(parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT))
            arguments.push_back(isObject ? object : type.vt == VT_BSTR ? text : VARIANT(Value(1)));
    }
    return arguments;
}

TEST_F(Memory, RunsOutInEveryMember)
{
    const Value text(L"a text that is longer than a short text");
    int places = 0;
    for (const PublicClass &known : kClasses)
        Visit(*Create(known.id).Get(),
              [&](const std::string &name, const FUNCDESC &function)
              {
                  if (name == "ShowForm" || HasFailure())
                      return;
                  SCOPED_TRACE(std::string(known.name) + "." + name);
                  const auto object = Create(known.id);
                  ComPtr<_Collection> collection;
                  object.As(&collection);
                  const auto element =
                      Create(known.id == __uuidof(colSettings) ? __uuidof(clsSettings) : __uuidof(clsHeadings));
                  // An object for the member: the one that it has, or an element of its collection.
                  const Outcome own = CallByName(*object.Get(), Wide(name), kGet);
                  const bool has = VARIANT(own.value).vt == VT_DISPATCH;
                  const Value argument(has ? VARIANT(own.value).pdispVal : element.Get());
                  std::vector<VARIANT> arguments = ArgumentsFor(function, text, argument);
                  if (name == "Add")
                      arguments = {Value(element.Get()), text};
                  std::vector<std::string> before;
                  LONG elements = 0, count = 0;
                  const auto prepare = [&]
                  {
                      while (collection && collection->Remove(Value(1)) == S_OK)
                          ;
                      if (collection && name != "Add")
                      {
                          EXPECT_EQ(collection->Add(Value(element.Get()), text, Value::Missing(), Value::Missing()),
                                    S_OK);
                      }
                      EXPECT_TRUE(!collection || collection->get_Count(&elements) == S_OK);
                  };
                  places += CountDown(
                      [&] {
                          return CallByName(*object.Get(), Wide(name), static_cast<WORD>(function.invkind), arguments)
                              .error;
                      },
                      [&]
                      {
                          if (before.empty())
                              before = Values(*object.Get());
                          EXPECT_EQ(Values(*object.Get()), before);
                          EXPECT_TRUE(!collection || collection->get_Count(&count) == S_OK);
                          EXPECT_EQ(count, elements) << "it is as it was";
                      },
                      prepare);
                  collection.Reset();
                  object->AddRef();
                  EXPECT_EQ(object->Release(), 1u);
              });
    std::printf("%d allocations\n", places);
    EXPECT_GT(places, 200);
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
        {"an error object", [&] { return CallByName(*format.Get(), L"FormatID", kPut, {text}).error; }},
        {"the item of a collection that it gives",
         [&] { return CallByName(*formats.Get(), L"ColFormatInfo", kGet, {Value(1)}).error; }},
        {"the elements of an enumeration",
         [&]
         {
             Value element;
             elements->Reset();
             return elements->Next(1, &element, nullptr);
         }},
        {"the copy of an enumeration",
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
    for (int place = 1;; place += Stride(97))
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
    for (int place = 1; fired; place += Stride(9))
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
