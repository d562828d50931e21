// Runs batches: goes through their statements, and gives their results.
#include "session.h"

#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "prepared.h"
#include "rewrite.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

namespace tsql
{
namespace
{

// A statement of a batch, or a part of IF.
struct Part
{
    std::size_t first; // its tokens
    std::size_t last;
    std::size_t target = 0; // of IF without a row, and of ELSE in front of what it passes over
    std::size_t failed = 0; // where the batch goes on behind an error
};

class EmbeddedSession final : public Session, private Result
{
public:
    EmbeddedSession(sqlite3 *db, int busyMilliseconds)
        : m_db(db, sqlite3_close_v2), m_busy(busyMilliseconds), m_catalog(db)
    {
        RegisterFunctions(db, m_error);
        sqlite3_busy_timeout(db, busyMilliseconds);
        // A name in double quotes that nothing has is no text.
        sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
        sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
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
    DateTime Moment(int column) const override { return FromTicks(ParseTicks(Text(column))); }

    bool Is(std::string_view word) const { return m_tokens[m_at].Is(word); }
    bool IsTransactionAt(std::size_t at) const;
    void Read();
    void ReadIf();
    void ReadSimple();
    void Check(const Part &step);

    bool Run(const Part &step);
    void Set(const Part &step);
    void Transact(const Part &step);
    void Prepare(const Rewritten &rewritten);
    void Describe(const Rewritten &rewritten);
    void Assign(const std::vector<std::string> &variables);
    bool StepRow();
    void Finish() noexcept;
    Rewriter For(std::size_t first, std::size_t last);

    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> m_db; // closed last, behind everything that uses it
    int m_busy;
    FunctionError m_error;
    Catalog m_catalog;
    std::vector<std::string> m_messages;
    bool m_noCount = false;
    int m_transactions = 0;

    // The batch.
    std::string m_text;
    std::vector<Token> m_tokens;
    std::vector<Part> m_steps;
    std::size_t m_at = 0; // the token that is read, then the step that runs
    Variables m_variables;
    std::map<std::string, Value> m_values; // of the variables

    // The statement that runs or whose rows are read.
    std::unique_ptr<Prepared> m_running;
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
        for (m_at = 0; m_tokens[m_at].kind != TokenKind::End;)
            Is(";") ? void(++m_at) : Read();
        for (const Part &step : m_steps)
            Check(step);
    }
    catch (const SqlError &)
    {
        Cancel();
        throw;
    }
    m_at = 0;
}

void EmbeddedSession::Cancel()
{
    Finish();
    m_steps.clear();
    m_at = 0;
}

bool EmbeddedSession::IsTransactionAt(std::size_t at) const
{
    return m_tokens[at + 1].Is("TRAN") || m_tokens[at + 1].Is("TRANSACTION");
}

// A statement, or a block of them.
void EmbeddedSession::Read()
{
    if (Is("IF"))
        return ReadIf();
    if (!Is("BEGIN") || IsTransactionAt(m_at))
        return ReadSimple();
    if (m_tokens[m_at + 1].Is("END"))
        RefuseToken(m_tokens, m_at + 1, true);
    for (++m_at; !Is("END");)
        Is(";") ? void(++m_at) : Read();
    ++m_at;
}

void EmbeddedSession::ReadSimple()
{
    constexpr std::string_view words[] = {"SELECT", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP",    "DECLARE",
                                          "SET",    "PRINT",  "IF",     "BEGIN",  "COMMIT", "ROLLBACK"};
    if (std::ranges::none_of(words, [&](std::string_view word) { return Is(word); }))
        RefuseToken(m_tokens, m_at, m_tokens[m_at].kind == TokenKind::End || Is("ELSE"));
    const std::size_t end = StatementEnd(m_tokens, m_at);
    m_steps.push_back({m_at, end, 0, m_steps.size() + 1});
    if (Is("DECLARE"))
        For(m_at, end).Declare(m_variables);
    m_at = end;
}

void EmbeddedSession::ReadIf()
{
    const std::size_t branch = m_steps.size();
    ReadSimple();
    Read();
    if (Is(";") && m_tokens[m_at + 1].Is("ELSE"))
        ++m_at;
    m_steps[branch].target = m_steps.size();
    if (Is("ELSE"))
    {
        const std::size_t jump = m_steps.size();
        m_steps.push_back({m_at, m_at + 1});
        m_steps[branch].target = m_steps.size();
        ++m_at;
        Read();
        m_steps[jump].target = m_steps.size();
    }
    m_steps[branch].failed = m_steps.size(); // a condition that fails skips both
}

Rewriter EmbeddedSession::For(std::size_t first, std::size_t last)
{
    return Rewriter(m_tokens, first, last, m_catalog, m_variables);
}

// What cannot be read is told before anything of the batch runs; everything else when the statement is reached.
void EmbeddedSession::Check(const Part &step)
{
    const Token &word = m_tokens[step.first];
    if (word.Is("ELSE") || word.Is("DECLARE") || word.Is("SET") || word.Is("BEGIN") || word.Is("COMMIT") ||
        word.Is("ROLLBACK") || (m_steps.size() == 1 && !word.Is("CREATE")))
        return;
    try
    {
        if (word.Is("CREATE") || word.Is("DROP"))
            For(step.first, step.last).Define();
        else
            Prepare(For(step.first, step.last).Rewrite());
        m_running.reset();
    }
    catch (const SqlError &error)
    {
        if (error.Number() < 200 || error.Number() == kNotSupported)
            throw;
    }
}

Result *EmbeddedSession::NextResult()
{
    // Rows that nobody has read are still made, for the error that may be among them.
    while (!m_atEnd && Step())
        ;
    Finish();
    while (m_at < m_steps.size())
    {
        const Part step = m_steps[m_at++];
        m_error.reset();
        m_rowCount = -1;
        try
        {
            if (Run(step))
                return this;
        }
        catch (const SqlError &)
        {
            Finish();
            m_at = step.failed;
            throw;
        }
    }
    return nullptr;
}

// Runs one statement. True when it has a result.
bool EmbeddedSession::Run(const Part &step)
{
    const Token &word = m_tokens[step.first];
    // The driver may have begun or ended a transaction by itself, and SQLite ends one that met a full disk.
    const bool inside = sqlite3_get_autocommit(m_db.get()) == 0;
    m_transactions = inside ? std::max(m_transactions, 1) : 0;
    if (word.Is("ELSE"))
        m_at = step.target;
    else if (word.Is("SET"))
        Set(step);
    else if (word.Is("BEGIN") || word.Is("COMMIT") || word.Is("ROLLBACK"))
        Transact(step);
    if (word.Is("ELSE") || word.Is("SET") || word.Is("DECLARE") || word.Is("BEGIN") || word.Is("COMMIT") ||
        word.Is("ROLLBACK"))
        return false;
    if (m_steps.size() > 1)
        m_catalog.Refresh();
    if (word.Is("CREATE") || word.Is("DROP"))
    {
        Internal(For(step.first, step.last).Define());
        return false;
    }
    const Rewritten rewritten = For(step.first, step.last).Rewrite();
    Prepare(rewritten);
    if (word.Is("SELECT") && rewritten.variables.empty())
    {
        Describe(rewritten);
        m_atEnd = false;
        return true;
    }
    if (word.Is("SELECT"))
        Assign(rewritten.variables);
    else if (word.Is("IF") && !StepRow())
        m_at = step.target;
    else if (word.Is("PRINT") && StepRow())
        m_messages.push_back(m_running->Text(0));
    else if (!word.Is("IF") && !word.Is("PRINT"))
    {
        StepRow();
        m_rowCount = sqlite3_changes64(m_db.get());
    }
    Finish();
    return word.Is("SELECT") || (!word.Is("IF") && !word.Is("PRINT") && !m_noCount);
}

void EmbeddedSession::Prepare(const Rewritten &rewritten)
{
    m_running = std::make_unique<Prepared>(m_db.get(), rewritten.sql);
    for (const auto &[name, value] : m_values)
        if (const int place = sqlite3_bind_parameter_index(m_running->Get(), name.c_str()))
            m_running->Bind(place, value);
}

// The columns; those of a * are what SQLite has in its place.
void EmbeddedSession::Describe(const Rewritten &rewritten)
{
    m_columns.clear();
    const int count = sqlite3_column_count(m_running->Get());
    for (const Column &column : rewritten.columns)
    {
        const int others = static_cast<int>(rewritten.columns.size()) - 1;
        for (int i = 0; column.name == "*" && i < count - others; ++i)
        {
            const int place = static_cast<int>(m_columns.size());
            const char *const declared = sqlite3_column_decltype(m_running->Get(), place);
            const ValueType type = DeclaredType(declared ? declared : "int");
            m_columns.push_back({sqlite3_column_name(m_running->Get(), place), type.type, type.size});
        }
        if (column.name != "*")
            m_columns.push_back(column);
    }
}

// SELECT @a = ..., row by row: the last one stays.
void EmbeddedSession::Assign(const std::vector<std::string> &variables)
{
    while (StepRow())
        for (std::size_t i = 0; i < variables.size(); ++i)
            m_values[variables[i]] = m_running->Read(static_cast<int>(i));
}

// SET @a = value, and the options that name how this works anyway.
void EmbeddedSession::Set(const Part &step)
{
    constexpr std::string_view options[] = {"ANSI_NULLS", "ANSI_PADDING", "ANSI_WARNINGS", "CONCAT_NULL_YIELDS_NULL",
                                            "QUOTED_IDENTIFIER"};
    const Token *const words = &m_tokens[step.first + 1];
    const std::size_t count = step.last - step.first - 1;
    const bool on = count == 2 && words[1].Is("ON");
    if (words[0].kind == TokenKind::Variable && words[1].Is("="))
    {
        const Rewritten rewritten = For(step.first, step.last).Rewrite();
        Prepare(rewritten);
        Assign(rewritten.variables);
        Finish();
    }
    else if (count == 2 && SameWord(words[0].text, "NOCOUNT") && (on || words[1].Is("OFF")))
        m_noCount = on;
    else if (!on || std::ranges::none_of(options, [&](std::string_view one) { return SameWord(one, words[0].text); }))
        RefuseToken(m_tokens, step.first + 1, false);
}

void EmbeddedSession::Transact(const Part &step)
{
    const bool commit = m_tokens[step.first].Is("COMMIT");
    if (step.last > step.first + (IsTransactionAt(step.first) ? 2 : 1))
        RefuseToken(m_tokens, step.last - 1, false);
    if (m_tokens[step.first].Is("BEGIN"))
    {
        if (m_transactions++ == 0)
            Internal("BEGIN IMMEDIATE");
        return;
    }
    if (m_transactions == 0)
        Raise(commit ? 3902 : 3903);
    m_transactions = commit ? m_transactions - 1 : 0;
    if (m_transactions == 0)
        Internal(commit ? "COMMIT" : "ROLLBACK");
}

bool EmbeddedSession::Step()
{
    if (m_atEnd)
        return false;
    m_atEnd = true; // also when it fails
    m_atEnd = !StepRow();
    return !m_atEnd;
}

// A number that only arithmetic has made may be too large for its type.
bool EmbeddedSession::StepRow()
{
    const int code = sqlite3_step(m_running->Get());
    if (code == SQLITE_ROW || code == SQLITE_DONE)
        return code == SQLITE_ROW;
    if (m_error)
        throw *std::exchange(m_error, std::nullopt);
    if (code == SQLITE_CONSTRAINT)
        RaiseConstraint(m_db.get(), m_tokens[m_steps[m_at - 1].first].Is("UPDATE") ? "UPDATE" : "INSERT");
    RaiseSqlite(m_db.get(), code);
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
    const auto *const text = reinterpret_cast<const char *>(sqlite3_column_text(m_running->Get(), column));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_column_bytes(m_running->Get(), column))) : "";
}

std::vector<std::string> EmbeddedSession::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Prepared statement(m_db.get(), sql);
    while (statement.Step())
        rows.push_back(statement.Text(0));
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
