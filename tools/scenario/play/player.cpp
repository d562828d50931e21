// Plays a script on a stage and writes the transcript: see player.h.
#include "play/player.h"

#include "driver/escape.h"
#include "host/General_Registry.h"
#include "play/acts.h"
#include "play/native_path.h"
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
    m_without = command.without;
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
    switch (command.form->verb)
    {
    case Verb::Data:
        if (m_stage->WindowIsOpen())
            throw Refusal("the window is open");
        m_source.Load(m_script.folder / command.Text(0));
        break;
    case Verb::Query:
        for (const std::string &row : m_source.Connection().Query(command.Text(0)))
            Print("row " + row);
        break;
    case Verb::Site:
        SetSite(command);
        break;
    case Verb::Registry:
        SetRegistry(command);
        break;
    case Verb::Answer:
        m_answers.Add(command);
        break;
    case Verb::Dump:
    case Verb::Selected:
        if (!m_stage->WindowIsOpen())
            throw Refusal("no window is open");
        for (const Word &name : command.arguments)
            m_out << (command.form->verb == Verb::Dump ? Dump : DumpSelected)(name.text, m_stage->Read(name.text));
        break;
    default:
        scenario::CarryOut(command, *m_stage, m_source);
        if (command.form->verb == Verb::Host && command.Text(0) == "Zentra_INIFile")
            m_iniFile = command.Text(1);
    }
}

void Player::SetSite(const Command &command)
{
    if (m_iniFile.empty())
    {
        m_iniFile = m_source.Folder().Path("ZENTRA.INI").string();
        m_stage->SetProperty("Zentra_INIFile", m_iniFile);
    }
    m_site.Set(scenario::NativePath(m_iniFile), command.Text(0), command.Text(1), command.Text(2));
}

void Player::SetRegistry(const Command &command)
{
    m_stage->SetMachineRegistry(command.Text(0), command.Text(1), command.Text(2));
    if (command.Text(1) == "LocalRootDir")
        m_localRoot.Make(command.Text(2));
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
    std::ifstream file(scenario::NativePath(path), std::ios::binary);
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
        const bool leftOut =
            m_without && statement.error.empty() && statement.text.find(*m_without) != std::string::npos;
        if (!m_showSql || m_failure || leftOut)
            continue;
        Print((statement.error.empty() ? "sql " : "sql! ") + statement.text);
        if (!statement.error.empty())
            Print("  error " + statement.error);
    }
}

} // namespace scenario
