// What the component shows looks alike in every host: also its message boxes, in a host without themed controls.
#include "component.h"

#include <commctrl.h>

#include <thread>
#include <vector>

namespace com_test
{

namespace
{

// Only a button of the themed controls knows the size that would suit it.
bool Themed(HWND button)
{
    SIZE size{};
    return SendMessageW(button, BCM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&size)) != 0;
}

TEST_F(ComponentTest, ItsMessageBoxesHaveThemedButtons)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    EXPECT_EQ(config->put_SqlServerName(Text(L"embedded").get()), S_OK);
    EXPECT_EQ(config->put_SqlDbName(Text(L"/no/such/file").get()), S_OK);
    // What the driver says, and what that means.
    std::vector<bool> themed;
    std::thread person(
        [&]
        {
            for (const wchar_t *const title : {L"KVHEADERS", L"Connection Error"})
            {
                HWND box = nullptr;
                while (!box || !IsWindowVisible(box))
                {
                    Sleep(10);
                    box = FindWindowW(L"#32770", title);
                }
                themed.push_back(Themed(FindWindowExW(box, nullptr, L"Button", nullptr)));
                SendMessageW(box, WM_COMMAND, IDOK, 0);
            }
        });
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    person.join();
    EXPECT_EQ(themed, std::vector<bool>({true, true}));

    const HWND button = CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(Themed(button)) << "the host's own windows stay as they are";
    DestroyWindow(button);
}

} // namespace

} // namespace com_test
