// Rows and columns of a result set, on top of the reader.
#include "odbc/rdoResultset.h"

#include "odbc/row_reader.h"
#include "runtime/convert.h"
#include "runtime/error.h"
#include "runtime/text.h"

namespace odbc
{

runtime::Value rdoColumn::Value() const
{
    return m_reader->Value(m_index);
}

bool rdoColumn::IsNull() const
{
    return m_reader->IsNull(m_index);
}

std::int16_t rdoColumn::Integer() const
{
    if (const std::int64_t *integer = m_reader->Integer(m_index))
        return runtime::ToInteger(*integer);
    return runtime::ToInteger(Value());
}

std::int32_t rdoColumn::Long() const
{
    if (const std::int64_t *integer = m_reader->Integer(m_index))
        return runtime::ToLong(*integer);
    return runtime::ToLong(Value());
}

std::string rdoColumn::Text() const
{
    if (const auto units = m_reader->Units(m_index))
        return runtime::FromUtf16(*units);
    return runtime::ToText(Value());
}

bool rdoColumn::IsOne() const
{
    if (const std::int64_t *integer = m_reader->Integer(m_index))
        return *integer == 1;
    return runtime::IsOne(Value());
}

rdoResultset::rdoResultset(std::unique_ptr<RowReader> reader) : m_reader(std::move(reader)) {}

rdoResultset::~rdoResultset() = default;

bool rdoResultset::AtEnd() const
{
    return m_reader->AtEnd();
}

void rdoResultset::MoveNext()
{
    m_reader->MoveNext();
}

rdoColumn rdoResultset::rdoColumns(int index) const
{
    m_reader->RequireRow(index);
    return rdoColumn(*m_reader, index);
}

rdoColumn rdoResultset::rdoColumns(std::string_view name) const
{
    return rdoColumns(m_reader->FindColumn(name));
}

void rdoResultset::Close()
{
    m_reader->Close();
}

} // namespace odbc
