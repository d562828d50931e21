// Entry points: handles, connecting, transactions, attributes of a connection, the records of a failed call.
#include "statement.h"
#include "text.h"

using namespace driver;

namespace
{

// The driver's own counterpart of SQL_ATTR_CONNECTION_DEAD, by the number that it has elsewhere: tells of a loss that
// no call has met yet.
constexpr SQLINTEGER NetworkDead = 1244;

std::shared_ptr<Handle> MakeUnder(const std::shared_ptr<Handle> &owner, SQLSMALLINT type)
{
    if (type == SQL_HANDLE_ENV)
        return std::make_shared<Environment>();
    if (type == SQL_HANDLE_DBC && std::dynamic_pointer_cast<Environment>(owner) != nullptr)
        return std::make_shared<Connection>(owner);
    const auto connection = std::dynamic_pointer_cast<Connection>(owner);
    if (type != SQL_HANDLE_STMT || connection == nullptr)
        throw DriverError("HYC00", "Optional feature not implemented");
    if (!connection->IsConnected())
        throw DriverError("08003", "Connection does not exist");
    return std::make_shared<Statement>(connection);
}

// Runs `give(record, notes)` and leaves the records as they are: what it has to say of itself goes into the notes.
template <class Body>
SQLRETURN WithRecord(SQLHANDLE handle, SQLSMALLINT number, Body &&give) noexcept
{
    const auto body = [&](Handle &object) -> SQLRETURN
    {
        if (number <= 0)
            return SQL_ERROR;
        if (static_cast<size_t>(number) > object.records.size())
            return SQL_NO_DATA;
        Handle notes;
        give(object.records[number - 1u], notes);
        return notes.records.empty() ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
    };
    return WithHandle<Handle>(handle, body);
}

} // namespace

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE input, SQLHANDLE *output)
{
    static const SQLHANDLE root = RegisterHandle(std::make_shared<Handle>()); // the owner of environments
    const SQLHANDLE owner = type == SQL_HANDLE_ENV ? root : input;
    return Guarded<Handle>(__func__, owner,
                           [&](Handle &) { *output = RegisterHandle(MakeUnder(FindHandle(owner), type)); });
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT, SQLHANDLE handle)
{
    const auto close = [](Handle &object)
    {
        if (auto *connection = dynamic_cast<Connection *>(&object); connection != nullptr && connection->IsConnected())
            throw DriverError("HY010", "Function sequence error");
        if (auto *statement = dynamic_cast<Statement *>(&object))
            statement->Close();
    };
    const SQLRETURN code = Guarded<Handle>(__func__, handle, close);
    if (code == SQL_SUCCESS)
        RemoveHandle(handle);
    return code;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV handle, SQLINTEGER, SQLPOINTER, SQLINTEGER)
{
    return Guarded<Environment>(__func__, handle, [](Environment &) {}); // the driver manager speaks ODBC 3
}

SQLRETURN SQL_API SQLConnectW(SQLHDBC handle, SQLWCHAR *name, SQLSMALLINT nameLength, SQLWCHAR *user,
                              SQLSMALLINT userLength, SQLWCHAR *password, SQLSMALLINT passwordLength)
{
    const auto body = [&](Connection &connection)
    {
        Attributes given = {{"DSN", ToUtf8(name, nameLength)},
                            {"UID", ToUtf8(user, userLength)},
                            {"PWD", ToUtf8(password, passwordLength)}};
        std::erase_if(given, [](const auto &each) { return each.second.empty(); });
        connection.Connect("SQLConnect", Settings(given));
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR *in, SQLSMALLINT inLength, SQLWCHAR *out,
                                    SQLSMALLINT capacity, SQLSMALLINT *length, SQLUSMALLINT)
{
    const auto body = [&](Connection &connection)
    {
        const std::string given = ToUtf8(in, inLength);
        connection.Connect("SQLDriverConnect", Settings(ParseConnectString(given)));
        GiveText(connection, given, out, capacity, length);
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle)
{
    return Guarded<Connection>(__func__, handle, [](Connection &connection) { connection.Disconnect(); });
}

// Of an environment the driver manager asks connection by connection.
SQLRETURN SQL_API SQLEndTran(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT completion)
{
    return Guarded<Connection>(__func__, handle,
                               [&](Connection &connection) { connection.EndTransaction(completion == SQL_COMMIT); });
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](Connection &connection)
    {
        const auto found = connection.attributes.find(attribute);
        if (found == connection.attributes.end())
            throw DriverError("HYC00", "Optional feature not implemented");
        const auto number = reinterpret_cast<SQLULEN>(value);
        if (attribute == SQL_ATTR_AUTOCOMMIT && number != SQL_AUTOCOMMIT_OFF)
            connection.EndTransaction(true);
        found->second = number;
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER capacity,
                                     SQLINTEGER *length)
{
    const auto body = [&](Connection &connection)
    {
        auto *const number = static_cast<SQLUINTEGER *>(value);
        if (attribute == SQL_ATTR_CURRENT_CATALOG)
            GiveOctets(connection, connection.GetSettings().database, value, capacity, length);
        else if (attribute == SQL_ATTR_CONNECTION_DEAD)
            Give(number, connection.IsDead() ? SQL_CD_TRUE : SQL_CD_FALSE);
        else if (attribute == NetworkDead)
            Give(number, connection.IsLost() ? SQL_CD_TRUE : SQL_CD_FALSE);
        else if (const auto found = connection.attributes.find(attribute); found != connection.attributes.end())
            Give(number, found->second);
        else
            throw DriverError("HY092", "Invalid attribute/option identifier");
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR *state, SQLINTEGER *native,
                                 SQLWCHAR *text, SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const auto give = [&](const DiagnosticRecord &record, Handle &notes)
    {
        CopyOut(notes, record.state, state, SQL_SQLSTATE_SIZE + 1);
        Give(native, record.native);
        GiveText(notes, record.text, text, capacity, length);
    };
    return capacity < 0 ? SQL_ERROR : WithRecord(handle, number, give);
}

// Fields of a record; those of the whole the driver manager knows.
SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field, SQLPOINTER out,
                                   SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const auto give = [&](const DiagnosticRecord &record, Handle &notes)
    {
        const std::map<SQLSMALLINT, std::string> texts = {{SQL_DIAG_SQLSTATE, record.state},
                                                          {SQL_DIAG_MESSAGE_TEXT, record.text},
                                                          {SQL_DIAG_CLASS_ORIGIN, "ISO 9075"},
                                                          {SQL_DIAG_SUBCLASS_ORIGIN, "ISO 9075"}};
        if (field == SQL_DIAG_NATIVE)
            Give(static_cast<SQLINTEGER *>(out), record.native);
        else
            GiveOctets(notes, texts.at(field), out, capacity, length); // others fail
    };
    return WithRecord(handle, number, give);
}
