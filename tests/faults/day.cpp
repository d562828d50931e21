// A day of an administrator at the editor: the acts, and what must hold whatever has failed.
#include "day.h"

#include "editor/records.h"

#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "host/modMisc.h"
#include "model/globals.h"
#include "runtime/handler.h"
#include "store/modDataActivity.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <set>

#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

// Handles of ODBC that were made and not given back: LeakSanitizer does not see them, since the driver manager keeps
// lists of its own.
static int s_handles = 0;

extern "C" SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE *handle)
{
    static const auto next = reinterpret_cast<decltype(&SQLAllocHandle)>(dlsym(RTLD_NEXT, "SQLAllocHandle"));
    const SQLRETURN code = next(kind, parent, handle);
    s_handles += SQL_SUCCEEDED(code) ? 1 : 0;
    return code;
}

extern "C" SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle)
{
    static const auto next = reinterpret_cast<decltype(&SQLFreeHandle)>(dlsym(RTLD_NEXT, "SQLFreeHandle"));
    --s_handles;
    return next(kind, handle);
}

namespace faults
{

using editor::frmHeadings;
namespace controls = editor::controls;
using controls::Button;
using controls::ComboBox;
using controls::ListView;
using support::Lines;

namespace
{

// More than a day can bring up: a box that comes back for good is found.
constexpr int kMostBoxes = 60;
constexpr int kMostAttempts = 5;

// The options have rows already, since an option whose INSERT has failed is passed over for good; new records get
// numbers above 100.
constexpr char kMore[] = R"(
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'False', 1)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', 1)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'False', 2)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', 2)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'False', 3)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagMixedCaseHeadings', 'True', 3)
INSERT INTO System_user_cfg VALUES (-1, 1, 'TagKnownHeadings', 'True', 99)
INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRFormatID', '100', NULL)
INSERT INTO System_user_cfg VALUES (-1, 1, 'NextSRHeaderID', '100', NULL)
INSERT INTO Report_headers VALUES (23, 'EXAM', 2)
INSERT INTO Report_headers VALUES (24, 'DRUGS', 2)
INSERT INTO Report_header_formats VALUES (99, 'Strange', 0, 0, 0, 0, 0, 0, 0, 99)
INSERT INTO Report_header_settings VALUES (20, -1, 0, 10, 2)
INSERT INTO Report_header_settings VALUES (20, 99, 0, 99, 0)
INSERT INTO Report_header_settings VALUES (22, -1, 0, 12, 3)
INSERT INTO Report_header_settings VALUES (23, 7, 4, 11, 0)
INSERT INTO Report_header_settings VALUES (23, 8, 0, 11, 0)
INSERT INTO Report_header_settings VALUES (24, 7, 4, 10, 0)
)";

Lines RowsOf(support::TestDatabase &database)
{
    Lines rows;
    for (const char *query :
         {"SELECT 'format', * FROM Report_header_formats", "SELECT 'heading', * FROM Report_headers",
          "SELECT 'setting', * FROM Report_header_settings", "SELECT 'value', * FROM System_user_cfg"})
        for (const std::string &row : database.Query(query))
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    return rows;
}

// A number that an Add which failed has used up is missing later.
Lines WithoutNumbers(const Lines &rows)
{
    Lines kept;
    for (std::string row : rows)
    {
        if (row.find("| NextSR") != std::string::npos)
            continue;
        for (std::size_t i = row.find("| 10"); i != std::string::npos; i = row.find("| 10", i + 1))
            if (std::isdigit(static_cast<unsigned char>(row[i + 4])))
                row.replace(i + 2, 3, "NEW");
        kept.push_back(row);
    }
    std::sort(kept.begin(), kept.end());
    return kept;
}

std::set<std::string> AsSet(const Lines &lines)
{
    return {lines.begin(), lines.end()};
}

// 0 when there is none.
int PositionOf(const ListView &list, const std::string &text)
{
    for (int i = 1; i <= list.Count(); ++i)
        if (list.Item(i).text == text)
            return i;
    return 0;
}

constexpr char kSelected[] = "\nselected: ";

// What is selected depends on what was clicked last, and a renamed item keeps its place until the list is filled again.
bool ShowTheSame(const std::string &one, const std::string &other)
{
    return one.substr(0, one.find(kSelected)) == other.substr(0, other.find(kSelected));
}

} // namespace

Day::Day(Fault &fault, const Lines &undisturbed) : m_fault(fault), m_undisturbed(undisturbed)
{
    Run(kMore);
    editor::RegisterForms();
    const std::string folder = database.Folder().Path();
    std::filesystem::create_directories(folder + "/ZENTRA/TEMP");
    support::WriteFile(folder + "/ZENTRA/TEMP/HEADINGS.TXT", "of the day before");
    m_registry.Set(platform::RegistryRoot::LocalMachine,
                   "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0", "LocalRootDir", folder);
    for (int i = 0; i < kMostBoxes; ++i)
        desktop.WillAnswer({platform::Answer::Yes});
    desktop.whileBoxIsOpen = [this, loggings = 0](const std::string &box) mutable
    {
        // The log tries on until it can write: somebody has to repair what is broken.
        if (box.find("while logging") != std::string::npos && ++loggings % 3 == 0)
            m_fault.Repair(database);
    };
}

Lines Day::Told() const
{
    Lines told = desktop.boxes;
    std::erase_if(told, [](const std::string &box) { return box.find("Are you sure") != std::string::npos; });
    return told;
}

std::string Day::Look()
{
    std::string texts, selected = kSelected;
    const auto add = [&](const auto &control)
    {
        std::multiset<std::string> sorted;
        for (const std::string &line : Texts(control))
        {
            sorted.insert(line.substr(line.starts_with('*')));
            selected += line + ", ";
        }
        for (const std::string &line : sorted)
            texts += line + ", ";
        texts += "\n";
        selected += "\n";
    };
    for (const ListView *list : {&m_window->lvwFormats, &m_window->lvwHeadings, &m_window->lvwReportType})
        add(*list);
    for (const ComboBox *combo : {&m_window->cmbPartition, &m_window->cmbAccList, &m_window->cmbFormats})
        add(*combo);
    for (const controls::CheckBox *box : m_window->SSCheck1)
        selected += std::to_string(box->Value());
    return texts + std::to_string(m_window->chkTagKnown.Value()) + std::to_string(m_window->chkTagMixed.Value()) +
           selected;
}

void Day::Do(const std::function<void()> &act)
{
    m_fault.Acting(true);
    try
    {
        act();
    }
    catch (...)
    {
    }
    m_fault.Acting(false);
}

void Day::Until(const std::string &what, const std::function<void()> &act, const std::function<bool()> &done)
{
    const bool looks = m_fault.MayBeSilent() && m_outcome.shown.size() < m_undisturbed.size();
    const std::string wanted = looks ? m_undisturbed[m_outcome.shown.size()] : "";
    bool succeeded = false;
    for (int attempt = 1; !succeeded && attempt <= kMostAttempts; ++attempt)
    {
        if (attempt > 3)
            m_fault.Repair(database);
        if (attempt > 1 && looks)
            SeeAnew();
        const std::size_t before = Told().size();
        Do(act);
        const bool told = Told().size() > before;
        succeeded = !told && done() && (!looks || ShowTheSame(what + ": " + Look(), wanted));
        EXPECT_TRUE(succeeded || told || m_fault.MayBeSilent()) << what << " has failed without a word";
    }
    EXPECT_TRUE(succeeded) << what << " does not succeed any more: " << Look() << "\n instead of " << wanted;
    m_outcome.shown.push_back(what + ": " + Look());
}

// Lists that were left half filled are filled again, and the user goes back to where they were.
void Day::SeeAnew()
{
    const auto keyOf = [](const ListView &list) { return list.Count() > 0 ? list.SelectedItem().key : ""; };
    const auto back = [](ListView &list, const std::string &key)
    {
        for (int i = 1; i <= list.Count(); ++i)
            if (list.Item(i).key == key)
                return list.Select(i);
        return false;
    };
    frmHeadings &f = *m_window;
    const int tab = f.SSTab1.Tab(), account = f.cmbAccList.ListIndex();
    const std::string format = keyOf(f.lvwFormats), heading = keyOf(f.lvwHeadings), type = keyOf(f.lvwReportType);
    f.cmbPartition.Choose(f.cmbPartition.ListIndex());
    f.SSTab1.ClickTab(2);
    back(f.lvwHeadings, heading);
    f.cmbAccList.Choose(account);
    back(f.lvwReportType, type);
    f.SSTab1.ClickTab(tab);
    if (tab == 1)
        back(f.lvwFormats, format);
}

void Day::Open(const std::string &what, const std::function<void()> &work)
{
    bool done = false;
    std::size_t before = 0;
    const auto whileOpen = [&]
    {
        m_fault.Acting(false);
        done = Told().size() == before;
        if (done)
            Until(what, [] {}), work();
        else // what has not been loaded whole is not worked with
            for (int i = 0; host::IsFormLoaded("frmHeadings") && i < kMostAttempts; ++i)
                Do([this] { m_window->btnCancel.Click(); });
        EXPECT_FALSE(host::IsFormLoaded("frmHeadings")) << what << " and not closed any more";
        m_fault.Acting(true);
    };
    editor::SetFormViewFactory(
        [&](editor::StagedForm &form)
        {
            m_window = static_cast<frmHeadings *>(&form);
            return std::make_unique<FakeView>(calls, whileOpen);
        });
    for (int attempt = 1; !done && attempt <= kMostAttempts; ++attempt)
    {
        if (attempt > 3)
            m_fault.Repair(database);
        before = Told().size();
        Do([] { host::gConfig->ShowForm(); });
        EXPECT_TRUE(done || Told().size() > before || m_fault.MayBeSilent()) << "not " << what << ", without a word";
        EXPECT_TRUE(host::LoadedForms().empty());
        EXPECT_FALSE(runtime::HandlerRunning());
        EXPECT_EQ(0, desktop.waitCursors);
        EXPECT_TRUE(desktop.hostAnswers);
    }
    EXPECT_TRUE(done) << "not " << what;
}

Outcome Day::Play()
{
    m_outcome.initial = RowsOf(database);
    const int handles = s_handles;
    m_fault.Order(database);
    Open("opened", [this] { Work(); });
    Open("opened again",
         [this]
         {
             Until(
                 "closed", [this] { m_window->btnCancel.Click(); },
                 [this] { return !host::IsFormLoaded("frmHeadings"); });
         });
    m_outcome.fired = m_fault.Fired(database);
    m_fault.Repair(database);
    Do([] { host::ReleaseConnection(); });
    EXPECT_EQ(handles, s_handles) << "handles are not given back";
    const Lines errors = database.LoggedErrors();
    const auto failed = std::ranges::count_if(errors, [](const std::string &error)
                                              { return error.starts_with("HY000:") || error.starts_with("08S01:"); });
    // Where the call that met a loss has no error to raise (of what is given up), the next statement meets it again.
    EXPECT_LE(std::max(static_cast<std::size_t>(failed), database.Logged("lost").size()), m_fault.MostFailures())
        << "those behind a loss have failed, too";
    m_outcome.final = RowsOf(database);
    m_outcome.boxes = Told();
    EXPECT_LE(database.Logged("connect").size(), database.Logged("disconnect").size() + m_fault.LeavesOpen())
        << "connections are left open";
    desktop.ForgetAnswers();
    return m_outcome;
}

void Day::Work()
{
    Browse();
    EditFormats();
    EditHeadings();
    Print();
    Save();
}

void Day::TurnTo(int tab)
{
    controls::TabControl &tabs = m_window->SSTab1;
    Until(
        "turned to " + std::to_string(tab),
        [&]
        {
            if (tabs.Tab() == tab) // once more
                tabs.ClickTab((tab + 1) % 3);
            tabs.ClickTab(tab);
        },
        [&] { return tabs.Tab() == tab; });
}

void Day::Pick(ListView &list, const std::string &text)
{
    Until(
        "picked " + text, [&] { list.Select(PositionOf(list, text)); },
        [&] { return list.Count() > 0 && list.SelectedItem().text == text; });
}

void Day::Choose(ComboBox &combo, int position)
{
    Until(
        "chosen " + std::to_string(position), [&] { combo.Choose(position); },
        [&] { return combo.ListIndex() == position; });
}

void Day::Rename(ListView &list, const std::string &name)
{
    Until(
        "renamed to " + name,
        [&]
        {
            if (list.SelectedItem().text == name)
                return;
            list.BeginLabelEdit();
            list.EndLabelEdit(name, controls::EditEnd::Enter);
        },
        [&] { return list.SelectedItem().text == name; });
}

void Day::Browse()
{
    frmHeadings &f = *m_window;
    Choose(f.cmbPartition, 1);
    Choose(f.cmbPartition, 0);
    TurnTo(1);
    Pick(f.lvwFormats, "Default");
    TurnTo(2);
    for (const char *heading : {"PLAN", "<Default>", "EXAM"})
        Pick(f.lvwHeadings, heading);
    for (const int account : {2, 0, 1})
        Choose(f.cmbAccList, account);
    Pick(f.lvwReportType, "Notes");
    Until("sorted", [&] { f.lvwHeadings.ClickColumn(1); });
}

void Day::EditFormats()
{
    frmHeadings &f = *m_window;
    TurnTo(1);
    Pick(f.lvwFormats, "Plain");
    for (const int box : {3, 4})
        Until(
            "ticked", [&] { f.SSCheck1[static_cast<std::size_t>(box)]->Toggle(); },
            [&] { return f.SSCheck1[static_cast<std::size_t>(box)]->Value() == 1; });
    Rename(f.lvwFormats, "O'Plain");
    Add(f.lvwFormats, f.btnAdd, "Mine");
    Delete(f.lvwFormats, f.btnDelete, "Bold");
}

// Adds a copy of the selected entry, under a new name.
void Day::Add(ListView &list, Button &button, const std::string &name)
{
    const int count = list.Count();
    Until(
        "added", [&] { button.Click(); }, [&] { return list.Count() == count + 1 && list.Editing(); });
    Rename(list, name);
}

void Day::Delete(ListView &list, Button &button, const std::string &name)
{
    Pick(list, name);
    Until(
        "deleted",
        [&]
        {
            if (list.SelectedItem().text == name)
                button.Click();
        },
        [&] { return PositionOf(list, name) == 0; });
}

void Day::ChooseFormat(const std::string &format)
{
    ComboBox &formats = m_window->cmbFormats;
    for (int i = 0; i < formats.ListCount(); ++i)
        if (formats.List(i).starts_with(format + " "))
            return Choose(formats, i);
    ADD_FAILURE() << "there is no " << format;
}

void Day::EditHeadings()
{
    frmHeadings &f = *m_window;
    TurnTo(2);
    Pick(f.lvwHeadings, "HISTORY");
    Pick(f.lvwReportType, "Notes");
    ChooseFormat("Mine"); // a new setting
    Pick(f.lvwHeadings, "DRUGS");
    ChooseFormat("Mine"); // one that is there
    Choose(f.cmbAccList, 2);
    Pick(f.lvwHeadings, "HISTORY");
    ChooseFormat("O'Plain");
    // The window does not show that a click on these two was lost.
    Until(
        "applied to the reports", [&] { f.btnAllReports.Click(); },
        [] { return editor::CountSettingsOf(20, 8, 0, 0) > 0; });
    Pick(f.lvwHeadings, "EXAM");
    ChooseFormat("Mine");
    Until(
        "applied to the accounts", [&] { f.btnAllAccounts.Click(); },
        [] { return editor::CountSettingsOf(23, -1, 0, 2) > 0; });
    Pick(f.lvwHeadings, "HISTORY");
    Add(f.lvwHeadings, f.btnAddHead, "MINE");
    Delete(f.lvwHeadings, f.btnDeleteHead, "PLAN");
    Pick(f.lvwHeadings, "HISTORY");
    Rename(f.lvwHeadings, "STORY");
    Choose(f.cmbAccList, 0);
    Pick(f.lvwHeadings, "<Default>");
    ChooseFormat("Mine"); // the default heading mode
    TurnTo(0);
    Until(
        "ticked", [&] { f.chkTagKnown.Toggle(); }, [&] { return f.chkTagKnown.Value() == 1; });
}

void Day::Print()
{
    const std::size_t before = desktop.opened.size();
    Until(
        "printed", [&] { m_window->btnPrint.Click(); }, [&] { return desktop.opened.size() > before; });
    m_outcome.shown.push_back(desktop.opened.empty() ? "" : desktop.opened.back().content);
}

void Day::Save()
{
    const runtime::Ref<model::colSettings> settings = model::gSettings;
    const std::size_t before = Told().size();
    int attempt = 1;
    for (; host::IsFormLoaded("frmHeadings") && attempt <= kMostAttempts; ++attempt)
    {
        if (attempt > 3)
            m_fault.Repair(database);
        Do([this] { m_window->btnSave.Click(); });
    }
    m_outcome.saved = RowsOf(database);
    m_outcome.saveTold = Told().size() > before || attempt > 2;
    if (!m_outcome.saveTold)
        return;
    ExpectThatSuccessesStay();
    m_fault.Repair(database);
    model::gSettings = settings;
    EXPECT_TRUE(host::Connect());
    EXPECT_TRUE(store::SaveAll());
    model::gSettings = nullptr;
    host::Disconnect();
}

// The database is what the statements that arrived there make of it.
void Day::ExpectThatSuccessesStay()
{
    support::TestDatabase copy;
    copy.Run(kSite);
    copy.Run(kMore);
    for (const std::string &statement : Log())
    {
        runtime::ErrorTrap refused; // there, too
        refused.Try([&] { copy.Run(statement); });
    }
    EXPECT_EQ(RowsOf(copy), m_outcome.saved);
}

namespace
{

// Each row is as it was, or as it was to become; what was not touched is there.
void ExpectNothingElse(const Outcome &undisturbed, const Lines &rows)
{
    const std::set<std::string> before = AsSet(WithoutNumbers(undisturbed.initial));
    const std::set<std::string> after = AsSet(WithoutNumbers(undisturbed.saved));
    const std::set<std::string> now = AsSet(WithoutNumbers(rows));
    for (const std::string &row : now)
        EXPECT_TRUE(before.contains(row) || after.contains(row)) << "nobody wanted the row " << row;
    for (const std::string &row : before)
        EXPECT_TRUE(!after.contains(row) || now.contains(row)) << "nobody touched the row " << row;
}

void ExpectNothingLost(const Outcome &undisturbed, const Outcome &day, bool silent)
{
    if (day.boxes.empty() && !silent)
    {
        EXPECT_EQ(undisturbed.shown, day.shown) << "nothing was told";
        EXPECT_EQ(WithoutNumbers(undisturbed.final), WithoutNumbers(day.final)) << "nothing was told";
    }
    if (!day.saveTold)
    {
        EXPECT_EQ(WithoutNumbers(undisturbed.saved), WithoutNumbers(day.saved)) << "Save has told nothing";
    }
    ExpectNothingElse(undisturbed, day.saved);
    EXPECT_EQ(AsSet(WithoutNumbers(undisturbed.final)), AsSet(WithoutNumbers(day.final)));
}

} // namespace

void CountDown(int stride, const std::function<std::unique_ptr<Fault>(int place)> &make)
{
    if (const char *const value = std::getenv("KV_STRIDE"))
        stride = std::max(1, std::atoi(value));
    Fault none;
    const Outcome undisturbed = Day(none).Play();
    ASSERT_EQ(Lines(), undisturbed.boxes);
    ASSERT_FALSE(testing::Test::HasFailure());
    int place = 1, days = 0, told = 0;
    for (;; place += stride, ++days)
    {
        SCOPED_TRACE("place " + std::to_string(place));
        const std::unique_ptr<Fault> fault = make(place);
        const Outcome day = Day(*fault, undisturbed.shown).Play();
        ExpectNothingLost(undisturbed, day, fault->MayBeSilent());
        EXPECT_TRUE(day.boxes.empty() || !fault->MustBeSilent());
        EXPECT_TRUE(!day.boxes.empty() || !day.fired || !fault->MustBeTold());
        if (testing::Test::HasFailure())
        {
            std::cout << testing::PrintToString(day.boxes) << "\n";
            return;
        }
        if (!day.fired)
            break;
        told += day.boxes.empty() ? 0 : 1;
    }
#ifdef __SANITIZE_ADDRESS__
    EXPECT_EQ(0, __lsan_do_recoverable_leak_check());
#endif
    std::cout << days << " days, at places up to " << place - stride << "; on " << told << " errors were told\n";
    EXPECT_GT(days, 0);
}

} // namespace faults
