// Fetches the rows of an executed statement in blocks and gives the values of the current one.
#pragma once

#include "odbc/statement.h"
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

// Numbers are fetched into arrays a block at a time, texts too as long as they fit into what the driver says of their
// size; a longer one is an error when it is asked for. When a column's size is unknown or large, the rows come one by
// one and no column is bound: each value is then read in chunks, from the lowest column to the one asked for, and kept,
// since drivers may refuse to go back.
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
    // Errors 91, 40009 (no current row) and 40041 (no such column). Called for every value, hence inline.
    void RequireRow(int column) const
    {
        if (!Open() || m_atEnd || column < 0 || column >= ColumnCount())
            RaiseNoValue();
    }

    bool IsNull(int column) const;
    runtime::Value Value(int column) const;
    // The value when it came in its block as an integer and is not NULL: the short way for most columns.
    const std::int64_t *Integer(int column) const;
    // The value as UTF-16 when it is a text that came in its block whole and is not NULL.
    std::optional<std::u16string_view> Units(int column) const;

private:
    enum class Kind
    {
        Integer,
        Number,
        Text
    };

    struct Column
    {
        std::string name;
        Kind kind = Kind::Text;
        std::size_t capacity = 0; // texts: units a row, with the terminating zero; 0: read in chunks
        // A value a row of the block; those of rows that were not fetched are never written.
        std::unique_ptr<std::int64_t[]> integers;
        std::unique_ptr<double[]> numbers;
        std::unique_ptr<SQLWCHAR[]> units;
        std::unique_ptr<SQLLEN[]> indicators;
        mutable runtime::Value value; // of the current row, when it was read in chunks
    };

    bool Open() const noexcept { return !m_closed && (!m_statement || m_execution == m_statement->execution); }
    [[noreturn]] void RaiseNoValue() const;
    void Describe();
    void Bind();
    void BindColumn(SQLUSMALLINT number, Column &column);
    void FetchBlock();
    [[noreturn]] void RaiseFailure();
    void Finish();
    // Reads the columns up to this one that have not been read yet.
    const runtime::Value &Unbound(int column) const;
    // A value from the driver, whatever its size.
    runtime::Value ReadChunked(int column) const;
    std::u16string ReadTextChunked(SQLUSMALLINT number, SQLLEN &indicator) const;

    std::shared_ptr<Statement> m_statement;
    std::uint64_t m_execution = 0;
    std::vector<Column> m_columns;
    std::vector<SQLUSMALLINT> m_status;
    SQLULEN m_blockSize = 1;
    SQLULEN m_fetched = 0;                   // rows in the block
    SQLULEN m_row = 0;                       // the current one
    std::optional<runtime::Error> m_failure; // of the row after the block's last
    bool m_bound = false;
    mutable int m_read = 0; // unbound columns of the current row that have been read
    bool m_atEnd = true;
    bool m_closed = false;
};

} // namespace odbc
