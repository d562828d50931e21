// Hosts in processes of their own: one that ends, or takes windows away, while the editor is open in it - no crash, and
// nothing hangs - and one with two apartments.
#include "component.h"
#include "user.h"

#include "support/child.h"
#include "support/test_database.h"
#include "window_driver/driver.h"
#include "window_driver/watcher.h"

#include <atomic>
#include <cstdlib>
#include <set>
#include <string>
#include <thread>

namespace com_test
{

namespace
{

constexpr UINT kGoodEnd = 7;

// --- The host, which is this program once more: it opens the editor and ends in the way that KV_END names.

HWND hostWindow = nullptr;

DWORD WINAPI EndInThread(void *)
{
    ExitProcess(kGoodEnd);
}

void End(const std::string &how, HWND editor)
{
    if (how == "exit")
        ExitProcess(kGoodEnd);
    else if (how == "exit in another thread")
        CloseHandle(CreateThread(nullptr, 0, EndInThread, nullptr, 0, nullptr));
    else if (how == "exit with a question open")
    {
        // An edit makes for the question.
        window_driver::Driver(editor).Send("chkTagKnown", BM_CLICK);
        PostMessageW(editor, WM_CLOSE, 0, 0);
    }
    else if (how == "quit")
        PostQuitMessage(0);
    else if (how == "destroy the editor")
        DestroyWindow(editor);
    else
    {
        DestroyWindow(hostWindow);
        PostMessageW(editor, WM_CLOSE, 0, 0);
    }
}

TEST(DISABLED_Host, Ends)
{
    const Component component;
    hostWindow = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                 nullptr, nullptr, nullptr);
    const auto config = component.Create<_clsConfig, clsConfig>();
    config->put_SqlServerName(Text(L"embedded").get());
    config->put_SqlDbName(Text(Wide(std::getenv("KV_END_DATABASE"))).get());
    config->put_PartitionID(1);
    const window_driver::Watcher watcher({[](HWND box)
                                          {
                                              if (window_driver::TextOf(box) == "Cancel Changes")
                                                  ExitProcess(kGoodEnd);
                                              return IDOK;
                                          },
                                          [](HWND editor) { End(std::getenv("KV_END"), editor); }});
    unsigned char result = 9;
    config->ShowForm(&result);
    ExitProcess(result == 0 && !window_driver::FindEditor() ? kGoodEnd : 1);
}

// --- Who starts it.

TEST(Ending, IsCleanHoweverTheHostEnds)
{
    for (const char *const how : {"exit", "exit in another thread", "exit with a question open", "quit",
                                  "destroy the editor", "destroy the host's window"})
    {
        support::TestDatabase database;
        database.Run("INSERT INTO System_partitions (partition_id, partition_name, lineage) VALUES (1, 'One', '/')");
        SetEnvironmentVariableA("KV_END", how);
        SetEnvironmentVariableA("KV_END_DATABASE", database.DatabaseName().c_str());
        EXPECT_EQ(support::RunTestsInChild(L"DISABLED_Host.Ends"), kGoodEnd) << how;
    }
}

// --- A host with two apartments: the objects of both live in the main one, and the editor with them.

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
