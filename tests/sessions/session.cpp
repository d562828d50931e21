// One session of a host and its users: see session.h.
#include "session.h"

#include "headless/stage.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "model/globals.h"
#include "play/acts.h"
#include "play/options.h"
#include "report.h"
#include "runtime/text.h"
#include "script/failure.h"
#include "support/test_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace sessions
{

namespace
{

constexpr const char *kRoot = "C:\\ROOT";
constexpr const char *kSuite = "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0";
constexpr int kUser = 7;
constexpr int kYesNo = 4;
constexpr std::size_t kEndless = 40;

constexpr const char *kLists[] = {"lvwFormats", "lvwHeadings"};
constexpr const char *kBoxes[] = {"chkTagKnown", "chkTagMixed"};

// The number in front of Key12-3 or Key12.
int Number(const std::string &key)
{
    return std::stoi(key.substr(3));
}

std::string Folded(const std::string &name)
{
    return runtime::UpperCase(runtime::Trim(name));
}

} // namespace

// --- The site

Site::Site() : m_source({}), m_rows("BEGIN TRANSACTION DELETE FROM System_log")
{
    const std::string data = support::SourcePath("tests/sessions/site.data");
    m_localRoot.Make(kRoot);
    m_source.Load(data);
    m_world.emplace([this](const std::string &sql) { return Query(sql); });
    for (const char *table : {"System_user_cfg", "Report_headers", "Report_header_formats", "Report_header_settings",
                              "System_partitions", "account_info", "reports_cfg"})
        m_rows += std::string(" DELETE FROM ") + table;
    m_rows += "\n" + support::ReadFile(data) + "COMMIT TRANSACTION";
}

void ForgetComponent()
{
    host::gResultset.reset();
    host::Disconnect();
    model::gPartitions = nullptr;
    model::gCurrentPartition = nullptr;
    model::gFormats = nullptr;
    model::gHeadings = nullptr;
    model::gSettings = nullptr;
}

void Site::Reset()
{
    ForgetComponent();
    for (const char *name : {"statements", "faults"})
        std::ofstream(m_source.Folder().Path(name), std::ios::trunc);
    m_source.Connection().Run(m_rows);
}

void SetUpHost(scenario::Stage &stage, const scenario::Source &source)
{
    for (const auto &[name, value] : source.HostProperties())
        stage.SetProperty(name, value);
    stage.SetProperty("User_ID", std::int16_t{kUser});
    stage.SetMachineRegistry(kSuite, "LocalRootDir", kRoot);
}

unsigned FromEnvironment(const char *name, unsigned otherwise)
{
    const char *const value = std::getenv(name);
    return value ? static_cast<unsigned>(std::strtoul(value, nullptr, 10)) : otherwise;
}

// --- What is seen

Seen Seen::Look(scenario::Stage &stage)
{
    Seen seen;
    for (const Table table : {kFormat, kHeading})
    {
        auto &list = seen.records[table] = std::get<scenario::ListState>(stage.Read(kLists[table]));
        if (list.selected >= 0)
            seen.selected[table] = Number(list.items[static_cast<std::size_t>(list.selected)].key);
        seen.options[table] = std::get<scenario::BoxState>(stage.Read(kBoxes[table])).checked;
    }
    seen.reportTypes = std::get<scenario::ListState>(stage.Read("lvwReportType"));
    seen.partitions = std::get<scenario::ComboState>(stage.Read("cmbPartition"));
    seen.accounts = std::get<scenario::ComboState>(stage.Read("cmbAccList"));
    seen.choices = std::get<scenario::ComboState>(stage.Read("cmbFormats"));
    const auto data = [](const scenario::ComboState &combo)
    { return combo.selected < 0 ? 0 : combo.entries[static_cast<std::size_t>(combo.selected)].data; };
    seen.partition = data(seen.partitions);
    seen.account = data(seen.accounts);
    if (const auto &types = seen.reportTypes; types.selected >= 0)
        seen.reportType = Number(types.items[static_cast<std::size_t>(types.selected)].key);
    return seen;
}

std::map<int, std::string> Seen::Names(Table table) const
{
    std::map<int, std::string> names;
    for (const scenario::ListState::Item &item : records[table].items)
        names[Number(item.key)] = item.text;
    return names;
}

int Seen::FormatAt(int position) const
{
    if (position >= 0)
        for (const scenario::ListState::Item &item : records[kFormat].items)
            if (item.text + " \\ " + item.second == choices.entries[static_cast<std::size_t>(position)].text)
                return Number(item.key);
    return -1;
}

// --- The play

Session::Session(Site &site, Next next)
    : m_site(site), m_next(std::move(next)), m_statements(site.Source().Folder().Path("statements").string())
{
    m_site.Reset();
    m_found = Database();
    m_stage = scenario::MakeHeadlessStage(*this);
    SetUpHost(*m_stage, m_site.Source());
}

Session::~Session()
{
    m_stage.reset();
    ForgetComponent();
}

Outcome Session::Play()
{
    PlayWhile([] { return true; });
    CheckLog();
    return {m_mismatch, m_played};
}

void Session::PlayWhile(const std::function<bool()> &open)
{
    if (m_stage->WindowIsOpen())
    {
        m_open = open;
        Opened();
    }
    while (m_mismatch.empty() && open())
    {
        const std::optional<Step> step = m_next(*this);
        if (!step)
            break;
        PlayOne(*step);
    }
    m_open = nullptr;
}

void Session::PlayOne(const Step &step)
{
    const scenario::Script script = scenario::ParseScript("session", step.line);
    const scenario::Command &command = script.commands.front();
    const bool isShow = command.form->verb == scenario::Verb::Show;
    if (WindowIsOpen() ? isShow : command.form->needsWindow)
        return;
    m_current = m_played.size();
    m_played.push_back({step.line, {}, false});
    m_answers = step.answers;
    m_boxes.clear();
    const Seen before = m_seen;
    try
    {
        CarryOut(command);
    }
    catch (const scenario::Refusal &)
    {
        m_played.pop_back(); // nothing that this window lets a user do
        return;
    }
    if (!isShow)
    {
        m_played.back().open = WindowIsOpen();
        CheckTold(false);
    }
    if (command.form->needsWindow)
        Check(command, before);
}

void Session::CarryOut(const scenario::Command &command)
{
    const scenario::Verb verb = command.form->verb;
    m_cut = m_cut || verb == scenario::Verb::Cut || verb == scenario::Verb::Refuse;
    if (verb == scenario::Verb::Host)
        m_hostPartition = command.Number(1);
    scenario::CarryOut(command, *m_stage, m_site.Source());
    if (verb == scenario::Verb::Exec)
        m_found = Database();
}

std::string Session::AnswerBox(const scenario::ShownBox &box)
{
    m_boxes.push_back(box);
    if (m_boxes.size() > kEndless)
    {
        Claim(false, "the boxes do not end: " + box.text);
        std::ofstream(m_site.Source().Folder().Path("faults"), std::ios::trunc);
    }
    std::string answer = "OK";
    if (box.flags & kYesNo)
    {
        m_answers.push_back("No"); // unless one is prepared
        answer = m_answers.front();
        m_answers.pop_front();
    }
    m_played[m_current].answers.push_back(answer);
    return answer;
}

bool Session::Box(const std::string &text) const
{
    return std::ranges::any_of(m_boxes, [&](const scenario::ShownBox &box) { return box.text.starts_with(text); });
}

Rows Session::Database()
{
    Rows rows = ReadRows([this](const std::string &sql) { return Query(sql); });
    for (const auto &[key, row] : rows)
        m_used.insert(key);
    return rows;
}

// --- The claims

void Session::Opened()
{
    m_played[m_current].open = true;
    m_tab = 0;
    m_partial = !m_boxes.empty();
    m_model.emplace(m_found, m_site.World(), m_hostPartition);
    CheckTold(true);
    m_seen = Seen::Look(*m_stage);
    if (!m_partial)
        CheckLists(m_seen);
}

// Who asks for something and does not get it is told why; of a load, which may fail at several places, the last reason.
// After a cut the statement may have been sent once more.
void Session::CheckTold(bool ofLoad)
{
    std::string error;
    for (const scenario::Statement &statement : m_statements.Take())
        if (!statement.error.empty())
            error = statement.error;
    const std::string cause = error.substr(std::min(error.size(), error.rfind(": ") + 2));
    Claim(error.empty() || m_cut ||
              std::ranges::any_of(m_boxes,
                                  [&](const auto &box) { return ofLoad || box.text.find(cause) != std::string::npos; }),
          "nobody was told of " + error);
    ExpectLog();
    if (!m_boxes.empty())
        CheckLog();
}

// Every error that was shown is a row of the log, but where the row could not be written: that has a box, and a row, of
// its own.
void Session::ExpectLog()
{
    struct Code
    {
        const char *shown;
        int code;
        const char *logged = nullptr; // null: as shown
    };
    static constexpr Code kCodes[] = {{"writing to error log file: ", 21000, "loading form: "},
                                      {"adding format: ", 21001},
                                      {"adding heading: ", 21002},
                                      {"applying format to all accounts: ", 21003},
                                      {"applying format to all reports: ", 21004},
                                      {"accessing accounts: ", 21005},
                                      {"accessing reports: ", 21006},
                                      {"logging: ", 21008},
                                      {"accessing data: ", 21010}, // of the tagging options: 21009
                                      {"printing settings: ", 21011}};
    const std::string front = "Error encountered while ";
    for (std::size_t i = 0; i < m_boxes.size(); ++i)
        for (const Code &code : kCodes)
            if (const std::string start = front + code.shown;
                m_boxes[i].text.starts_with(start) &&
                (i + 1 == m_boxes.size() || !m_boxes[i + 1].text.starts_with(front + "logging: ")))
                m_log.push_back(
                    std::to_string(kUser) + " | " + std::to_string(code.code) + " | 2 | 0 | " +
                    (front + (code.logged ? code.logged : code.shown) + m_boxes[i].text.substr(start.size()))
                        .substr(0, 90));
}

void Session::CheckLog()
{
    std::vector<std::string> rows = Query("SELECT user_id, error_code, severity, type, msg1 FROM System_log");
    for (std::string &row : rows)
        if (const std::size_t code = row.find("21009"); code == std::to_string(kUser).size() + 3)
            row.replace(code, 5, "21010");
    if (rows != m_log)
        Claim(false, "the log has " + (rows.empty() ? "nothing" : rows.back()) + " instead of " +
                         (m_log.empty() ? "nothing" : m_log.back()));
}

void Session::Check(const scenario::Command &command, const Seen &before)
{
    const std::string &name = command.arguments.empty() ? "" : command.Text(0);
    if (command.form->verb == scenario::Verb::Close || name == "btnCancel" || name == "btnSave")
        return CheckEnd(name);
    m_seen = Seen::Look(*m_stage);
    if (m_partial)
        return;
    const Seen &now = m_seen;
    const scenario::Verb verb = command.form->verb;
    if (verb == scenario::Verb::Tab)
        m_tab = command.Number(0);
    else if (verb == scenario::Verb::Choose)
        CheckChoice(name, before, now);
    else if (verb == scenario::Verb::Pick && name != kLists[kFormat])
        CheckFormatShown(now);
    else if (verb == scenario::Verb::Rename)
        CheckRename(command, before);
    else if (verb == scenario::Verb::Toggle)
        CheckToggle(name, before, now);
    else if (verb == scenario::Verb::Click)
        CheckClick(name, before, now);
    CheckLists(now);
}

void Session::CheckToggle(const std::string &box, const Seen &before, const Seen &now)
{
    for (const int option : {kKnown, kMixed})
        if (box == kBoxes[option])
        {
            Claim(before.options[option] != now.options[option], "the box stays as it was");
            return m_model->Set({kOption, now.partition, option}, {.name = now.options[option] ? "True" : "False"});
        }
    const Key key{kFormat, before.selected[kFormat]};
    Row format = m_model->At(key);
    format.attributes.at(static_cast<std::size_t>(box[9] - '0')) =
        std::get<scenario::BoxState>(m_stage->Read(box)).checked;
    m_model->Set(key, format);
}

void Session::CheckChoice(const std::string &combo, const Seen &before, const Seen &now)
{
    if (combo == "cmbFormats")
    {
        // To choose what is chosen is no choice.
        if (before.choices.selected != now.choices.selected)
            m_model->Choose(now.selected[kHeading], now.account, now.reportType, now.partition,
                            now.FormatAt(now.choices.selected));
        return;
    }
    // The boxes are set by the program, which counts as an edit.
    if (!std::ranges::equal(before.options, now.options))
        m_model->MarkChanged();
    CheckFormatShown(now);
}

void Session::CheckClick(const std::string &button, const Seen &before, const Seen &now)
{
    const bool isFormat = button == "btnAdd" || button == "btnDelete";
    const Table table = isFormat ? kFormat : kHeading;
    if (button.starts_with("btnAdd"))
        return CheckAdded(table, before, now);
    if (button.starts_with("btnDelete"))
    {
        if (!m_boxes.empty() && m_played[m_current].answers.front() == "Yes")
            m_model->Delete({table, before.selected[table]});
        return;
    }
    if (!button.starts_with("btnAll"))
        return;
    const int heading = before.selected[kHeading], format = before.FormatAt(before.choices.selected);
    const bool all = button == "btnAllAccounts";
    Claim(m_boxes.empty() == (format >= 0 && (all || before.accounts.selected > 0)), "a message, or none");
    if (!m_boxes.empty())
        return;
    std::vector<int> accounts;
    for (const scenario::ComboState::Entry &entry : before.accounts.entries)
        accounts.push_back(entry.data);
    if (all)
        m_model->ApplyToAccounts(heading, accounts, before.partition, format);
    else
        m_model->ApplyToReports(heading, before.account, format);
}

bool Session::Taken(Table table, const std::string &name, const std::function<bool(int)> &meant) const
{
    return std::ranges::any_of(
        m_model->Now(), [&](const auto &row)
        { return row.first[0] == table && meant(row.second.partition) && Folded(row.second.name) == Folded(name); });
}

void Session::CheckAdded(Table table, const Seen &before, const Seen &now)
{
    if (Box("Error encountered while adding"))
        return;
    const scenario::ListState::Item &item =
        now.records[table].items[static_cast<std::size_t>(now.records[table].selected)];
    const Key copied{table, before.selected[table]}, key{table, now.selected[table]};
    Claim(m_used.insert(key).second, "the number of " + item.key + " was used before");
    Claim(item.key.ends_with("-" + std::to_string(now.partition)), "the new one belongs to another partition");
    Claim(!Taken(table, item.text,
                 [&](int owner) { return table == kFormat ? owner == now.partition : m_model->Loaded(owner); }),
          "the name of the new one is taken");
    Row row{item.text, now.partition};
    if (table == kFormat)
        row.attributes = m_model->At(copied).attributes;
    m_model->Set(key, row);
    if (table == kFormat)
        return;
    if (copied[1] != 0) // "<Default>" is not copied
        m_model->CopySettings(copied[1], key[1]);
    CheckFormatShown(now);
}

void Session::CheckRename(const scenario::Command &command, const Seen &before)
{
    const Table table = command.Text(0) == kLists[kFormat] ? kFormat : kHeading;
    const Key key{table, before.selected[table]};
    const std::string &name = command.Text(1);
    Row row = m_model->At(key);
    if (m_model->ReadOnly(row))
        return Claim(m_boxes.empty(), "a message for an edit that never began");
    // A heading's name must be new among those of the current partition and above it.
    const bool taken =
        Taken(table, name,
              [&](int owner)
              { return table == kFormat ? owner == row.partition : m_site.World().Shows(before.partition, owner); });
    const std::string what = table == kFormat ? "format" : "heading";
    if (Folded(name).empty())
        return Claim(Box("You must enter a text value"), "an empty name was not refused");
    if (taken)
        return Claim(Box("This " + what + " name is already being used."), "a name that is taken was not refused");
    Claim(m_boxes.empty(), "a free name was refused");
    row.name = name;
    m_model->Set(key, row);
}

void Session::CheckEnd(const std::string &button)
{
    const Rows before = std::exchange(m_found, Database());
    const bool saves = button == "btnSave";
    const bool saved = saves && !WindowIsOpen(); // without a connection it stays
    const std::string difference = Difference(before, saved ? m_model->Saved(before) : before, m_found,
                                              saved && !m_boxes.empty() ? &m_model->Touched() : nullptr);
    Claim(difference.empty(), (saves ? "after Save " : "without Save ") + difference);
    if (saves)
        return;
    if (m_partial)
        return;
    Claim(Box("Are you sure you want to cancel all changes?") == m_model->Changed(),
          m_model->Changed() ? "edits were thrown away without a question" : "a question without an edit");
    const bool stays = !m_boxes.empty() && m_played[m_current].answers.front() == "No";
    Claim(WindowIsOpen() == stays, "the window does not go by the answer");
}

void Session::CheckFormatShown(const Seen &now)
{
    const int heading = now.selected[kHeading];
    if (heading < 0 || m_model->Ambiguous(heading))
        return;
    const int shown = now.FormatAt(now.choices.selected);
    const int expected = m_model->FormatOf(heading, now.account, now.reportType, now.partition);
    Claim(shown == expected, "heading " + std::to_string(heading) + " shows format " + std::to_string(shown) +
                                 ", not " + std::to_string(expected));
}

void Session::CheckLists(const Seen &now)
{
    for (const Table table : {kFormat, kHeading})
        Claim(now.Names(table) == m_model->Names(table, now.partition),
              std::string(kLists[table]) + " is not as it was left");
    Claim(now.choices.entries.size() == now.records[kFormat].items.size(), "the drop-down list has other formats");
    for (const int option : {kKnown, kMixed})
        Claim(now.options[option] == (m_model->At({kOption, now.partition, option}).name == "True"),
              "the tagging options are not as they were left");
    if (m_tab != 1 || now.selected[kFormat] < 0)
        return;
    const Row &format = m_model->At({kFormat, now.selected[kFormat]});
    for (int i = 0; i < 6; ++i)
    {
        const auto box = std::get<scenario::BoxState>(m_stage->Read("SSCheck1(" + std::to_string(i) + ")"));
        Claim(box.checked == format.attributes[static_cast<std::size_t>(i)],
              "box " + std::to_string(i) + " does not show the format that is selected");
        Claim(box.enabled != m_model->ReadOnly(format), "the format that is selected may be edited, or may not");
    }
}

void Session::ReportOpened(const std::string &path)
{
    if (!m_boxes.empty())
        return; // a query failed
    const std::string different = ReportDifference(path, m_found, m_seen.partition, m_site.World());
    Claim(different.empty(), "the report and the database differ in: " + different);
}

// --- Playing again

Outcome Shorten(Site &site, const Outcome &outcome)
{
    Outcome shortest = outcome;
    for (std::size_t i = 0; i < shortest.played.size();)
    {
        Script script = shortest.played;
        script.erase(script.begin() + static_cast<std::ptrdiff_t>(i++));
        std::size_t next = 0;
        Session again(site, [&](Session &)
                      { return next < script.size() ? std::optional<Step>(script[next++]) : std::nullopt; });
        if (Outcome shorter = again.Play(); !shorter.mismatch.empty())
        {
            shortest = std::move(shorter);
            i = 0; // what is gone may make more superfluous
        }
    }
    return shortest;
}

std::string ToScenario(const Script &script, const std::string &whileOpen)
{
    std::string text = "data site.data\nregistry "
                       R"("SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0" LocalRootDir "C:\\ROOT")"
                       "\nhost User_ID " +
                       std::to_string(kUser) + "\n";
    for (const Step &step : script)
    {
        text += step.answers.empty() ? "" : "answer";
        for (const std::string &answer : step.answers)
            text += " " + answer;
        text += (step.answers.empty() ? "" : "\n") + step.line + "\n" + (step.open ? whileOpen : "");
    }
    return text;
}

} // namespace sessions
