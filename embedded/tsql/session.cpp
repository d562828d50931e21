// Runs batches: opens the file, goes through the statements, and gives their results.
#include "session.h"

#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "translator.h"

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
    EmbeddedSession(sqlite3 *db, int busyMilliseconds)
        : m_db(db, sqlite3_close_v2), m_busy(busyMilliseconds), m_cache(db), m_catalog(db)
    {
        RegisterFunctions(db, m_functions);
        sqlite3_busy_timeout(db, busyMilliseconds);
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
    // Result
    const std::vector<Column> &Columns() const override { return m_running.columns; }
    std::int64_t RowCount() const override { return m_resultRows; }
    bool Step() override;
    bool IsNull(int column) const override { return sqlite3_column_type(m_statement->Get(), column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const override { return sqlite3_column_int64(m_statement->Get(), column); }
    double Number(int column) const override { return sqlite3_column_double(m_statement->Get(), column); }
    std::string_view Text(int column) const override;
    DateTime Moment(int column) const override { return FromTicks(sqlite3_column_int64(m_statement->Get(), column)); }

    bool Run();
    void Start();
    bool StepRow();
    void Finish();
    template <typename Work>
    void Whole(bool savepoint, Work work);
    void Write();
    std::int64_t Define(const std::string &sql);
    void Assign();
    void Note(const SqlError &error) { m_values.error = error.Number(), m_values.rowCount = 0; }
    [[noreturn]] void Fail(int code);

    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> m_db; // closed last, behind everything that uses it
    int m_busy;
    FunctionState m_functions;
    StatementCache m_cache;
    Catalog m_catalog;
    SessionValues m_values;
    Translator m_translator{m_catalog, m_values};
    std::vector<std::string> m_messages;
    bool m_noCount = false;

    // The statement that runs or whose rows are read.
    Translation m_running;
    std::unique_ptr<Running> m_statement;
    std::int64_t m_resultRows = -1;
    std::int64_t m_rowsRead = 0;
    bool m_atEnd = true;
    mutable std::string m_converted; // what Text returns a view of
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
    m_translator.Check(text);
}

void EmbeddedSession::Cancel()
{
    Finish();
    m_translator.Drop();
}

Result *EmbeddedSession::NextResult()
{
    try
    {
        // Rows that nobody has read are still made, for the error that may be among them.
        while (!m_atEnd && Step())
            ;
        Finish();
        do
        {
            m_functions.now = 0;
            m_resultRows = -1;
            if (Run())
                return this;
        } while (m_running.action != Action::End);
    }
    catch (const SqlError &error)
    {
        Finish();
        m_translator.Skip(false);
        Note(error);
        throw;
    }
    return nullptr;
}

// Runs one statement. True when it has a result.
bool EmbeddedSession::Run()
{
    // The driver may have begun or ended a transaction by itself, and SQLite ends one that met a full disk.
    const bool inside = sqlite3_get_autocommit(m_db.get()) == 0;
    m_values.transactions = inside ? std::max(m_values.transactions, 1) : 0;
    m_running = m_translator.Next();
    bool result = false;
    std::int64_t rowCount = 0;
    switch (m_running.action)
    {
    case Action::End:
    case Action::Nothing:
        return false;
    case Action::Rows:
        m_values.error = 0;
        Start();
        m_atEnd = false;
        return true;
    case Action::Assign:
    case Action::Set:
        Assign();
        result = m_running.action == Action::Assign;
        rowCount = result ? m_rowsRead : 1;
        break;
    case Action::Write:
    case Action::Update:
        Write();
        result = !m_noCount;
        rowCount = m_resultRows;
        break;
    case Action::Define:
        Define(m_running.sql);
        break;
    case Action::Print:
        Start();
        StepRow();
        m_messages.push_back(ValueOf(sqlite3_column_value(m_statement->Get(), 0)).text);
        break;
    case Action::Branch:
        Start();
        if (!StepRow())
            m_translator.Skip(true);
        break;
    case Action::NoCount:
        m_noCount = m_running.on;
        break;
    case Action::Begin:
        if (m_values.transactions++ == 0)
            Internal("BEGIN IMMEDIATE");
        break;
    case Action::Commit:
    case Action::Rollback:
    {
        const bool commit = m_running.action == Action::Commit;
        if (m_values.transactions == 0)
            Raise(commit ? 3902 : 3903);
        m_values.transactions = commit ? m_values.transactions - 1 : 0;
        if (m_values.transactions == 0)
            Internal(commit ? "COMMIT" : "ROLLBACK");
        break;
    }
    }
    Finish();
    m_values.error = 0;
    m_values.rowCount = rowCount;
    return result;
}

void EmbeddedSession::Start()
{
    m_statement = m_cache.Take(m_running.sql);
    for (std::size_t i = 0; i < m_running.parameters.size(); ++i)
        m_statement->Bind(static_cast<int>(i) + 1, m_running.parameters[i]);
    m_rowsRead = 0;
}

bool EmbeddedSession::StepRow()
{
    const int code = sqlite3_step(m_statement->Get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        Fail(code);
    m_rowsRead += code == SQLITE_ROW ? 1 : 0;
    return code == SQLITE_ROW;
}

bool EmbeddedSession::Step()
{
    if (m_atEnd)
        return false;
    m_atEnd = true; // also when it fails
    m_atEnd = !StepRow();
    if (m_atEnd)
        m_values.rowCount = m_rowsRead;
    return !m_atEnd;
}

void EmbeddedSession::Finish()
{
    m_atEnd = true;
    if (m_statement)
        m_cache.Give(m_running.sql, std::move(m_statement));
    m_running.columns.clear();
}

// Does something as a whole or not at all: with a savepoint, unless SQLite takes a failing statement back by itself.
template <typename Work>
void EmbeddedSession::Whole(bool savepoint, Work work)
{
    if (savepoint)
        Internal("SAVEPOINT statement");
    try
    {
        work();
    }
    catch (const SqlError &)
    {
        Finish();
        if (savepoint && sqlite3_get_autocommit(m_db.get()) == 0)
            Define("ROLLBACK TO statement; RELEASE statement");
        throw;
    }
    if (savepoint)
        Internal("RELEASE statement");
}

void EmbeddedSession::Write()
{
    try
    {
        Whole(sqlite3_get_autocommit(m_db.get()) == 0,
              [&]
              {
                  Start();
                  StepRow();
                  m_resultRows = sqlite3_changes64(m_db.get());
                  Finish();
              });
    }
    catch (const SqlError &error)
    {
        // SQLite looks at the keys row by row, the server when the statement is through.
        if (m_running.action != Action::Update || (error.Number() != 2627 && error.Number() != 2601))
            throw;
        m_running = m_translator.UpdateByRewriting();
        Whole(true, [&] { m_resultRows = Define(m_running.sql) / 2; }); // taken out and put back
    }
}

// Runs any number of statements; gives the rows that all of them have touched.
std::int64_t EmbeddedSession::Define(const std::string &sql)
{
    const std::int64_t before = sqlite3_total_changes64(m_db.get());
    if (const int code = sqlite3_exec(m_db.get(), sql.c_str(), nullptr, nullptr, nullptr))
        Fail(code);
    return sqlite3_total_changes64(m_db.get()) - before;
}

// SELECT @a = ..., row by row: the last one stays.
void EmbeddedSession::Assign()
{
    Start();
    while (StepRow())
        for (std::size_t i = 0; i < m_running.variables.size(); ++i)
            m_values.variables[m_running.variables[i]].value =
                ValueOf(sqlite3_column_value(m_statement->Get(), static_cast<int>(i)));
    Finish();
}

std::string_view EmbeddedSession::Text(int column) const
{
    const Column &described = m_running.columns[static_cast<std::size_t>(column)];
    if (IsInteger(described.type) || IsText(described.type))
    {
        const unsigned char *text = sqlite3_column_text(m_statement->Get(), column);
        return {reinterpret_cast<const char *>(text),
                static_cast<std::size_t>(text ? sqlite3_column_bytes(m_statement->Get(), column) : 0)};
    }
    if (IsNull(column))
        return {};
    m_converted = ToText(ValueOf(sqlite3_column_value(m_statement->Get(), column)),
                         {described.type, described.size, described.scale});
    return m_converted;
}

void EmbeddedSession::Fail(int code)
{
    const int extended = sqlite3_extended_errcode(m_db.get());
    try
    {
        if (const std::optional<SqlError> error = std::exchange(m_functions.error, std::nullopt))
            throw *error;
        if (code == SQLITE_CONSTRAINT)
            m_catalog.RaiseConstraint(extended, m_running.action == Action::Update ? "UPDATE" : "INSERT");
        RaiseSqlite(m_db.get(), code);
    }
    catch (const SqlError &error)
    {
        Note(error);
        throw;
    }
}

std::vector<std::string> EmbeddedSession::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Running running(m_db.get(), sql);
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
            columns.push_back({column.name, column.type.type, ShownSize(column.type), column.type.scale,
                               column.nullable, column.inPrimaryKey});
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
