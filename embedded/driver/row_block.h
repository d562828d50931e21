// The rows of one fetch, kept so that they can be bound, read in pieces and read again by position.
#pragma once

#include "tsql/session.h"

#include <string>
#include <string_view>
#include <vector>

namespace driver
{

// One value of the block. `text` is set for texts, decimals and floats, and is good until the block is filled anew.
struct Value
{
    bool isNull = true;
    tsql::Type type = tsql::Type::Int;
    std::int64_t integer = 0;
    double number = 0;
    std::string_view text;
    tsql::DateTime moment{};
};

enum class ValueKind
{
    Integer,
    Number, // double and the server's text of it
    Text,
    Moment
};
ValueKind KindOf(tsql::Type type);

class RowBlock
{
public:
    // For results with these columns, `rows` at a time; forgets what was there.
    void Prepare(const std::vector<tsql::Column> &columns, size_t rows);

    // Copies the row the result stands on into row `row` of the block.
    void Load(const tsql::Result &result, size_t row);

    Value At(size_t row, size_t column) const;
    size_t Rows() const { return m_rows; }

    // For the tight loops of block fetch: whole columns, an integer and a flag a row.
    const std::int64_t *Integers(size_t column) const { return m_columns[column].integers.data(); }
    const unsigned char *Nulls(size_t column) const { return m_columns[column].nulls.data(); }

private:
    struct Column
    {
        tsql::Type type;
        ValueKind kind;
        std::vector<unsigned char> nulls;
        std::vector<std::int64_t> integers;
        std::vector<double> numbers;
        std::vector<std::string> texts;
        std::vector<tsql::DateTime> moments;
    };
    std::vector<Column> m_columns;
    size_t m_rows = 0;
};

} // namespace driver
