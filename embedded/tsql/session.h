// One log-in's conversation with the embedded database: runs T-SQL batches on a SQLite file and gives their results
// one by one, as the server does. Knows nothing of ODBC; the driver turns this into handles and return codes.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tsql
{

// A diagnostic in the server's manner: 208, "42S02", "Invalid object name 'x'.".
class SqlError : public std::runtime_error
{
public:
    SqlError(int number, std::string_view state, const std::string &text)
        : std::runtime_error(text), m_number(number), m_state(state)
    {
    }

    int Number() const noexcept { return m_number; }
    const std::string &State() const noexcept { return m_state; }

private:
    int m_number;        // the server's own error number (native error), 0 when there is none
    std::string m_state; // SQLSTATE, five characters
};

enum class Type
{
    Bit,
    TinyInt,
    SmallInt,
    Int,
    BigInt,
    Float,
    Char,
    VarChar,
    NChar,
    NVarChar,
    DateTime
};

// What a column of a result is. A column that is an expression of unknown length reports size 0.
struct Column
{
    std::string name; // UTF-8; empty for an unnamed expression
    Type type = Type::Int;
    int size = 0; // characters for texts (0: max or unknown), else 0
};

struct DateTime
{
    int year, month, day, hour, minute, second;
    int nanosecond; // the server's datetime keeps 1/300 s
};

// One result of a batch. Rows are read where they lie: a view returned by Text is good until the next Step.
class Result
{
public:
    virtual ~Result() = default;

    // The columns; empty for a statement without rows (INSERT, UPDATE, DELETE, SET, CREATE ...).
    virtual const std::vector<Column> &Columns() const = 0;

    // Rows touched by INSERT, UPDATE, DELETE; -1 for every other statement.
    virtual std::int64_t RowCount() const = 0;

    // Goes to the next row. False at the end. Throws SqlError when the row cannot be made (conversion, overflow).
    virtual bool Step() = 0;

    // The value of column `column` (from 0) of the row Step went to.
    virtual bool IsNull(int column) const = 0;
    virtual std::int64_t Integer(int column) const = 0;  // Bit to BigInt
    virtual double Number(int column) const = 0;         // Float
    virtual std::string_view Text(int column) const = 0; // UTF-8, any type: the server's conversion to text
    virtual DateTime Moment(int column) const = 0;       // DateTime
};

class Session
{
public:
    // Opens the file, which is made when it does not exist and `create` is set. Waits up to `busyMilliseconds` when
    // another process holds it. Throws SqlError (4060, "42000" when there is no such file; 3906 when it is read-only is
    // raised by the statement that writes, not here).
    static std::unique_ptr<Session> Open(const std::string &file, bool create, int busyMilliseconds);
    virtual ~Session() = default;

    // Starts a batch and drops what was left of the one before: statements of it that have not run are not run.
    // `text` is UTF-8. A syntax error anywhere in the batch is thrown here (102, "42000") and nothing runs.
    virtual void Execute(std::string_view text) = 0;

    // Runs on to the next result of the batch: the next statement that gives rows or a row count, or null at the end
    // of the batch. Throws SqlError when a statement on the way fails; the call after that goes on with the statement
    // behind it. The result lives until the next call of NextResult, Execute or Cancel.
    virtual Result *NextResult() = 0;

    // Drops what is left of the batch.
    virtual void Cancel() = 0;

    // The texts of PRINT and other messages since the last call.
    virtual std::vector<std::string> TakeMessages() = 0;

    // For log-ins and the catalogue: a statement of this program's own, in SQLite's language, on the same file.
    // Returns the first column of each row.
    virtual std::vector<std::string> Internal(const std::string &sql) = 0;
};

} // namespace tsql
