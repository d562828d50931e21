// Entry points: running statements, their results and rows; attributes of a statement.
#include "statement.h"
#include "text.h"

#include <algorithm>
#include <iterator>

using namespace driver;

namespace
{

// Attributes with one possible value; another is changed to it, which the client is told.
constexpr SQLINTEGER Fixed[] = {SQL_ATTR_CURSOR_TYPE,        SQL_ATTR_CONCURRENCY,   SQL_ATTR_CURSOR_SCROLLABLE,
                                SQL_ATTR_CURSOR_SENSITIVITY, SQL_ATTR_USE_BOOKMARKS, SQL_ATTR_ASYNC_ENABLE,
                                SQL_ATTR_MAX_ROWS,           SQL_ATTR_PARAMSET_SIZE};

// Its place at the statement; also by its older name. Throws DriverError HY092 when there is none.
SQLULEN &AttributeOf(Statement &statement, SQLINTEGER attribute)
{
    const auto found = statement.attributes.find(attribute == SQL_ROWSET_SIZE ? SQL_ATTR_ROW_ARRAY_SIZE : attribute);
    if (found == statement.attributes.end())
        throw DriverError("HY092", "Invalid attribute/option identifier");
    return found->second;
}

} // namespace

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

SQLRETURN SQL_API SQLFetchScroll(SQLHSTMT handle, SQLSMALLINT orientation, SQLLEN)
{
    const auto body = [&](Statement &statement)
    {
        if (orientation != SQL_FETCH_NEXT)
            throw DriverError("HY106", "Fetch type out of range");
        return statement.Fetch();
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer,
                             SQLLEN capacity, SQLLEN *length)
{
    return Guarded<Statement>(__func__, handle,
                              [&](Statement &statement) {
                                  return statement.GetData(number, {cType, buffer, capacity, length});
                              });
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

SQLRETURN SQL_API SQLCancel(SQLHSTMT handle)
{
    return Guarded<Statement>(__func__, handle, [](Statement &statement) { statement.Close(); });
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
    {
        SQLULEN &place = AttributeOf(statement, attribute);
        const auto number = reinterpret_cast<SQLULEN>(value);
        if (&place == &statement.attributes[SQL_ATTR_ROW_ARRAY_SIZE] && number == 0)
            throw DriverError("HY024", "Invalid attribute value");
        if (std::find(std::begin(Fixed), std::end(Fixed), attribute) == std::end(Fixed))
            place = number;
        else if (place != number)
            statement.Warn("01S02", "Option value changed");
    };
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
            Give(static_cast<SQLULEN *>(value), AttributeOf(statement, attribute));
    };
    return Guarded<Statement>(__func__, handle, body);
}
