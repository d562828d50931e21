// The real window against its design.
#include "platform/windows/wide.h"
#include "support/design.h"
#include "window/form_test.h"
#include "window/scale.h"

#include <commctrl.h>
#include <oleacc.h>
#include <oleauto.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <utility>

namespace window_tests
{
namespace
{

using namespace editor::controls;
using support::DesignedControl;
using support::kDesign;

const std::map<Kind, std::string> kWindowClasses = {{Kind::Label, "Static"},
                                                    {Kind::ComboBox, "ComboBox"},
                                                    {Kind::TabControl, "SysTabControl32"},
                                                    {Kind::Button, "Button"},
                                                    {Kind::CheckBox, "Button"},
                                                    {Kind::ListView, "SysListView32"},
                                                    {Kind::Frame, "KVHEADERS.Container"},
                                                    {Kind::Panel, "KVHEADERS.Container"}};

RECT OnScreen(HWND window)
{
    RECT place;
    GetWindowRect(window, &place);
    return place;
}

// Places count from here.
POINT OriginOf(const DesignedControl &design, const Driver &driver)
{
    POINT origin{0, 0};
    if (design.container.empty())
    {
        ClientToScreen(driver.Form(), &origin);
        return origin;
    }
    const RECT container = OnScreen(driver.Of(std::string(design.container.substr(0, design.container.find(':')))));
    return {container.left, container.top};
}

int DotsPerInch()
{
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dots;
}

// What stands below the strip has moved down by its height.
RECT InPixels(const DesignedControl &design, int dots)
{
    const editor::controls::Rectangle &place = design.place;
    const bool moved = design.container.empty() && !design.name.ends_with("Partition");
    const int top = place.top + (moved ? 600 : 0);
    return {MulDiv(place.left, dots, 1440), MulDiv(top, dots, 1440), MulDiv(place.left + place.width, dots, 1440),
            MulDiv(top + place.height, dots, 1440)};
}

BOOL CALLBACK TakeToolTips(HWND window, LPARAM found)
{
    if (window_driver::ClassOf(window) == TOOLTIPS_CLASSA)
        *reinterpret_cast<HWND *>(found) = window;
    return TRUE;
}

std::string ToolTipOf(HWND form, HWND control)
{
    HWND tips = nullptr;
    EnumThreadWindows(GetWindowThreadProcessId(form, nullptr), &TakeToolTips, reinterpret_cast<LPARAM>(&tips));
    wchar_t text[256] = L"";
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = form;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = text;
    SendMessageW(tips, TTM_GETTEXTW, 256, reinterpret_cast<LPARAM>(&tool));
    return platform::FromWide(text);
}

// One form for all of these: they look at it, and put back what they change.
class Layout : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_driver = &s_form.emplace().Open(); }
    static void TearDownTestSuite() { s_form.reset(); }

    TestForm &form = s_form->form;
    const Driver &driver = *s_driver;

private:
    inline static std::optional<OpenForm> s_form;
    inline static const Driver *s_driver = nullptr;
};

TEST_F(Layout, EveryControlIsAsDesigned)
{
    const int dots = DotsPerInch();
    EXPECT_EQ(TextOf(driver.Form()), "Speech Recognition Headings Editor");
    RECT client;
    GetClientRect(driver.Form(), &client);
    EXPECT_EQ(client.right, MulDiv(10725, dots, 1440));
    EXPECT_EQ(client.bottom, MulDiv(6120, dots, 1440));
    for (const DesignedControl &design : kDesign)
    {
        SCOPED_TRACE(design.name);
        const std::string name(design.name);
        const HWND window = driver.Of(name);
        Control &control = *form.Controls().Find(name);

        EXPECT_EQ(window_driver::ClassOf(window), kWindowClasses.at(design.kind));
        EXPECT_TRUE(design.caption.empty() || TextOf(window) == design.caption) << TextOf(window);
        EXPECT_EQ(ToolTipOf(driver.Form(), window), design.toolTip);
        EXPECT_EQ(IsWindowEnabled(window) != FALSE, control.Enabled());
        const LONG style = GetWindowLongW(window, GWL_STYLE);
        EXPECT_EQ((style & WS_TABSTOP) != 0, control.TabStop());
        EXPECT_TRUE(style & WS_VISIBLE);

        if (design.kind != Kind::Frame && design.kind != Kind::Panel)
        {
            LOGFONTW font{};
            GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
            EXPECT_STREQ(font.lfFaceName, L"MS Sans Serif");
            EXPECT_EQ(font.lfWeight, support::IsBold(design) ? FW_BOLD : FW_NORMAL);
            EXPECT_EQ(font.lfHeight, -MulDiv(33, dots, 72 * 4)) << "8.25 points";
        }

        BUTTON_IMAGELIST pictures{};
        if (design.kind == Kind::Button)
            SendMessageW(window, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&pictures));
        EXPECT_EQ(pictures.himl != nullptr, support::HasPicture(design));
        int width = 0, height = 0;
        if (pictures.himl && ImageList_GetIconSize(pictures.himl, &width, &height))
        {
            EXPECT_EQ(ImageList_GetImageCount(pictures.himl), 6);
            EXPECT_EQ(width, MulDiv(32, dots, 96));
        }

        RECT expected = InPixels(design, dots);
        const POINT origin = OriginOf(design, driver);
        OffsetRect(&expected, origin.x, origin.y);
        RECT place = OnScreen(window);
        if (design.kind == Kind::ComboBox)
        {
            // Its height is that of its font, in the middle.
            EXPECT_LE(std::abs((place.top + place.bottom) - (expected.top + expected.bottom)), 1);
            EXPECT_GE(place.top, expected.top);
            expected.top = place.top;
            expected.bottom = place.bottom;
        }
        EXPECT_TRUE(EqualRect(&place, &expected))
            << place.left << "," << place.top << "," << place.right << "," << place.bottom << " not " << expected.left
            << "," << expected.top << "," << expected.right << "," << expected.bottom;
    }
}

TEST_F(Layout, TabsHaveTheirCaptionsAndTheFirstIsShown)
{
    const HWND tabs = driver.Of("SSTab1");
    std::string captions;
    for (int i = 0; i < TabCtrl_GetItemCount(tabs); ++i)
    {
        wchar_t text[64];
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 64;
        SendMessageW(tabs, TCM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        captions += (i ? "|" : "") + platform::FromWide(item.pszText);
    }
    EXPECT_EQ(captions, "&General Settings|Heading &Formats|&Headings");
    EXPECT_EQ(TabCtrl_GetCurSel(tabs), 0);
    EXPECT_TRUE(driver.Visible("chkTagKnown"));
    EXPECT_FALSE(driver.Visible("lvwFormats"));
    EXPECT_FALSE(driver.Visible("lvwHeadings"));
}

TEST_F(Layout, TextsFitIntoTheirControls)
{
    const window::Scale scale = window::Scale::OfScreen();
    for (const DesignedControl &design : kDesign)
    {
        const bool button = design.kind == Kind::Button, box = design.kind == Kind::CheckBox;
        if (design.kind != Kind::Label && !button && !box)
            continue;
        SCOPED_TRACE(design.name);
        const HWND window = driver.Of(std::string(design.name));
        RECT area, text{};
        GetClientRect(window, &area);
        const HDC context = GetDC(window);
        SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
        DrawTextW(context, platform::ToWide(design.caption).c_str(), -1, &text, DT_CALCRECT | DT_SINGLELINE);
        ReleaseDC(window, context);
        // Beside the text: the picture and the edges of a button, the square of a check box.
        LONG beside = 0;
        if (button)
            beside = scale.Pixels(support::HasPicture(design) ? 32 + 4 : 8);
        if (box)
            beside = scale.Pixels(18);
        EXPECT_LE(text.right + beside, area.right);
        EXPECT_LE(text.bottom, area.bottom);
    }
}

TEST_F(Layout, NothingLiesOverAnythingElse)
{
    // Labels lie only where their text is; pages lie over the tab control.
    const auto area = [&](const DesignedControl &design)
    {
        const HWND window = driver.Of(std::string(design.name));
        RECT place = OnScreen(window);
        if (design.kind == Kind::Label)
        {
            const HRGN region = CreateRectRgn(0, 0, 0, 0);
            RECT text{};
            GetWindowRgn(window, region);
            GetRgnBox(region, &text);
            DeleteObject(region);
            OffsetRect(&text, place.left, place.top);
            place = text;
        }
        return place;
    };
    int compared = 0;
    for (const DesignedControl &a : kDesign)
        for (const DesignedControl &b : kDesign)
        {
            if (a.name >= b.name || a.container != b.container)
                continue;
            ++compared;
            RECT common;
            const RECT first = area(a), second = area(b);
            EXPECT_FALSE(IntersectRect(&common, &first, &second)) << a.name << " and " << b.name;
        }
    EXPECT_GT(compared, 50);
}

// What a screen reader hears of a control: name, and whether it answers.
std::string Heard(HWND window)
{
    const HMODULE library = LoadLibraryW(L"oleacc.dll");
    using Get = HRESULT(WINAPI *)(HWND, DWORD, REFIID, void **);
    const auto get =
        reinterpret_cast<Get>(reinterpret_cast<void *>(GetProcAddress(library, "AccessibleObjectFromWindow")));
    IAccessible *object = nullptr;
    if (!get ||
        FAILED(get(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, reinterpret_cast<void **>(&object))))
        return "(no object)";
    VARIANT self{}, state{};
    self.vt = VT_I4;
    BSTR name = nullptr;
    object->get_accName(self, &name);
    object->get_accState(self, &state);
    object->Release();
    std::string text = platform::FromWide(name ? name : L"");
    if (state.vt == VT_I4 && state.lVal & STATE_SYSTEM_UNAVAILABLE)
        text += ", unavailable";
    SysFreeString(name);
    return text;
}

TEST_F(Layout, ScreenReadersHearNamesAndStates)
{
    driver.InWindow(
        [&]
        {
            CoInitialize(nullptr);
            form.Get<TabControl>("SSTab1").SetTab(1);
            form.Controls().Find("SSCheck1(2)")->SetEnabled(false);
            for (const auto &[control, heard] : std::initializer_list<std::pair<const char *, const char *>>{
                     {"SSTab1", "Pages"},
                     {"btnSave", "Save"},
                     {"btnPrint", "Print Settings"},
                     {"chkTagKnown", "Only tag known headings"},
                     {"lvwFormats", "Format"},
                     {"btnAdd", "Add"},
                     {"btnDelete", "Delete, unavailable"},
                     {"Frame1", "Format attributes"},
                     {"SSCheck1(1)", "Insert Carriage Return (CR) After Heading"},
                     {"SSCheck1(2)", "Place Colon and Two Spaces After Heading, unavailable"},
                     {"lvwHeadings", "Heading"},
                     {"SSPanel1", "Heading settings"},
                     {"lvwReportType", "Report Type"},
                     {"btnAllReports", "Use setting for all report types"}})
                EXPECT_EQ(Heard(driver.Of(control)), heard) << control;
            EXPECT_EQ(Heard(GetParent(driver.Of("chkTagKnown"))), "General Settings");
            EXPECT_EQ(Heard(GetParent(driver.Of("lvwFormats"))), "Heading Formats");
            EXPECT_EQ(Heard(GetParent(driver.Of("lvwHeadings"))), "Headings");
            CoUninitialize();
            form.Controls().Find("SSCheck1(2)")->SetEnabled(true);
            form.Get<TabControl>("SSTab1").SetTab(0);
        });
}

// A drop-down list has no text but its entry's: its name is an annotation, made from the label before it. (Wine knows
// no annotations, so that what is heard of it cannot be tested there; where it comes from can.)
TEST_F(Layout, EachDropDownStandsBehindTheLabelThatNamesIt)
{
    for (const auto &[control, label] : std::initializer_list<std::pair<const char *, const char *>>{
             {"cmbPartition", "Partition:"}, {"cmbAccList", "Account"}, {"cmbFormats", "Heading Format"}})
        EXPECT_EQ(TextOf(GetWindow(driver.Of(control), GW_HWNDPREV)), label);
}

// --- The colours of the system, also when they change while the window is open.

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
