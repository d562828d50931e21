// Block fetch with a fall-back for every value that a block cannot hold.
#include "odbc/row_reader.h"

#include "odbc/wide.h"
#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace odbc
{

namespace
{

// Rows a fetch. More brings nothing: the cost of a call is spread over enough rows.
constexpr SQLULEN kRowsPerBlock = 256;
// A text column up to this size (in characters, as the driver says) is fetched in blocks.
constexpr SQLULEN kLargestBoundText = 512;

void SetAttribute(const Statement &statement, SQLINTEGER attribute, SQLPOINTER value)
{
    Check(SQLSetStmtAttrW(statement.handle.get(), attribute, value, 0), statement.handle);
}

} // namespace

void Statement::CloseCursor() noexcept
{
    const bool wasExecuted = std::exchange(executed, false);
    const bool wasBound = std::exchange(bound, false);
    if (HandlesAbandoned())
        return;
    if (wasExecuted)
        SQLFreeStmt(handle.get(), SQL_CLOSE);
    if (!wasBound)
        return;
    SQLFreeStmt(handle.get(), SQL_UNBIND);
    // What was raised for the rows of one execution must not reach the next one: with an array size other than 1 at
    // execution time some drivers ask the server for a cursor.
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(SQLULEN{1}), 0);
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
}

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
    Check(SQLNumResultCols(handle.get(), &count), handle);
    m_columns.resize(static_cast<std::size_t>(std::max<SQLSMALLINT>(count, 0)));
    for (std::size_t i = 0; i < m_columns.size(); ++i)
    {
        Column &column = m_columns[i];
        SQLWCHAR name[256] = {};
        SQLSMALLINT length = 0;
        SQLSMALLINT type = 0;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        Check(SQLDescribeColW(handle.get(), static_cast<SQLUSMALLINT>(i + 1), name, 256, &length, &type, &size, &digits,
                              &nullable),
              handle);
        column.name = FromWide(name, static_cast<std::size_t>(std::clamp<SQLSMALLINT>(length, 0, 255)));
        switch (type)
        {
        case SQL_BIT:
        case SQL_TINYINT:
        case SQL_SMALLINT:
        case SQL_INTEGER:
        case SQL_BIGINT:
            column.kind = Kind::Whole;
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

bool RowReader::FitsInBlock(const Column &column) const
{
    return column.kind != Kind::Text || column.capacity > 0;
}

void RowReader::Bind()
{
    // SQLGetData is sure to work only behind the last bound column and for a block of one row, so that one column of
    // unknown size makes all of them be fetched by it.
    if (!std::all_of(m_columns.begin(), m_columns.end(), [this](const Column &c) { return FitsInBlock(c); }))
        return;
    m_bound = true;
    m_statement->bound = true;
    m_blockSize = kRowsPerBlock;
    m_status.assign(m_blockSize, SQL_ROW_SUCCESS);
    const StatementHandle &handle = m_statement->handle;
    for (std::size_t i = 0; i < m_columns.size(); ++i)
    {
        Column &column = m_columns[i];
        column.indicators = std::make_unique<SQLLEN[]>(m_blockSize);
        SQLSMALLINT type = SQL_C_WCHAR;
        SQLPOINTER buffer = nullptr;
        std::size_t width = 0;
        switch (column.kind)
        {
        case Kind::Whole:
            column.wholes = std::make_unique_for_overwrite<std::int64_t[]>(m_blockSize);
            type = SQL_C_SBIGINT;
            buffer = column.wholes.get();
            width = sizeof column.wholes[0];
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
        Check(SQLBindCol(handle.get(), static_cast<SQLUSMALLINT>(i + 1), type, buffer, static_cast<SQLLEN>(width),
                         column.indicators.get()),
              handle);
    }
    SetAttribute(*m_statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(m_blockSize));
    SetAttribute(*m_statement, SQL_ATTR_ROW_STATUS_PTR, m_status.data());
    SetAttribute(*m_statement, SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched);
}

void RowReader::FetchBlock()
{
    m_row = 0;
    m_fetched = m_bound ? 0 : 1;
    for (Column &column : m_columns)
        column.fetched = false;
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
        return; // a warning only, of which the value itself tells what is needed
    const auto firstBad = std::find_if_not(m_status.begin(), m_status.end(), isGood);
    const auto goodRows = static_cast<SQLULEN>(firstBad - m_status.begin());
    try
    {
        Check(SQL_ERROR, m_statement->handle);
    }
    catch (const runtime::Error &error)
    {
        m_failure = error;
    }
    m_fetched = std::min(m_fetched, goodRows);
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
    std::optional<runtime::Error> first;
    for (;;)
    {
        try
        {
            if (Check(SQLMoreResults(m_statement->handle.get()), m_statement->handle) == SQL_NO_DATA)
                break;
        }
        catch (const runtime::Error &error)
        {
            if (first)
                break; // a handle that fails again and again has nothing behind
            first = error;
        }
    }
    Close();
    if (first)
        throw *first;
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

const runtime::Value &RowReader::Pieces(int index) const
{
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (column.fetched)
        return column.value;
    const StatementHandle &handle = m_statement->handle;
    const auto number = static_cast<SQLUSMALLINT>(index + 1);
    SQLLEN indicator = 0;
    if (column.kind == Kind::Whole)
    {
        std::int64_t whole = 0;
        Check(SQLGetData(handle.get(), number, SQL_C_SBIGINT, &whole, sizeof whole, &indicator), handle);
        column.value = whole;
    }
    else if (column.kind == Kind::Number)
    {
        double value = 0;
        Check(SQLGetData(handle.get(), number, SQL_C_DOUBLE, &value, sizeof value, &indicator), handle);
        column.value = value;
    }
    else
    {
        std::u16string text;
        SQLWCHAR piece[1024];
        constexpr std::size_t kPieceUnits = std::size(piece) - 1;
        for (;;)
        {
            const SQLRETURN code =
                Check(SQLGetData(handle.get(), number, SQL_C_WCHAR, piece, sizeof piece, &indicator), handle);
            if (code == SQL_NO_DATA || indicator == SQL_NULL_DATA)
                break;
            const bool more =
                indicator == SQL_NO_TOTAL || indicator > static_cast<SQLLEN>(kPieceUnits * sizeof(SQLWCHAR));
            const std::size_t units = more ? kPieceUnits : static_cast<std::size_t>(indicator) / sizeof(SQLWCHAR);
            text.append(reinterpret_cast<const char16_t *>(piece), units);
            if (!more)
                break;
        }
        column.value = runtime::FromUtf16(text);
    }
    if (indicator == SQL_NULL_DATA)
        column.value = runtime::Null();
    column.fetched = true;
    return column.value;
}

bool RowReader::IsNull(int index) const
{
    RequireRow(index);
    if (!m_bound)
        return runtime::IsNull(Pieces(index));
    return m_columns[static_cast<std::size_t>(index)].indicators[m_row] == SQL_NULL_DATA;
}

const std::int64_t *RowReader::Whole(int index) const
{
    RequireRow(index);
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (!m_bound || column.kind != Kind::Whole || column.indicators[m_row] == SQL_NULL_DATA)
        return nullptr;
    return &column.wholes[m_row];
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
    if (const std::int64_t *whole = Whole(index))
        return *whole;
    if (!m_bound)
        return Pieces(index);
    const Column &column = m_columns[static_cast<std::size_t>(index)];
    if (column.indicators[m_row] == SQL_NULL_DATA)
        return runtime::Null();
    if (column.kind == Kind::Number)
        return column.numbers[m_row];
    if (const auto units = Units(index))
        return runtime::FromUtf16(*units);
    // Longer than the driver said. Drivers that can read out of a block give the rest; the others fail, which is better
    // than a value that was cut.
    const StatementHandle &handle = m_statement->handle;
    Check(SQLSetPos(handle.get(), static_cast<SQLSETPOSIROW>(m_row + 1), SQL_POSITION, SQL_LOCK_NO_CHANGE), handle);
    column.fetched = false;
    return Pieces(index);
}

} // namespace odbc
