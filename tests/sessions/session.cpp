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

namespace sessions
{

namespace
{

constexpr const char *kRoot = "C:\\ROOT";
constexpr const char *kSuite = "SOFTWARE\\Venhart and Company\\Talvik Report 2.0 for Windows\\2.0";
constexpr int kUser = 7;
constexpr int kYesNo = 4;
constexpr std::size_t kEndless = 40;

// The parts of Key12-3; of Key4 the first alone.
Seen::Key ParseKey(const std::string &key)
{
    const std::size_t dash = key.find('-');
    return {std::stoi(key.substr(3, dash)), dash == std::string::npos ? 0 : std::stoi(key.substr(dash + 1))};
}

Seen::Key Selected(const scenario::ListState &list)
{
    return list.selected < 0 ? Seen::Key() : ParseKey(list.items[static_cast<std::size_t>(list.selected)].key);
}

std::string Folded(const std::string &name)
{
    return runtime::UpperCase(runtime::Trim(name));
}

std::string Quoted(const std::string &text)
{
    return "\"" + text + "\"";
}

} // namespace

// --- The site

Site::Site() : m_source({}), m_rows("BEGIN TRANSACTION DELETE FROM System_log")
{
    m_localRoot.Make(kRoot);
    m_source.Load(support::SourcePath("tests/sessions/site.data"));
    m_first = Rows::Read([this](const std::string &sql) { return Query(sql); });
    for (const char *table : {"System_user_cfg", "Report_headers", "Report_header_formats", "Report_header_settings"})
        m_rows += std::string(" DELETE FROM ") + table;
    // The rows of these, one INSERT a table.
    std::ifstream file(support::SourcePath("tests/sessions/site.data"));
    std::string table;
    for (std::string line; std::getline(file, line);)
    {
        const std::size_t values = line.find("VALUES ");
        if (values == std::string::npos ||
            m_rows.find(" " + line.substr(12, line.find(' ', 12) - 12)) == std::string::npos)
            continue;
        m_rows += table == line.substr(0, values) ? ", " + line.substr(values + 7) : "\n" + line;
        table = line.substr(0, values);
    }
    m_rows += " COMMIT TRANSACTION";
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

const std::vector<std::string> &Site::QueryOnce(const std::string &sql)
{
    const auto [known, isNew] = m_known.try_emplace(sql);
    if (isNew)
        known->second = Query(sql);
    return known->second;
}

// --- What is seen

Seen Seen::Look(scenario::Stage &stage)
{
    Seen seen;
    seen.formats = std::get<scenario::ListState>(stage.Read("lvwFormats"));
    seen.headings = std::get<scenario::ListState>(stage.Read("lvwHeadings"));
    seen.reportTypes = std::get<scenario::ListState>(stage.Read("lvwReportType"));
    seen.partitions = std::get<scenario::ComboState>(stage.Read("cmbPartition"));
    seen.accounts = std::get<scenario::ComboState>(stage.Read("cmbAccList"));
    seen.choices = std::get<scenario::ComboState>(stage.Read("cmbFormats"));
    seen.format = Selected(seen.formats);
    seen.heading = Selected(seen.headings);
    const auto data = [](const scenario::ComboState &combo)
    { return combo.selected < 0 ? 0 : combo.entries[static_cast<std::size_t>(combo.selected)].data; };
    seen.partition = data(seen.partitions);
    seen.account = data(seen.accounts);
    seen.reportType = seen.reportTypes.selected < 0 ? 0 : Selected(seen.reportTypes).id;
    seen.known = std::get<scenario::BoxState>(stage.Read("chkTagKnown")).checked;
    seen.mixed = std::get<scenario::BoxState>(stage.Read("chkTagMixed")).checked;
    return seen;
}

int Session::FormatAt(const Seen &seen, int position) const
{
    if (position < 0)
        return -1;
    const std::string &text = seen.choices.entries[static_cast<std::size_t>(position)].text;
    for (const scenario::ListState::Item &item : seen.formats.items)
        if (item.text + " \\ " + item.second == text)
            return ParseKey(item.key).id;
    return -1;
}

// --- The play

Session::Session(Site &site, Next next)
    : m_site(site), m_next(std::move(next)), m_statements(site.Source().Folder().Path("statements").string())
{
    m_site.Reset();
    Remember(m_found = m_site.First());
    m_stage = scenario::MakeHeadlessStage(*this);
    for (const auto &[name, value] : m_site.Source().HostProperties())
        m_stage->SetProperty(name, value);
    m_stage->SetProperty("User_ID", std::int16_t{kUser});
    m_stage->SetMachineRegistry(kSuite, "LocalRootDir", kRoot);
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
        ExpectLog();
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
        answer = m_answers.empty() ? "No" : m_answers.front();
        if (!m_answers.empty())
            m_answers.pop_front();
    }
    m_played[m_current].answers.push_back(answer);
    return answer;
}

bool Session::Box(const std::string &text) const
{
    return std::ranges::any_of(m_boxes, [&](const scenario::ShownBox &box) { return box.text.find(text) == 0; });
}

Rows Session::Database()
{
    Rows rows = Rows::Read([this](const std::string &sql) { return Query(sql); });
    Remember(rows);
    return rows;
}

void Session::Remember(const Rows &rows)
{
    for (const auto &[id, format] : rows.formats)
        m_formatIds.insert(id);
    for (const auto &[id, heading] : rows.headings)
        m_headingIds.insert(id);
}

// --- The claims

void Session::Opened()
{
    m_played[m_current].open = true;
    m_tab = 0;
    m_partial = !m_boxes.empty();
    m_model.emplace(
        m_found, [this](const std::string &sql) { return m_site.QueryOnce(sql); }, m_hostPartition);
    CheckTold(true);
    ExpectLog();
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
    if (error.empty() || m_cut)
        return;
    const std::string cause = error.substr(error.rfind(": ") + 2);
    Claim(std::ranges::any_of(m_boxes,
                              [&](const auto &box) { return ofLoad || box.text.find(cause) != std::string::npos; }),
          "nobody was told of " + error);
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
    if (!m_boxes.empty())
        CheckLog();
}

void Session::CheckLog()
{
    std::vector<std::string> rows = Query("SELECT user_id, error_code, severity, type, msg1 FROM System_log");
    for (std::string &row : rows)
        if (const std::size_t code = row.find("21009"); code == std::to_string(kUser).size() + 3)
            row.replace(code, 5, "21010");
    const auto [expected, row] = std::ranges::mismatch(m_log, rows);
    Claim(expected == m_log.end() && row == rows.end(), "the log has " + (row == rows.end() ? "nothing" : *row) +
                                                            " instead of " +
                                                            (expected == m_log.end() ? "nothing" : *expected));
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
    switch (command.form->verb)
    {
    case scenario::Verb::Tab:
        m_tab = command.Number(0);
        break;
    case scenario::Verb::Choose:
        CheckChoice(name, before, now);
        break;
    case scenario::Verb::Pick:
        if (name != "lvwFormats")
            CheckFormatShown(now);
        break;
    case scenario::Verb::Rename:
        CheckRename(command, before);
        break;
    case scenario::Verb::Toggle:
        if (name == "chkTagKnown")
            m_model->SetOption(now.partition, "TagKnownHeadings", now.known);
        else if (name == "chkTagMixed")
            m_model->SetOption(now.partition, "TagMixedCaseHeadings", now.mixed);
        else
            m_model->SetAttribute(before.format.id, name[9] - '0',
                                  std::get<scenario::BoxState>(m_stage->Read(name)).checked);
        Claim(name.starts_with("SSCheck1") || before.known != now.known || before.mixed != now.mixed,
              "the box stays as it was");
        break;
    case scenario::Verb::Click:
        CheckClick(name, before, now);
        break;
    default:
        break;
    }
    CheckLists(now);
}

void Session::CheckChoice(const std::string &combo, const Seen &before, const Seen &now)
{
    if (combo == "cmbFormats")
    {
        // To choose what is chosen is no choice.
        if (before.choices.selected != now.choices.selected)
            m_model->Choose(now.heading.id, now.account, now.reportType, now.partition,
                            FormatAt(now, now.choices.selected));
        return;
    }
    // The boxes are set by the program, which counts as an edit.
    if (before.known != now.known || before.mixed != now.mixed)
        m_model->MarkChanged();
    CheckFormatShown(now);
}

void Session::CheckClick(const std::string &button, const Seen &before, const Seen &now)
{
    const bool confirmed = !m_boxes.empty() && m_played[m_current].answers.front() == "Yes";
    if (button == "btnAdd" || button == "btnAddHead")
        CheckAdded(button == "btnAdd", before, now);
    else if (button == "btnDelete" && confirmed)
        m_model->DeleteFormat(before.format.id);
    else if (button == "btnDeleteHead" && confirmed)
        m_model->DeleteHeading(before.heading.id);
    else if (button == "btnAllAccounts" || button == "btnAllReports")
    {
        const int format = FormatAt(before, before.choices.selected);
        const bool all = button == "btnAllAccounts";
        Claim(m_boxes.empty() == (format >= 0 && (all || before.accounts.selected > 0)), "a message, or none");
        if (!m_boxes.empty())
            return;
        std::vector<int> accounts;
        for (const scenario::ComboState::Entry &entry : before.accounts.entries)
            accounts.push_back(entry.data);
        if (all)
            m_model->ApplyToAccounts(before.heading.id, accounts, before.partition, format);
        else
            m_model->ApplyToReports(before.heading.id, before.account, format);
    }
}

void Session::CheckAdded(bool isFormat, const Seen &before, const Seen &now)
{
    if (Box("Error encountered while adding"))
        return;
    const Seen::Key key = isFormat ? now.format : now.heading;
    const scenario::ListState &list = isFormat ? now.formats : now.headings;
    const std::string &name = list.items[static_cast<std::size_t>(list.selected)].text;
    Claim((isFormat ? m_formatIds : m_headingIds).insert(key.id).second,
          "the number " + std::to_string(key.id) + " was used before");
    Claim(key.partition == now.partition, "the new one belongs to another partition");
    const auto taken = [&](const auto &records, bool everywhere)
    {
        return std::ranges::any_of(records,
                                   [&](const auto &record) {
                                       return (everywhere || record.second.partition == now.partition) &&
                                              Folded(record.second.name) == Folded(name);
                                   });
    };
    if (isFormat)
    {
        Claim(!taken(m_model->Now().formats, false), "the name of the new format is taken");
        m_model->AddFormat(key.id,
                           {name, m_model->Now().formats.at(before.format.id).attributes, false, now.partition});
        return;
    }
    Rows loaded = m_model->Now();
    std::erase_if(loaded.headings, [&](const auto &heading) { return !m_model->Loaded(heading.second.partition); });
    Claim(!taken(loaded.headings, true), "the name of the new heading is taken");
    m_model->AddHeading(key.id, {name, now.partition}, before.heading.id);
    CheckFormatShown(now);
}

void Session::CheckRename(const scenario::Command &command, const Seen &before)
{
    const bool isFormat = command.Text(0) == "lvwFormats";
    const Seen::Key key = isFormat ? before.format : before.heading;
    const std::string &name = command.Text(1);
    const Rows &rows = m_model->Now();
    if (m_model->ReadOnly(key.partition, isFormat ? rows.formats.at(key.id).system : key.id == 0))
    {
        Claim(m_boxes.empty(), "a message for an edit that never began");
        return;
    }
    const std::vector<int> lineage = m_model->Shown(before.partition);
    bool taken = false;
    if (isFormat)
        for (const auto &[id, format] : rows.formats)
            taken = taken || (format.partition == key.partition && Folded(format.name) == Folded(name));
    else
        for (const auto &[id, heading] : rows.headings) // those of the current partition and its ancestors
            taken =
                taken || (std::ranges::count(lineage, heading.partition) > 0 && Folded(heading.name) == Folded(name));
    const std::string what = isFormat ? "format" : "heading";
    if (Folded(name).empty())
        Claim(Box("You must enter a text value"), "an empty name was not refused");
    else if (taken)
        Claim(Box("This " + what + " name is already being used."), "a name that is taken was not refused");
    else if (Claim(m_boxes.empty(), "a free name was refused"); isFormat)
        m_model->RenameFormat(key.id, name);
    else
        m_model->RenameHeading(key.id, name);
}

void Session::CheckEnd(const std::string &button)
{
    const Rows now = Database();
    if (button == "btnSave")
    {
        const bool failed = !m_boxes.empty();
        const bool connected = !WindowIsOpen();
        const std::string difference = Difference(m_found, connected ? m_model->Saved(m_found) : m_found, now,
                                                  failed && connected ? &m_model->Touched() : nullptr);
        Claim(difference.empty(), "after Save " + difference);
        m_found = now;
        return;
    }
    const std::string difference = Difference(m_found, m_found, now);
    m_found = now;
    Claim(difference.empty(), "without Save " + difference);
    if (m_partial)
        return;
    Claim(Box("Are you sure you want to cancel all changes?") == m_model->Changed(),
          m_model->Changed() ? "edits were thrown away without a question" : "a question without an edit");
    const bool stays = !m_boxes.empty() && m_played[m_current].answers.front() == "No";
    Claim(WindowIsOpen() == stays, "the window does not go by the answer");
}

void Session::CheckFormatShown(const Seen &now)
{
    if (now.headings.selected < 0 || m_model->Ambiguous(now.heading.id))
        return;
    const int shown = FormatAt(now, now.choices.selected);
    const int expected = m_model->FormatOf(now.heading.id, now.account, now.reportType, now.partition);
    Claim(shown == expected, "heading " + std::to_string(now.heading.id) + " of account " +
                                 std::to_string(now.account) + " and report type " + std::to_string(now.reportType) +
                                 " shows format " + std::to_string(shown) + ", not " + std::to_string(expected));
}

void Session::CheckLists(const Seen &now)
{
    const auto same = [&](const scenario::ListState &list, const auto &records)
    {
        std::map<int, std::string> seen, expected;
        for (const scenario::ListState::Item &item : list.items)
            seen[ParseKey(item.key).id] = item.text;
        for (const int partition : m_model->Shown(now.partition))
            for (const auto &[id, record] : records)
                if (record.partition == partition)
                    expected[id] = record.name;
        return seen == expected;
    };
    Claim(same(now.formats, m_model->Now().formats), "the list of formats is not as it was left");
    Claim(same(now.headings, m_model->Now().headings), "the list of headings is not as it was left");
    Claim(now.choices.entries.size() == now.formats.items.size(), "the drop-down list has other formats");
    Claim(now.known == m_model->Option(now.partition, "TagKnownHeadings") &&
              now.mixed == m_model->Option(now.partition, "TagMixedCaseHeadings"),
          "the tagging options are not as they were left");
    if (m_tab != 1 || now.formats.selected < 0)
        return;
    const Format &format = m_model->Now().formats.at(now.format.id);
    for (int i = 0; i < 6; ++i)
    {
        const auto box = std::get<scenario::BoxState>(m_stage->Read("SSCheck1(" + std::to_string(i) + ")"));
        Claim(box.checked == format.attributes[static_cast<std::size_t>(i)],
              "box " + std::to_string(i) + " does not show the format that is selected");
        Claim(box.enabled != m_model->ReadOnly(format.partition, format.system),
              "the format that is selected may be edited, or may not");
    }
}

void Session::ReportOpened(const std::string &path)
{
    if (!m_boxes.empty())
        return; // a query failed
    const std::string different = ReportDifference(path, m_found, m_seen.partition,
                                                   [this](const std::string &sql) { return m_site.QueryOnce(sql); });
    Claim(different.empty(), "the report and the database differ in: " + different);
}

// --- Playing again

Outcome PlayAgain(Site &site, const Script &script)
{
    std::size_t next = 0;
    return Session(site,
                   [&](Session &) { return next < script.size() ? std::optional<Step>(script[next++]) : std::nullopt; })
        .Play();
}

Outcome Shorten(Site &site, const Outcome &outcome)
{
    Outcome shortest = outcome;
    for (std::size_t size = 0; size != shortest.played.size();) // what is gone may make more superfluous
    {
        size = shortest.played.size();
        for (std::size_t i = size; i-- > 0;)
        {
            Script script = shortest.played;
            if (i >= script.size())
                continue;
            script.erase(script.begin() + static_cast<std::ptrdiff_t>(i));
            if (Outcome shorter = PlayAgain(site, script); !shorter.mismatch.empty())
                shortest = std::move(shorter);
        }
    }
    return shortest;
}

std::string ToScenario(const Script &script, const std::string &whileOpen)
{
    std::string text = "data site.data\nregistry " +
                       Quoted("SOFTWARE\\\\Venhart and Company\\\\Talvik Report 2.0 for "
                              "Windows\\\\2.0") +
                       " LocalRootDir " + Quoted("C:\\\\ROOT") + "\nhost User_ID " + std::to_string(kUser) + "\n";
    for (const Step &step : script)
    {
        if (!step.answers.empty())
        {
            text += "answer";
            for (const std::string &answer : step.answers)
                text += " " + answer;
            text += "\n";
        }
        text += step.line + "\n" + (step.open ? whileOpen : "");
    }
    return text;
}

} // namespace sessions
