// ODBC handles that free themselves, and the one wrapper every ODBC call goes through.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <vector>

namespace odbc
{

struct Record;

// Once the process is ending, the driver manager may be gone before this library: from then on handles are left to the
// system, and no ODBC call is made any more.
void AbandonHandles() noexcept;
bool HandlesAbandoned() noexcept;

// Owns a handle of one kind. Freeing never fails loudly.
template <SQLSMALLINT Kind>
class Handle
{
public:
    // Allocates under a parent. Errors are raised as Error.
    explicit Handle(SQLHANDLE parent);
    ~Handle() { Free(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    // Frees it before its end of life.
    void Free() noexcept
    {
        if (m_handle != SQL_NULL_HANDLE && !HandlesAbandoned())
        {
            // A handle that is still connected is not freed; without a connection this is refused, and does nothing.
            if constexpr (Kind == SQL_HANDLE_DBC)
                SQLDisconnect(m_handle);
            SQLFreeHandle(Kind, m_handle);
        }
        m_handle = SQL_NULL_HANDLE;
    }

    SQLHANDLE get() const noexcept { return m_handle; }
    static constexpr SQLSMALLINT kKind = Kind;

private:
    SQLHANDLE m_handle = SQL_NULL_HANDLE;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

// The diagnostic records of the last call on a handle; none for a null handle.
std::vector<Record> ReadRecords(SQLSMALLINT kind, SQLHANDLE handle);

// Looks at the code a call returned: success, success with information and no data come back as they are, anything else
// is raised with the handle's diagnostics.
SQLRETURN Check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle);

template <SQLSMALLINT Kind>
SQLRETURN Check(SQLRETURN code, const Handle<Kind> &handle)
{
    return Check(code, Kind, handle.get());
}

// The same for the steps of connecting, whose errors have a number of their own (ToConnectError).
SQLRETURN CheckConnect(SQLRETURN code, const ConnectionHandle &handle);

} // namespace odbc
