// What tools can ask the window's controls.
#include "window/inspection.h"

#include "editor/layout.h"
#include "platform/windows/wide.h"
#include "window/driver.h"

#include <gtest/gtest.h>

namespace window_tests
{
namespace
{

using namespace editor::controls;

// As a tool in another process does.
std::string Ask(HWND window, int what)
{
    const auto atom = static_cast<ATOM>(
        SendMessageW(window, RegisterWindowMessageW(window::kInspection), static_cast<WPARAM>(what), 0));
    if (!atom)
        return "(nothing)";
    wchar_t text[256] = L"";
    GlobalGetAtomNameW(atom, text, 256);
    GlobalDeleteAtom(atom);
    return platform::FromWide(text);
}

struct Inspection : testing::Test
{
    TestForm form;
};

TEST_F(Inspection, EveryControlTellsItsName)
{
    Play(form,
         [&](Driver &driver)
         {
             for (const editor::LayoutEntry &entry : editor::Layout())
                 EXPECT_EQ(Ask(driver.Of(std::string(entry.name)), 0), entry.name);
             EXPECT_EQ(Ask(driver.Form(), 0), "(nothing)");
             EXPECT_EQ(Ask(GetParent(driver.Of("chkTagKnown")), 0), "(nothing)") << "a page is no control";
         });
}

TEST_F(Inspection, ListsTellTheirKeysAsDisplayed)
{
    Play(form,
         [&](Driver &driver)
         {
             const HWND list = driver.Of("lvwFormats");
             EXPECT_EQ(Ask(list, 1), "Key1-1");
             EXPECT_EQ(Ask(list, 5), "Key5-1");
             driver.InWindow([&] { form.Get<ListView>("lvwFormats").SetSortOrder(SortOrder::Descending); });
             EXPECT_EQ(Ask(list, 1), "Key5-1");
             for (const int position : {6, 30000, -1})
                 EXPECT_EQ(Ask(list, position), "(nothing)") << position;
             driver.InWindow([&] { form.Get<ListView>("lvwFormats").Add("", "without a key", ""); });
             EXPECT_EQ(Ask(list, 1), "(nothing)");
             driver.InWindow([&] { form.Get<ListView>("lvwFormats").Clear(); });
             EXPECT_EQ(Ask(list, 1), "(nothing)");
         });
}

TEST_F(Inspection, ComboBoxesTellTheirItemData)
{
    Play(form,
         [&](Driver &driver)
         {
             auto &combo = form.Get<ComboBox>("cmbAccList");
             driver.InWindow(
                 [&]
                 {
                     combo.SetItemData(0, -1);
                     combo.SetItemData(2, 32767);
                 });
             const HWND window = driver.Of("cmbAccList");
             EXPECT_EQ(Ask(window, 1), "-1");
             EXPECT_EQ(Ask(window, 2), "0");
             EXPECT_EQ(Ask(window, 3), "32767");
             for (const int position : {4, -1})
                 EXPECT_EQ(Ask(window, position), "(nothing)") << position;
         });
}

TEST_F(Inspection, OtherControlsHaveNothingHidden)
{
    Play(form,
         [&](Driver &driver)
         {
             for (const char *const name : {"btnSave", "chkTagKnown", "SSTab1", "lblOptions", "Frame1", "SSPanel1"})
                 EXPECT_EQ(Ask(driver.Of(name), 1), "(nothing)") << name;
         });
}

} // namespace
} // namespace window_tests
