// One statement handle: see statement.h.
#include "statement.h"

#include <algorithm>

namespace driver
{

Statement::Statement(std::shared_ptr<Connection> connection)
    : Handle(connection->lock), m_connection(std::move(connection))
{
}

Statement::~Statement()
{
    try
    {
        Close();
    }
    catch (...)
    {
        // a destructor has nobody to tell
    }
}

SQLRETURN Statement::Execute(const std::string &text)
{
    m_connection->Session(); // there must be one, and the log with it
    if (!m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    m_connection->LogStatement(text);
    Start(text);
    m_isExecuted = true;
    NoteMessages();
    return m_columns.empty() && m_rowCount == 0 ? SQL_NO_DATA : SQL_SUCCESS;
}

// Goes to the first result of the batch.
void Statement::Start(const std::string &text)
{
    Close();
    m_connection->Claim(*this);
    std::optional<Fault> fault = m_connection->NextFault(text);
    m_rowFault.reset();
    if (fault && fault->time == Fault::Row)
        m_rowFault.swap(fault);
    if (fault && fault->time != Fault::After)
        m_connection->Fail(*fault);
    m_batchOpen = true;
    try
    {
        m_connection->Session().Execute(text);
    }
    catch (...)
    {
        FinishBatch(); // nothing of it has run
        throw;
    }
    const Outcome first = Next();
    while (m_batchOpen && (first.error || fault))
        Next();
    if (fault)
        m_connection->Fail(*fault);
    Take(first);
}

SQLRETURN Statement::MoreResults()
{
    std::optional<Outcome> outcome;
    m_pending.swap(outcome);
    ForgetResult();
    if (!outcome && m_batchOpen)
        outcome = Next();
    if (!outcome)
    {
        FinishBatch();
        return SQL_NO_DATA;
    }
    Take(*outcome);
    NoteMessages();
    return outcome->result == nullptr ? SQL_NO_DATA : SQL_SUCCESS;
}

void Statement::Close()
{
    const bool wasOpen = m_batchOpen;
    ForgetResult();
    LoseResults();
    FinishBatch();
    m_isExecuted = false;
    if (wasOpen && m_connection->IsConnected() && !m_connection->IsDead())
        m_connection->Session().Cancel();
}

void Statement::LoseResults()
{
    m_batchOpen = false;
    m_result = nullptr;
    m_pending.reset();
}

bool Statement::IsDrained()
{
    if (m_result != nullptr || m_fetchError)
        return false;
    if (m_batchOpen && !m_pending)
        m_pending = Next();
    return !m_pending || (m_pending->result == nullptr && !m_pending->error);
}

void Statement::RequireExecuted() const
{
    if (!m_isExecuted)
        throw DriverError("HY010", "Function sequence error");
}

SQLSMALLINT Statement::ColumnCount() const
{
    RequireExecuted();
    return static_cast<SQLSMALLINT>(m_columns.size());
}

const tsql::Column &Statement::ColumnAt(SQLUSMALLINT number) const
{
    RequireExecuted();
    if (m_columns.empty())
        throw DriverError("07005", "The statement has no result columns");
    if (number == 0 || number > m_columns.size())
        throw DriverError("07009", "Invalid descriptor index");
    return m_columns[number - 1u];
}

ColumnInfo Statement::Describe(SQLUSMALLINT number) const
{
    return ColumnInfo(ColumnAt(number), m_connection->ClaimedTextSize());
}

std::int64_t Statement::RowCount() const
{
    RequireExecuted();
    return m_rowCount;
}

Statement::Outcome Statement::Next()
{
    Outcome outcome;
    try
    {
        outcome.result = m_connection->Session().NextResult();
        if (outcome.result == nullptr)
            FinishBatch();
    }
    catch (...)
    {
        outcome.error = std::current_exception();
    }
    return outcome;
}

void Statement::Take(const Outcome &outcome)
{
    ForgetResult();
    if (outcome.error)
        std::rethrow_exception(outcome.error);
    if (outcome.result == nullptr)
        return;
    m_columns = outcome.result->Columns();
    m_rowCount = outcome.result->RowCount();
    m_result = m_columns.empty() ? nullptr : outcome.result;
}

void Statement::FinishBatch()
{
    m_batchOpen = false;
    m_connection->Release(*this);
}

void Statement::ForgetResult()
{
    m_result = nullptr;
    m_columns.clear();
    m_rowCount = -1;
    m_blockRows = 0;
    m_rowNumber = 0;
    m_fetchError = nullptr;
}

void Statement::NoteMessages()
{
    for (const std::string &message : m_connection->Session().TakeMessages())
        Warn("01000", message);
}

bool Statement::StepRow()
{
    if (m_result == nullptr)
        return false;
    if (m_rowFault && ++m_rowNumber == m_rowFault->number)
        m_connection->Fail(*std::exchange(m_rowFault, std::nullopt));
    if (!m_result->Step())
        m_result = nullptr;
    return m_result != nullptr;
}

// The bound columns that the result has, each at its place for the first row.
void Statement::FindBound()
{
    m_bound.clear();
    for (const auto &[number, target] : bindings)
        if (number <= m_columns.size())
            m_bound.push_back({number - 1, m_columns[number - 1u].type, target, target.Stride()});
}

// Into row `row` of the bound columns. A value that cannot be stored marks the row.
SQLUSMALLINT Statement::StoreRow(size_t row)
{
    SQLUSMALLINT status = SQL_ROW_SUCCESS;
    const size_t notes = records.size();
    for (Bound &each : m_bound)
    {
        try
        {
            m_progress.given = 0;
            Store(*m_result, each.column, each.type, each.target, *this, m_progress);
            if (!m_progress.finished && each.target.cType == SQL_C_WCHAR)
                m_cutTexts[{row, each.column}] = m_progress.wide;
        }
        catch (const DriverError &error)
        {
            status = SQL_ROW_ERROR;
            records.insert(records.end(), error.GetRecords().begin(), error.GetRecords().end());
        }
        if (each.target.buffer != nullptr)
            each.target.buffer = static_cast<char *>(each.target.buffer) + each.stride;
        if (each.target.length != nullptr)
            ++each.target.length;
    }
    return status == SQL_ROW_SUCCESS && records.size() > notes ? SQL_ROW_SUCCESS_WITH_INFO : status;
}

SQLRETURN Statement::Fetch()
{
    RequireExecuted();
    if (m_columns.empty())
        throw DriverError("24000", "Invalid cursor state");
    const size_t wanted = m_attributes[SQL_ATTR_ROW_ARRAY_SIZE];
    auto *const statuses = reinterpret_cast<SQLUSMALLINT *>(m_attributes[SQL_ATTR_ROW_STATUS_PTR]);
    auto *const fetched = reinterpret_cast<SQLULEN *>(m_attributes[SQL_ATTR_ROWS_FETCHED_PTR]);
    if (statuses != nullptr)
        std::fill_n(statuses, wanted, SQLUSMALLINT{SQL_ROW_NOROW});
    m_cutTexts.clear();
    m_position = 0;
    size_t rows = 0;
    size_t failed = 0;
    try
    {
        FindBound();
        for (; rows < wanted && StepRow(); ++rows)
        {
            const SQLUSMALLINT status = StoreRow(rows);
            failed += status == SQL_ROW_ERROR ? 1 : 0;
            if (statuses != nullptr)
                statuses[rows] = status;
        }
    }
    catch (...)
    {
        m_result = nullptr;
        m_fetchError = std::current_exception();
    }
    m_blockRows = rows > 0 ? wanted : 0;
    m_lastRead = 0;
    if (fetched != nullptr)
        *fetched = rows;
    if (rows > 0)
        return failed == rows ? SQL_ERROR : SQL_SUCCESS;
    if (m_fetchError)
        std::rethrow_exception(std::exchange(m_fetchError, nullptr));
    return SQL_NO_DATA;
}

SQLRETURN Statement::GetData(SQLUSMALLINT number, const Target &target)
{
    const auto cutText = m_cutTexts.find({m_position, number - 1});
    const bool isCut = m_blockRows > 1 && cutText != m_cutTexts.end() && target.cType == SQL_C_WCHAR;
    if (m_blockRows > 1 && !isCut)
        throw DriverError("HY109", "Invalid cursor position");
    if (!isCut && (m_blockRows == 0 || m_result == nullptr))
        throw DriverError("24000", "Invalid cursor state");
    const tsql::Type type = ColumnAt(number).type;
    if (!isCut && (number < m_lastRead || (!bindings.empty() && number <= bindings.rbegin()->first)))
        throw DriverError("07009", "Invalid descriptor index");
    if (number != m_lastRead)
        m_progress.given = 0, m_progress.finished = false;
    m_lastRead = number;
    if (m_progress.finished)
        return SQL_NO_DATA;
    if (isCut)
        StoreText(cutText->second, target, *this, m_progress);
    else
        Store(*m_result, number - 1, type, target, *this, m_progress);
    return SQL_SUCCESS;
}

void Statement::SetPosition(SQLULEN row)
{
    if (row == 0 || row > m_blockRows)
        throw DriverError("HY107", "Row value out of range");
    m_position = row - 1;
    m_lastRead = 0;
}

void Statement::SetAttribute(SQLINTEGER attribute, SQLULEN value)
{
    const bool isFree = attribute == SQL_ATTR_ROW_ARRAY_SIZE || attribute == SQL_ATTR_ROWS_FETCHED_PTR ||
                        attribute == SQL_ATTR_ROW_STATUS_PTR;
    if (attribute == SQL_ATTR_ROW_ARRAY_SIZE && value == 0)
        throw DriverError("HY024", "Invalid attribute value");
    if (isFree)
        m_attributes[attribute] = value;
    else if (value != GetAttribute(attribute))
        Warn("01S02", "Option value changed");
}

SQLULEN Statement::GetAttribute(SQLINTEGER attribute) const
{
    const auto found = m_attributes.find(attribute);
    if (found == m_attributes.end())
        throw DriverError("HY092", "Invalid attribute/option identifier");
    return found->second;
}

} // namespace driver
