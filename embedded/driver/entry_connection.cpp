// Entry points: handles, connecting, what a connection tells, the records of a failed call.
#include "statement.h"

#include <map>
#include <variant>

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

// What the driver says of itself.
const std::map<SQLUSMALLINT, std::variant<const char *, SQLUSMALLINT>> Infos = {
    {SQL_DRIVER_NAME, "libkvembedded.so"},
    {SQL_DRIVER_VER, "01.00.0000"},
    {SQL_DRIVER_ODBC_VER, "03.52"},
    {SQL_DBMS_NAME, "Microsoft SQL Server"}, // the dialect a client has to speak
    {SQL_DBMS_VER, "08.00.0000"},
    {SQL_IDENTIFIER_QUOTE_CHAR, "\""},
    {SQL_DESCRIBE_PARAMETER, "N"},
    {SQL_MULT_RESULT_SETS, "Y"},
    {SQL_NEED_LONG_DATA_LEN, "N"},
    {SQL_MAX_CONCURRENT_ACTIVITIES, SQLUSMALLINT{1}},
    {SQL_TXN_CAPABLE, SQLUSMALLINT{SQL_TC_NONE}},
};

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
        Settings::Given given = {{"DSN", ToUtf8(name, nameLength)},
                                 {"UID", ToUtf8(user, userLength)},
                                 {"PWD", ToUtf8(password, passwordLength)}};
        std::erase_if(given, [](const auto &each) { return each.second.empty(); });
        connection.Connect("SQLConnect", Settings(std::move(given)));
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
        const auto found = connection.attributes.find(attribute);
        if (found == connection.attributes.end())
            throw DriverError("HYC00", "Optional feature not implemented");
        found->second = reinterpret_cast<SQLULEN>(value);
    };
    return Guarded<Connection>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    const auto body = [&](Connection &connection)
    {
        auto *const number = static_cast<SQLUINTEGER *>(value);
        if (attribute == SQL_ATTR_CONNECTION_DEAD)
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

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER out, SQLSMALLINT octets,
                              SQLSMALLINT *length)
{
    const auto body = [&](Connection &connection)
    {
        const auto found = Infos.find(what);
        if (found == Infos.end())
            throw DriverError("HYC00", "Optional feature not implemented");
        if (const auto *const text = std::get_if<const char *>(&found->second))
            return GiveOctets(connection, *text, out, octets, length);
        Give(static_cast<SQLUSMALLINT *>(out), std::get<SQLUSMALLINT>(found->second));
        Give(length, sizeof(SQLUSMALLINT));
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
        Give(length, CopyOut(notes, record.text, text, capacity));
    };
    return capacity < 0 ? SQL_ERROR : WithRecord(handle, number, give);
}

// The driver manager takes records only from a driver that has this function as well; the fields of the whole are its
// own.
SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field, SQLPOINTER out,
                                   SQLSMALLINT capacity, SQLSMALLINT *length)
{
    const auto give = [&](const DiagnosticRecord &record, Handle &notes)
    {
        if (field == SQL_DIAG_NATIVE)
            return Give(static_cast<SQLINTEGER *>(out), record.native);
        const bool isOrigin = field == SQL_DIAG_CLASS_ORIGIN || field == SQL_DIAG_SUBCLASS_ORIGIN;
        GiveOctets(notes,
                   isOrigin                     ? "ISO 9075"
                   : field == SQL_DIAG_SQLSTATE ? record.state
                                                : record.text,
                   out, capacity, length);
    };
    return WithRecord(handle, number, give);
}
