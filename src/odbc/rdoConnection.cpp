// Running statements on the one statement handle of a connection.
#include "odbc/rdoConnection.h"

#include "odbc/rdoResultset.h"
#include "odbc/row_reader.h"
#include "odbc/statement.h"
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
        // There is no caller left to report to.
    }
}

SQLRETURN rdoConnection::Run(const std::string &sql)
{
    if (!m_connection)
        runtime::Raise(runtime::kObjectNotSet);
    // The previous statement may have unread rows or results; it ends now, also for those that still hold its result
    // set.
    ++m_statement->execution;
    m_statement->CloseCursor();
    WideText text(sql);
    m_statement->executed = true;
    const SQLRETURN code = SQLExecDirectW(m_statement->handle.get(), text.data(), text.length());
    // A statement without a result of any kind, or one that touched no row.
    return code == SQL_NO_DATA ? SQL_SUCCESS : code;
}

std::shared_ptr<rdoResultset> rdoConnection::OpenResultset(const std::string &sql)
{
    Statement &statement = *m_statement;
    for (SQLRETURN code = statement.Check(Run(sql)); code != SQL_NO_DATA;
         code = statement.Check(SQLMoreResults(statement.handle.get())))
    {
        SQLSMALLINT columns = 0;
        statement.Check(SQLNumResultCols(statement.handle.get(), &columns));
        if (columns > 0)
            return std::make_shared<rdoResultset>(std::make_unique<RowReader>(m_statement));
    }
    return std::make_shared<rdoResultset>(std::make_unique<RowReader>());
}

void rdoConnection::Execute(const std::string &sql)
{
    const std::optional<runtime::Error> first = m_statement->Drain(Run(sql));
    m_statement->CloseCursor();
    if (first)
        throw *first;
}

bool rdoConnection::IsLost() const noexcept
{
    return m_connection && m_statement->lost;
}

bool rdoConnection::AskIfLost() noexcept
{
    if (m_connection && !m_statement->lost)
        m_statement->lost = IsConnectionDead(m_connection->get());
    return IsLost();
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
