// Entry points: connecting, disconnecting, transactions, attributes of a connection.
#include "guard.h"
#include "statement.h"
#include "text.h"

using namespace driver;

namespace
{

// What the client may use to connect again: what it gave, or the attributes that were found for it.
std::string CompletedString(const std::string &given, const Settings &settings)
{
    std::string text = given;
    if (!text.empty() && text.back() != ';')
        text += ';';
    const ConnectString had(given);
    if (!had.Find("Database") && !settings.database.empty())
        text += "Database=" + settings.database + ";";
    return text;
}

} // namespace

SQLRETURN SQL_API SQLConnectW(SQLHDBC handle, SQLWCHAR *name, SQLSMALLINT nameLength, SQLWCHAR *user,
                              SQLSMALLINT userLength, SQLWCHAR *password, SQLSMALLINT passwordLength)
{
    const auto body = [&](Connection &connection)
    {
        connection.Connect(
            SettingsOfDataSource(ToUtf8(name, nameLength), ToUtf8(user, userLength), ToUtf8(password, passwordLength)));
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR *in, SQLSMALLINT inLength, SQLWCHAR *out,
                                    SQLSMALLINT outCapacity, SQLSMALLINT *outLength, SQLUSMALLINT)
{
    const auto body = [&](Connection &connection)
    {
        const std::string given = ToUtf8(in, inLength);
        connection.Connect(SettingsOfConnectString(given));
        const std::u16string completed = ToUtf16(CompletedString(given, connection.GetSettings()));
        if (outLength != nullptr)
            *outLength = static_cast<SQLSMALLINT>(completed.size());
        if (CopyOut(completed, out, outCapacity))
            connection.Diag().Warn("01004", "String data, right truncation");
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle)
{
    const auto body = [](Connection &connection) { connection.Disconnect(); };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT completion)
{
    if (type != SQL_HANDLE_DBC) // of an environment the driver manager asks connection by connection
        return Guarded<Environment>(handle, [](Environment &) {});
    const auto body = [&](Connection &connection)
    {
        if (completion != SQL_COMMIT && completion != SQL_ROLLBACK)
            throw DriverError("HY012", "Invalid transaction operation code");
        connection.EndTransaction(completion == SQL_COMMIT);
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](Connection &connection)
    {
        const auto number = reinterpret_cast<SQLULEN>(value);
        switch (attribute)
        {
        case SQL_ATTR_LOGIN_TIMEOUT:
            connection.loginTimeout = static_cast<SQLUINTEGER>(number);
            break;
        case SQL_ATTR_AUTOCOMMIT:
            connection.SetAutocommit(number != SQL_AUTOCOMMIT_OFF);
            break;
        case SQL_ATTR_CURRENT_CATALOG: // one file is one database
        case SQL_ATTR_TRACE:
        case SQL_ATTR_TRACEFILE:
            throw DriverError("HYC00", "Optional feature not implemented");
        case SQL_ATTR_ACCESS_MODE:
        case SQL_ATTR_CONNECTION_TIMEOUT:
        case SQL_ATTR_TXN_ISOLATION:
        case SQL_ATTR_PACKET_SIZE:
        case SQL_ATTR_QUIET_MODE:
        case SQL_ATTR_METADATA_ID:
        case SQL_ATTR_ASYNC_ENABLE:
        case SQL_ATTR_ANSI_APP:
        case SQL_ATTR_ODBC_CURSORS:
            connection.otherAttributes[attribute] = number;
            break;
        default:
            throw DriverError("HY092", "Invalid attribute/option identifier");
        }
    };
    return Guarded<Connection>(handle, body);
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER capacity,
                                     SQLINTEGER *length)
{
    const auto body = [&](Connection &connection)
    {
        if (attribute == SQL_ATTR_CURRENT_CATALOG)
        {
            const std::u16string name = ToUtf16(connection.GetSettings().database);
            if (length != nullptr)
                *length = static_cast<SQLINTEGER>(name.size() * sizeof(SQLWCHAR));
            if (CopyOut(name, static_cast<SQLWCHAR *>(value), capacity / static_cast<SQLINTEGER>(sizeof(SQLWCHAR))))
                connection.Diag().Warn("01004", "String data, right truncation");
            return SQL_SUCCESS;
        }
        SQLUINTEGER number = 0;
        switch (attribute)
        {
        case SQL_ATTR_LOGIN_TIMEOUT:
            number = connection.loginTimeout;
            break;
        case SQL_ATTR_AUTOCOMMIT:
            number = connection.Autocommit() ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
            break;
        case SQL_ATTR_CONNECTION_DEAD:
            number = connection.IsDead() ? SQL_CD_TRUE : SQL_CD_FALSE;
            break;
        case SQL_ATTR_AUTO_IPD:
            number = SQL_FALSE;
            break;
        default:
            if (const auto kept = connection.otherAttributes.find(attribute); kept != connection.otherAttributes.end())
                number = static_cast<SQLUINTEGER>(kept->second);
            else if (attribute == SQL_ATTR_TXN_ISOLATION)
                number = SQL_TXN_SERIALIZABLE;
            else if (attribute != SQL_ATTR_ACCESS_MODE && attribute != SQL_ATTR_CONNECTION_TIMEOUT &&
                     attribute != SQL_ATTR_METADATA_ID && attribute != SQL_ATTR_ASYNC_ENABLE)
                throw DriverError("HY092", "Invalid attribute/option identifier");
        }
        if (value != nullptr)
            *static_cast<SQLUINTEGER *>(value) = number;
        return SQL_SUCCESS;
    };
    return Guarded<Connection>(handle, body);
}
