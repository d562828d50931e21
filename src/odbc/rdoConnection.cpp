// Running statements on the one statement handle of a connection.
#include "odbc/rdoConnection.h"

#include "odbc/rdoResultset.h"
#include "odbc/row_reader.h"
#include "odbc/wide.h"
#include "runtime/error.h"

#include <optional>

namespace odbc
{

rdoConnection::rdoConnection(std::shared_ptr<EnvironmentHandle> environment,
                             std::unique_ptr<ConnectionHandle> connection)
    : m_environment(std::move(environment)), m_connection(std::move(connection)),
      m_statement(std::make_shared<Statement>(m_connection->get()))
{
}

rdoConnection::~rdoConnection()
{
    try
    {
        Close();
    }
    catch (const runtime::Error &)
    {
        // Nobody is left to be told.
    }
}

void rdoConnection::Run(const std::string &sql)
{
    if (!m_connection)
        runtime::Raise(runtime::kObjectNotSet);
    // The statement before may have rows or results that nobody read; it is over now, also for who still holds it.
    ++m_statement->execution;
    m_statement->CloseCursor();
    WideText text(sql);
    m_statement->executed = true;
    Check(SQLExecDirectW(m_statement->handle.get(), text.data(), text.length()), m_statement->handle);
}

std::shared_ptr<rdoResultset> rdoConnection::OpenResultset(const std::string &sql)
{
    Run(sql);
    const StatementHandle &handle = m_statement->handle;
    for (;;)
    {
        SQLSMALLINT columns = 0;
        Check(SQLNumResultCols(handle.get(), &columns), handle);
        if (columns > 0)
            return std::make_shared<rdoResultset>(std::make_unique<RowReader>(m_statement));
        if (Check(SQLMoreResults(handle.get()), handle) == SQL_NO_DATA)
            return std::make_shared<rdoResultset>(std::make_unique<RowReader>());
    }
}

void rdoConnection::Execute(const std::string &sql)
{
    std::optional<runtime::Error> first;
    try
    {
        Run(sql);
    }
    catch (const runtime::Error &error)
    {
        if (!m_connection)
            throw;
        first = error; // statements of the batch behind the failed one still run
    }
    const StatementHandle &handle = m_statement->handle;
    for (bool failedBefore = false;;)
    {
        const SQLRETURN code = SQLMoreResults(handle.get());
        if (code == SQL_NO_DATA)
            break;
        if (SQL_SUCCEEDED(code))
        {
            failedBefore = false;
            continue;
        }
        try
        {
            Check(code, handle);
        }
        catch (const runtime::Error &error)
        {
            // Behind a statement that failed at once there may be no results to ask for, which is no error of its own.
            // A handle that fails twice in a row has nothing behind.
            if (first && failedBefore)
                break;
            if (!first)
                first = error;
            failedBefore = true;
        }
    }
    m_statement->CloseCursor();
    if (first)
        throw *first;
}

void rdoConnection::Close()
{
    if (!m_connection)
        return;
    // Disconnecting would free the statement under the readers that still know it.
    ++m_statement->execution;
    m_statement->handle.Free();
    const auto connection = std::move(m_connection);
    if (HandlesAbandoned())
        return;
    Check(SQLDisconnect(connection->get()), *connection);
}

} // namespace odbc
