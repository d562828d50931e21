// What the component shows looks alike in every host: also its message boxes, in a host without themed controls.
#include "component.h"

#include "window_driver/watcher.h"

#include <commctrl.h>

#include <utility>
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
    std::vector<std::pair<std::string, bool>> themed;
    window_driver::Watcher watcher(GetCurrentProcessId(),
                                   {[&](HWND box)
                                    {
                                        themed.emplace_back(window_driver::TextOf(box),
                                                            Themed(FindWindowExW(box, nullptr, L"Button", nullptr)));
                                        return IDOK;
                                    },
                                    {}});
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    watcher.End();
    EXPECT_EQ(themed, (std::vector<std::pair<std::string, bool>>{{"KVHEADERS", true}, {"Connection Error", true}}));

    const HWND button = CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(Themed(button)) << "the host's own windows stay as they are";
    DestroyWindow(button);
}

} // namespace

} // namespace com_test
