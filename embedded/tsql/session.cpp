// Runs batches: goes through their statements, and gives their results.
#include "session.h"

#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "reader.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <optional>
#include <thread>
#include <utility>

namespace tsql
{
namespace
{

using SqliteValue = std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)>;

class EmbeddedSession final : public Session, private Result
{
public:
    EmbeddedSession(sqlite3 *db, int busyMilliseconds)
        : m_db(db, sqlite3_close_v2), m_busy(busyMilliseconds), m_catalog(db)
    {
        RegisterFunctions(db);
        sqlite3_busy_timeout(db, busyMilliseconds);
    }

    void Execute(std::string_view text) override;
    Result *NextResult() override;
    void Cancel() override;
    std::vector<std::string> TakeMessages() override { return std::exchange(m_messages, {}); }
    std::vector<std::string> Internal(const std::string &sql) override;

    void UseWriteAheadLog();

private:
    // Result
    const std::vector<Column> &Columns() const override { return m_columns; }
    std::int64_t RowCount() const override { return m_rowCount; }
    bool Step() override;
    bool IsNull(int column) const override { return sqlite3_column_type(m_running->Get(), column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const override { return sqlite3_column_int64(m_running->Get(), column); }
    double Number(int column) const override { return sqlite3_column_double(m_running->Get(), column); }
    std::string_view Text(int column) const override;
    DateTime Moment(int column) const override { return MomentOf(Text(column)); }

    Statement Read(bool checking) { return Reader(m_tokens, m_catalog, m_variables, checking).Read(m_at); }
    void Skip(int depth = 0);
    bool AcceptElse();
    bool RunNext();
    bool Run(Statement statement);
    void Define(const Statement &statement);
    void Prepare(const Statement &statement);
    void Assign(const std::vector<std::string> &variables);
    void Finish() noexcept;

    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> m_db; // closed last, behind everything that uses it
    int m_busy;
    Catalog m_catalog;
    std::vector<std::string> m_messages;
    bool m_noCount = false;

    // The batch.
    std::string m_text;
    std::vector<Token> m_tokens{Token()};
    std::size_t m_at = 0; // the token that is read next
    std::optional<Statement> m_single;
    Variables m_variables;
    std::map<std::string, SqliteValue> m_values; // of the variables

    // The statement that runs or whose rows are read.
    std::optional<Prepared> m_running;
    std::optional<Prepared> m_kept; // the last change, for another of the same text
    std::vector<Column> m_columns;
    std::int64_t m_rowCount = -1;
    bool m_atEnd = true;
    mutable char m_number[32]; // what Text gave of a float
};

// Readers and a writer do not wait for each other in this mode. Only one session at a time can switch it on.
void EmbeddedSession::UseWriteAheadLog()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_busy);
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

// A batch of one statement is read once. Any other is read as a whole before anything of it runs, without looking up
// its names: what the statements in front of one make is not there yet.
void EmbeddedSession::Execute(std::string_view text)
{
    Cancel();
    m_text = text;
    m_tokens = Tokens(m_text);
    m_variables.clear();
    m_values.clear();
    m_catalog.Refresh();
    try
    {
        if (const Token &word = m_tokens[0]; word.Is("SELECT") || word.Is("INSERT") || word.Is("UPDATE"))
            m_single = Read(false);
        if (m_single && m_tokens[m_at].kind == TokenKind::End)
            return;
    }
    catch (const SqlError &)
    {
        // what is wrong comes to light below or when it is reached
    }
    m_single.reset();
    m_at = 0;
    try
    {
        while (m_tokens[m_at].kind != TokenKind::End)
            m_tokens[m_at].Is(";") ? void(++m_at) : Skip();
        m_at = 0;
    }
    catch (const SqlError &)
    {
        Cancel();
        throw;
    }
}

void EmbeddedSession::Cancel()
{
    Finish();
    m_tokens.assign(1, Token());
    m_single.reset();
    m_at = 0;
}

// Goes over a statement: IF condition statement [[;] ELSE statement], or any other.
void EmbeddedSession::Skip(int depth)
{
    const bool branches = m_tokens[m_at].Is("IF");
    if (depth > 50)
        RefuseToken(m_tokens, m_at);
    Read(true);
    if (!branches)
        return;
    Skip(depth + 1);
    if (AcceptElse())
        Skip(depth + 1);
}

bool EmbeddedSession::AcceptElse()
{
    const std::size_t at = m_at + (m_tokens[m_at].Is(";") ? 1 : 0);
    const bool there = m_tokens[at].Is("ELSE");
    m_at = there ? at + 1 : m_at;
    return there;
}

Result *EmbeddedSession::NextResult()
{
    // Rows that nobody has read are still made, for the error that may be among them.
    while (!m_atEnd && Step())
        ;
    Finish();
    while (m_single || m_tokens[m_at].kind != TokenKind::End)
    {
        if (AcceptElse()) // the branch in front of it has run
            Skip();
        else if (m_tokens[m_at].Is(";"))
            ++m_at;
        else if (RunNext())
            return this;
    }
    return nullptr;
}

// True when the statement has a result. Behind one that fails the batch goes on; a condition that fails skips both
// branches.
bool EmbeddedSession::RunNext()
{
    const std::size_t first = m_at;
    try
    {
        m_rowCount = -1;
        if (m_single)
            return Run(*std::exchange(m_single, std::nullopt));
        m_catalog.Refresh();
        Statement statement = Read(false);
        return Run(statement);
    }
    catch (const SqlError &)
    {
        Finish();
        m_at = first;
        if (m_tokens[m_at].kind != TokenKind::End)
            Skip();
        throw;
    }
}

bool EmbeddedSession::Run(Statement statement)
{
    using enum Statement::Kind;
    if (statement.kind == Definition || statement.kind == Transaction)
        Define(statement);
    if (statement.kind == NoCount)
        m_noCount = statement.sql == "on";
    if (statement.kind >= NoCount || statement.kind == Definition)
        return false;
    Prepare(statement);
    for (const auto &[name, value] : m_values)
        if (const int place = sqlite3_bind_parameter_index(m_running->Get(), name.c_str()))
            sqlite3_bind_value(m_running->Get(), place, value.get());
    if (statement.kind == Rows)
    {
        m_columns = std::move(statement.columns);
        m_atEnd = false;
        return true;
    }
    bool row = m_running->Step();
    if (statement.kind == Message && row)
        m_messages.emplace_back(m_running->Text(0));
    for (; statement.kind == Assignment && row; row = m_running->Step())
        Assign(statement.variables);
    m_rowCount = statement.kind == Change ? sqlite3_changes64(m_db.get()) : -1;
    if (statement.kind == Change)
    {
        sqlite3_reset(m_running->Get());
        m_kept = std::exchange(m_running, std::nullopt);
    }
    m_running.reset();
    if (statement.kind == Condition && !row)
    {
        Skip();
        AcceptElse();
    }
    return (statement.kind == Change && !m_noCount) || statement.kind == Assignment;
}

// The last change is kept: an INSERT is often followed by one that differs in its constants alone.
void EmbeddedSession::Prepare(const Statement &statement)
{
    if (m_kept && sqlite3_sql(m_kept->Get()) == statement.sql)
        m_running = std::exchange(m_kept, std::nullopt);
    else
        m_running.emplace(m_db.get(), statement.sql);
    int number = 0;
    for (const Token &constant : statement.constants)
    {
        const int place = sqlite3_bind_parameter_index(m_running->Get(), (":" + std::to_string(++number)).c_str());
        const std::string text = constant.IsText() ? TextOf(constant) : std::string(constant.text);
        if (constant.IsText())
            sqlite3_bind_text(m_running->Get(), place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        else
            sqlite3_bind_int64(m_running->Get(), place, std::stoll(text));
    }
}

// Of several rows the last one stays.
void EmbeddedSession::Assign(const std::vector<std::string> &variables)
{
    for (std::size_t i = 0; i < variables.size(); ++i)
    {
        sqlite3_value *const value = sqlite3_column_value(m_running->Get(), static_cast<int>(i));
        m_values.insert_or_assign(variables[i], SqliteValue(sqlite3_value_dup(value), sqlite3_value_free));
    }
}

// The driver may have begun or ended a transaction by itself, and SQLite ends one that met a full disk.
void EmbeddedSession::Define(const Statement &statement)
{
    const bool inside = sqlite3_get_autocommit(m_db.get()) == 0;
    if (statement.sql.starts_with("begin") && inside)
        Unsupported("A transaction in a transaction");
    if ((statement.sql == "commit" || statement.sql == "rollback") && !inside)
        Raise(statement.sql == "commit" ? 3902 : 3903);
    Internal(statement.sql);
}

bool EmbeddedSession::Step()
{
    if (m_atEnd)
        return false;
    m_atEnd = true; // also when it fails
    m_atEnd = !m_running->Step();
    return !m_atEnd;
}

void EmbeddedSession::Finish() noexcept
{
    m_atEnd = true;
    m_running.reset();
    m_columns.clear();
}

std::string_view EmbeddedSession::Text(int column) const
{
    if (sqlite3_column_type(m_running->Get(), column) == SQLITE_FLOAT)
    {
        std::snprintf(m_number, sizeof m_number, "%.15g", Number(column));
        return m_number;
    }
    return m_running->Text(column);
}

std::vector<std::string> EmbeddedSession::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Prepared statement(m_db.get(), sql);
    while (statement.Step())
        rows.emplace_back(statement.Text(0));
    return rows;
}

} // namespace

std::unique_ptr<Session> Session::Open(const std::string &file, bool create, int busyMilliseconds)
{
    sqlite3 *db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (create ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(file.c_str(), &db, flags, nullptr) != SQLITE_OK)
    {
        sqlite3_close_v2(db);
        Raise(4060, {file});
    }
    auto session = std::make_unique<EmbeddedSession>(db, busyMilliseconds);
    session->UseWriteAheadLog();
    return session;
}

} // namespace tsql
