// Runs batches: opens the file, goes through the statements, and gives their results.
#include "session.h"

#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "rewrite.h"
#include "text.h"

#include <sqlite3.h>

#include <chrono>
#include <thread>
#include <unordered_map>
#include <utility>

namespace tsql
{
namespace
{

constexpr std::size_t mostKept = 64; // prepared statements
constexpr std::size_t longestKept = 4096;

class EmbeddedSession final : public Session, private Result
{
public:
    EmbeddedSession(sqlite3 *db, int busyMilliseconds)
        : m_db(db, sqlite3_close_v2), m_busy(busyMilliseconds), m_catalog(db)
    {
        RegisterFunctions(db, m_functions);
        sqlite3_busy_timeout(db, busyMilliseconds);
    }

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
    const std::vector<Column> &Columns() const override { return m_columns; }
    std::int64_t RowCount() const override { return m_resultRows; }
    bool Step() override;
    bool IsNull(int column) const override { return sqlite3_column_type(m_statement->Get(), column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const override { return sqlite3_column_int64(m_statement->Get(), column); }
    double Number(int column) const override { return sqlite3_column_double(m_statement->Get(), column); }
    std::string_view Text(int column) const override;
    DateTime Moment(int column) const override { return FromTicks(sqlite3_column_int64(m_statement->Get(), column)); }

    bool Run(tsql::Step &step);
    void Start(const tsql::Step &step);
    void Describe(const tsql::Step &step);
    bool StepRow();
    void Finish();
    void Write();
    [[noreturn]] void Fail(int code);

    std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> m_db; // closed last, behind everything that uses it
    int m_busy;
    FunctionState m_functions;
    Catalog m_catalog;
    std::vector<std::string> m_messages;
    bool m_noCount = false;
    std::unordered_map<std::string, std::unique_ptr<Prepared>> m_idle; // prepared statements, by their text

    // The batch, and the step that comes next.
    std::string m_batch;
    std::unique_ptr<Rewriter> m_rewriter;
    std::size_t m_next = 0;

    // The statement that runs or whose rows are read.
    std::unique_ptr<Prepared> m_statement;
    const char *m_verb = "";
    std::string m_sql;
    std::vector<Column> m_columns;
    std::int64_t m_resultRows = -1;
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
    m_batch = text;
    m_rewriter = std::make_unique<Rewriter>(m_catalog, m_batch);
    m_next = 0;
}

void EmbeddedSession::Cancel()
{
    Finish();
    m_rewriter.reset();
}

Result *EmbeddedSession::NextResult()
{
    // Rows that nobody has read are still made, for the error that may be among them.
    while (!m_atEnd && Step())
        ;
    Finish();
    while (m_rewriter && m_next < m_rewriter->steps.size())
    {
        tsql::Step &step = m_rewriter->steps[m_next];
        const std::size_t failed = step.failed;
        m_functions.now = 0;
        m_resultRows = -1;
        try
        {
            if (Run(step))
                return this;
        }
        catch (...)
        {
            Finish();
            m_next = failed;
            throw;
        }
    }
    return nullptr;
}

// Runs one step. True when it has a result.
bool EmbeddedSession::Run(tsql::Step &step)
{
    ++m_next;
    if (step.action == Action::Jump)
        m_next = step.target;
    if (step.action >= Action::Jump)
    {
        m_noCount = step.action == Action::NoCountOn || (m_noCount && step.action != Action::NoCountOff);
        return false;
    }
    if (step.version != m_catalog.Version())
        m_rewriter->Again(step);
    if (step.error)
        throw *step.error;
    Start(step);
    switch (step.action)
    {
    case Action::Rows:
        Describe(step);
        m_atEnd = false;
        return true;
    case Action::Assign:
    case Action::Set:
        while (StepRow())
            for (std::size_t i = 0; i < step.variables.size(); ++i)
                m_rewriter->Find(step.variables[i]).value =
                    ValueOf(sqlite3_column_value(m_statement->Get(), static_cast<int>(i)));
        break;
    case Action::Write:
        Write();
        break;
    case Action::Branch:
        if (!StepRow())
            m_next = step.target;
        break;
    case Action::Print:
        StepRow();
        m_messages.push_back(m_statement->Text(0));
        break;
    default:
        StepRow();
    }
    Finish();
    return step.action == Action::Assign || (step.action == Action::Write && !m_noCount);
}

void EmbeddedSession::Start(const tsql::Step &step)
{
    m_sql = step.sql;
    m_verb = step.verb;
    if (auto kept = m_idle.extract(m_sql))
        m_statement = std::move(kept.mapped());
    else
        m_statement = std::make_unique<Prepared>(m_db.get(), m_sql);
    std::size_t constant = 0;
    for (int place = sqlite3_bind_parameter_count(m_statement->Get()); place > 0; --place)
        if (const char *const name = sqlite3_bind_parameter_name(m_statement->Get(), place))
            m_statement->Bind(place, m_rewriter->Find(name).value);
        else
            m_statement->Bind(place, step.parameters[step.parameters.size() - ++constant]);
}

// The columns as they were rewritten, with those of * from their declarations.
void EmbeddedSession::Describe(const tsql::Step &step)
{
    m_columns = step.columns;
    if (step.star < 0)
        return;
    const int count = sqlite3_column_count(m_statement->Get()) - static_cast<int>(m_columns.size()) + 1;
    std::vector<Column> all;
    for (int i = step.star; i < step.star + count; ++i)
    {
        const char *const declared = sqlite3_column_decltype(m_statement->Get(), i);
        const ValueType type = ParseDeclaration(declared ? declared : "int");
        all.push_back({sqlite3_column_name(m_statement->Get(), i), type.type, ShownSize(type), type.scale});
    }
    const auto place = m_columns.erase(m_columns.begin() + step.star);
    m_columns.insert(place, all.begin(), all.end());
}

bool EmbeddedSession::StepRow()
{
    const int code = sqlite3_step(m_statement->Get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        Fail(code);
    return code == SQLITE_ROW;
}

bool EmbeddedSession::Step()
{
    if (m_atEnd)
        return false;
    m_atEnd = true; // also when it fails
    m_atEnd = !StepRow();
    return !m_atEnd;
}

void EmbeddedSession::Finish()
{
    m_atEnd = true;
    m_columns.clear();
    if (!m_statement)
        return;
    m_statement->Reset();
    if (m_idle.size() >= mostKept)
        m_idle.clear();
    if (m_sql.size() <= longestKept)
        m_idle.emplace(std::move(m_sql), std::move(m_statement));
    m_statement.reset();
}

// SQLite takes a failing statement back by itself, but for errors that end its transaction: with a savepoint nothing of
// the transaction around it is lost.
void EmbeddedSession::Write()
{
    const bool inside = sqlite3_get_autocommit(m_db.get()) == 0;
    if (inside)
        Internal("SAVEPOINT statement");
    try
    {
        StepRow();
        m_resultRows = sqlite3_changes64(m_db.get());
    }
    catch (const SqlError &)
    {
        Finish();
        if (inside && sqlite3_get_autocommit(m_db.get()) == 0)
        {
            Internal("ROLLBACK TO statement");
            Internal("RELEASE statement");
        }
        throw;
    }
    Finish();
    if (inside)
        Internal("RELEASE statement");
}

std::string_view EmbeddedSession::Text(int column) const
{
    const Column &described = m_columns[static_cast<std::size_t>(column)];
    const ValueType type{described.type, described.size, described.scale};
    if (type.IsInteger() || type.IsText())
    {
        const unsigned char *const text = sqlite3_column_text(m_statement->Get(), column);
        return {reinterpret_cast<const char *>(text),
                static_cast<std::size_t>(text ? sqlite3_column_bytes(m_statement->Get(), column) : 0)};
    }
    if (IsNull(column))
        return {};
    m_converted = ToText(ValueOf(sqlite3_column_value(m_statement->Get(), column)), type, 121);
    return m_converted;
}

void EmbeddedSession::Fail(int code)
{
    if (const std::optional<SqlError> error = std::exchange(m_functions.error, std::nullopt))
        throw *error;
    if (code == SQLITE_CONSTRAINT)
        m_catalog.RaiseConstraint(sqlite3_extended_errcode(m_db.get()), m_verb);
    RaiseSqlite(m_db.get(), code);
}

std::vector<std::string> EmbeddedSession::Internal(const std::string &sql)
{
    std::vector<std::string> rows;
    Prepared running(m_db.get(), sql);
    while (running.Step())
        rows.push_back(running.Text(0));
    return rows;
}

std::vector<Session::TableColumn> EmbeddedSession::DescribeTable(std::string_view name)
{
    m_catalog.Version();
    std::vector<Session::TableColumn> columns;
    if (const Table *const table = m_catalog.Find(name))
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
