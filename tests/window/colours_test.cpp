// The colours of the system, also when they change while the window is open.
#include "window/form_test.h"

#include <array>

namespace window_tests
{
namespace
{

using namespace editor::controls;

// Black, white and yellow, as a scheme of high contrast has them; put back at the end.
class HighContrast
{
public:
    HighContrast()
    {
        for (std::size_t i = 0; i < kParts.size(); ++i)
            m_before[i] = GetSysColor(kParts[i]);
        const std::array<COLORREF, 4> colours = {RGB(0, 0, 0), RGB(255, 255, 0), RGB(0, 0, 64), RGB(0, 255, 0)};
        SetSysColors(static_cast<int>(kParts.size()), kParts.data(), colours.data());
    }
    ~HighContrast() { SetSysColors(static_cast<int>(kParts.size()), kParts.data(), m_before.data()); }
    HighContrast(const HighContrast &) = delete;
    HighContrast &operator=(const HighContrast &) = delete;

private:
    static constexpr std::array<int, 4> kParts = {COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_BTNFACE, COLOR_BTNTEXT};
    std::array<COLORREF, 4> m_before{};
};

// The colour of most pixels of a control, and whether there is any of another.
COLORREF Ground(HWND window, COLORREF text, bool *hasText)
{
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    const HDC device = GetDC(window);
    RECT area;
    GetClientRect(window, &area);
    const COLORREF ground = GetPixel(device, area.right - 4, area.bottom - 4);
    *hasText = false;
    for (int y = 0; y < area.bottom && !*hasText; ++y)
        for (int x = 0; x < area.right && !*hasText; ++x)
            *hasText = GetPixel(device, x, y) == text;
    ReleaseDC(window, device);
    return ground;
}

using Colours = FormTest;

TEST_F(Colours, FollowTheSystemWhileTheWindowIsOpen)
{
    const Driver &driver = Open();
    driver.InWindow(
        [&]
        {
            form.Get<TabControl>("SSTab1").SetTab(1);
            const HighContrast contrast;
            for (const UINT message : {WM_SYSCOLORCHANGE, WM_THEMECHANGED, WM_SETTINGCHANGE})
                SendMessageW(driver.Form(), message, 0, 0);
            bool hasText = false;
            EXPECT_EQ(Ground(driver.Of("lvwFormats"), RGB(255, 255, 0), &hasText), RGB(0, 0, 0));
            EXPECT_TRUE(hasText) << "the names in the list";
            EXPECT_EQ(Ground(driver.Of("SSCheck1(0)"), RGB(0, 255, 0), &hasText), RGB(0, 0, 64));
            EXPECT_TRUE(hasText) << "the caption of the box";
            EXPECT_EQ(Ground(driver.Of("Frame1"), 0, &hasText), RGB(0, 0, 64));
            EXPECT_EQ(Ground(GetParent(driver.Of("Frame1")), 0, &hasText), RGB(0, 0, 64));
        });
}

} // namespace
} // namespace window_tests
