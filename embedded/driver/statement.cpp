// One statement handle: see statement.h.
#include "statement.h"

#include <algorithm>
#include <utility>

namespace driver
{

SQLRETURN Statement::Execute(const std::string &text)
{
    connection.Session(); // there must be one, and the log with it
    if (!m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    connection.Log("statement", text);
    Close();
    connection.Claim(*this);
    std::optional<Fault> fault = connection.NextFault(text);
    m_rowFault.reset();
    if (fault && fault->time == Fault::Row)
        m_rowFault.swap(fault);
    if (fault && fault->time != Fault::After)
        connection.Fail(*fault);
    connection.Session().Execute(text);
    m_batchOpen = true;
    const Outcome first = Next();
    while (m_batchOpen && (first.error || fault))
        Next();
    if (fault)
        connection.Fail(*fault);
    Take(first);
    return m_columns.empty() && m_rowCount == 0 ? SQL_NO_DATA : SQL_SUCCESS;
}

SQLRETURN Statement::MoreResults()
{
    const Outcome outcome = Next();
    Take(outcome);
    return outcome.result == nullptr ? SQL_NO_DATA : SQL_SUCCESS;
}

void Statement::Close()
{
    if (m_batchOpen) // so that there is a session
        connection.Session().Cancel();
    LoseResults();
    Take({});
}

void Statement::LoseResults()
{
    m_batchOpen = false;
    m_result = nullptr;
    m_pending = {};
}

bool Statement::IsDrained()
{
    if (m_result == nullptr)
        m_pending = Next();
    return m_result == nullptr && m_pending.result == nullptr && !m_pending.error;
}

const tsql::Column &Statement::ColumnAt(SQLUSMALLINT number) const
{
    if (number == 0 || number > m_columns.size())
        throw DriverError("07009", "Invalid descriptor index");
    return m_columns[number - 1u];
}

Statement::Outcome Statement::Next()
{
    Outcome outcome = std::exchange(m_pending, {});
    if (!m_batchOpen || outcome.result != nullptr || outcome.error)
        return outcome;
    try
    {
        outcome.result = connection.Session().NextResult();
        m_batchOpen = outcome.result != nullptr;
    }
    catch (...)
    {
        outcome.error = std::current_exception();
    }
    return outcome;
}

void Statement::Take(const Outcome &outcome)
{
    const bool isThere = outcome.result != nullptr;
    m_columns = isThere ? outcome.result->Columns() : std::vector<tsql::Column>();
    m_rowCount = isThere ? outcome.result->RowCount() : -1;
    m_result = m_columns.empty() ? nullptr : outcome.result;
    m_blockRows = 0;
    for (tsql::Column &column : m_columns)
        if (connection.claimedTextSize >= 0)
            column.size = connection.claimedTextSize;
    if (outcome.error)
        std::rethrow_exception(outcome.error);
}

// Goes to the next row and stores it. Gives its status: SQL_ROW_NOROW at the end, SQL_ROW_ERROR where it cannot be
// made, which ends the result, or where one of its values cannot be stored.
SQLUSMALLINT Statement::FetchRow(size_t row)
{
    if (m_result == nullptr)
        return SQL_ROW_NOROW;
    const size_t notes = records.size();
    try
    {
        tsql::Result *const result = std::exchange(m_result, nullptr);
        if (m_rowFault && --m_rowFault->number == 0)
            connection.Fail(*std::exchange(m_rowFault, std::nullopt));
        if (!result->Step())
            return SQL_ROW_NOROW;
        m_result = result;
        const size_t columns = std::min(bindings.size(), m_columns.size());
        for (size_t i = 0; i < columns; ++i)
        {
            m_progress.given = 0;
            if (bindings[i].type != nullptr)
                Store(*result, static_cast<int>(i), m_columns[i].type, bindings[i].At(row), *this, m_progress);
        }
        return records.size() > notes ? SQL_ROW_SUCCESS_WITH_INFO : SQL_ROW_SUCCESS;
    }
    catch (const std::exception &error)
    {
        connection.Record(error, records);
        return SQL_ROW_ERROR;
    }
}

SQLRETURN Statement::Fetch()
{
    if (m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    if (rowStatus != nullptr)
        std::fill_n(rowStatus, rowArraySize, SQLUSMALLINT{SQL_ROW_NOROW});
    m_lastRead = 0;
    size_t rows = 0;
    size_t failed = 0;
    for (SQLUSMALLINT status; rows < rowArraySize && (status = FetchRow(rows)) != SQL_ROW_NOROW; ++rows)
    {
        failed += status == SQL_ROW_ERROR ? 1 : 0;
        if (rowStatus != nullptr)
            rowStatus[rows] = status;
    }
    m_blockRows = rows > 0 ? rowArraySize : 0;
    if (connection.IsDead()) // what stands in the places of the rows is good, but nobody says how many there are
        return SQL_ERROR;
    Give(rowsFetched, rows);
    return rows == 0 ? SQL_NO_DATA : failed == rows ? SQL_ERROR : SQL_SUCCESS;
}

SQLRETURN Statement::GetData(SQLUSMALLINT number, const Target &target)
{
    if (m_blockRows > 1)
        throw DriverError("HY109", "Invalid cursor position");
    if (m_blockRows == 0 || m_result == nullptr)
        throw DriverError("24000", "Invalid cursor state");
    const tsql::Type type = ColumnAt(number).type;
    if (number < m_lastRead || number <= bindings.size())
        throw DriverError("07009", "Invalid descriptor index");
    if (number != m_lastRead)
        m_progress = {};
    m_lastRead = number;
    if (m_progress.finished)
        return SQL_NO_DATA;
    Store(*m_result, number - 1, type, target, *this, m_progress);
    return SQL_SUCCESS;
}

} // namespace driver
