// Entry points: running statements, their results and rows; attributes of a statement.
#include "statement.h"

using namespace driver;

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    return Guarded<Statement>(__func__, handle,
                              [&](Statement &statement) { return statement.Execute(ToUtf8(text, length)); });
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    return Guarded<Statement>(__func__, handle,
                              [&](Statement &statement) { statement.prepared = ToUtf8(text, length); });
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle)
{
    const auto body = [](Statement &statement)
    {
        if (statement.prepared.empty())
            throw DriverError("HY010", "Function sequence error");
        return statement.Execute(statement.prepared);
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle)
{
    return Guarded<Statement>(__func__, handle, [](Statement &statement) { return statement.MoreResults(); });
}

SQLRETURN SQL_API SQLRowCount(SQLHSTMT handle, SQLLEN *count)
{
    return Guarded<Statement>(__func__, handle, [&](Statement &statement) { Give(count, statement.RowCount()); });
}

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT *count)
{
    return Guarded<Statement>(__func__, handle, [&](Statement &statement) { Give(count, statement.ColumnCount()); });
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR *name, SQLSMALLINT capacity,
                                  SQLSMALLINT *nameLength, SQLSMALLINT *type, SQLULEN *size, SQLSMALLINT *digits,
                                  SQLSMALLINT *nullable)
{
    const auto body = [&](Statement &statement)
    {
        const ColumnInfo info = statement.Describe(number);
        Give(type, info.type);
        Give(size, info.size);
        Give(digits, info.digits);
        Give(nullable, SQL_NULLABLE);
        Give(nameLength, CopyOut(statement, statement.ColumnAt(number).name, name, capacity));
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT field, SQLPOINTER text,
                                   SQLSMALLINT octets, SQLSMALLINT *textLength, SQLLEN *value)
{
    const auto body = [&](Statement &statement)
    {
        if (field == SQL_DESC_COUNT)
            return Give(value, statement.ColumnCount());
        const ColumnInfo info = statement.Describe(number);
        switch (field)
        {
        case SQL_DESC_NAME:
        case SQL_DESC_LABEL:
            return GiveOctets(statement, statement.ColumnAt(number).name, text, octets, textLength);
        case SQL_DESC_CONCISE_TYPE:
            return Give(value, info.type);
        case SQL_DESC_LENGTH:
            return Give(value, info.size);
        case SQL_DESC_DISPLAY_SIZE:
            return Give(value, info.display);
        case SQL_DESC_UNSIGNED:
            return Give(value, info.isUnsigned ? SQL_TRUE : SQL_FALSE);
        default:
            throw DriverError("HY091", "Invalid descriptor field identifier");
        }
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer,
                             SQLLEN capacity, SQLLEN *length)
{
    const auto body = [&](Statement &statement)
    {
        if (number == 0)
            throw DriverError("07009", "Invalid descriptor index");
        if (buffer == nullptr && length == nullptr)
            statement.bindings.erase(number);
        else
            statement.bindings[number] = {cType, buffer, capacity, length};
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle)
{
    return Guarded<Statement>(__func__, handle, [](Statement &statement) { return statement.Fetch(); });
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer,
                             SQLLEN capacity, SQLLEN *length)
{
    const auto body = [&](Statement &statement) {
        return statement.GetData(number, {cType, buffer, capacity, length});
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW row, SQLUSMALLINT operation, SQLUSMALLINT)
{
    const auto body = [&](Statement &statement)
    {
        if (operation != SQL_POSITION)
            throw DriverError("HYC00", "Optional feature not implemented");
        statement.SetPosition(row);
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
{
    if (option == SQL_DROP)
        return SQLFreeHandle(SQL_HANDLE_STMT, handle);
    const auto body = [&](Statement &statement)
    {
        if (option == SQL_CLOSE)
            statement.Close();
        else if (option == SQL_UNBIND)
            statement.bindings.clear();
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](Statement &statement)
    { statement.SetAttribute(attribute, reinterpret_cast<SQLULEN>(value)); };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    const auto body = [&](Statement &statement)
    {
        // the statement stands for its four descriptors: nothing is kept in them
        if (attribute >= SQL_ATTR_APP_ROW_DESC && attribute <= SQL_ATTR_IMP_PARAM_DESC)
            Give(static_cast<SQLHANDLE *>(value), handle);
        else
            Give(static_cast<SQLULEN *>(value), statement.GetAttribute(attribute));
    };
    return Guarded<Statement>(__func__, handle, body);
}
