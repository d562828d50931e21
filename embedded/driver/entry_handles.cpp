// Entry points: making and freeing handles, attributes of the environment.
#include "guard.h"
#include "statement.h"

using namespace driver;

namespace
{

template <class Owner, class Make>
SQLRETURN Allocate(SQLHANDLE owner, SQLHANDLE *out, Make &&make)
{
    const auto body = [&](Owner &)
    {
        if (out == nullptr)
            throw DriverError("HY009", "Invalid use of null pointer");
        *out = RegisterHandle(make(FindHandle(owner)));
    };
    return Guarded<Owner>(owner, body);
}

SQLRETURN AllocateEnvironment(SQLHANDLE *out) noexcept
{
    try
    {
        if (out == nullptr)
            return SQL_ERROR;
        *out = RegisterHandle(std::make_shared<Environment>());
        return SQL_SUCCESS;
    }
    catch (...)
    {
        return SQL_ERROR;
    }
}

std::shared_ptr<Statement> MakeStatement(std::shared_ptr<Handle> owner)
{
    auto connection = std::dynamic_pointer_cast<Connection>(std::move(owner));
    if (!connection->IsConnected())
        throw DriverError("08003", "Connection does not exist");
    auto statement = std::make_shared<Statement>(std::move(connection));
    for (SQLHANDLE &descriptor : statement->descriptors)
        descriptor = RegisterHandle(std::make_shared<Descriptor>(*statement));
    return statement;
}

} // namespace

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE input, SQLHANDLE *output)
{
    switch (type)
    {
    case SQL_HANDLE_ENV:
        return AllocateEnvironment(output);
    case SQL_HANDLE_DBC:
        return Allocate<Environment>(input, output,
                                     [](std::shared_ptr<Handle> environment)
                                     { return std::make_shared<Connection>(std::move(environment)); });
    case SQL_HANDLE_STMT:
        return Allocate<Connection>(input, output, MakeStatement);
    default:
        return Allocate<Connection>(input, output,
                                    [](auto) -> std::shared_ptr<Handle>
                                    { throw DriverError("HYC00", "Optional feature not implemented"); });
    }
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
    const SQLRETURN code = Guarded<Handle>(handle, close);
    if (code == SQL_SUCCESS)
        RemoveHandle(handle);
    return code;
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
{
    if (option == SQL_DROP)
    {
        const auto close = [](Statement &statement) { statement.Close(); };
        const SQLRETURN code = Guarded<Statement>(handle, close);
        if (code == SQL_SUCCESS)
            RemoveHandle(handle);
        return code;
    }
    const auto body = [&](Statement &statement)
    {
        if (option == SQL_CLOSE)
            statement.Close();
        else if (option == SQL_UNBIND)
            statement.UnbindColumns();
        else if (option == SQL_RESET_PARAMS)
            statement.ResetParameters();
        else
            throw DriverError("HY092", "Invalid attribute/option identifier");
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLCloseCursor(SQLHSTMT handle)
{
    const auto body = [](Statement &statement)
    {
        if (statement.Columns().empty())
            throw DriverError("24000", "Invalid cursor state");
        statement.Close();
    };
    return Guarded<Statement>(handle, body);
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER)
{
    const auto body = [&](Environment &environment)
    {
        if (attribute == SQL_ATTR_ODBC_VERSION)
            environment.odbcVersion = static_cast<SQLINTEGER>(reinterpret_cast<SQLLEN>(value));
        else if (attribute != SQL_ATTR_CONNECTION_POOLING && attribute != SQL_ATTR_CP_MATCH &&
                 attribute != SQL_ATTR_OUTPUT_NTS)
            throw DriverError("HY092", "Invalid attribute/option identifier");
    };
    return Guarded<Environment>(handle, body);
}

SQLRETURN SQL_API SQLGetEnvAttr(SQLHENV handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER *)
{
    const auto body = [&](Environment &environment)
    {
        SQLINTEGER out = 0;
        if (attribute == SQL_ATTR_ODBC_VERSION)
            out = environment.odbcVersion;
        else if (attribute == SQL_ATTR_OUTPUT_NTS)
            out = SQL_TRUE;
        else if (attribute != SQL_ATTR_CONNECTION_POOLING && attribute != SQL_ATTR_CP_MATCH)
            throw DriverError("HY092", "Invalid attribute/option identifier");
        if (value != nullptr)
            *static_cast<SQLINTEGER *>(value) = out;
    };
    return Guarded<Environment>(handle, body);
}
