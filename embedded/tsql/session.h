// One log-in's conversation with the embedded database: runs T-SQL batches on a SQLite file and gives their results
// one by one, as the server does. Knows nothing of ODBC; the driver turns this into handles and return codes.
#pragma once

#include "errors.h"
#include "functions.h"
#include "reader.h"

#include <optional>
#include <utility>

namespace tsql
{

// One result of a batch. Rows are read where they lie: a view returned by Text is good until the next Step.
class Result
{
public:
    // The columns; empty for a statement without rows (INSERT, UPDATE, DELETE, SET, CREATE ...).
    const std::vector<Column> &Columns() const { return m_columns; }

    // Rows touched by INSERT, UPDATE, DELETE; -1 for every other statement.
    std::int64_t RowCount() const { return m_rowCount; }

    // Goes to the next row. False at the end. Throws SqlError when the row cannot be made (conversion, overflow).
    bool Step();

    // The value of column `column` (from 0) of the row Step went to.
    bool IsNull(int column) const { return sqlite3_column_type(m_running->Get(), column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const { return m_running->Integer(column); }               // Bit to BigInt
    double Number(int column) const { return sqlite3_column_double(m_running->Get(), column); } // Float
    std::string_view Text(int column) const; // UTF-8, any type: the server's conversion to text
    DateTime Moment(int column) const { return MomentOf(Text(column)); } // DateTime

private:
    friend class Session;

    std::optional<Prepared> m_running;
    std::vector<Column> m_columns;
    std::int64_t m_rowCount = -1;
    bool m_atEnd = true;
    mutable char m_number[32]; // what Text gave of a float
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
    // A statement of the batch. A condition that does not hold goes on at `otherwise`; it goes on at `behind` when it
    // fails, as all other statements do: ELSE stands between the branches, and goes behind the second one.
    struct Step
    {
        std::size_t first; // token
        Statement statement;
        std::size_t otherwise;
        std::size_t behind;
    };

    using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)>;
    explicit Session(Database db) : m_db(std::move(db)), m_catalog(m_db.get()) {}

    void UseWriteAheadLog(int busyMilliseconds);
    void Read(std::size_t &at, bool &defined, int depth);
    bool Run(Step &step);
    void Prepare(const Statement &statement);
    void Finish();

    Database m_db; // closed last, behind everything that uses it
    Catalog m_catalog;
    bool m_noCount = false;

    // The batch.
    std::string m_text;
    std::vector<Token> m_tokens;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    Variables m_variables;

    Result m_result;                // of the statement that runs or whose rows are read
    std::optional<Prepared> m_kept; // the last change, for another of the same text
};

} // namespace tsql
