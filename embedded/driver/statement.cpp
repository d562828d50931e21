// A statement: see handles.h.
#include "handles.h"

#include <algorithm>
#include <utility>

namespace driver
{

SQLRETURN Statement::Execute(const std::string &text)
{
    Require(m_columns.empty(), "24000", "Invalid cursor state");
    connection.Log("statement", text);
    Close();
    Require(connection.active == nullptr || connection.active->IsDrained(), "HY000",
            "Connection is busy with results for another hstmt");
    m_fault = connection.NextFault(text);
    connection.session->Execute(text);
    connection.active = this;
    Outcome first = Next();
    if (m_fault && m_fault->time == Fault::After)
        first = {nullptr, std::make_exception_ptr(*m_fault)};
    while (first.error && connection.active == this)
        Next();
    Take(first);
    return m_columns.empty() && m_rowCount == 0 ? SQL_NO_DATA : SQL_SUCCESS;
}

void Statement::Close()
{
    if (connection.active == this)
        LoseResults();
    Take({});
}

void Statement::LoseResults()
{
    connection.session->Cancel();
    connection.active = nullptr;
    m_result = nullptr;
    m_pending = {};
}

bool Statement::IsDrained()
{
    if (m_result == nullptr)
        m_pending = Next();
    return connection.active != this;
}

const tsql::Column &Statement::ColumnAt(SQLUSMALLINT number) const
{
    Require(number > 0 && number <= m_columns.size(), "07009", "Invalid descriptor index");
    return m_columns[number - 1u];
}

Statement::Outcome Statement::Next()
{
    Outcome outcome = std::exchange(m_pending, {});
    if (connection.active != this || outcome.result != nullptr || outcome.error)
        return outcome;
    try
    {
        outcome.result = connection.session->NextResult();
        if (outcome.result == nullptr)
            connection.active = nullptr;
    }
    catch (...)
    {
        outcome.error = std::current_exception();
    }
    return outcome;
}

bool Statement::Take(const Outcome &outcome)
{
    const bool isThere = outcome.result != nullptr;
    m_columns = isThere ? outcome.result->columns : std::vector<tsql::Column>();
    m_rowCount = isThere ? outcome.result->changedRows : -1;
    m_result = m_columns.empty() ? nullptr : outcome.result;
    m_blockRows = 0;
    for (tsql::Column &column : m_columns)
        if (connection.claimedTextSize >= 0)
            column.size = connection.claimedTextSize;
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    return isThere;
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
        if (m_fault && --m_fault->number == 0)
            throw Fault(*m_fault);
        if (!result->Step())
            return SQL_ROW_NOROW;
        m_result = result;
        const size_t columns = std::min(bindings.size(), m_columns.size());
        for (size_t i = 0; i < columns; ++i)
        {
            size_t given = 0;
            if (bindings[i].type != nullptr)
                Store(*result, static_cast<int>(i), m_columns[i].type, bindings[i].At(row), *this, given);
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
    Require(!m_columns.empty(), "24000", "Invalid cursor state");
    m_lastRead = 0;
    size_t rows = 0;
    size_t failed = 0;
    for (size_t place = 0; place < rowArraySize; ++place)
    {
        const SQLUSMALLINT status = FetchRow(place);
        rows += status == SQL_ROW_NOROW ? 0 : 1;
        failed += status == SQL_ROW_ERROR ? 1 : 0;
        if (rowStatus != nullptr)
            rowStatus[place] = status;
    }
    m_blockRows = rows > 0 ? rowArraySize : 0;
    if (connection.IsDead()) // what stands in the places of the rows is good, but nobody says how many there are
        return SQL_ERROR;
    Give(rowsFetched, rows);
    return rows == 0 ? SQL_NO_DATA : failed == rows ? SQL_ERROR : SQL_SUCCESS;
}

SQLRETURN Statement::GetData(SQLUSMALLINT number, const Target &target)
{
    Require(m_blockRows <= 1, "HY109", "Invalid cursor position");
    Require(m_blockRows == 1 && m_result != nullptr, "24000", "Invalid cursor state");
    const tsql::Type type = ColumnAt(number).type;
    Require(number >= m_lastRead && number > bindings.size(), "07009", "Invalid descriptor index");
    if (number == m_lastRead && m_wasReadWhole)
        return SQL_NO_DATA;
    if (number != m_lastRead)
        m_given = 0;
    m_lastRead = number;
    m_wasReadWhole = Store(*m_result, number - 1, type, target, *this, m_given);
    return SQL_SUCCESS;
}

} // namespace driver
