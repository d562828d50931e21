// Entry points: running statements, their parameters and results one by one, attributes of a statement.
#include "guard.h"
#include "statement.h"
#include "text.h"

using namespace driver;

namespace
{

// Attributes that are kept and mean nothing here, since there is one kind of cursor and one way to bind parameters.
bool IsKept(SQLINTEGER attribute)
{
    switch (attribute)
    {
    case SQL_ATTR_QUERY_TIMEOUT:
    case SQL_ATTR_NOSCAN:
    case SQL_ATTR_MAX_LENGTH:
    case SQL_ATTR_RETRIEVE_DATA:
    case SQL_ATTR_METADATA_ID:
    case SQL_ATTR_ROW_OPERATION_PTR:
    case SQL_ATTR_PARAM_BIND_TYPE:
    case SQL_ATTR_PARAM_BIND_OFFSET_PTR:
    case SQL_ATTR_PARAM_OPERATION_PTR:
    case SQL_ATTR_PARAM_STATUS_PTR:
    case SQL_ATTR_PARAMS_PROCESSED_PTR:
    case SQL_ATTR_KEYSET_SIZE:
    case SQL_ATTR_SIMULATE_CURSOR:
    case SQL_ATTR_ROW_NUMBER:
        return true;
    default:
        return false;
    }
}

// Attributes with one possible value; another is changed to it, which the client is told.
bool IsFixed(SQLINTEGER attribute, SQLULEN &value)
{
    switch (attribute)
    {
    case SQL_ATTR_CURSOR_TYPE:
        value = SQL_CURSOR_FORWARD_ONLY;
        return true;
    case SQL_ATTR_CONCURRENCY:
        value = SQL_CONCUR_READ_ONLY;
        return true;
    case SQL_ATTR_CURSOR_SCROLLABLE:
        value = SQL_NONSCROLLABLE;
        return true;
    case SQL_ATTR_CURSOR_SENSITIVITY:
        value = SQL_INSENSITIVE;
        return true;
    case SQL_ATTR_USE_BOOKMARKS:
        value = SQL_UB_OFF;
        return true;
    case SQL_ATTR_ASYNC_ENABLE:
        value = SQL_ASYNC_ENABLE_OFF;
        return true;
    case SQL_ATTR_MAX_ROWS:
        value = 0;
        return true;
    case SQL_ATTR_PARAMSET_SIZE:
        value = 1;
        return true;
    case SQL_ATTR_ENABLE_AUTO_IPD:
        value = SQL_FALSE;
        return true;
    default:
        return false;
    }
}

SQLRETURN SetAttribute(Statement &statement, SQLINTEGER attribute, SQLPOINTER pointer)
{
    const auto number = reinterpret_cast<SQLULEN>(pointer);
    SQLULEN fixed = 0;
    switch (attribute)
    {
    case SQL_ATTR_ROW_ARRAY_SIZE:
    case SQL_ROWSET_SIZE:
        if (number == 0)
            throw DriverError("HY024", "Invalid attribute value");
        statement.rowArraySize = number;
        break;
    case SQL_ATTR_ROW_BIND_TYPE:
        statement.rowBindType = number;
        break;
    case SQL_ATTR_ROW_BIND_OFFSET_PTR:
        statement.rowBindOffset = static_cast<SQLLEN *>(pointer);
        break;
    case SQL_ATTR_ROWS_FETCHED_PTR:
        statement.rowsFetched = static_cast<SQLULEN *>(pointer);
        break;
    case SQL_ATTR_ROW_STATUS_PTR:
        statement.rowStatus = static_cast<SQLUSMALLINT *>(pointer);
        break;
    default:
        if (IsKept(attribute))
            statement.otherAttributes[attribute] = number;
        else if (!IsFixed(attribute, fixed))
            throw DriverError("HY092", "Invalid attribute/option identifier");
        else if (fixed != number)
            statement.Diag().Warn("01S02", "Option value changed");
    }
    return SQL_SUCCESS;
}

template <class T>
void Give(SQLPOINTER out, T value)
{
    if (out != nullptr)
        *static_cast<T *>(out) = value;
}

SQLRETURN GetAttribute(Statement &statement, SQLINTEGER attribute, SQLPOINTER out)
{
    SQLULEN fixed = 0;
    switch (attribute)
    {
    case SQL_ATTR_APP_ROW_DESC:
    case SQL_ATTR_APP_PARAM_DESC:
    case SQL_ATTR_IMP_ROW_DESC:
    case SQL_ATTR_IMP_PARAM_DESC:
        Give(out, statement.descriptors[attribute - SQL_ATTR_APP_ROW_DESC]);
        break;
    case SQL_ATTR_ROW_ARRAY_SIZE:
    case SQL_ROWSET_SIZE:
        Give(out, statement.rowArraySize);
        break;
    case SQL_ATTR_ROW_BIND_TYPE:
        Give(out, statement.rowBindType);
        break;
    case SQL_ATTR_ROW_BIND_OFFSET_PTR:
        Give(out, statement.rowBindOffset);
        break;
    case SQL_ATTR_ROWS_FETCHED_PTR:
        Give(out, statement.rowsFetched);
        break;
    case SQL_ATTR_ROW_STATUS_PTR:
        Give(out, statement.rowStatus);
        break;
    default:
        if (IsFixed(attribute, fixed))
            Give(out, fixed);
        else if (IsKept(attribute))
            Give(out, statement.otherAttributes[attribute]);
        else
            throw DriverError("HY092", "Invalid attribute/option identifier");
    }
    return SQL_SUCCESS;
}

} // namespace

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    return Guarded<Statement>(handle, [&](Statement &statement) { return statement.Execute(ToUtf8(text, length)); });
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    const auto body = [&](Statement &statement) { statement.Prepare(ToUtf8(text, length)); };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle)
{
    return Guarded<Statement>(handle, [](Statement &statement) { return statement.ExecutePrepared(); });
}

SQLRETURN SQL_API SQLBindParameter(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT direction, SQLSMALLINT cType,
                                   SQLSMALLINT sqlType, SQLULEN, SQLSMALLINT, SQLPOINTER buffer, SQLLEN,
                                   SQLLEN *indicator)
{
    const auto body = [&](Statement &statement)
    {
        if (direction != SQL_PARAM_INPUT)
            throw DriverError("HYC00", "Optional feature not implemented: output parameters");
        if (number == 0)
            throw DriverError("07009", "Invalid descriptor index");
        statement.BindParameter(number, {cType, sqlType, buffer, indicator});
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLNumParams(SQLHSTMT handle, SQLSMALLINT *count)
{
    const auto body = [&](Statement &statement)
    { Give(count, static_cast<SQLSMALLINT>(FindMarkers(statement.Prepared()).size())); };
    return Guarded<Statement>(handle, body);
}

// The dialect does not tell what a marker stands for: every parameter is a text, which the server converts.
SQLRETURN SQL_API SQLDescribeParam(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT *type, SQLULEN *size,
                                   SQLSMALLINT *digits, SQLSMALLINT *nullable)
{
    const auto body = [&](Statement &statement)
    {
        if (number == 0 || number > FindMarkers(statement.Prepared()).size())
            throw DriverError("07009", "Invalid descriptor index");
        Give(type, SQLSMALLINT{SQL_WVARCHAR});
        Give(size, SQLULEN{4000});
        Give(digits, SQLSMALLINT{0});
        Give(nullable, SQLSMALLINT{SQL_NULLABLE});
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle)
{
    return Guarded<Statement>(handle, [](Statement &statement) { return statement.MoreResults(); });
}

SQLRETURN SQL_API SQLRowCount(SQLHSTMT handle, SQLLEN *count)
{
    const auto body = [&](Statement &statement) { Give(count, static_cast<SQLLEN>(statement.RowCount())); };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLCancel(SQLHSTMT handle)
{
    const auto body = [](Statement &statement) { statement.Close(); };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLNativeSqlW(SQLHDBC handle, SQLWCHAR *in, SQLINTEGER inLength, SQLWCHAR *out, SQLINTEGER capacity,
                                SQLINTEGER *outLength)
{
    const auto body = [&](Connection &connection)
    {
        const std::u16string same = ToUtf16(ToUtf8(in, inLength));
        Give(outLength, static_cast<SQLINTEGER>(same.size()));
        if (CopyOut(same, out, capacity))
            connection.Diag().Warn("01004", "String data, right truncation");
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    return Guarded<Statement>(handle, [&](Statement &statement) { return SetAttribute(statement, attribute, value); });
}

SQLRETURN SQL_API SQLGetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    return Guarded<Statement>(handle, [&](Statement &statement) { return GetAttribute(statement, attribute, value); });
}

SQLRETURN SQL_API SQLSetCursorNameW(SQLHSTMT handle, SQLWCHAR *name, SQLSMALLINT length)
{
    const auto body = [&](Statement &statement) { statement.cursorName = ToUtf8(name, length); };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLGetCursorNameW(SQLHSTMT handle, SQLWCHAR *name, SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const auto body = [&](Statement &statement)
    {
        const std::u16string wide = ToUtf16(statement.cursorName.empty() ? "SQL_CUR0" : statement.cursorName);
        Give(length, static_cast<SQLSMALLINT>(wide.size()));
        if (CopyOut(wide, name, capacity))
            statement.Diag().Warn("01004", "String data, right truncation");
    };
    return Guarded<Statement>(handle, body);
}
