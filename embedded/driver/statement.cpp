// One statement handle, execution: see statement.h.
#include "statement.h"

namespace driver
{
namespace
{

// What can be set, and what it is before. Most of it means nothing here, since there is one kind of cursor and one way
// to bind parameters.
const std::map<SQLINTEGER, SQLULEN> &InitialAttributes()
{
    static const std::map<SQLINTEGER, SQLULEN> initial = {
        {SQL_ATTR_ROW_ARRAY_SIZE, 1},
        {SQL_ATTR_ROW_BIND_TYPE, SQL_BIND_BY_COLUMN},
        {SQL_ATTR_ROW_BIND_OFFSET_PTR, 0},
        {SQL_ATTR_ROWS_FETCHED_PTR, 0},
        {SQL_ATTR_ROW_STATUS_PTR, 0},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_FORWARD_ONLY},
        {SQL_ATTR_CONCURRENCY, SQL_CONCUR_READ_ONLY},
        {SQL_ATTR_CURSOR_SCROLLABLE, SQL_NONSCROLLABLE},
        {SQL_ATTR_CURSOR_SENSITIVITY, SQL_INSENSITIVE},
        {SQL_ATTR_USE_BOOKMARKS, SQL_UB_OFF},
        {SQL_ATTR_ASYNC_ENABLE, SQL_ASYNC_ENABLE_OFF},
        {SQL_ATTR_MAX_ROWS, 0},
        {SQL_ATTR_PARAMSET_SIZE, 1},
        {SQL_ATTR_QUERY_TIMEOUT, 0},
        {SQL_ATTR_MAX_LENGTH, 0},
        {SQL_ATTR_PARAM_BIND_TYPE, 0},
        {SQL_ATTR_PARAM_STATUS_PTR, 0},
        {SQL_ATTR_PARAMS_PROCESSED_PTR, 0},
    };
    return initial;
}

} // namespace

Statement::Statement(std::shared_ptr<Connection> connection)
    : Handle(connection->lock), attributes(InitialAttributes()), m_connection(std::move(connection))
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
    Session(); // there must be one, and the log with it
    m_connection->Log().Write("statement", text);
    Logged([&] { Start(text); });
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
    if (fault && fault->time == Fault::AtRow)
        m_rowFault.swap(fault);
    if (fault && fault->time != Fault::After)
        m_connection->Fail(*fault);
    m_connection->BeginIfManual();
    m_batchOpen = true;
    try
    {
        Session().Execute(text);
    }
    catch (...)
    {
        FinishBatch(); // nothing of it has run
        throw;
    }
    const Outcome first = Next();
    if (first.error || fault)
        DrainRest();
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
    Logged([&] { Take(*outcome); });
    NoteMessages();
    return outcome->result == nullptr ? SQL_NO_DATA : SQL_SUCCESS;
}

void Statement::Close()
{
    const bool wasOpen = m_batchOpen;
    ForgetResult();
    LoseConnection();
    FinishBatch();
    if (wasOpen && m_connection->IsConnected() && !m_connection->IsDead())
        Session().Cancel();
}

void Statement::LoseConnection()
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

const tsql::Column &Statement::ColumnAt(SQLUSMALLINT number) const
{
    if (number == 0 || number > m_columns.size())
        throw DriverError("07009", "Invalid descriptor index");
    return m_columns[number - 1u];
}

Statement::Outcome Statement::Next()
{
    Outcome outcome;
    try
    {
        outcome.result = Session().NextResult();
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

void Statement::DrainRest()
{
    while (m_batchOpen)
    {
        try
        {
            if (const Outcome outcome = Next(); outcome.error)
                std::rethrow_exception(outcome.error);
        }
        catch (...)
        {
            for (DiagnosticRecord &record : RecordsOfCurrentException())
                records.push_back(std::move(record));
        }
    }
}

void Statement::ForgetResult()
{
    m_result = nullptr;
    m_columns.clear();
    m_rowCount = -1;
    m_blockRows = 0;
    m_rowNumber = 0;
    m_piecesColumn = 0;
    m_fetchError = nullptr;
}

void Statement::NoteMessages()
{
    for (const std::string &message : Session().TakeMessages())
        Warn("01000", message);
}

} // namespace driver
