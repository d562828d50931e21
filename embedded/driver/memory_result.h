// A result the driver makes itself, for the catalogue functions.
#pragma once

#include "tsql/session.h"

#include <optional>

namespace driver
{

// Rows of texts and integers; every value is kept as text, an empty optional is NULL.
class MemoryResult : public tsql::Result
{
public:
    using Row = std::vector<std::optional<std::string>>;

    MemoryResult(std::vector<tsql::Column> columns, std::vector<Row> rows)
        : m_columns(std::move(columns)), m_rows(std::move(rows))
    {
    }

    const std::vector<tsql::Column> &Columns() const override { return m_columns; }
    std::int64_t RowCount() const override { return -1; }
    bool Step() override { return ++m_current < static_cast<std::ptrdiff_t>(m_rows.size()); }
    bool IsNull(int column) const override { return !Cell(column); }
    std::int64_t Integer(int column) const override { return std::stoll(Cell(column).value_or("0")); }
    double Number(int column) const override { return std::stod(*Cell(column)); }
    std::string_view Text(int column) const override { return *Cell(column); }
    tsql::DateTime Moment(int) const override { return {}; }

private:
    const std::optional<std::string> &Cell(int column) const { return m_rows[m_current][column]; }

    std::vector<tsql::Column> m_columns;
    std::vector<Row> m_rows;
    std::ptrdiff_t m_current = -1;
};

} // namespace driver
