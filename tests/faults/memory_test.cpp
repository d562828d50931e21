// Every allocation of a day fails, natively: the component's own, since the driver has an operator new of its own.
#include "day.h"
#include "editor/site.h"

#include <cstdlib>
#include <new>

namespace
{

// Allocations that are still let through before one fails.
long s_left = -1;
bool s_acting = false;
bool s_fired = false;

void *Allocate(std::size_t size)
{
    if (s_acting && s_left >= 0 && s_left-- == 0)
    {
        s_fired = true;
        throw std::bad_alloc();
    }
    if (void *const memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void Free(void *memory)
{
    std::free(memory);
}

} // namespace

#include "support/replaced_new.h"

namespace faults
{

namespace
{

class FailingAllocation final : public Fault
{
public:
    explicit FailingAllocation(int place)
    {
        s_left = place - 1;
        s_fired = false;
    }
    ~FailingAllocation() override { s_left = -1; }
    void Acting(bool acting) override
    {
        s_acting = acting;
        if (s_fired)
            s_left = -1;
    }
    bool Fired(const support::TestDatabase &) const override { return s_fired; }
    bool MayBeSilent() const override { return true; }
};

TEST(Allocations, FailOneByOneAndNothingIsLost)
{
    CountDown(67, [](int place) { return std::make_unique<FailingAllocation>(place); });
}

// A window on a site without a database.
struct Window final : Site
{
    using Site::form;
    using Site::Settings;

    Window()
    {
        model::clsPartition &clinic = Partition(2, "Clinic");
        Format(clinic, 10, "A format with quite a long name");
        Format(clinic, 11, "Bold");
        Heading(clinic, 20, "HISTORY");
        Setting(20, 7, 0, 10, 0);
        Setting(20, 8, 4, 10, 0);
        Setting(20, -1, 0, 10, 2);
        Show(clinic, {7, 8, 9});
        ChooseAccount(1);
        PickHeading("Key20-2");
        desktop.WillAnswerOk(2);
    }
    ~Window() override { desktop.ForgetAnswers(); }
    void TestBody() override {}
};

// Lets each allocation of an act fail, each in a window of its own, and checks what the act has left.
void FailEachAllocation(const std::function<void(Window &)> &act, const std::function<void(Window &)> &check)
{
    for (int place = 1;; ++place)
    {
        SCOPED_TRACE(place);
        Window window;
        FailingAllocation fault(place);
        fault.Acting(true);
        editor::controls::RunAct([&] { act(window); });
        fault.Acting(false);
        check(window);
        if (!s_fired)
        {
            EXPECT_GT(place, 1);
            return;
        }
    }
}

// A choice that failed went on being shown, though the setting was not stored.
TEST(Allocations, OfAChoiceLeaveTheFormatShownThatIsStored)
{
    FailEachAllocation([](Window &window) { window.form.cmbFormats.SetListIndex(1); },
                       [](Window &window)
                       {
                           const bool chosen = window.form.cmbFormats.ListIndex() == 1;
                           int stored = 0;
                           for (const std::string &setting : window.Settings())
                               stored += setting.starts_with("20 7 0 11 0") ? 1 : 0;
                           EXPECT_EQ(chosen ? 1 : 0, stored) << testing::PrintToString(window.Settings());
                       });
}

// The settings to be replaced were flagged before the one in their place was there.
TEST(Allocations, OfApplyingLeaveAllSettingsOrReplaceAll)
{
    const std::vector<std::string> before = [] { return Window().Settings(); }();
    FailEachAllocation([](Window &window) { window.form.btnAllAccounts_Click(); },
                       [&](Window &window)
                       {
                           const std::vector<std::string> now = window.Settings();
                           EXPECT_TRUE(now == before || now.size() == before.size() + 1) << testing::PrintToString(now);
                           if (now.size() > before.size())
                           {
                               EXPECT_NE(before, std::vector<std::string>(now.begin(), now.end() - 1));
                           }
                       });
}

// A name whose drop-down list could not be filled was refused in the list and stored all the same.
TEST(Allocations, OfARenameLeaveTheNameShownThatIsStored)
{
    const std::string name = "Another name that is too long for a short string";
    FailEachAllocation(
        [&](Window &window)
        {
            window.form.lvwFormats.StartLabelEdit();
            window.form.lvwFormats.EndLabelEdit(name, editor::controls::EditEnd::Enter);
        },
        [](Window &window) {
            EXPECT_EQ(editor::FormatOf({10, 2}).FormatName, window.form.lvwFormats.Item("Key10-2").text);
        });
}

// After a list of report types that could not be filled every choice was passed over for good.
TEST(Allocations, OfReportTypesLeaveTheEditorListening)
{
    FailEachAllocation([](Window &window) { window.form.LoadReportTypes(7); },
                       [](Window &window) { EXPECT_FALSE(window.form.m_blnLoading); });
}

} // namespace

} // namespace faults
