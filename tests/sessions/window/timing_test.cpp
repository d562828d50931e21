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

struct Target
{
    const char *control;
    int area; // 0: touched in every session
};
constexpr Target kTargets[] = {
    {"SSTab1", 0},
    {"SSTab1", 0},
    {"cmbPartition", 0},
    {"cmbAccList", 0},
    {"lvwReportType", 0},
    {"lvwHeadings", 0},
    {"btnPrint", 0},
    {"btnCancel", 0},
    {"chkTagKnown", kOptions},
    {"chkTagMixed", kOptions},
    {"lvwFormats", kFormats},
    {"btnAdd", kFormats},
    {"btnDelete", kFormats},
    {"SSCheck1(0)", kFormats},
    {"SSCheck1(3)", kFormats},
    {"btnAddHead", kHeadings},
    {"btnDeleteHead", kHeadings},
    {"cmbFormats", kSettings},
    {"btnAllReports", kSettings},
    {"btnAllAccounts", kSettings},
};

// Real keys and clicks at an open window. Nothing is asked of the window, which may be at work.
class Hand
{
public:
    Hand(std::uint32_t seed, int areas) : m_random(seed), m_areas(areas) {}

    void Play(const Driver &driver, int acts)
    {
        while (acts-- > 0 && driver.Open())
        {
            if (m_areas == kAll && Below(3) == 0)
                PressKey();
            else
                Click(driver);
            if (Below(3) > 0)
                Sleep(static_cast<DWORD>(Below(60)));
        }
    }

    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
    static void Send(INPUT first, INPUT second)
    {
        INPUT inputs[] = {first, second};
        SendInput(2, inputs, sizeof(INPUT));
    }

    static INPUT Mouse(POINT at, DWORD button)
    {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dx = MulDiv(at.x, 65536, GetSystemMetrics(SM_CXSCREEN)) + 1;
        input.mi.dy = MulDiv(at.y, 65536, GetSystemMetrics(SM_CYSCREEN)) + 1;
        input.mi.dwFlags = button | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE;
        return input;
    }
    static void ClickAt(POINT at) { Send(Mouse(at, MOUSEEVENTF_LEFTDOWN), Mouse(at, MOUSEEVENTF_LEFTUP)); }

    void Click(const Driver &driver)
    {
        const auto &[control, area] = kTargets[static_cast<std::size_t>(Below(std::size(kTargets)))];
        RECT place;
        if ((m_areas & area) != area || (control == std::string_view("btnCancel") && Below(4) > 0) ||
            !driver.Visible(control) || !GetWindowRect(driver.Of(control), &place))
            return;
        const std::string_view name = control;
        if (name == "SSTab1")
            place.bottom = place.top + 20; // its captions
        const POINT at{place.left + Below(place.right - place.left), place.top + Below(place.bottom - place.top)};
        ClickAt(at);
        if (!name.starts_with("cmb"))
            return;
        // An entry, if the list has opened by then.
        Sleep(static_cast<DWORD>(Below(80)));
        RECT list;
        if (const HWND window = driver.DropDown(control); IsWindowVisible(window) && GetWindowRect(window, &list))
            ClickAt({list.left + 10, list.top + Below(std::max(1L, list.bottom - list.top))});
    }

    // Keys go to whatever has the keyboard, so that they are for sessions of all areas.
    void PressKey()
    {
        constexpr WORD kKeys[] = {VK_ESCAPE, VK_UP,  VK_DOWN,  VK_F2,  VK_F2, 'A',      'B',
                                  'X',       VK_TAB, VK_SPACE, VK_END, VK_F4, VK_RETURN};
        INPUT down{}, up{};
        down.type = up.type = INPUT_KEYBOARD;
        down.ki.wVk = up.ki.wVk = kKeys[static_cast<std::size_t>(Below(std::size(kKeys)))];
        up.ki.dwFlags = KEYEVENTF_KEYUP;
        Send(down, up);
    }

    std::mt19937 m_random;
    int m_areas;
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

class RandomTimes : public RealWindow
{
protected:
    RandomTimes() : source({})
    {
        root.Make("C:\\ROOT");
        query = [this](const std::string &sql) { return source.Connection().Query(sql); };
    }

    void Play(std::uint32_t seed);
    void ExpectUntouchedStays(int areas, const Rows &before, const Rows &after);
    void ExpectStoredAsShown(const Rows &stored, int partition, const Seen &shown,
                             const std::map<int, std::string> &choices);

    scenario::Source source;
    scenario::LocalRoot root;
    Rows::Query query;
    int saved = 0, boxes = 0, edits = 0;
};

// Waits until nothing has waited in the window's queues for a while; boxes are answered meanwhile.
void Rest(scenario::WindowStage &stage)
{
    if (!stage.WindowIsOpen())
        return;
    const Driver &user = stage.User();
    stage.Act(
        [&]
        {
            for (int quiet = 0; quiet < 5 && user.Open(); Sleep(10))
                user.InWindow([&] { quiet = HIWORD(GetQueueStatus(QS_ALLINPUT & ~QS_TIMER)) == 0 ? quiet + 1 : 0; });
        });
}

// What an open label edit or list would make of the next act is not what the window shows.
void LeaveEdits(scenario::WindowStage &stage)
{
    const Driver &user = stage.User();
    stage.Act(
        [&]
        {
            for (const char *const list : {"lvwFormats", "lvwHeadings"})
                if (const HWND field = user.LabelField(list))
                    SendMessageW(field, WM_KEYDOWN, VK_ESCAPE, 1);
            for (const char *const combo : {"cmbPartition", "cmbAccList", "cmbFormats"})
                user.Send(combo, CB_SHOWDROPDOWN, FALSE);
        });
}

std::string Shown(const scenario::ComboState &combo)
{
    return combo.selected < 0 ? "" : combo.entries[static_cast<std::size_t>(combo.selected)].text;
}

void RandomTimes::Play(std::uint32_t seed)
{
    const int areas = seed % 2 == 0 ? int{kAll} : 1 << (seed / 2 % 4);
    Hand hand(seed, areas);
    const int partition = 1 + hand.Below(3);
    source.Load(support::SourcePath("tests/sessions/site.data"));
    std::ofstream(source.Folder().Path("faults"), std::ios::trunc | std::ios::binary)
        << "999999999\tdelay:" << hand.Below(80) << "\tSELECT\t\t0\t\n";
    const Rows before = Rows::Read(query);

    Answers answers(seed);
    scenario::WindowStage stage(answers);
    for (const auto &[name, value] : source.HostProperties())
        stage.SetProperty(name, value);
    stage.SetProperty("PartitionID", std::int32_t{partition});
    stage.SetMachineRegistry("SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0", "LocalRootDir",
                             "C:\\ROOT");
    stage.Show();
    ASSERT_TRUE(stage.WindowIsOpen());
    const Driver &user = stage.User();
    stage.Act([&] { hand.Play(user, 40); });
    Rest(stage);
    boxes += answers.boxes;
    if (!stage.WindowIsOpen())
    {
        // Keys reach Save, too.
        const Rows after = Rows::Read(query);
        if (areas != kAll)
        {
            EXPECT_EQ(Difference(before, before, after), "") << "the window was closed without a Save";
        }
        return ExpectUntouchedStays(areas, before, after);
    }
    LeaveEdits(stage);
    Rest(stage);
    stage.ShowTab(2);
    std::map<int, std::string> choices; // shown for each heading
    Seen seen = Seen::Look(stage);
    for (std::size_t row = 0; row < seen.headings.items.size(); ++row)
    {
        stage.Pick("lvwHeadings", static_cast<int>(row));
        seen = Seen::Look(stage);
        choices[seen.heading.id] = Shown(seen.choices);
    }
    stage.Click("btnSave");
    ASSERT_FALSE(stage.WindowIsOpen()) << "Save has not closed the window";
    const Rows after = Rows::Read(query);
    ++saved;
    edits += !Difference(before, before, after).empty();
    ExpectUntouchedStays(areas, before, after);
    ExpectStoredAsShown(after, partition, seen, choices);
}

void RandomTimes::ExpectUntouchedStays(int areas, const Rows &before, const Rows &after)
{
    if (!(areas & kFormats))
    {
        EXPECT_TRUE(after.formats == before.formats) << "a format was stored that nobody has touched";
    }
    if (!(areas & kHeadings))
    {
        EXPECT_TRUE(after.headings == before.headings) << "a heading was stored that nobody has touched";
    }
    if (!(areas & (kFormats | kHeadings | kSettings)))
    {
        EXPECT_TRUE(after.settings == before.settings) << "a setting was stored that nobody has chosen";
    }
    if (!(areas & kOptions))
        for (const auto &[key, value] : after.options)
        {
            const auto was = before.options.find(key);
            EXPECT_EQ(value == "True", was != before.options.end() && was->second == "True")
                << key.second << " of partition " << key.first << " was stored, and nobody has touched it";
        }
    const auto ofStranger = [](auto records)
    {
        std::erase_if(records, [](const auto &record) { return record.second.partition != 4; });
        return records;
    };
    EXPECT_TRUE(ofStranger(after.formats) == ofStranger(before.formats));
    EXPECT_TRUE(ofStranger(after.headings) == ofStranger(before.headings));
}

void RandomTimes::ExpectStoredAsShown(const Rows &stored, int partition, const Seen &shown,
                                      const std::map<int, std::string> &choices)
{
    const Model model(stored, query, partition);
    const auto names = [](const scenario::ListState &list)
    {
        std::map<int, std::string> names;
        for (const scenario::ListState::Item &item : list.items)
            names[std::stoi(item.key.substr(3))] = item.text;
        return names;
    };
    const auto storedNames = [&](const auto &records)
    {
        std::map<int, std::string> names;
        for (const int visible : model.Shown(shown.partition))
            for (const auto &[id, record] : records)
                if (record.partition == visible)
                    names[id] = record.name;
        return names;
    };
    EXPECT_EQ(names(shown.formats), storedNames(stored.formats));
    EXPECT_EQ(names(shown.headings), storedNames(stored.headings));
    EXPECT_EQ(shown.known, model.Option(shown.partition, "TagKnownHeadings"));
    EXPECT_EQ(shown.mixed, model.Option(shown.partition, "TagMixedCaseHeadings"));
    for (const auto &[heading, choice] : choices)
    {
        if (model.Ambiguous(heading))
            continue;
        const int format = model.FormatOf(heading, shown.account, shown.reportType, shown.partition);
        std::string expected;
        for (const scenario::ListState::Item &item : shown.formats.items)
            if (std::stoi(item.key.substr(3)) == format)
                expected = item.text + " \\ " + item.second;
        EXPECT_EQ(choice, expected) << "heading " << heading;
    }
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
