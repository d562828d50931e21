// Entry points: handles, connecting, what a connection tells, the records of a failed call.
#include "statement.h"

using namespace driver;

// The driver's own counterpart of SQL_ATTR_CONNECTION_DEAD, by the number that it has elsewhere: tells of a loss that
// no call has met yet.
constexpr SQLINTEGER NetworkDead = 1244;

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE owner, SQLHANDLE *output)
{
    Handle *made = type == SQL_HANDLE_ENV ? new Handle : type == SQL_HANDLE_DBC ? new Connection : nullptr;
    const auto body = [&](Connection &connection) { made = connection.NewStatement(); };
    if (type == SQL_HANDLE_STMT && Guarded<Connection>(__func__, owner, body) != SQL_SUCCESS)
        made = nullptr;
    *output = made;
    return made != nullptr ? SQL_SUCCESS : SQL_ERROR;
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle)
{
    auto *const object = static_cast<Handle *>(handle);
    if (type != SQL_HANDLE_STMT)
    {
        delete object;
        return SQL_SUCCESS;
    }
    const auto code = Guarded<Statement>(__func__, handle, [](Statement &statement) { statement.Close(); });
    if (code == SQL_SUCCESS)
        static_cast<Statement *>(object)->connection.Free(*static_cast<Statement *>(object));
    return code;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER)
{
    return SQL_SUCCESS; // the driver manager speaks ODBC 3
}

SQLRETURN SQL_API SQLConnectW(SQLHDBC handle, SQLWCHAR *name, SQLSMALLINT nameLength, SQLWCHAR *user,
                              SQLSMALLINT userLength, SQLWCHAR *password, SQLSMALLINT passwordLength)
{
    const auto body = [&](Connection &connection)
    {
        connection.Connect("SQLConnect", Settings({{"DSN", ToUtf8(name, nameLength)},
                                                   {"UID", ToUtf8(user, userLength)},
                                                   {"PWD", ToUtf8(password, passwordLength)}}));
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR *in, SQLSMALLINT inLength, SQLWCHAR *out,
                                    SQLSMALLINT capacity, SQLSMALLINT *length, SQLUSMALLINT)
{
    const auto body = [&](Connection &connection)
    {
        const std::string given = ToUtf8(in, inLength);
        connection.Connect("SQLDriverConnect", Settings(given));
        Give(length, CopyOut(connection, given, out, capacity));
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle)
{
    return Guarded<Connection>(__func__, handle, [](Connection &connection) { connection.Disconnect(); });
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](Connection &connection)
    {
        if (attribute == SQL_ATTR_LOGIN_TIMEOUT)
            connection.loginTimeout = reinterpret_cast<SQLULEN>(value);
        else if (attribute != SQL_ATTR_ACCESS_MODE) // which has no effect
            throw DriverError("HYC00", "Optional feature not implemented");
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    const auto body = [&](Connection &connection)
    {
        if (attribute != SQL_ATTR_CONNECTION_DEAD && attribute != NetworkDead)
            throw DriverError("HY092", "Invalid attribute/option identifier");
        const bool isDead = attribute == NetworkDead ? connection.IsLost() : connection.IsDead();
        Give(static_cast<SQLUINTEGER *>(value), isDead ? SQL_CD_TRUE : SQL_CD_FALSE);
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER out, SQLSMALLINT octets,
                              SQLSMALLINT *length)
{
    const auto body = [&](Connection &connection)
    {
        if (what != SQL_DRIVER_ODBC_VER && what != SQL_DESCRIBE_PARAMETER && what != SQL_NEED_LONG_DATA_LEN)
            throw DriverError("HYC00", "Optional feature not implemented");
        Give(length, 2 * CopyOut(connection, what == SQL_DRIVER_ODBC_VER ? "03.52" : "N", out, octets / 2));
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR *state, SQLINTEGER *native,
                                 SQLWCHAR *text, SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const Records &records = static_cast<Handle *>(handle)->records;
    if (number < 1 || static_cast<size_t>(number) > records.size())
        return SQL_NO_DATA;
    const DiagnosticRecord &record = records[number - 1u];
    Handle notes; // the records stay as they are
    CopyOut(notes, record.state, state, SQL_SQLSTATE_SIZE + 1);
    Give(native, record.native);
    Give(length, CopyOut(notes, record.text, text, capacity));
    return notes.records.empty() ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

// The driver manager takes records only from a driver that has this function as well; the fields are its own.
SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                                   SQLSMALLINT *)
{
    return SQL_NO_DATA;
}
