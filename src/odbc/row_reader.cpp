// Block fetch with a fall-back for every value that a block cannot hold.
#include "odbc/row_reader.h"

#include "odbc/wide.h"
#include "runtime/text.h"

#include <algorithm>
#include <iterator>

namespace odbc
{

namespace
{

// Rows a fetch. More brings nothing: the cost of a call is spread over enough rows.
constexpr SQLULEN kRowsPerBlock = 256;
// A text column up to this size (in characters, as the driver says) is fetched in blocks.
constexpr SQLULEN kLargestBoundText = 512;

void SetAttribute(Statement &statement, SQLINTEGER attribute, SQLPOINTER value)
{
    statement.Check(SQLSetStmtAttrW(statement.handle.get(), attribute, value, 0));
}

} // namespace

RowReader::RowReader(std::shared_ptr<Statement> statement)
    : m_statement(std::move(statement)), m_execution(m_statement->execution), m_atEnd(false)
{
    try
    {
        Describe();
        Bind();
        FetchBlock();
    }
    catch (...)
    {
        Close(); // the handle must not keep pointers into this object
        throw;
    }
}

RowReader::~RowReader()
{
    Close();
}

void RowReader::Close() noexcept
{
    m_atEnd = true;
    if (m_closed || !m_statement)
        return;
    m_closed = true;
    if (m_execution == m_statement->execution)
        m_statement->CloseCursor();
}

void RowReader::RaiseNoValue() const
{
    RequireOpen();
    if (m_atEnd)
        throw runtime::Error(40009, "No current row");
    throw runtime::Error(40041, "Item not found in this collection");
}

void RowReader::Describe()
{
    const StatementHandle &handle = m_statement->handle;
    SQLSMALLINT count = 0;
    m_statement->Check(SQLNumResultCols(handle.get(), &count));
    m_columns.resize(static_cast<std::size_t>(std::max<SQLSMALLINT>(count, 0)));
    SQLUSMALLINT number = 0;
    for (Column &column : m_columns)
    {
        SQLWCHAR name[256] = {};
        SQLSMALLINT length = 0;
        SQLSMALLINT type = 0;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        m_statement->Check(
            SQLDescribeColW(handle.get(), ++number, name, 256, &length, &type, &size, &digits, &nullable));
        column.name = FromWide(name, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(length, 0, 255)));
        switch (type)
        {
        case SQL_BIT:
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT:
            column.kind = Kind::Integer;
            break;
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE:
        case SQL_DECIMAL:
        case SQL_NUMERIC:
            column.kind = Kind::Number;
            break;
        default:
            column.kind = Kind::Text;
            // Twice the size: a character beyond U+FFFF takes two units.
            if (size > 0 && size <= kLargestBoundText)
                column.capacity = static_cast<std::size_t>(size) * 2 + 1;
        }
    }
}

void RowReader::Bind()
{
    // SQLGetData is guaranteed to work only after the last bound column and for a block of one row, so that one column
    // of unknown size keeps all of them unbound.
    if (std::any_of(m_columns.begin(), m_columns.end(),
                    [](const Column &column) { return column.kind == Kind::Text && column.capacity == 0; }))
        return;
    m_bound = true;
    m_statement->bound = true;
    m_blockSize = kRowsPerBlock;
    m_status.assign(m_blockSize, SQL_ROW_SUCCESS);
    SQLUSMALLINT number = 0;
    for (Column &column : m_columns)
        BindColumn(++number, column);
    SetAttribute(*m_statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(m_blockSize));
    SetAttribute(*m_statement, SQL_ATTR_ROW_STATUS_PTR, m_status.data());
    SetAttribute(*m_statement, SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched);
}

void RowReader::BindColumn(SQLUSMALLINT number, Column &column)
{
    column.indicators = std::make_unique<SQLLEN[]>(m_blockSize);
    SQLSMALLINT type = SQL_C_WCHAR;
    SQLPOINTER buffer = nullptr;
    std::size_t width = 0;
    switch (column.kind)
    {
    case Kind::Integer:
        column.integers = std::make_unique_for_overwrite<std::int64_t[]>(m_blockSize);
        type = SQL_C_SBIGINT;
        buffer = column.integers.get();
        width = sizeof column.integers[0];
        break;
    case Kind::Number:
        column.numbers = std::make_unique_for_overwrite<double[]>(m_blockSize);
        type = SQL_C_DOUBLE;
        buffer = column.numbers.get();
        width = sizeof column.numbers[0];
        break;
    case Kind::Text:
        column.units = std::make_unique_for_overwrite<SQLWCHAR[]>(m_blockSize * column.capacity);
        buffer = column.units.get();
        width = column.capacity * sizeof(SQLWCHAR);
        break;
    }
    m_statement->Check(SQLBindCol(m_statement->handle.get(), number, type, buffer, static_cast<SQLLEN>(width),
                                  column.indicators.get()));
}

void RowReader::FetchBlock()
{
    m_row = 0;
    m_read = 0;
    m_fetched = m_bound ? 0 : 1;
    std::fill(m_status.begin(), m_status.end(), SQLUSMALLINT{SQL_ROW_NOROW});
    const SQLRETURN code = SQLFetch(m_statement->handle.get());
    if (code == SQL_NO_DATA)
    {
        Finish();
        return;
    }
    if (code == SQL_SUCCESS)
        return;
    // Rows in front of a failing one are given first; its error is raised when they have been read.
    const auto isGood = [](SQLUSMALLINT status)
    { return status == SQL_ROW_SUCCESS || status == SQL_ROW_SUCCESS_WITH_INFO; };
    if (SQL_SUCCEEDED(code) && std::find(m_status.begin(), m_status.end(), SQL_ROW_ERROR) == m_status.end())
        return; // only a warning, whose cause is visible in the value itself
    const auto firstBad = std::find_if_not(m_status.begin(), m_status.end(), isGood);
    m_failure = m_statement->Failure();
    m_fetched = static_cast<SQLULEN>(firstBad - m_status.begin()); // a call that failed need not tell
    if (m_fetched == 0)
        RaiseFailure();
}

void RowReader::RaiseFailure()
{
    const runtime::Error failure = *m_failure;
    Close();
    throw failure;
}

void RowReader::Finish()
{
    m_atEnd = true;
    // A later statement of the batch may have failed, and says so only when its result is asked for.
    const auto failure = m_statement->Drain(SQLMoreResults(m_statement->handle.get()));
    Close();
    if (failure)
        throw *failure;
}

void RowReader::MoveNext()
{
    RequireOpen();
    if (m_atEnd)
        return;
    if (++m_row < m_fetched)
        return;
    if (m_failure)
        RaiseFailure();
    FetchBlock();
}

int RowReader::FindColumn(std::string_view name) const
{
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (runtime::EqualNoCase(m_columns[i].name, name))
            return static_cast<int>(i);
    return -1;
}

const runtime::Value &RowReader::Unbound(int index) const
{
    for (; m_read <= index; ++m_read)
        m_columns[static_cast<std::size_t>(m_read)].value = ReadChunked(m_read);
    return m_columns[static_cast<std::size_t>(index)].value;
}

runtime::Value RowReader::ReadChunked(int index) const
{
    const SQLHANDLE handle = m_statement->handle.get();
    const auto number = static_cast<SQLUSMALLINT>(index + 1);
    SQLLEN indicator = 0;
    runtime::Value value;
    switch (m_columns[static_cast<std::size_t>(index)].kind)
    {
    case Kind::Integer:
    {
        std::int64_t integer = 0;
        m_statement->Check(SQLGetData(handle, number, SQL_C_SBIGINT, &integer, sizeof integer, &indicator));
        value = integer;
        break;
    }
    case Kind::Number:
    {
        double real = 0;
        m_statement->Check(SQLGetData(handle, number, SQL_C_DOUBLE, &real, sizeof real, &indicator));
        value = real;
        break;
    }
    case Kind::Text:
        value = runtime::FromUtf16(ReadTextChunked(number, indicator));
        break;
    }
    return indicator == SQL_NULL_DATA ? runtime::Value(runtime::Null()) : value;
}

std::u16string RowReader::ReadTextChunked(SQLUSMALLINT number, SQLLEN &indicator) const
{
    std::u16string text;
    SQLWCHAR chunk[1024];
    constexpr std::size_t kChunkUnits = std::size(chunk) - 1;
    const SQLHANDLE handle = m_statement->handle.get();
    while (m_statement->Check(SQLGetData(handle, number, SQL_C_WCHAR, chunk, sizeof chunk, &indicator)) != SQL_NO_DATA)
    {
        if (indicator == SQL_NULL_DATA)
            break;
        const bool more = indicator == SQL_NO_TOTAL || indicator > static_cast<SQLLEN>(kChunkUnits * sizeof(SQLWCHAR));
        const std::size_t units = more ? kChunkUnits : static_cast<std::size_t>(indicator) / sizeof(SQLWCHAR);
        text.append(reinterpret_cast<const char16_t *>(chunk), units);
        if (!more)
            break;
    }
    return text;
}

bool RowReader::IsNull(int index) const
{
    RequireRow(index);
    if (!m_bound)
        return runtime::IsNull(Unbound(index));
    return m_columns[static_cast<std::size_t>(index)].indicators[m_row] == SQL_NULL_DATA;
}

const std::int64_t *RowReader::Integer(int index) const
{
    RequireRow(index);
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (!m_bound || column.kind != Kind::Integer || column.indicators[m_row] == SQL_NULL_DATA)
        return nullptr;
    return &column.integers[m_row];
}

std::optional<std::u16string_view> RowReader::Units(int index) const
{
    RequireRow(index);
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (!m_bound || column.kind != Kind::Text)
        return std::nullopt;
    const SQLLEN indicator = column.indicators[m_row];
    if (indicator == SQL_NULL_DATA)
        return std::nullopt;
    const auto *units = reinterpret_cast<const char16_t *>(column.units.get() + m_row * column.capacity);
    if (indicator == SQL_NO_TOTAL || indicator > static_cast<SQLLEN>((column.capacity - 1) * sizeof(SQLWCHAR)))
        return std::nullopt;
    return std::u16string_view(units, static_cast<std::size_t>(indicator) / sizeof(SQLWCHAR));
}

runtime::Value RowReader::Value(int index) const
{
    if (const std::int64_t *integer = Integer(index))
        return *integer;
    if (!m_bound)
        return Unbound(index);
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (column.indicators[m_row] == SQL_NULL_DATA)
        return runtime::Null();
    if (column.kind == Kind::Number)
        return column.numbers[m_row];
    if (const auto units = Units(index))
        return runtime::FromUtf16(*units);
    // Longer than the driver said, and drivers do not read out of a block: an error is better than a value that was
    // cut.
    throw runtime::Error(runtime::kDatabaseError, "22001: A text is longer than its column");
}

} // namespace odbc
