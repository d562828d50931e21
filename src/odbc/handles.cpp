// Allocation of handles, and the diagnostics of failed calls.
#include "odbc/handles.h"

#include "odbc/diagnostics.h"
#include "odbc/wide.h"

#include <algorithm>

namespace odbc
{

namespace
{

bool s_abandoned = false;

} // namespace

std::vector<Record> ReadRecords(SQLSMALLINT kind, SQLHANDLE handle)
{
    if (handle == SQL_NULL_HANDLE)
        return {};
    // A driver that never says "no more" must not hold us for good.
    constexpr SQLSMALLINT kMostRecords = 64;
    std::vector<Record> records;
    std::vector<SQLWCHAR> text(1024);
    for (SQLSMALLINT number = 1; number <= kMostRecords; ++number)
    {
        SQLWCHAR state[6] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        SQLRETURN code = SQLGetDiagRecW(kind, handle, number, state, &native, text.data(),
                                        static_cast<SQLSMALLINT>(text.size()), &length);
        if (code == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(text.size()))
        {
            text.resize(static_cast<std::size_t>(length) + 1);
            code = SQLGetDiagRecW(kind, handle, number, state, &native, text.data(),
                                  static_cast<SQLSMALLINT>(text.size()), &length);
        }
        if (!SQL_SUCCEEDED(code))
            break;
        const auto end = std::find(text.begin(), text.end(), 0);
        records.push_back({FromWide(state, 5), FromWide(text.data(), static_cast<std::size_t>(end - text.begin()))});
    }
    return records;
}

void AbandonHandles() noexcept
{
    s_abandoned = true;
}

bool HandlesAbandoned() noexcept
{
    return s_abandoned;
}

SQLRETURN Check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle)
{
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA)
        return code;
    throw ToError(ReadRecords(kind, handle));
}

SQLRETURN CheckConnect(SQLRETURN code, const ConnectionHandle &handle)
{
    if (SQL_SUCCEEDED(code))
        return code;
    throw ToConnectError(ReadRecords(SQL_HANDLE_DBC, handle.get()));
}

template <SQLSMALLINT Kind>
Handle<Kind>::Handle(SQLHANDLE parent)
{
    constexpr SQLSMALLINT kParentKind = Kind == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;
    Check(SQLAllocHandle(Kind, parent, &m_handle), kParentKind, parent);
}

template class Handle<SQL_HANDLE_ENV>;
template class Handle<SQL_HANDLE_DBC>;
template class Handle<SQL_HANDLE_STMT>;

} // namespace odbc
