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
    return Guarded<Statement>(__func__, handle,
                              [](Statement &statement) { return statement.Execute(statement.prepared); });
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
        const tsql::Column &column = statement.ColumnAt(number);
        const ColumnInfo info = InfoOf(column);
        Give(type, info.type);
        Give(size, info.size);
        Give(digits, info.digits);
        Give(nullable, SQL_NULLABLE);
        Give(nameLength, CopyOut(statement, column.name, name, capacity));
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT field, SQLPOINTER text,
                                   SQLSMALLINT octets, SQLSMALLINT *textLength, SQLLEN *value)
{
    const auto body = [&](Statement &statement)
    {
        const tsql::Column &column = statement.ColumnAt(number);
        if (field == SQL_DESC_LABEL)
            Give(textLength, 2 * CopyOut(statement, column.name, text, octets / 2));
        else if (field == SQL_DESC_DISPLAY_SIZE)
            Give(value, InfoOf(column).display);
        else if (field == SQL_DESC_UNSIGNED)
            Give(value, InfoOf(column).isUnsigned);
        else
            throw DriverError("HY091", "Invalid descriptor field identifier");
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
        const CType *const type = buffer != nullptr || length != nullptr ? &FindCType(cType) : nullptr;
        statement.bindings.resize(std::max<size_t>(statement.bindings.size(), number));
        statement.bindings[number - 1u] = {type, buffer, capacity, length};
        while (!statement.bindings.empty() && statement.bindings.back().type == nullptr)
            statement.bindings.pop_back();
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
        return statement.GetData(number, {&FindCType(cType), buffer, capacity, length});
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
{
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
    {
        if (attribute == SQL_ATTR_ROW_ARRAY_SIZE && value != nullptr)
            statement.rowArraySize = reinterpret_cast<SQLULEN>(value);
        else if (attribute == SQL_ATTR_ROW_STATUS_PTR)
            statement.rowStatus = static_cast<SQLUSMALLINT *>(value);
        else if (attribute == SQL_ATTR_ROWS_FETCHED_PTR)
            statement.rowsFetched = static_cast<SQLULEN *>(value);
        else
            throw DriverError("HY092", "Invalid attribute/option identifier");
    };
    return Guarded<Statement>(__func__, handle, body);
}
