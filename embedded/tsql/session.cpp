// Runs batches: opens the file, goes through the statements, and gives their results.
#include "session.h"

#include "constraint.h"
#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "statement.h"
#include "text.h"
#include "translate.h"

#include <sqlite3.h>

#include <chrono>
#include <thread>
#include <utility>

namespace tsql
{
namespace
{

class EmbeddedSession final : public Session, private Result
{
public:
    EmbeddedSession(sqlite3 *db, int busyMilliseconds) : m_db{db}, m_busy(busyMilliseconds), m_cache(db), m_catalog(db)
    {
        RegisterFunctions(db, m_functions);
        sqlite3_busy_handler(db, &EmbeddedSession::WaitBusy, this);
    }
    ~EmbeddedSession() override { Cancel(); }

    void Execute(std::string_view text) override;
    Result *NextResult() override;
    void Cancel() override;
    std::vector<std::string> TakeMessages() override { return std::exchange(m_messages, {}); }
    std::vector<std::string> Internal(const std::string &sql) override;
    std::vector<Session::TableColumn> DescribeTable(std::string_view table) override;
    std::vector<std::string> Tables() override { return m_catalog.Names(); }

    void UseWriteAheadLog();

private:
    // The handle closes last, behind everything that uses it.
    struct Handle
    {
        sqlite3 *db;
        ~Handle() { sqlite3_close_v2(db); }
    };

    // Result
    const std::vector<Column> &Columns() const override { return m_running.columns; }
    std::int64_t RowCount() const override { return m_resultRows; }
    bool Step() override;
    bool IsNull(int column) const override { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const override { return sqlite3_column_int64(m_statement, column); }
    double Number(int column) const override { return sqlite3_column_double(m_statement, column); }
    std::string_view Text(int column) const override;
    DateTime Moment(int column) const override { return FromTicks(sqlite3_column_int64(m_statement, column)); }

    static int WaitBusy(void *session, int count);
    bool Run(const Statement &statement);
    void Start(Translation translation);
    bool StepRow();
    void Finish();
    void RunToEnd(Translation translation);
    bool Write(Translation translation);
    void Assign(Translation translation);
    std::string IndexNamed(const std::string &name);
    void Drop(const Statement &statement);
    void Begin();
    void End(bool commit);
    void Note(const SqlError &error);
    [[noreturn]] void Fail(int code);

    Handle m_db;
    int m_busy;
    std::chrono::steady_clock::time_point m_busySince;
    FunctionState m_functions;
    StatementCache m_cache;
    Catalog m_catalog;

    std::string m_text;
    std::byte m_block[16384];
    std::pmr::monotonic_buffer_resource m_memory{m_block, sizeof m_block};
    std::vector<const Statement *> m_todo; // what is still to run, the next one last
    SessionValues m_values;
    std::vector<std::string> m_messages;
    bool m_noCount = false;

    // The statement that runs or whose rows are read.
    Translation m_running;
    sqlite3_stmt *m_statement = nullptr;
    const char *m_verb = "INSERT";
    std::int64_t m_resultRows = -1;
    std::int64_t m_rowsRead = 0;
    bool m_atEnd = true;
    mutable std::string m_converted; // what Text returns a view of
};

// Waits a little longer each time, up to 10 ms, until the time is over.
int EmbeddedSession::WaitBusy(void *session, int count)
{
    EmbeddedSession &self = *static_cast<EmbeddedSession *>(session);
    const auto now = std::chrono::steady_clock::now();
    if (count == 0)
        self.m_busySince = now;
    if (now - self.m_busySince >= std::chrono::milliseconds(self.m_busy))
        return 0;
    std::this_thread::sleep_for(std::chrono::microseconds(std::min(200 * (count + 1), 10000)));
    return 1;
}

// Readers and a writer do not wait for each other in this mode. Only one session at a time can switch it on.
void EmbeddedSession::UseWriteAheadLog()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_busy);
    for (;;)
    {
        try
        {
            if (Internal("PRAGMA journal_mode")[0] != "wal" && !sqlite3_db_readonly(m_db.db, "main"))
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
    m_memory.release();
    m_text = text;
    Batch batch;
    batch.variables = std::move(m_values.declarations);
    batch.variables.clear();
    Parse(m_text, m_memory, batch);
    m_values.declarations = std::move(batch.variables);
    m_values.variables.assign(m_values.declarations.size(), {});
    if (batch.statements)
        m_todo.push_back(batch.statements);
}

void EmbeddedSession::Cancel()
{
    Finish();
    m_todo.clear();
}

Result *EmbeddedSession::NextResult()
{
    try
    {
        // Rows that nobody has read are still made, for the error that may be among them.
        while (!m_atEnd && Step())
            ;
        Finish();
        while (!m_todo.empty())
        {
            const Statement *statement = m_todo.back();
            m_todo.pop_back();
            if (statement->next)
                m_todo.push_back(statement->next);
            m_functions.now = 0;
            if (Run(*statement))
                return this;
        }
    }
    catch (const SqlError &error)
    {
        Finish();
        Note(error);
        throw;
    }
    return nullptr;
}

void EmbeddedSession::Note(const SqlError &error)
{
    m_values.error = error.Number();
    m_values.rowCount = 0;
}

// Runs one statement, or puts what it leads to on the list. True when it has a result.
bool EmbeddedSession::Run(const Statement &statement)
{
    if (statement.kind == StatementKind::Block)
    {
        if (statement.body)
            m_todo.push_back(statement.body);
        return false;
    }
    // The driver may have begun or ended a transaction by itself, and SQLite ends one that met a full disk.
    const bool inside = sqlite3_get_autocommit(m_db.db) == 0;
    m_values.transactions = inside ? std::max(m_values.transactions, 1) : 0;
    m_catalog.Refresh();
    Translator translator(m_catalog, m_values);
    bool result = false;
    std::int64_t rowCount = 0;
    switch (statement.kind)
    {
    case StatementKind::Select:
    {
        Translation translation = translator.TranslateSelect(*statement.select);
        m_values.error = 0;
        if (!translation.assigns)
        {
            Start(std::move(translation));
            m_atEnd = false;
            return true;
        }
        Assign(std::move(translation));
        return true;
    }
    case StatementKind::Insert:
        m_verb = "INSERT";
        return Write(translator.TranslateInsert(statement));
    case StatementKind::Update:
        m_verb = "UPDATE";
        return Write(translator.TranslateUpdate(statement));
    case StatementKind::Delete:
        m_verb = "DELETE";
        return Write(translator.TranslateDelete(statement));
    case StatementKind::If:
    {
        Start(translator.TranslateCondition(*statement.value));
        const Statement *branch = StepRow() ? statement.body : statement.otherwise;
        Finish();
        if (branch)
            m_todo.push_back(branch);
        break;
    }
    case StatementKind::SetVariable:
    {
        Start(translator.TranslateValue(*statement.value, m_values.declarations[statement.variable].type));
        StepRow();
        m_values.variables[statement.variable] = ReadValue(m_statement, 0);
        Finish();
        rowCount = 1;
        break;
    }
    case StatementKind::SetOption:
        m_noCount = statement.unique;
        break;
    case StatementKind::Print:
    {
        Start(translator.TranslateValue(*statement.value, {Type::NVarChar, 0, 0}));
        StepRow();
        m_messages.push_back(ReadValue(m_statement, 0).text);
        Finish();
        break;
    }
    case StatementKind::CreateTable:
        RunToEnd(translator.TranslateCreateTable(statement));
        break;
    case StatementKind::CreateIndex:
    {
        Translation translation = translator.TranslateCreateIndex(statement);
        if (!IndexNamed(Unquoted(statement.table) + "." + Unquoted(statement.name)).empty())
            Raise(1913, {Unquoted(statement.name), m_catalog.Find(Unquoted(statement.table))->name});
        RunToEnd(std::move(translation));
        break;
    }
    case StatementKind::DropTable:
    case StatementKind::DropIndex:
        Drop(statement);
        break;
    case StatementKind::BeginTransaction:
        Begin();
        break;
    default:
        End(statement.kind == StatementKind::Commit);
        break;
    }
    m_values.error = 0;
    m_values.rowCount = rowCount;
    return result;
}

void EmbeddedSession::Start(Translation translation)
{
    m_running = std::move(translation);
    m_statement = m_cache.Take(m_running.sql);
    for (std::size_t i = 0; i < m_running.parameters.size(); ++i)
        BindValue(m_statement, static_cast<int>(i) + 1, m_running.parameters[i]);
    m_rowsRead = 0;
    m_resultRows = -1;
}

bool EmbeddedSession::StepRow()
{
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        Fail(code);
    return false;
}

bool EmbeddedSession::Step()
{
    if (m_atEnd)
        return false;
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
    {
        ++m_rowsRead;
        return true;
    }
    m_atEnd = true;
    m_values.rowCount = m_rowsRead;
    if (code == SQLITE_DONE)
        return false;
    try
    {
        Fail(code);
    }
    catch (const SqlError &error)
    {
        Note(error);
        throw;
    }
}

void EmbeddedSession::Finish()
{
    m_atEnd = true;
    if (m_statement)
        m_cache.Give(m_running.sql, std::exchange(m_statement, nullptr));
    m_running.columns.clear();
}

void EmbeddedSession::RunToEnd(Translation translation)
{
    Start(std::move(translation));
    StepRow();
    Finish();
}

// Inside a transaction a savepoint takes back what a failing statement has done; outside SQLite does.
bool EmbeddedSession::Write(Translation translation)
{
    const bool guarded = sqlite3_get_autocommit(m_db.db) == 0;
    if (guarded)
        Internal("SAVEPOINT statement");
    try
    {
        RunToEnd(std::move(translation));
    }
    catch (const SqlError &)
    {
        Finish();
        if (guarded && sqlite3_get_autocommit(m_db.db) == 0)
        {
            Internal("ROLLBACK TO statement");
            Internal("RELEASE statement");
        }
        throw;
    }
    m_values.rowCount = sqlite3_changes64(m_db.db);
    m_values.error = 0;
    if (guarded)
        Internal("RELEASE statement");
    m_resultRows = m_values.rowCount;
    return !m_noCount;
}

// SELECT @a = ..., row by row: the last one stays.
void EmbeddedSession::Assign(Translation translation)
{
    Start(std::move(translation));
    while (StepRow())
    {
        ++m_rowsRead;
        for (std::size_t i = 0; i < m_running.variables.size(); ++i)
            m_values.variables[m_running.variables[i]] = ReadValue(m_statement, static_cast<int>(i));
    }
    m_values.rowCount = m_rowsRead;
    Finish();
}

// The index with its table's name before it, as SQLite has it; empty when there is none.
std::string EmbeddedSession::IndexNamed(const std::string &name)
{
    Running query(m_db.db,
                  "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql NOT NULL AND name = ?1 COLLATE ts");
    query.Bind(1, name);
    return query.Step() ? query.Text(0) : std::string();
}

void EmbeddedSession::Drop(const Statement &statement)
{
    if (statement.kind == StatementKind::DropIndex)
    {
        const std::string shown = Unquoted(statement.table) + "." + Unquoted(statement.name);
        const std::string index = IndexNamed(shown);
        if (index.empty())
            Raise(3701, {"index", shown});
        RunToEnd({"DROP INDEX " + Quoted(index), {}, {}, {}, false});
        return;
    }
    for (const Item *item = statement.columns; item; item = item->next)
    {
        const std::string name = Unquoted(item->name);
        const Table *table = m_catalog.Find(name);
        if (!table)
            Raise(3701, {"table", name});
        RunToEnd({"DROP TABLE " + Quoted(table->name), {}, {}, {}, false});
        m_catalog.Refresh();
    }
}

void EmbeddedSession::Begin()
{
    if (m_values.transactions == 0)
        Internal("BEGIN IMMEDIATE");
    ++m_values.transactions;
}

void EmbeddedSession::End(bool commit)
{
    if (m_values.transactions == 0)
        Raise(commit ? 3902 : 3903);
    if (commit && --m_values.transactions > 0)
        return;
    m_values.transactions = 0;
    Internal(commit ? "COMMIT" : "ROLLBACK");
}

std::string_view EmbeddedSession::Text(int column) const
{
    const Column &described = m_running.columns[static_cast<std::size_t>(column)];
    if (IsInteger(described.type) || IsText(described.type))
    {
        const unsigned char *text = sqlite3_column_text(m_statement, column);
        return {reinterpret_cast<const char *>(text),
                static_cast<std::size_t>(text ? sqlite3_column_bytes(m_statement, column) : 0)};
    }
    if (IsNull(column))
        return {};
    m_converted = ToText(ReadValue(m_statement, column), {described.type, described.size, described.scale});
    return m_converted;
}

void EmbeddedSession::Fail(int code)
{
    const int extended = sqlite3_extended_errcode(m_db.db);
    if (m_functions.error)
    {
        const SqlError error = *m_functions.error;
        m_functions.error.reset();
        throw error;
    }
    if (code == SQLITE_CONSTRAINT)
        RaiseConstraint(m_db.db, extended, m_verb);
    RaiseSqlite(m_db.db, code);
}

std::vector<std::string> EmbeddedSession::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Running running(m_db.db, sql);
    while (running.Step())
        rows.push_back(running.Text(0));
    return rows;
}

std::vector<Session::TableColumn> EmbeddedSession::DescribeTable(std::string_view name)
{
    m_catalog.Refresh();
    std::vector<Session::TableColumn> columns;
    if (const Table *table = m_catalog.Find(name))
        for (const tsql::TableColumn &column : table->columns)
        {
            const bool sized = IsText(column.type.type) || column.type.type == Type::Decimal;
            columns.push_back({column.name, column.type.type, sized ? column.type.size : 0, column.type.scale,
                               column.nullable, column.inPrimaryKey});
        }
    return columns;
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
