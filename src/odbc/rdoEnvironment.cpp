// Connecting.
#include "odbc/rdoEnvironment.h"

#include "odbc/rdoConnection.h"
#include "odbc/wide.h"
#include "runtime/error.h"

namespace odbc
{

namespace
{

// An integer attribute travels in the pointer argument.
SQLPOINTER AsAttribute(SQLULEN value)
{
    return reinterpret_cast<SQLPOINTER>(value);
}

} // namespace

rdoEnvironment::rdoEnvironment() : m_handle(std::make_shared<EnvironmentHandle>(SQLHANDLE(SQL_NULL_HANDLE)))
{
    Check(SQLSetEnvAttr(m_handle->get(), SQL_ATTR_ODBC_VERSION, AsAttribute(SQL_OV_ODBC3), 0), *m_handle);
}

std::shared_ptr<rdoConnection> rdoEnvironment::OpenConnection(const std::string &dataSource, int prompt, bool readOnly,
                                                              const std::string &connect)
{
    if (!m_handle)
        runtime::Raise(runtime::kObjectNotSet);
    if (LoginTimeout < 0 || CursorDriver != kNoCursorLibrary || prompt != kNeverPrompt)
        runtime::Raise(runtime::kInvalidPropertyValue);
    auto connection = std::make_unique<ConnectionHandle>(m_handle->get());
    CheckConnect(SQLSetConnectAttrW(connection->get(), SQL_ATTR_LOGIN_TIMEOUT,
                                    AsAttribute(static_cast<SQLULEN>(LoginTimeout)), SQL_IS_UINTEGER),
                 *connection);
    if (readOnly)
        CheckConnect(SQLSetConnectAttrW(connection->get(), SQL_ATTR_ACCESS_MODE, AsAttribute(SQL_MODE_READ_ONLY),
                                        SQL_IS_UINTEGER),
                     *connection);
    WideText text(dataSource.empty() ? connect : "DSN=" + dataSource + ";" + connect);
    CheckConnect(
        SQLDriverConnectW(connection->get(), nullptr, text.data(), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
        *connection);
    return std::make_shared<rdoConnection>(m_handle, std::move(connection));
}

void rdoEnvironment::Close() noexcept
{
    m_handle.reset();
}

} // namespace odbc
