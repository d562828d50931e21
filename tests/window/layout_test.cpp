// The real window against its design.
#include "platform/windows/wide.h"
#include "support/design.h"
#include "window/form_test.h"
#include "window/scale.h"

#include <commctrl.h>
#include <oleacc.h>
#include <oleauto.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <utility>

namespace window_tests
{
namespace
{

using namespace editor::controls;
using support::DesignedControl;
using support::kDesign;

const char *ClassOf(Kind kind)
{
    switch (kind)
    {
    case Kind::Label:
        return "Static";
    case Kind::ComboBox:
        return "ComboBox";
    case Kind::TabControl:
        return "SysTabControl32";
    case Kind::Button:
    case Kind::CheckBox:
        return "Button";
    case Kind::ListView:
        return "SysListView32";
    case Kind::Frame:
    case Kind::Panel:
        break;
    }
    return "KVHEADERS.Container";
}

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

using Layout = FormTest;

TEST_F(Layout, EveryControlIsAsDesigned)
{
    const int dots = DotsPerInch();
    const Driver &driver = Open();
    for (const DesignedControl &design : kDesign)
    {
        SCOPED_TRACE(design.name);
        const std::string name(design.name);
        const HWND window = driver.Of(name);
        Control &control = *form.Controls().Find(name);

        EXPECT_EQ(window_driver::ClassOf(window), ClassOf(design.kind));
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
    const Driver &driver = Open();
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

TEST_F(Layout, CaptionAndClientAreaAreThoseOfTheForm)
{
    const Driver &driver = Open();
    EXPECT_EQ(TextOf(driver.Form()), "Speech Recognition Headings Editor");
    RECT client;
    GetClientRect(driver.Form(), &client);
    EXPECT_EQ(client.right, MulDiv(10725, DotsPerInch(), 1440));
    EXPECT_EQ(client.bottom, MulDiv(6120, DotsPerInch(), 1440));
}

TEST_F(Layout, ButtonsHaveTheirPictures)
{
    const Driver &driver = Open();
    int pictures = 0;
    for (const DesignedControl &design : kDesign)
    {
        if (design.kind != Kind::Button)
            continue;
        SCOPED_TRACE(design.name);
        BUTTON_IMAGELIST list{};
        SendMessageW(driver.Of(std::string(design.name)), BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&list));
        EXPECT_EQ(list.himl != nullptr, support::HasPicture(design));
        if (!list.himl)
            continue;
        ++pictures;
        EXPECT_EQ(ImageList_GetImageCount(list.himl), 6);
        int width = 0, height = 0;
        ImageList_GetIconSize(list.himl, &width, &height);
        EXPECT_EQ(width, MulDiv(32, DotsPerInch(), 96));
    }
    EXPECT_EQ(pictures, 7);
}

TEST_F(Layout, TextsFitIntoTheirControls)
{
    const Driver &driver = Open();
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
    const Driver &driver = Open();
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
    const Driver &driver = Open();
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
        });
}

// A drop-down list has no text but its entry's: its name is an annotation, made from the label before it. (Wine knows
// no annotations, so that what is heard of it cannot be tested there; where it comes from can.)
TEST_F(Layout, EachDropDownStandsBehindTheLabelThatNamesIt)
{
    const Driver &driver = Open();
    for (const auto &[control, label] : std::initializer_list<std::pair<const char *, const char *>>{
             {"cmbPartition", "Partition:"}, {"cmbAccList", "Account"}, {"cmbFormats", "Heading Format"}})
        EXPECT_EQ(TextOf(GetWindow(driver.Of(control), GW_HWNDPREV)), label);
}

} // namespace
} // namespace window_tests
