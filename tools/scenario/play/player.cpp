// Plays a script on a stage and writes the transcript: see player.h.
#include "play/player.h"

#include "driver/escape.h"
#include "host/General_Registry.h"
#include "platform/native_path.h"
#include "play/properties.h"
#include "play/report_lines.h"
#include "script/failure.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace scenario
{

namespace
{

constexpr int kYesNo = 4;
constexpr int kButtons = 15;
// The event log asks without an end while it fails: a play that has failed must come to its own.
constexpr int kMostBoxesUnanswered = 20;

// What a user would press who wants to change nothing.
std::string CautiousAnswer(const ShownBox &box)
{
    return (box.flags & kButtons) == kYesNo ? "No" : "OK";
}

bool Has(const ShownBox &box, const std::string &answer)
{
    return (box.flags & kButtons) == kYesNo ? answer != "OK" : answer == "OK";
}

} // namespace

Player::Player(const Script &script, Source &source, std::ostream &out, bool showSql)
    : m_script(script), m_source(source), m_out(out), m_showSql(showSql)
{
}

void Player::Play(Stage &stage)
{
    m_stage = &stage;
    // The component asks the registry, which does not know the data sources of a Unix system; so does Wine 10's driver
    // manager.
    if (const std::string &source = m_source.DataSource(); !source.empty() && !host::IsDataSourceRegistered(source))
    {
        stage.SetMachineRegistry("SOFTWARE\\ODBC\\ODBC.INI\\" + source, "DATABASE", source);
        stage.SetMachineRegistry("SOFTWARE\\ODBC\\ODBC.INI\\ODBC Data Sources", source, "SQL Server");
    }
    for (const auto &[name, value] : m_source.HostProperties())
        stage.SetProperty(name, value);
    PlayWhile([] { return true; });
    if (!m_failure && !m_answers.Empty())
        GiveUp(m_answers.Line(), "no message box has asked for: " + m_answers.Words());
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void Player::PlayWhile(const std::function<bool()> &open)
{
    PrintStatements();
    while (open() && !m_failure && m_next < m_script.commands.size())
        PlayOne();
}

void Player::PlayOne()
{
    const Command &command = m_script.commands[m_next++];
    Print("> " + command.echo);
    m_quiet = command.quiet;
    try
    {
        CarryOut(command);
    }
    catch (const std::exception &problem)
    {
        GiveUp(command.line, problem.what());
    }
    PrintStatements();
    m_out.flush();
}

void Player::GiveUp(int line, const std::string &reason)
{
    if (!m_failure)
        m_failure = std::make_exception_ptr(Failure(m_script.file, line, reason));
}

void Player::CarryOut(const Command &command)
{
    if (command.form->needsWindow)
    {
        if (!m_stage->WindowIsOpen())
            throw Refusal("no window is open");
        CarryOutByPerson(command);
    }
    else
        CarryOutByHost(command);
}

void Player::CarryOutByHost(const Command &command)
{
    switch (command.form->verb)
    {
    case Verb::Data:
        if (m_stage->WindowIsOpen())
            throw Refusal("the window is open");
        m_source.Load(m_script.folder / command.Text(0));
        break;
    case Verb::Exec:
        m_source.Connection().Run(command.Text(0));
        break;
    case Verb::Query:
        for (const std::string &row : m_source.Connection().Query(command.Text(0)))
            Print("row " + row);
        break;
    case Verb::Host:
        m_stage->SetProperty(command.Text(0), ToProperty(command.Text(0), command.Text(1)));
        if (command.Text(0) == "Zentra_INIFile")
            m_iniFile = command.Text(1);
        break;
    case Verb::Site:
        SetSite(command);
        break;
    case Verb::Registry:
        SetRegistry(command);
        break;
    case Verb::Show:
        if (m_stage->WindowIsOpen())
            throw Refusal("the window is open already");
        m_source.Prepare();
        m_stage->Show();
        break;
    case Verb::Answer:
        m_answers.Add(command);
        break;
    case Verb::Fail:
        m_source.Faults().Fail(command.Number(0), command.Text(1), command.Text(2));
        break;
    case Verb::Cut:
        m_source.Faults().Cut(command.Text(0), command.Text(1));
        break;
    case Verb::Refuse:
        m_source.Faults().RefuseConnects(command.Number(0));
        break;
    case Verb::Allow:
        m_source.Faults().AllowConnects();
        break;
    default:
        break;
    }
}

void Player::CarryOutByPerson(const Command &command)
{
    switch (command.form->verb)
    {
    case Verb::Tab:
        m_stage->ShowTab(command.Number(0));
        break;
    case Verb::Choose:
        Choose(command);
        break;
    case Verb::Pick:
        Pick(command);
        break;
    case Verb::Column:
        m_stage->ClickColumn(command.Text(0), command.Number(1));
        break;
    case Verb::Rename:
        m_stage->Rename(command.Text(0), command.Text(1));
        break;
    case Verb::Escape:
        m_stage->EscapeEdit(command.Text(0));
        break;
    case Verb::Toggle:
        m_stage->Toggle(command.Text(0));
        break;
    case Verb::Click:
        m_stage->Click(command.Text(0));
        break;
    case Verb::Close:
        m_stage->Close();
        break;
    case Verb::Dump:
        for (const Word &name : command.arguments)
            m_out << Dump(name.text, m_stage->Read(name.text));
        break;
    default:
        break;
    }
}

void Player::SetSite(const Command &command)
{
    if (m_iniFile.empty())
    {
        m_iniFile = m_source.Folder().Path("ZENTRA.INI").string();
        m_stage->SetProperty("Zentra_INIFile", m_iniFile);
    }
    m_site.Set(platform::NativePath(m_iniFile), command.Text(0), command.Text(1), command.Text(2));
}

void Player::SetRegistry(const Command &command)
{
    m_stage->SetMachineRegistry(command.Text(0), command.Text(1), command.Text(2));
    if (command.Text(1) == "LocalRootDir")
        m_localRoot.Make(command.Text(2));
}

void Player::Choose(const Command &command)
{
    const std::string &name = command.Text(0);
    const ControlState state = m_stage->Read(name);
    const auto *const combo = std::get_if<ComboState>(&state);
    if (!combo)
        throw Refusal(name + " is no drop-down list");
    const Word &entry = command.arguments[1];
    const int position = entry.quoted ? FindText(*combo, entry.text) : command.Number(1);
    if (position < 0 || position >= static_cast<int>(combo->entries.size()))
        throw Refusal(name + " has no entry " + entry.text);
    m_stage->Choose(name, position);
}

void Player::Pick(const Command &command)
{
    const std::string &name = command.Text(0);
    const ControlState state = m_stage->Read(name);
    const auto *const list = std::get_if<ListState>(&state);
    if (!list)
        throw Refusal(name + " is no list");
    const Word &item = command.arguments[1];
    const int position = item.quoted ? FindText(*list, item.text) : FindKey(*list, item.text);
    if (position < 0)
        throw Refusal(name + " has no item " + item.text);
    m_stage->Pick(name, position);
}

void Player::EndProgram()
{
    m_out.flush();
    try
    {
        std::rethrow_exception(m_failure);
    }
    catch (const Failure &failure)
    {
        std::cerr << failure.what() << std::endl;
    }
    std::_Exit(1);
}

std::string Player::AnswerBox(const ShownBox &box)
{
    PrintStatements();
    const std::string line = "box " + std::to_string(box.flags) + " \"" + driver::Escape(box.title) + "\" \"" +
                             driver::Escape(box.text) + "\" -> ";
    const int number = m_script.commands[m_next - 1].line;
    const std::optional<std::string> answer = m_failure ? std::nullopt : m_answers.Take();
    if (answer && Has(box, *answer))
    {
        Print(line + *answer);
        return *answer;
    }
    if (!m_failure)
        Print(line + "?");
    GiveUp(number, answer ? "the message box has no button " + *answer + ": " + box.text
                          : "a message box without an answer: " + box.text);
    if (++m_boxesUnanswered > kMostBoxesUnanswered)
        EndProgram();
    return CautiousAnswer(box);
}

void Player::ReportOpened(const std::string &path)
{
    PrintStatements();
    Print("report " + path);
    std::ifstream file(platform::NativePath(path), std::ios::binary);
    m_out << ReportLines(std::string{std::istreambuf_iterator<char>(file), {}});
}

void Player::ShowFormReturned(int value)
{
    PrintStatements();
    // A window that was left open by a failure, or by the end of the script, is taken down in silence.
    if (!m_failure)
        Print("returned " + std::to_string(value));
}

void Player::PrintStatements()
{
    for (const Statement &statement : m_source.TakeStatements())
    {
        if (!m_showSql || m_failure || (m_quiet && statement.error.empty()))
            continue;
        Print((statement.error.empty() ? "sql " : "sql! ") + statement.text);
        if (!statement.error.empty())
            Print("  error " + statement.error);
    }
}

} // namespace scenario
