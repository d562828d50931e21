// Runs batches: goes through their statements, and gives their results.
#include "session.h"

#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

namespace tsql
{

std::unique_ptr<Session> Session::Open(const std::string &file, bool create, int busyMilliseconds)
{
    sqlite3 *opened = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(file.c_str(), &opened, flags, nullptr);
    Database db(opened, sqlite3_close_v2);
    if (code != SQLITE_OK)
        Raise(4060, {file});
    RegisterFunctions(opened);
    sqlite3_busy_timeout(opened, busyMilliseconds);
    std::unique_ptr<Session> session(new Session(std::move(db)));
    session->UseWriteAheadLog(busyMilliseconds);
    return session;
}

// Readers and a writer do not wait for each other in this mode. Only one session at a time can switch it on.
void Session::UseWriteAheadLog(int busyMilliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(busyMilliseconds);
    for (;;)
    {
        try
        {
            if (Internal("PRAGMA journal_mode")[0] != "wal" && !sqlite3_db_readonly(m_db.get(), "main"))
                Internal("PRAGMA journal_mode = wal");
            Internal("PRAGMA synchronous = normal");
            Internal("SELECT count(*) FROM sqlite_schema");
            return;
        }
        catch (const SqlError &error)
        {
            if (error.Number() != 1222 || std::chrono::steady_clock::now() >= end)
                throw;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }
}

std::vector<std::string> Session::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Prepared statement(m_db.get(), sql);
    while (statement.Step())
        rows.emplace_back(statement.Text(0));
    return rows;
}

void Session::Execute(std::string_view text)
{
    Cancel();
    m_text = text;
    m_tokens = Tokens(m_text);
    m_variables.clear();
    m_catalog.Refresh();
    try
    {
        bool defined = false;
        for (std::size_t at = 0; m_tokens[at].kind != TokenKind::End;)
            m_tokens[at].Is(";") ? void(++at) : Read(at, defined, 0);
    }
    catch (...)
    {
        Cancel();
        throw;
    }
}

// Reads a statement: IF condition statement [[;] ELSE statement], or any other. Behind one that defines something no
// names are looked up yet.
void Session::Read(std::size_t &at, bool &defined, int depth)
{
    if (depth > 50)
        RefuseToken(m_tokens, at);
    const std::size_t step = m_steps.size();
    m_steps.push_back({at, {}, 0, step + 1});
    m_steps[step].statement = Reader(m_tokens, defined ? nullptr : &m_catalog, m_variables, false).Read(at);
    const Statement::Kind kind = m_steps[step].statement.kind;
    defined = defined || kind == Statement::Kind::Definition;
    if (kind != Statement::Kind::Condition)
        return;
    Read(at, defined, depth + 1);
    m_steps[step].otherwise = m_steps.size();
    if (const std::size_t next = at + (m_tokens[at].Is(";") ? 1 : 0); m_tokens[next].Is("ELSE"))
    {
        const std::size_t branch = m_steps.size();
        m_steps.push_back({next, {Statement::Kind::Else}, 0, 0});
        m_steps[step].otherwise = branch + 1;
        Read(at = next + 1, defined, depth + 1);
        m_steps[branch].behind = m_steps.size();
    }
    m_steps[step].behind = m_steps.size();
}

void Session::Cancel()
{
    Finish();
    m_steps.clear();
    m_next = 0;
}

void Session::Finish()
{
    m_result.m_atEnd = true;
    m_result.m_running.reset();
    m_result.m_columns.clear();
    m_result.m_rowCount = -1;
}

// Behind a statement that fails the batch goes on.
Result *Session::NextResult()
{
    // Rows that nobody has read are still made, for the error that may be among them.
    while (m_result.Step())
        ;
    while (m_next < m_steps.size())
    {
        Finish();
        Step &step = m_steps[m_next];
        if (m_next > 0 && m_catalog.Refresh())
            for (Step &each : m_steps)
                each.statement.late = true;
        m_next = step.behind;
        try
        {
            if (step.statement.late && !step.statement.sql.empty())
            {
                std::size_t at = step.first;
                step.statement = Reader(m_tokens, &m_catalog, m_variables, true).Read(at);
            }
            if (Run(step))
                return &m_result;
        }
        catch (...)
        {
            Finish();
            throw;
        }
    }
    Finish();
    return nullptr;
}

// True when the statement has a result.
bool Session::Run(Step &step)
{
    using enum Statement::Kind;
    Statement &statement = step.statement;
    if (statement.kind == Definition)
        Internal(statement.sql);
    if (statement.kind == NoCount)
        m_noCount = statement.sql == "on";
    if (statement.kind >= Definition)
        return false;
    Prepare(statement);
    if (statement.kind == Rows)
    {
        m_result.m_columns = std::move(statement.columns);
        m_result.m_atEnd = false;
        return true;
    }
    std::optional<Prepared> &running = m_result.m_running;
    bool row = running->Step();
    if (statement.kind == Condition)
        m_next = row ? &step - m_steps.data() + 1 : step.otherwise;
    for (; statement.kind == Assignment && row; row = running->Step())
        for (std::size_t i = 0; i < statement.variables.size(); ++i) // of several rows the last one stays
            m_variables.at(statement.variables[i])
                .value.reset(sqlite3_value_dup(sqlite3_column_value(running->Get(), i)));
    if (statement.kind == Change)
    {
        m_result.m_rowCount = sqlite3_changes64(m_db.get());
        sqlite3_reset(running->Get());
        m_kept = std::move(running);
    }
    running.reset();
    return (statement.kind == Change && !m_noCount) || statement.kind == Assignment;
}

// The last change is kept: an INSERT is often followed by one that differs in its constants alone.
void Session::Prepare(const Statement &statement)
{
    std::optional<Prepared> &running = m_result.m_running;
    if (m_kept && sqlite3_sql(m_kept->Get()) == statement.sql)
        running = std::exchange(m_kept, std::nullopt);
    else
        running.emplace(m_db.get(), statement.sql);
    int number = 0;
    for (const Token &constant : statement.constants)
    {
        const int place = sqlite3_bind_parameter_index(running->Get(), (":" + std::to_string(++number)).c_str());
        const std::string text = constant.IsText() ? TextOf(constant) : std::string(constant.text);
        if (constant.IsText())
            sqlite3_bind_text(running->Get(), place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        else
            sqlite3_bind_int64(running->Get(), place, std::stoll(text));
    }
    for (const auto &[name, variable] : m_variables)
        if (const int place = sqlite3_bind_parameter_index(running->Get(), name.c_str()))
            variable.value ? sqlite3_bind_value(running->Get(), place, variable.value.get())
                           : sqlite3_bind_null(running->Get(), place);
}

bool Result::Step()
{
    if (m_atEnd)
        return false;
    m_atEnd = true; // also when it fails
    m_atEnd = !m_running->Step();
    return !m_atEnd;
}

std::string_view Result::Text(int column) const
{
    if (sqlite3_column_type(m_running->Get(), column) == SQLITE_FLOAT)
    {
        std::snprintf(m_number, sizeof m_number, "%.15g", Number(column));
        return m_number;
    }
    return m_running->Text(column);
}

} // namespace tsql
