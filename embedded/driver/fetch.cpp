// One statement handle, rows: see statement.h.
#include "statement.h"

#include <algorithm>

namespace driver
{
namespace
{

// The same place of a row further on; what is NULL stays so.
Target Moved(Target target, size_t octets, size_t lengthOctets)
{
    if (target.buffer != nullptr)
        target.buffer = static_cast<char *>(target.buffer) + octets;
    if (target.length != nullptr)
        target.length = reinterpret_cast<SQLLEN *>(reinterpret_cast<char *>(target.length) + lengthOctets);
    return target;
}

} // namespace

// Steps up to a block's worth of rows into the block. An error on the way is kept for the next fetch.
void Statement::LoadRows()
{
    const size_t columns = m_columns.size();
    const size_t wanted = attributes[SQL_ATTR_ROW_ARRAY_SIZE];
    m_block.resize(std::max(m_block.size(), wanted * columns));
    m_blockRows = 0;
    try
    {
        for (; m_result != nullptr && m_blockRows < wanted; ++m_blockRows)
        {
            if (m_rowFault && ++m_rowNumber == m_rowFault->row)
                m_connection->Fail(*std::exchange(m_rowFault, std::nullopt));
            if (!m_result->Step())
            {
                m_result = nullptr;
                break;
            }
            for (size_t i = 0; i < columns; ++i)
                m_block[m_blockRows * columns + i].Load(*m_result, static_cast<int>(i), m_columns[i].type);
        }
    }
    catch (...)
    {
        m_result = nullptr;
        m_fetchError = std::current_exception();
    }
}

SQLRETURN Statement::Fetch()
{
    if (m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    m_piecesColumn = 0;
    m_position = 0;
    LoadRows();
    if (auto *const count = AttributePointer<SQLULEN>(SQL_ATTR_ROWS_FETCHED_PTR))
        *count = m_blockRows;
    if (auto *const status = AttributePointer<SQLUSMALLINT>(SQL_ATTR_ROW_STATUS_PTR))
        std::fill_n(status, attributes[SQL_ATTR_ROW_ARRAY_SIZE], SQLUSMALLINT{SQL_ROW_NOROW});
    if (m_blockRows > 0)
        return StoreRows();
    if (m_fetchError)
        Logged([&] { std::rethrow_exception(std::exchange(m_fetchError, nullptr)); });
    return SQL_NO_DATA;
}

// Into the bound columns. A value that cannot be stored marks its row; the call fails when no row is good.
SQLRETURN Statement::StoreRows()
{
    struct Bound
    {
        size_t column;
        const CType &type;
        Target target;
        size_t step; // octets from row to row
        size_t lengthStep;
    };
    const size_t rowOctets = attributes[SQL_ATTR_ROW_BIND_TYPE]; // 0: bound by column
    const auto *const offsetPlace = AttributePointer<SQLLEN>(SQL_ATTR_ROW_BIND_OFFSET_PTR);
    const SQLLEN offset = offsetPlace != nullptr ? *offsetPlace : 0;
    auto *const statusPlace = AttributePointer<SQLUSMALLINT>(SQL_ATTR_ROW_STATUS_PTR);
    std::vector<Bound> bound;
    for (const auto &[number, binding] : bindings)
    {
        if (number > m_columns.size())
            continue;
        const SQLSMALLINT code = binding.cType;
        const CType &type = FindC(code == SQL_C_DEFAULT ? InfoOf(m_columns[number - 1u].type).defaultC : code);
        const size_t octets = type.bits != 0 ? type.Octets() : static_cast<size_t>(binding.capacity);
        bound.push_back({number - 1u, type, Moved(binding, offset, offset), rowOctets != 0 ? rowOctets : octets,
                         rowOctets != 0 ? rowOctets : sizeof(SQLLEN)});
    }

    size_t failed = 0;
    for (size_t row = 0; row < m_blockRows; ++row)
    {
        SQLUSMALLINT status = SQL_ROW_SUCCESS;
        for (Bound &each : bound)
        {
            const size_t notes = records.size();
            try
            {
                m_pieces.given = 0;
                Store(m_block[row * m_columns.size() + each.column], each.type, each.target, *this, m_pieces);
                if (records.size() > notes && status == SQL_ROW_SUCCESS)
                    status = SQL_ROW_SUCCESS_WITH_INFO;
            }
            catch (const DriverError &error)
            {
                status = SQL_ROW_ERROR;
                records.insert(records.end(), error.GetRecords().begin(), error.GetRecords().end());
            }
            each.target = Moved(each.target, each.step, each.lengthStep);
        }
        failed += status == SQL_ROW_ERROR ? 1 : 0;
        if (statusPlace != nullptr)
            statusPlace[row] = status;
    }
    return failed == m_blockRows ? SQL_ERROR : SQL_SUCCESS;
}

void Statement::SetPosition(SQLULEN row)
{
    if (row == 0 || row > m_blockRows)
        throw DriverError("HY107", "Row value out of range");
    m_position = row - 1;
    m_piecesColumn = 0;
}

SQLRETURN Statement::GetData(SQLUSMALLINT number, const Target &target)
{
    if (m_position >= m_blockRows)
        throw DriverError("24000", "Invalid cursor state");
    const SQLSMALLINT own = InfoOf(ColumnAt(number).type).defaultC;
    if (number != m_piecesColumn || target.cType != m_piecesType)
        m_pieces = {};
    m_piecesColumn = number;
    m_piecesType = target.cType;
    if (m_pieces.finished)
        return SQL_NO_DATA;
    Store(m_block[m_position * m_columns.size() + number - 1],
          FindC(target.cType == SQL_C_DEFAULT ? own : target.cType), target, *this, m_pieces);
    return SQL_SUCCESS;
}

} // namespace driver
