// The rows of one fetch: see row_block.h.
#include "row_block.h"

namespace driver
{

ValueKind KindOf(tsql::Type type)
{
    switch (type)
    {
    case tsql::Type::Bit:
    case tsql::Type::TinyInt:
    case tsql::Type::SmallInt:
    case tsql::Type::Int:
    case tsql::Type::BigInt:
        return ValueKind::Integer;
    case tsql::Type::Decimal:
    case tsql::Type::Float:
        return ValueKind::Number;
    case tsql::Type::DateTime:
        return ValueKind::Moment;
    default:
        return ValueKind::Text;
    }
}

void RowBlock::Prepare(const std::vector<tsql::Column> &columns, size_t rows)
{
    m_rows = rows;
    m_columns.resize(columns.size());
    for (size_t i = 0; i < columns.size(); ++i)
    {
        Column &column = m_columns[i];
        column.type = columns[i].type;
        column.kind = KindOf(column.type);
        column.nulls.assign(rows, 1);
        column.integers.resize(column.kind == ValueKind::Integer ? rows : 0);
        column.numbers.resize(column.kind == ValueKind::Number ? rows : 0);
        column.texts.resize(column.kind == ValueKind::Text || column.kind == ValueKind::Number ? rows : 0);
        column.moments.resize(column.kind == ValueKind::Moment ? rows : 0);
    }
}

void RowBlock::Load(const tsql::Result &result, size_t row)
{
    int index = 0;
    for (Column &column : m_columns)
    {
        const int i = index++;
        if (column.kind == ValueKind::Integer) // NULL reads as 0
        {
            column.integers[row] = result.Integer(i);
            column.nulls[row] = column.integers[row] == 0 && result.IsNull(i);
            continue;
        }
        const bool isNull = result.IsNull(i);
        column.nulls[row] = isNull;
        if (isNull)
            continue;
        switch (column.kind)
        {
        case ValueKind::Integer:
            column.integers[row] = result.Integer(i);
            break;
        case ValueKind::Number:
            column.numbers[row] = result.Number(i);
            [[fallthrough]];
        case ValueKind::Text:
            column.texts[row] = result.Text(i);
            break;
        case ValueKind::Moment:
            column.moments[row] = result.Moment(i);
            break;
        }
    }
}

Value RowBlock::At(size_t row, size_t column) const
{
    const Column &from = m_columns[column];
    Value value;
    value.type = from.type;
    value.isNull = from.nulls[row] != 0;
    if (value.isNull)
        return value;
    switch (from.kind)
    {
    case ValueKind::Integer:
        value.integer = from.integers[row];
        break;
    case ValueKind::Number:
        value.number = from.numbers[row];
        [[fallthrough]];
    case ValueKind::Text:
        value.text = from.texts[row];
        break;
    case ValueKind::Moment:
        value.moment = from.moments[row];
        break;
    }
    return value;
}

} // namespace driver
