// One log-in's conversation with the embedded database: runs T-SQL batches on a SQLite file and gives their results
// one by one, as the server does. Knows nothing of ODBC; the driver turns this into handles and return codes.
#pragma once

#include "errors.h"
#include "reader.h"

#include <optional>
#include <utility>

namespace tsql
{

// One result of a batch, with its rows.
struct Result : Prepared
{
    using Prepared::Prepared;

    std::vector<Column> columns;   // empty for a statement without rows (INSERT, UPDATE, DELETE, CREATE ...)
    std::int64_t changedRows = -1; // of INSERT, UPDATE, DELETE; -1 for every other statement
};

class Session
{
public:
    // Opens the file, which is made when it does not exist and `create` is set. Waits up to `busyMilliseconds` when
    // another process holds it. Throws SqlError (4060, "42000" when there is no such file; 3906 when it is read-only is
    // raised by the statement that writes, not here).
    static std::unique_ptr<Session> Open(const std::string &file, bool create, int busyMilliseconds);

    // Starts a batch and drops what was left of the one before: statements of it that have not run are not run.
    // `text` is UTF-8. A syntax error anywhere in the batch is thrown here (102, "42000") and nothing runs.
    void Execute(std::string_view text);

    // Runs on to the next result of the batch: the next statement that gives rows or a row count, or null at the end
    // of the batch. Throws SqlError when a statement on the way fails; the call after that goes on with the statement
    // behind it. The result lives until the next call of NextResult, Execute or Cancel.
    Result *NextResult();

    // Drops what is left of the batch.
    void Cancel();

    // For log-ins and the catalogue: a statement of this program's own, in SQLite's language, on the same file.
    // Returns the first column of each row.
    std::vector<std::string> Internal(const std::string &sql);

private:
    using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)>;
    explicit Session(Database db) : m_db(std::move(db)), m_catalog(m_db.get()) {}

    bool TakeElse(std::size_t &at) const;
    void PassOver(std::size_t &at);
    bool RunNext();
    void Prepare(const Statement &statement);

    Database m_db; // closed last, behind everything that uses it
    Catalog m_catalog;

    // The batch.
    std::string m_text;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;             // the token of the next statement
    std::optional<Statement> m_first; // of the batch, when it has been read and not run
    Variables m_variables;

    Result m_result; // of the statement that runs or whose rows are read
    Result m_kept;   // the last change, for another of the same text
};

} // namespace tsql
