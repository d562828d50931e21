// The ways in which a form can end; guest_test.cpp has those of the whole editor, and what becomes of its host.
#include "window/form_test.h"

namespace window_tests
{
namespace
{

using namespace editor::controls;

HWND WindowOf(TestForm &form)
{
    return static_cast<HWND>(form.View().Handle());
}

using Modal = FormTest;

TEST_F(Modal, UnloadingInAHandlerEndsItAtOnce)
{
    bool visible = true;
    form.Get<Button>("btnSave").OnClick = [&]
    {
        form.Unload();
        visible = IsWindowVisible(WindowOf(form)) != FALSE;
    };
    Open().Send("btnSave", BM_CLICK);
    EXPECT_FALSE(visible);
    Close();
    EXPECT_EQ(form.closes, 0);
    EXPECT_EQ(WindowOf(form), nullptr);
}

// What a form may still do to its controls when the window has gone: it goes nowhere.
void ActOnEveryControl(TestForm &form)
{
    for (const auto &control : form.Controls().All())
    {
        control->SetCaption("&Other");
        control->SetEnabled(!control->Enabled());
        control->SetVisible(!control->Visible());
        control->SetTabStop(!control->TabStop());
        control->SetBounds({0, 0, 1500, 1500});
        control->SetFocus();
    }
    form.Get<TabControl>("SSTab1").SetTab(2);
    form.Get<CheckBox>("chkTagMixed").SetValue(1);
    form.Get<Button>("btnSave").Click();
    auto &combo = form.Get<ComboBox>("cmbPartition");
    combo.Clear();
    combo.AddItem("Another");
    combo.SetListIndex(0);
    auto &list = form.Get<ListView>("lvwFormats");
    list.Clear();
    list.Add("Key9-1", "Another", "");
    list.SetSortOrder(SortOrder::Descending);
    list.SetSelectedItem(1);
    list.StartLabelEdit();
}

// While nothing runs, in a handler, from within a list's click, and while a label is edited.
TEST(ModalEnds, TheHostDestroysTheWindowAtAnyTime)
{
    const std::function<void(const Driver &)> acts[] = {
        [](const Driver &driver) { driver.InWindow([&] { DestroyWindow(driver.Form()); }); },
        [](const Driver &driver) { driver.Send("btnPrint", BM_CLICK); },
        [](const Driver &driver) { PostMessageW(driver.Of("lvwFormats"), WM_KEYDOWN, VK_DOWN, 0); },
        [](const Driver &driver)
        {
            driver.Key(VK_F2);
            driver.Key('X');
            driver.InWindow([&] { DestroyWindow(driver.Form()); });
        }};
    for (const auto &act : acts)
    {
        OpenForm opened;
        TestForm &form = opened.form;
        form.Get<Button>("btnPrint").OnClick = [&]
        {
            DestroyWindow(WindowOf(form));
            form.Get<ListView>("lvwFormats").Clear();
        };
        const Driver &driver = opened.Open();
        driver.InWindow(
            [&]
            {
                form.Get<ListView>("lvwFormats").OnItemClick = [&](int) { DestroyWindow(WindowOf(form)); };
                form.Get<TabControl>("SSTab1").SetTab(1);
            });
        driver.Focus("lvwFormats");
        act(driver);
        EXPECT_TRUE(WaitUntil([&] { return form.destroyed == 1; }));
        opened.Close();
        EXPECT_EQ(WindowOf(form), nullptr);
        ActOnEveryControl(form);
        EXPECT_EQ(form.destroyed, 1);
    }
}

// A procedure of the host's over a control's own.
WNDPROC under = nullptr;
int passedOn = 0;
LRESULT CALLBACK PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    ++passedOn;
    return CallWindowProcW(under, window, message, wParam, lParam);
}

TEST_F(Modal, AHostsProcedureOverAControlsMayStayToTheEnd)
{
    int clicks = 0;
    form.Get<Button>("btnPrint").OnClick = [&] { ++clicks; };
    const Driver &driver = Open();
    driver.InWindow(
        [&]
        {
            under = reinterpret_cast<WNDPROC>(
                SetWindowLongPtrW(driver.Of("btnPrint"), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PassOn)));
        });
    driver.Send("btnPrint", BM_CLICK);
    EXPECT_EQ(clicks, 1);
    const int seenWhileOpen = passedOn;
    EXPECT_GT(seenWhileOpen, 0);
    Close();
    EXPECT_GT(passedOn, seenWhileOpen) << "its end too";
}

TEST_F(Modal, AFormThatIsUnloadedBeforeItIsShownIsNeverShown)
{
    form.Load();
    form.Unload();
    form.Run();
    EXPECT_EQ(WindowOf(form), nullptr);
}

TEST(ModalEnds, AFormThatIsNeverShownLeavesNothingBehind)
{
    {
        TestForm form;
        form.Load();
    }
    EXPECT_EQ(FindWindowW(L"KVHEADERS.Form", nullptr), nullptr);
    WNDCLASSW description;
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"KVHEADERS.Form", &description));
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"KVHEADERS.Container", &description));
}

} // namespace
} // namespace window_tests
