// Runs batches: goes through their statements, and gives their results.
#include "session.h"

#include "functions.h"

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
    // With a write-ahead log readers and a writer do not wait for each other. It stays off where the file is read-only,
    // and while another session switches it on.
    sqlite3_exec(opened, "PRAGMA synchronous = normal; PRAGMA journal_mode = wal", nullptr, nullptr, nullptr);
    std::unique_ptr<Session> session(new Session(std::move(db)));
    session->Internal("SELECT count(*) FROM sqlite_schema"); // raises what is wrong with the file
    return session;
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
    m_at = m_tokens.size(); // until all of it has been read, nothing runs
    m_variables.clear();
    m_first.reset();
    try
    {
        m_first = Reader(m_tokens, m_variables, &m_catalog).Read(0); // most batches have one statement
    }
    catch (const SqlError &)
    {
        // is thrown again when the statement is reached, or before, when it is wrong whatever the tables are
    }
    std::size_t at = m_first && m_first->kind != Statement::Kind::Condition ? m_first->end : 0;
    while (m_tokens[at].kind != TokenKind::End)
        m_tokens[at].Is(";") ? void(++at) : PassOver(at);
    m_at = 0;
}

// Goes behind [;] ELSE, if that is next.
bool Session::TakeElse(std::size_t &at) const
{
    const std::size_t next = at + (m_tokens[at].Is(";") ? 1 : 0);
    const bool found = m_tokens[next].Is("ELSE");
    at = found ? next + 1 : at;
    return found;
}

// Goes behind a statement, with the branches that belong to it, without running it. Its names are not looked up.
void Session::PassOver(std::size_t &at)
{
    for (int conditions = 0;;) // that may still get an ELSE
    {
        const Statement statement = Reader(m_tokens, m_variables, nullptr).Read(at);
        at = statement.end;
        if (statement.kind == Statement::Kind::Condition)
            ++conditions;
        else if (conditions-- == 0 || !TakeElse(at))
            return;
    }
}

void Session::Cancel()
{
    m_result = {};
    m_at = m_tokens.size();
}

// Behind a statement that fails the batch goes on.
Result *Session::NextResult()
{
    // Rows that nobody has read are still made, for the error that may be among them.
    while (m_result.Step())
        ;
    for (m_result = {}; m_at + 1 < m_tokens.size(); m_result = {})
    {
        const std::size_t first = m_at;
        try
        {
            if (TakeElse(m_at)) // behind the branch that has run
                PassOver(m_at);
            else if (m_tokens[m_at].Is(";"))
                ++m_at;
            else if (RunNext())
                return &m_result;
        }
        catch (...)
        {
            m_result = {};
            PassOver(m_at = first);
            throw;
        }
    }
    return nullptr;
}

// True when the statement has a result.
bool Session::RunNext()
{
    using enum Statement::Kind;
    Statement statement =
        m_first ? *std::exchange(m_first, std::nullopt) : Reader(m_tokens, m_variables, &m_catalog).Read(m_at);
    m_at = statement.end;
    Prepare(statement);
    if (statement.kind == Rows)
    {
        m_result.columns = std::move(statement.columns);
        return true;
    }
    bool row = m_result.Step();
    if (statement.kind == Condition && !row)
    {
        PassOver(m_at);
        TakeElse(m_at);
    }
    for (; statement.kind == Assignment && row; row = m_result.Step())
        for (std::size_t i = 0; i < statement.variables.size(); ++i) // of several rows the last one stays
            m_variables.at(statement.variables[i])
                .value.reset(sqlite3_value_dup(sqlite3_column_value(m_result.Get(), static_cast<int>(i))));
    if (statement.kind == Change)
    {
        m_kept = std::exchange(m_result, {});
        sqlite3_reset(m_kept.Get());
        m_result.changedRows = sqlite3_changes64(m_db.get());
    }
    return statement.kind == Change || statement.kind == Assignment;
}

// The last change is kept: an INSERT is often followed by one that differs in its constants alone.
void Session::Prepare(const Statement &statement)
{
    if (m_kept.Get() && sqlite3_sql(m_kept.Get()) == statement.sql)
        m_result = std::exchange(m_kept, {});
    else
        m_result = Result(m_db.get(), statement.sql);
    sqlite3_stmt *const running = m_result.Get();
    int number = 0;
    for (const auto &[text, isText] : statement.constants)
    {
        const int place = sqlite3_bind_parameter_index(running, (":" + std::to_string(++number)).c_str());
        if (isText)
            sqlite3_bind_text(running, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        else
            sqlite3_bind_int64(running, place, std::stoll(text));
    }
    for (const auto &[name, variable] : m_variables)
        if (const int place = sqlite3_bind_parameter_index(running, name.c_str()))
            variable.value ? sqlite3_bind_value(running, place, variable.value.get())
                           : sqlite3_bind_null(running, place);
}

} // namespace tsql
