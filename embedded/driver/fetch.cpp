// One statement handle, rows: see statement.h.
#include "statement.h"

#include "guard.h"

#include <cstring>
#include <limits>

namespace driver
{
namespace
{

SQLSMALLINT EffectiveC(SQLSMALLINT cType, tsql::Type type)
{
    return cType == SQL_C_DEFAULT ? InfoOf(type).defaultC : cType;
}

// Whole columns of integers into T without a call a value. False, with nothing promised about the buffers, when a value
// does not fit or a NULL has no indicator: the careful way then finds and reports it.
template <class T>
bool StoreIntegers(const RowBlock &block, size_t column, size_t rows, char *buffer, char *length, char *indicator,
                   size_t bufferStride, size_t lengthStride)
{
    const std::int64_t *values = block.Integers(column);
    const unsigned char *nulls = block.Nulls(column);
    for (size_t row = 0; row < rows; ++row)
    {
        if (nulls[row] != 0)
        {
            if (indicator == nullptr)
                return false;
            *reinterpret_cast<SQLLEN *>(indicator + row * lengthStride) = SQL_NULL_DATA;
            continue;
        }
        const std::int64_t value = values[row];
        if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
            return false;
        const T narrow = static_cast<T>(value);
        std::memcpy(buffer + row * bufferStride, &narrow, sizeof narrow);
        if (indicator != nullptr)
            *reinterpret_cast<SQLLEN *>(indicator + row * lengthStride) = 0;
        if (length != nullptr)
            *reinterpret_cast<SQLLEN *>(length + row * lengthStride) = sizeof narrow;
    }
    return true;
}

} // namespace

void Statement::BindColumn(SQLUSMALLINT column, const Target &target)
{
    if (column == 0)
        throw DriverError("07009", "Invalid descriptor index");
    if (target.buffer == nullptr && target.length == nullptr)
        m_bindings.erase(column);
    else
        m_bindings[column] = target;
}

// Steps up to `wanted` rows into the block. An error on the way is kept for the next fetch.
size_t Statement::LoadRows(size_t wanted)
{
    size_t rows = 0;
    try
    {
        for (; rows < wanted; ++rows)
        {
            if (m_rowFault && ++m_rowNumber == m_rowFault->row)
            {
                const Fault fault = *std::exchange(m_rowFault, std::nullopt);
                if (fault.cut)
                    m_connection->Cut();
                throw DriverError({fault.record});
            }
            if (!m_result->Step())
            {
                m_result = nullptr;
                break;
            }
            m_block.Load(*m_result, rows);
        }
    }
    catch (...)
    {
        m_result = nullptr;
        m_fetchError = std::current_exception();
    }
    return rows;
}

SQLRETURN Statement::Fetch()
{
    m_piecesColumn = 0;
    m_position = 0;
    if (m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    const size_t wanted = rowArraySize;
    if (!m_blockPrepared || m_block.Rows() != wanted)
        m_block.Prepare(m_columns, wanted);
    m_blockPrepared = true;
    m_blockRows = m_result != nullptr && !m_fetchError ? LoadRows(wanted) : 0;
    if (rowsFetched != nullptr)
        *rowsFetched = m_blockRows;
    if (rowStatus != nullptr)
        for (size_t row = 0; row < wanted; ++row)
            rowStatus[row] = row < m_blockRows ? SQL_ROW_SUCCESS : SQL_ROW_NOROW;
    if (m_blockRows > 0)
        return StoreColumns(m_blockRows);
    if (!m_fetchError)
        return SQL_NO_DATA;
    try
    {
        std::rethrow_exception(std::exchange(m_fetchError, nullptr));
    }
    catch (...)
    {
        LogFailure();
        throw;
    }
}

SQLRETURN Statement::StoreColumns(size_t rows)
{
    const SQLLEN offset = rowBindOffset != nullptr ? *rowBindOffset : 0;
    const auto at = [&](const void *base) -> char *
    { return base == nullptr ? nullptr : static_cast<char *>(const_cast<void *>(base)) + offset; };

    std::vector<SQLUSMALLINT> careful; // columns for the way of a call a value
    for (const auto &[number, target] : m_bindings)
    {
        if (number > m_columns.size())
            continue;
        const size_t column = number - 1u;
        const SQLSMALLINT cType = EffectiveC(target.cType, m_columns[column].type);
        bool done = false;
        if (KindOf(m_columns[column].type) == ValueKind::Integer && target.buffer != nullptr)
        {
            const size_t stride = rowBindType == SQL_BIND_BY_COLUMN ? static_cast<size_t>(SizeOfC(cType)) : rowBindType;
            const size_t lengthStride = rowBindType == SQL_BIND_BY_COLUMN ? sizeof(SQLLEN) : rowBindType;
            if (cType == SQL_C_SLONG || cType == SQL_C_LONG)
                done = StoreIntegers<std::int32_t>(m_block, column, rows, at(target.buffer), at(target.length),
                                                   at(target.indicator), stride, lengthStride);
            else if (cType == SQL_C_SBIGINT)
                done = StoreIntegers<std::int64_t>(m_block, column, rows, at(target.buffer), at(target.length),
                                                   at(target.indicator), stride, lengthStride);
            else if (cType == SQL_C_SSHORT || cType == SQL_C_SHORT)
                done = StoreIntegers<std::int16_t>(m_block, column, rows, at(target.buffer), at(target.length),
                                                   at(target.indicator), stride, lengthStride);
        }
        if (!done)
            careful.push_back(number);
    }

    SQLRETURN result = SQL_SUCCESS;
    size_t failed = 0;
    for (size_t row = 0; row < rows && !careful.empty(); ++row)
    {
        SQLUSMALLINT status = SQL_ROW_SUCCESS;
        for (const SQLUSMALLINT number : careful)
        {
            const Target &target = m_bindings[number];
            const size_t column = number - 1u;
            const SQLSMALLINT cType = EffectiveC(target.cType, m_columns[column].type);
            const SQLLEN size = SizeOfC(cType) != 0 ? SizeOfC(cType) : target.capacity;
            const bool byColumn = rowBindType == SQL_BIND_BY_COLUMN;
            const size_t bufferStep = row * (byColumn ? static_cast<size_t>(size) : rowBindType);
            const size_t lengthStep = row * (byColumn ? sizeof(SQLLEN) : rowBindType);
            Target here = target;
            here.buffer = target.buffer != nullptr ? at(target.buffer) + bufferStep : nullptr;
            here.length =
                target.length != nullptr ? reinterpret_cast<SQLLEN *>(at(target.length) + lengthStep) : nullptr;
            here.indicator =
                target.indicator != nullptr ? reinterpret_cast<SQLLEN *>(at(target.indicator) + lengthStep) : nullptr;
            try
            {
                if (Convert(m_block.At(row, column), here, Diag(), nullptr) == SQL_SUCCESS_WITH_INFO &&
                    status == SQL_ROW_SUCCESS)
                    status = SQL_ROW_SUCCESS_WITH_INFO;
            }
            catch (const DriverError &error)
            {
                status = SQL_ROW_ERROR;
                for (const DiagnosticRecord &record : error.Records())
                    Diag().Add(record);
            }
        }
        if (status != SQL_ROW_SUCCESS)
            result = SQL_SUCCESS_WITH_INFO;
        if (status == SQL_ROW_ERROR)
            ++failed;
        if (rowStatus != nullptr)
            rowStatus[row] = status;
    }
    return failed == rows ? SQL_ERROR : result;
}

void Statement::SetPosition(SQLULEN row)
{
    if (row == 0 || row > m_blockRows)
        throw DriverError("HY107", "Row value out of range");
    m_position = row - 1;
    m_piecesColumn = 0;
}

SQLRETURN Statement::GetData(SQLUSMALLINT column, const Target &target)
{
    if (m_position >= m_blockRows)
        throw DriverError("24000", "Invalid cursor state");
    if (column == 0 || column > m_columns.size())
        throw DriverError("07009", "Invalid descriptor index");
    if (column != m_piecesColumn || target.cType != m_piecesType)
    {
        m_piecesColumn = column;
        m_piecesType = target.cType;
        m_pieces = {};
    }
    return Convert(m_block.At(m_position, column - 1u), target, Diag(), &m_pieces);
}

} // namespace driver
