// A host with two apartments: the objects of both live in the main one, and the editor with them.
#include "component.h"
#include "user.h"

#include "support/child.h"
#include "support/test_database.h"

#include <atomic>
#include <set>
#include <thread>

namespace com_test
{

namespace
{

// The classes of the windows that are activated in the main thread.
std::set<std::wstring> activatedHere;

LRESULT CALLBACK NoteActivation(int code, WPARAM window, LPARAM parameter)
{
    wchar_t className[64] = L"";
    if (code == HCBT_ACTIVATE && GetClassNameW(reinterpret_cast<HWND>(window), className, 64) > 0)
        activatedHere.insert(className);
    return CallNextHookEx(nullptr, code, window, parameter);
}

// What the second apartment does: bound early, its calls go through the type library's marshaling.
void UseFromSecondApartment(const support::TestDatabase &database)
{
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    {
        ComPtr<_clsConfig> config;
        ASSERT_EQ(CoCreateInstance(__uuidof(clsConfig), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&config)), S_OK);
        ComPtr<IUnknown> own; // known inside the component alone: a proxy does not have it
        constexpr IID kOwnObject = {0x601e700e, 0xd9cc, 0x4efc, {0xa2, 0xe4, 0x41, 0x01, 0x7a, 0x28, 0xa4, 0x12}};
        EXPECT_EQ(config->QueryInterface(kOwnObject, reinterpret_cast<void **>(own.GetAddressOf())), E_NOINTERFACE);

        unsigned char result = 9;
        EXPECT_EQ(config->put_SqlServerName(Text(Wide(database.ServerName())).get()), S_OK);
        EXPECT_EQ(config->put_SqlDbName(Text(L"/no/such/file").get()), S_OK);
        EXPECT_EQ(config->ShowForm(&result), S_OK);
        EXPECT_EQ(result, 0);
        result = 9;
        EXPECT_EQ(config->put_SqlDbName(Text(Wide(database.DatabaseName())).get()), S_OK);
        EXPECT_EQ(config->put_PartitionID(3), S_OK);
        EXPECT_EQ(config->ShowForm(&result), S_OK);
        EXPECT_EQ(result, 0);

        // Records, errors and objects as arguments cross the border too.
        ComPtr<_colFormats> formats;
        ComPtr<_clsFormats> format;
        ComPtr<_clsFormats> back;
        ComPtr<_Collection> collection;
        ASSERT_EQ(CoCreateInstance(__uuidof(colFormats), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&formats)), S_OK);
        ASSERT_EQ(CoCreateInstance(__uuidof(clsFormats), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&format)), S_OK);
        ASSERT_EQ(formats->get_ColFormatInfo(&collection), S_OK);
        const VARIANT none = Value::Missing();
        EXPECT_EQ(collection->Add(Value(format.Get()), none, none, none), S_OK);
        EXPECT_EQ(formats->get_Item(&Value(1), &back), S_OK);
        EXPECT_EQ(back.Get(), format.Get());
        EXPECT_EQ(collection->Remove(Value(7)), static_cast<HRESULT>(0x800A0009));
    }
    CoUninitialize();
}

// In a process of its own: what the system keeps of a second apartment is not for the other tests.
TEST(DISABLED_Apartments, ASecondOneWorksThroughTheMainOne)
{
    support::TestDatabase database;
    database.Run("INSERT INTO System_partitions (partition_id, partition_name, lineage) VALUES (3, 'Lakeside', '/')");
    const Registered registered;
    const DWORD mainThread = GetCurrentThreadId();
    const HHOOK hook = SetWindowsHookExW(WH_CBT, NoteActivation, nullptr, mainThread);
    User user(GetCurrentProcessId(), 200);
    std::atomic<bool> ended = false;
    std::thread second(
        [&]
        {
            UseFromSecondApartment(database);
            ended = true;
            PostThreadMessageW(mainThread, WM_NULL, 0, 0);
        });
    // As a host's main thread does.
    MSG message;
    while (!ended && GetMessageW(&message, nullptr, 0, 0))
        DispatchMessageW(&message);
    second.join();
    UnhookWindowsHookEx(hook);
    const std::vector<std::string> seen = user.Leave();
    ASSERT_EQ(seen.size(), 3u) << "two boxes for the first call, the editor for the second";
    EXPECT_EQ(seen.back(), "window: Speech Recognition Headings Editor");
    EXPECT_EQ(activatedHere.count(L"KVHEADERS.Form"), 1u);
    EXPECT_EQ(activatedHere.count(L"#32770"), 1u);
}

TEST(Apartments, ASecondOneWorksThroughTheMainOne)
{
    EXPECT_EQ(support::RunTestsInChild(L"DISABLED_Apartments.*"), 0u) << "what has failed stands above";
}

} // namespace

} // namespace com_test
