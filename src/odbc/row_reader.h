// Fetches the rows of an executed statement in blocks and gives the values of the current one.
#pragma once

#include "odbc/handles.h"
#include "runtime/error.h"
#include "runtime/value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace odbc
{

// A connection's one statement handle, and which of its executions is the current one: a reader of an older execution
// is closed.
struct Statement
{
    explicit Statement(SQLHANDLE connection) : handle(connection) {}
    StatementHandle handle;
    std::uint64_t execution = 0;
    bool executed = false; // and not closed since
    bool bound = false;    // to the arrays of a reader

    // Drops the rows and results that were not read. Asks the driver for nothing when there is nothing to drop.
    void CloseCursor() noexcept;
};

// Numbers are fetched into arrays a block at a time, texts too as long as they fit into what the driver says of their
// size; a text that does not fit is fetched anew in pieces. When a column's size is unknown or large, the rows come one
// by one and each value in pieces.
class RowReader
{
public:
    // Takes over a statement that has just been executed and whose current result has columns; goes to the first row.
    explicit RowReader(std::shared_ptr<Statement> statement);
    // A reader without rows, for a statement none of whose results has columns.
    RowReader() = default;

    ~RowReader();
    RowReader(const RowReader &) = delete;
    RowReader &operator=(const RowReader &) = delete;

    bool AtEnd() const noexcept { return m_atEnd; }
    // Error 91 when the reader has been closed or its connection has gone on to another statement.
    void RequireOpen() const
    {
        if (!Open())
            runtime::Raise(runtime::kObjectNotSet);
    }
    void MoveNext();
    void Close() noexcept;

    int ColumnCount() const noexcept { return static_cast<int>(m_columns.size()); }
    // The column of that name without regard to case, -1 when there is none.
    int FindColumn(std::string_view name) const;
    // Errors 91, 40009 (no current row) and 40041 (no such column). Asked for every value, so that it stands here.
    void RequireRow(int column) const
    {
        if (!Open() || m_atEnd || column < 0 || column >= ColumnCount())
            RaiseNoValue();
    }

    bool IsNull(int column) const;
    runtime::Value Value(int column) const;
    // The value when it came as a whole number and is not NULL: the short way for most columns.
    const std::int64_t *Whole(int column) const;
    // The value as UTF-16 when it is a text that came in its block whole and is not NULL.
    std::optional<std::u16string_view> Units(int column) const;

private:
    enum class Kind
    {
        Whole,
        Number,
        Text
    };

    struct Column
    {
        std::string name;
        Kind kind = Kind::Text;
        std::size_t capacity = 0; // texts: units a row, with the terminating zero; 0: fetched in pieces
        // A value a row of the block; those of rows that were not fetched are never written.
        std::unique_ptr<std::int64_t[]> wholes;
        std::unique_ptr<double[]> numbers;
        std::unique_ptr<SQLWCHAR[]> units;
        std::unique_ptr<SQLLEN[]> indicators;
        mutable runtime::Value value; // when it was fetched in pieces
        mutable bool fetched = false;
    };

    bool Open() const noexcept { return !m_closed && (!m_statement || m_execution == m_statement->execution); }
    [[noreturn]] void RaiseNoValue() const;
    void Describe();
    void Bind();
    void FetchBlock();
    [[noreturn]] void RaiseFailure();
    void Finish();
    bool FitsInBlock(const Column &column) const;
    const runtime::Value &Pieces(int column) const;

    std::shared_ptr<Statement> m_statement;
    std::uint64_t m_execution = 0;
    std::vector<Column> m_columns;
    std::vector<SQLUSMALLINT> m_status;
    SQLULEN m_blockSize = 1;
    SQLULEN m_fetched = 0;                   // rows in the block
    SQLULEN m_row = 0;                       // the current one
    std::optional<runtime::Error> m_failure; // of the row behind the block's last
    bool m_bound = false;
    bool m_atEnd = true;
    bool m_closed = false;
};

} // namespace odbc
