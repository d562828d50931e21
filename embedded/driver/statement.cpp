// One statement handle, execution: see statement.h.
#include "statement.h"

#include "guard.h"

namespace driver
{

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
    for (SQLHANDLE descriptor : descriptors)
        RemoveHandle(descriptor);
}

SQLRETURN Statement::Execute(const std::string &text)
{
    StatementLog &log = (m_connection->Session(), m_connection->Log());
    log.Write("statement", text);
    try
    {
        Close();
        m_connection->Claim(*this);
        std::optional<Fault> fault = m_connection->TakeFault(text);
        m_rowFault = fault && fault->row > 0 ? fault : std::nullopt;
        if (fault && fault->row == 0 && !fault->after)
        {
            if (fault->cut)
                m_connection->Cut();
            throw DriverError({fault->record});
        }
        m_connection->BeginIfManual();
        m_batchOpen = true;
        try
        {
            Session().Execute(PutParameters(text, m_parameters));
        }
        catch (...)
        {
            FinishBatch(); // nothing of it has run
            throw;
        }
        const Outcome first = Next();
        if (first.error || (fault && fault->row == 0))
            DrainRest();
        if (fault && fault->row == 0)
        {
            if (fault->cut)
                m_connection->Cut();
            throw DriverError({fault->record});
        }
        Take(first);
    }
    catch (...)
    {
        LogFailure();
        throw;
    }
    NoteMessages();
    return m_columns.empty() && m_rowCount == 0 ? SQL_NO_DATA : SQL_SUCCESS;
}

SQLRETURN Statement::ExecutePrepared()
{
    if (m_prepared.empty())
        throw DriverError("HY010", "Function sequence error");
    return Execute(m_prepared);
}

void Statement::Open(std::vector<tsql::Column> columns, std::vector<MemoryResult::Row> rows)
{
    Close();
    m_connection->Claim(*this);
    m_ownResult = std::make_unique<MemoryResult>(std::move(columns), std::move(rows));
    Take({m_ownResult.get(), nullptr});
}

SQLRETURN Statement::MoreResults()
{
    const std::optional<Outcome> looked = std::exchange(m_pending, std::nullopt);
    ForgetResult();
    if (!m_batchOpen && !looked)
    {
        FinishBatch();
        return SQL_NO_DATA;
    }
    const Outcome outcome = looked ? *looked : Next();
    try
    {
        Take(outcome);
    }
    catch (...)
    {
        LogFailure();
        throw;
    }
    NoteMessages();
    return outcome.result == nullptr ? SQL_NO_DATA : SQL_SUCCESS;
}

void Statement::Close()
{
    const bool wasOpen = m_batchOpen;
    ForgetResult();
    m_pending.reset();
    m_ownResult.reset();
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
        const Outcome outcome = Next();
        if (!outcome.error)
            continue;
        try
        {
            std::rethrow_exception(outcome.error);
        }
        catch (...)
        {
            for (DiagnosticRecord &record : RecordsOfCurrentException())
                Diag().Add(std::move(record));
        }
    }
}

void Statement::ForgetResult()
{
    m_result = nullptr;
    m_columns.clear();
    m_rowCount = -1;
    m_blockRows = 0;
    m_blockPrepared = false;
    m_rowNumber = 0;
    m_piecesColumn = 0;
    m_fetchError = nullptr;
}

// To be called inside a catch block.
void Statement::LogFailure()
{
    m_connection->Log().Write("error", Describe(RecordsOfCurrentException()));
}

void Statement::NoteMessages()
{
    if (m_connection->IsDead() || m_ownResult)
        return;
    for (const std::string &message : Session().TakeMessages())
        Diag().Warn("01000", message);
}

} // namespace driver
