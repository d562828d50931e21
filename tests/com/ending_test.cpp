// A host that ends, or takes windows away, while the editor is open in it: no crash, and nothing hangs.
#include "component.h"

#include "support/child.h"
#include "support/test_database.h"
#include "window_driver/driver.h"
#include "window_driver/watcher.h"

#include <cctype>
#include <cstdlib>
#include <string>

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

class Ending : public testing::TestWithParam<const char *>
{
};

TEST_P(Ending, IsClean)
{
    support::TestDatabase database;
    database.Run("INSERT INTO System_partitions (partition_id, partition_name, lineage) VALUES (1, 'One', '/')");
    SetEnvironmentVariableA("KV_END", GetParam());
    SetEnvironmentVariableA("KV_END_DATABASE", database.DatabaseName().c_str());
    EXPECT_EQ(support::RunTestsInChild(L"DISABLED_Host.Ends"), kGoodEnd);
}

INSTANTIATE_TEST_SUITE_P(Host, Ending,
                         testing::Values("exit", "exit in another thread", "exit with a question open", "quit",
                                         "destroy the editor", "destroy the host's window"),
                         [](const testing::TestParamInfo<const char *> &info)
                         {
                             std::string name = info.param;
                             for (char &letter : name)
                                 if (!std::isalnum(static_cast<unsigned char>(letter)))
                                     letter = '_';
                             return name;
                         });

} // namespace

} // namespace com_test
