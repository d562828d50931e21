// Random sessions with keys and clicks at random times: also while handlers run and the database is slow, so that input
// waits in the queue. What they come to depends on the time; what is claimed here does not.
#include "play/local_root.h"
#include "play/options.h"
#include "sessions/session.h"
#include "sessions/window/real_window.h"
#include "support/test_folder.h"

#include <commctrl.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <span>

namespace sessions
{

namespace
{

using window_driver::Driver;

// What a user touches in a session. Nothing of the other areas may be stored.
enum Area
{
    kOptions = 1,
    kFormats = 2,
    kHeadings = 4,
    kSettings = 8,
    kAll = 15
};

// 0: touched in every session.
const std::map<int, std::vector<std::string>> kTargets = {
    {0, {"SSTab1", "SSTab1", "cmbPartition", "cmbAccList", "lvwReportType", "lvwHeadings", "btnPrint", "btnCancel"}},
    {kOptions, {"chkTagKnown", "chkTagMixed"}},
    {kFormats, {"lvwFormats", "btnAdd", "btnDelete", "SSCheck1(0)", "SSCheck1(3)"}},
    {kHeadings, {"btnAddHead", "btnDeleteHead"}},
    {kSettings, {"cmbFormats", "btnAllReports", "btnAllAccounts"}},
};

// Real keys and clicks at an open window. Nothing is asked of the window, which may be at work.
class Hand
{
public:
    Hand(std::uint32_t seed, int areas) : m_random(seed), m_presses(areas == kAll)
    {
        for (const auto &[area, controls] : kTargets)
            if ((areas & area) == area)
                m_targets.insert(m_targets.end(), controls.begin(), controls.end());
    }

    void Play(const Driver &driver, int acts)
    {
        while (acts-- > 0 && driver.Open())
        {
            if (m_presses && Below(3) == 0)
                PressKey();
            else
                Click(driver);
            if (Below(3) > 0)
                Sleep(static_cast<DWORD>(Below(60)));
        }
    }

    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
    template <class T>
    const T &OneOf(std::span<const T> things)
    {
        return things[static_cast<std::size_t>(Below(static_cast<int>(things.size())))];
    }

    static void Send(const INPUT &down, const INPUT &up)
    {
        INPUT inputs[] = {down, up};
        SendInput(2, inputs, sizeof(INPUT));
    }

    static void ClickAt(POINT at)
    {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dx = MulDiv(at.x, 65536, GetSystemMetrics(SM_CXSCREEN)) + 1;
        input.mi.dy = MulDiv(at.y, 65536, GetSystemMetrics(SM_CYSCREEN)) + 1;
        input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | MOUSEEVENTF_LEFTDOWN;
        INPUT up = input;
        up.mi.dwFlags ^= MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP;
        Send(input, up);
    }

    void Click(const Driver &driver)
    {
        const std::string &control = OneOf<std::string>(m_targets);
        RECT place;
        if ((control == "btnCancel" && Below(4) > 0) || !driver.Visible(control) ||
            !GetWindowRect(driver.Of(control), &place))
            return;
        if (control == "SSTab1")
            place.bottom = place.top + 20; // its captions
        ClickAt({place.left + Below(place.right - place.left), place.top + Below(place.bottom - place.top)});
        if (!control.starts_with("cmb"))
            return;
        // An entry, if the list has opened by then.
        Sleep(static_cast<DWORD>(Below(80)));
        RECT list;
        if (const HWND window = driver.DropDown(control); IsWindowVisible(window) && GetWindowRect(window, &list))
            ClickAt({list.left + 10, list.top + Below(std::max(1L, list.bottom - list.top))});
    }

    void PressKey()
    {
        constexpr WORD kKeys[] = {VK_ESCAPE, VK_UP,  VK_DOWN,  VK_F2,  VK_F2, 'A',      'B',
                                  'X',       VK_TAB, VK_SPACE, VK_END, VK_F4, VK_RETURN};
        INPUT down{};
        down.type = INPUT_KEYBOARD;
        down.ki.wVk = OneOf<WORD>(kKeys);
        INPUT up = down;
        up.ki.dwFlags = KEYEVENTF_KEYUP;
        Send(down, up);
    }

    std::mt19937 m_random;
    bool m_presses; // keys go to whatever has the keyboard, so that they are for sessions of all areas
    std::vector<std::string> m_targets;
};

// Answers questions at random.
class Answers final : public scenario::Audience
{
public:
    explicit Answers(std::uint32_t seed) : m_random(seed) {}

    std::string AnswerBox(const scenario::ShownBox &box) override
    {
        constexpr int kYesNo = 4;
        ++boxes;
        Sleep(static_cast<DWORD>(m_random() % 40));
        const bool ofClosing = box.title == "Cancel Changes";
        return (box.flags & kYesNo) == 0 ? "OK" : m_random() % (ofClosing ? 8 : 2) == 0 ? "Yes" : "No";
    }
    void ReportOpened(const std::string &) override {}
    void ShowFormReturned(int value) override { EXPECT_EQ(value, 0); }
    void PlayWhile(const std::function<bool()> &) override {}

    int boxes = 0;

private:
    std::mt19937 m_random;
};

void ExpectUntouchedStays(int areas, const Rows &before, const Rows &after)
{
    constexpr int kAreas[] = {kFormats, kHeadings, kFormats | kHeadings | kSettings, kOptions};
    constexpr int kStranger = 4;
    // Of options only what they say: a Save writes all of them.
    const auto untouched = [&](Rows rows)
    {
        std::erase_if(rows,
                      [&](const auto &row)
                      {
                          const Table table = static_cast<Table>(row.first[0]);
                          return table == kOption ? areas != 0 && ((areas & kOptions) || row.second.name != "True")
                                                  : (areas & kAreas[table]) && row.second.partition != kStranger;
                      });
        return rows;
    };
    EXPECT_EQ(Difference(untouched(before), untouched(before), untouched(after)), "") << "and nobody has touched it";
}

void ExpectStoredAsShown(const Model &model, const Seen &shown, const std::map<int, int> &choices)
{
    for (const Table table : {kFormat, kHeading})
        EXPECT_EQ(shown.Names(table), model.Names(table, shown.partition));
    for (const int option : {kKnown, kMixed})
        EXPECT_EQ(shown.options[option], model.At({kOption, shown.partition, option}).name == "True");
    for (const auto &[heading, format] : choices)
    {
        if (!model.Ambiguous(heading))
        {
            EXPECT_EQ(format, model.FormatOf(heading, shown.account, shown.reportType, shown.partition))
                << "heading " << heading;
        }
    }
}

class RandomTimes : public RealWindow
{
protected:
    RandomTimes() : source({})
    {
        root.Make("C:\\ROOT");
        query = [this](const std::string &sql) { return source.Connection().Query(sql); };
    }

    void Play(std::uint32_t seed);

    scenario::Source source;
    scenario::LocalRoot root;
    Query query;
    int saved = 0, boxes = 0, edits = 0;
};

// Waits until nothing has waited in the window's queues for a while; boxes are answered meanwhile.
void Rest(scenario::WindowStage &stage, const Driver &user)
{
    const auto waits = [] { return HIWORD(GetQueueStatus(QS_ALLINPUT & ~QS_TIMER)) != 0; };
    stage.Act(
        [&]
        {
            for (int quiet = 0; quiet < 5 && user.Open(); Sleep(10))
                user.InWindow([&] { quiet = waits() ? 0 : quiet + 1; });
        });
}

// What an open label edit or list would make of the next act is not what the window shows.
void LeaveEdits(const Driver &user)
{
    for (const char *const list : {"lvwFormats", "lvwHeadings"})
        if (const HWND field = user.LabelField(list))
            SendMessageW(field, WM_KEYDOWN, VK_ESCAPE, 1);
    for (const char *const combo : {"cmbPartition", "cmbAccList", "cmbFormats"})
        user.Send(combo, CB_SHOWDROPDOWN, FALSE);
}

void RandomTimes::Play(std::uint32_t seed)
{
    const int areas = seed % 2 == 0 ? int{kAll} : 1 << (seed / 2 % 4);
    Hand hand(seed, areas);
    const int partition = 1 + hand.Below(3);
    source.Load(support::SourcePath("tests/sessions/site.data"));
    std::ofstream(source.Folder().Path("faults"), std::ios::trunc | std::ios::binary)
        << "999999999\tdelay:" << hand.Below(80) << "\tSELECT\t\t0\t\n";
    const Rows before = ReadRows(query);

    Answers answers(seed);
    scenario::WindowStage stage(answers);
    SetUpHost(stage, source);
    stage.SetProperty("PartitionID", std::int32_t{partition});
    stage.Show();
    ASSERT_TRUE(stage.WindowIsOpen());
    const Driver &user = stage.User();
    stage.Act([&] { hand.Play(user, 40); });
    if (stage.WindowIsOpen())
        Rest(stage, user);
    boxes += answers.boxes;
    if (!stage.WindowIsOpen()) // with kAll perhaps by Save, which keys reach, too
        return ExpectUntouchedStays(areas == kAll ? int{kAll} : 0, before, ReadRows(query));
    stage.Act([&] { LeaveEdits(user); });
    Rest(stage, user);
    stage.ShowTab(2);
    std::map<int, int> choices; // formats shown, by heading
    Seen seen = Seen::Look(stage);
    for (std::size_t row = 0; row < seen.records[kHeading].items.size(); ++row)
    {
        stage.Pick("lvwHeadings", static_cast<int>(row));
        seen = Seen::Look(stage);
        choices[seen.selected[kHeading]] = seen.FormatAt(seen.choices.selected);
    }
    stage.Click("btnSave");
    ASSERT_FALSE(stage.WindowIsOpen()) << "Save has not closed the window";
    const Rows after = ReadRows(query);
    ++saved;
    edits += !Difference(before, before, after).empty();
    // The buttons of the two lists lie over each other: a click may reach the page that has come up since.
    constexpr int kLists = kFormats | kHeadings;
    ExpectUntouchedStays(areas & kLists ? areas | kLists : areas, before, after);
    const World world(query);
    ExpectStoredAsShown(Model(after, world, partition), seen, choices);
}

TEST_F(RandomTimes, StoreNothingButWhatWasChosenAndShown)
{
    const unsigned first = First(), count = Count(5);
    for (unsigned seed = first; seed < first + count && !HasFailure(); ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Play(seed);
    }
    std::printf("%u sessions from seed %u on: %d saved, %d of them with edits, %d boxes\n", count, first, saved, edits,
                boxes);
}

} // namespace

} // namespace sessions
