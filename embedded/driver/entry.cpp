// The entry points, in the order in which a client comes to them.
#include "handles.h"

#include <type_traits>

using namespace driver;

// Runs `body(object)` for the function of this name (__func__), with empty records at the start. A body without a
// return code succeeds, records that a successful body left make the call SQL_SUCCESS_WITH_INFO, an exception, which
// leaves no entry point, is SQL_ERROR.
template <class T, class Body>
static SQLRETURN Call(std::string_view function, SQLHANDLE handle, Body &&body) noexcept
{
    T &object = *static_cast<T *>(static_cast<Handle *>(handle));
    Connection &connection = object.connection;
    object.records.clear();
    try
    {
        connection.BeforeCall(function.substr(0, function.find_last_not_of('W') + 1)); // "SQLFetch" for all its forms
        SQLRETURN code = SQL_SUCCESS;
        if constexpr (std::is_void_v<decltype(body(object))>)
            body(object);
        else
            code = body(object);
        connection.AfterCall();
        return code == SQL_SUCCESS && !object.records.empty() ? SQL_SUCCESS_WITH_INFO : code;
    }
    catch (const std::exception &error)
    {
        connection.Record(error, object.records);
        return SQL_ERROR;
    }
}

SQLRETURN SQLAllocHandle(SQLSMALLINT type, SQLHANDLE owner, SQLHANDLE *output)
{
    const auto body = [&](auto &connection)
    { *output = connection.statements.emplace_back(std::make_unique<Statement>(connection)).get(); };
    if (type == SQL_HANDLE_STMT)
        return Call<Connection>(__func__, owner, body);
    *output = type == SQL_HANDLE_ENV ? new Handle : type == SQL_HANDLE_DBC ? new Connection : nullptr;
    return *output != nullptr ? SQL_SUCCESS : SQL_ERROR;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle)
{
    auto *const object = static_cast<Handle *>(handle);
    if (type != SQL_HANDLE_STMT)
    {
        delete object;
        return SQL_SUCCESS;
    }
    const auto code = Call<Statement>(__func__, handle, [](auto &statement) { statement.Close(); });
    if (code == SQL_SUCCESS)
        std::erase_if(static_cast<Statement *>(object)->connection.statements,
                      [&](const auto &each) { return each.get() == object; });
    return code;
}

SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER)
{
    return SQL_SUCCESS; // the driver manager speaks ODBC 3, and warns the client of a driver without this function
}

SQLRETURN SQLConnectW(SQLHDBC handle, SQLWCHAR *name, SQLSMALLINT nameLength, SQLWCHAR *user, SQLSMALLINT userLength,
                      SQLWCHAR *password, SQLSMALLINT passwordLength)
{
    const auto body = [&](auto &connection)
    {
        connection.Connect("SQLConnect", {{"DSN", ToUtf8(name, nameLength)},
                                          {"UID", ToUtf8(user, userLength)},
                                          {"PWD", ToUtf8(password, passwordLength)}});
    };
    return Call<Connection>(__func__, handle, body);
}

SQLRETURN SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR *in, SQLSMALLINT inLength, SQLWCHAR *out,
                            SQLSMALLINT capacity, SQLSMALLINT *length, SQLUSMALLINT)
{
    const auto body = [&](auto &connection)
    {
        const std::string given = ToUtf8(in, inLength);
        connection.Connect("SQLDriverConnect", ReadConnectString(given));
        Give(length, CopyOut(connection, given, out, capacity));
    };
    return Call<Connection>(__func__, handle, body);
}

SQLRETURN SQLDisconnect(SQLHDBC handle)
{
    return Call<Connection>(__func__, handle, [](auto &connection) { connection.Disconnect(); });
}

SQLRETURN SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](auto &connection)
    {
        if (attribute == SQL_ATTR_LOGIN_TIMEOUT)
            connection.loginTimeout = reinterpret_cast<SQLULEN>(value);
        else if (attribute != SQL_ATTR_ACCESS_MODE) // which has no effect
            throw SqlError(0, "HYC00", "Optional feature not implemented");
    };
    return Call<Connection>(__func__, handle, body);
}

SQLRETURN SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    constexpr SQLINTEGER networkDead = 1244; // the driver's own: tells of a loss that no call has met yet, too
    const auto body = [&](auto &connection)
    {
        Require(attribute == SQL_ATTR_CONNECTION_DEAD || attribute == networkDead, "HY092",
                "Invalid attribute/option identifier");
        const bool isDead = attribute == networkDead ? connection.IsLost() : connection.IsDead();
        Give(static_cast<SQLUINTEGER *>(value), isDead ? SQL_CD_TRUE : SQL_CD_FALSE);
    };
    return Call<Connection>(__func__, handle, body);
}

SQLRETURN SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER out, SQLSMALLINT octets, SQLSMALLINT *length)
{
    const auto body = [&](auto &connection)
    {
        Require(what == SQL_DRIVER_ODBC_VER, "HYC00", "Optional feature not implemented");
        Give(length, 2 * CopyOut(connection, "03.52", out, octets / 2));
    };
    return Call<Connection>(__func__, handle, body);
}

SQLRETURN SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR *state, SQLINTEGER *native,
                         SQLWCHAR *text, SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const std::vector<SqlError> &records = static_cast<Handle *>(handle)->records;
    if (number < 1 || static_cast<size_t>(number) > records.size())
        return SQL_NO_DATA;
    const SqlError &record = records[number - 1u];
    Handle notes; // the records stay as they are
    CopyOut(notes, record.state, state, SQL_SQLSTATE_SIZE + 1);
    Give(native, record.number);
    Give(length, CopyOut(notes, record.what(), text, capacity));
    return notes.records.empty() ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

// The driver manager takes records only from a driver that has this function as well; the fields are its own.
SQLRETURN SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT, SQLSMALLINT *)
{
    return SQL_NO_DATA;
}

SQLRETURN SQLExecDirectW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    return Call<Statement>(__func__, handle, [&](auto &statement) { return statement.Execute(ToUtf8(text, length)); });
}

SQLRETURN SQLPrepareW(SQLHSTMT handle, SQLWCHAR *text, SQLINTEGER length)
{
    return Call<Statement>(__func__, handle, [&](auto &statement) { statement.prepared = ToUtf8(text, length); });
}

SQLRETURN SQLExecute(SQLHSTMT handle)
{
    return Call<Statement>(__func__, handle, [](auto &statement) { return statement.Execute(statement.prepared); });
}

SQLRETURN SQLMoreResults(SQLHSTMT handle)
{
    return Call<Statement>(__func__, handle, [](auto &statement) { return statement.MoreResults(); });
}

SQLRETURN SQLRowCount(SQLHSTMT handle, SQLLEN *count)
{
    return Call<Statement>(__func__, handle, [&](auto &statement) { Give(count, statement.RowCount()); });
}

SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT *count)
{
    return Call<Statement>(__func__, handle, [&](auto &statement) { Give(count, statement.ColumnCount()); });
}

SQLRETURN SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR *name, SQLSMALLINT capacity,
                          SQLSMALLINT *nameLength, SQLSMALLINT *type, SQLULEN *size, SQLSMALLINT *digits,
                          SQLSMALLINT *nullable)
{
    const auto body = [&](auto &statement)
    {
        const tsql::Column &column = statement.ColumnAt(number);
        const ColumnInfo info = InfoOf(column);
        Give(type, info.type);
        Give(size, info.size);
        Give(digits, column.type == tsql::Type::DateTime ? 3 : 0); // of a second
        Give(nullable, SQL_NULLABLE);
        Give(nameLength, CopyOut(statement, column.name, name, capacity));
    };
    return Call<Statement>(__func__, handle, body);
}

SQLRETURN SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT field, SQLPOINTER text,
                           SQLSMALLINT octets, SQLSMALLINT *textLength, SQLLEN *value)
{
    const auto body = [&](auto &statement)
    {
        const tsql::Column &column = statement.ColumnAt(number);
        if (field == SQL_DESC_LABEL)
            Give(textLength, 2 * CopyOut(statement, column.name, text, octets / 2));
        else if (field == SQL_DESC_DISPLAY_SIZE)
            Give(value, InfoOf(column).display);
        else if (field == SQL_DESC_UNSIGNED)
            Give(value, InfoOf(column).isUnsigned);
        else
            throw SqlError(0, "HY091", "Invalid descriptor field identifier");
    };
    return Call<Statement>(__func__, handle, body);
}

SQLRETURN SQLBindCol(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer, SQLLEN capacity,
                     SQLLEN *length)
{
    const auto body = [&](auto &statement)
    {
        Require(number > 0, "07009", "Invalid descriptor index");
        const CType *const type = buffer != nullptr || length != nullptr ? &FindCType(cType) : nullptr;
        statement.bindings.resize(std::max<size_t>(statement.bindings.size(), number));
        statement.bindings[number - 1u] = {type, static_cast<char *>(buffer), capacity, length};
        while (!statement.bindings.empty() && statement.bindings.back().type == nullptr)
            statement.bindings.pop_back();
    };
    return Call<Statement>(__func__, handle, body);
}

SQLRETURN SQLFetch(SQLHSTMT handle)
{
    return Call<Statement>(__func__, handle, [](auto &statement) { return statement.Fetch(); });
}

SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT number, SQLSMALLINT cType, SQLPOINTER buffer, SQLLEN capacity,
                     SQLLEN *length)
{
    const auto body = [&](auto &statement) {
        return statement.GetData(number, {&FindCType(cType), static_cast<char *>(buffer), capacity, length});
    };
    return Call<Statement>(__func__, handle, body);
}

SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
{
    const auto body = [&](auto &statement)
    {
        if (option == SQL_CLOSE)
            statement.Close();
        else if (option == SQL_UNBIND)
            statement.bindings.clear();
    };
    return Call<Statement>(__func__, handle, body);
}

SQLRETURN SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](auto &statement)
    {
        if (attribute == SQL_ATTR_ROW_ARRAY_SIZE && value != nullptr)
            statement.rowArraySize = reinterpret_cast<SQLULEN>(value);
        else if (attribute == SQL_ATTR_ROW_STATUS_PTR)
            statement.rowStatus = static_cast<SQLUSMALLINT *>(value);
        else if (attribute == SQL_ATTR_ROWS_FETCHED_PTR)
            statement.rowsFetched = static_cast<SQLULEN *>(value);
        else
            throw SqlError(0, "HY092", "Invalid attribute/option identifier");
    };
    return Call<Statement>(__func__, handle, body);
}
