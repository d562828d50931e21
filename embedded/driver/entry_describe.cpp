// Entry points: what columns a result has, and what this driver is and can do.
#include "statement.h"
#include "text.h"

#include <variant>

using namespace driver;

namespace
{

// A field of a column: a text or a number.
std::variant<std::string, SQLLEN> FieldOf(const tsql::Column &column, SQLUSMALLINT field, const ColumnSizes &sizes)
{
    const SqlTypeInfo &info = InfoOf(column.type);
    switch (field)
    {
    case SQL_DESC_NAME:
    case SQL_DESC_LABEL:
    case SQL_COLUMN_NAME:
        return column.name;
    case SQL_DESC_TABLE_NAME:
    case SQL_DESC_SCHEMA_NAME:
    case SQL_DESC_CATALOG_NAME:
        return "";
    case SQL_DESC_TYPE_NAME:
        return info.name;
    case SQL_DESC_CONCISE_TYPE:
        return info.code;
    case SQL_DESC_TYPE:
        return info.verbose;
    case SQL_DESC_LENGTH:
    case SQL_DESC_PRECISION:
    case SQL_COLUMN_PRECISION:
        return sizes.size;
    case SQL_DESC_SCALE:
    case SQL_COLUMN_SCALE:
        return sizes.digits;
    case SQL_DESC_OCTET_LENGTH:
    case SQL_COLUMN_LENGTH:
        return sizes.octets;
    case SQL_DESC_DISPLAY_SIZE:
        return sizes.display;
    case SQL_DESC_NULLABLE:
    case SQL_COLUMN_NULLABLE:
        return SQL_NULLABLE;
    case SQL_DESC_UNSIGNED:
        return IsNumeric(column.type) && column.type != tsql::Type::TinyInt ? SQL_FALSE : SQL_TRUE;
    case SQL_DESC_NUM_PREC_RADIX:
        return info.radix;
    case SQL_DESC_SEARCHABLE:
        return SQL_SEARCHABLE;
    case SQL_DESC_UPDATABLE:
        return SQL_ATTR_READONLY;
    case SQL_DESC_UNNAMED:
        return column.name.empty() ? SQL_UNNAMED : SQL_NAMED;
    case SQL_DESC_AUTO_UNIQUE_VALUE:
    case SQL_DESC_CASE_SENSITIVE:
        return SQL_FALSE;
    default:
        throw DriverError("HY091", "Invalid descriptor field identifier");
    }
}

using Info = std::variant<const char *, SQLUSMALLINT, SQLUINTEGER>;

const std::map<SQLUSMALLINT, Info> &Infos()
{
    using S = SQLUSMALLINT;
    using N = SQLUINTEGER;
    static const std::map<SQLUSMALLINT, Info> infos = {
        {SQL_DRIVER_NAME, "libkvembedded.so"},
        {SQL_DRIVER_VER, "01.00.0000"},
        {SQL_DRIVER_ODBC_VER, "03.52"},
        {SQL_DBMS_NAME, "Microsoft SQL Server"}, // the dialect a client has to speak
        {SQL_DBMS_VER, "08.00.0000"},
        {SQL_DATA_SOURCE_NAME, ""},
        {SQL_IDENTIFIER_QUOTE_CHAR, "\""},
        {SQL_CATALOG_NAME_SEPARATOR, "."},
        {SQL_SEARCH_PATTERN_ESCAPE, "\\"},
        {SQL_ACCESSIBLE_TABLES, "Y"},
        {SQL_CATALOG_NAME, "N"},
        {SQL_DATA_SOURCE_READ_ONLY, "N"},
        {SQL_DESCRIBE_PARAMETER, "N"},
        {SQL_MULT_RESULT_SETS, "Y"},
        {SQL_NEED_LONG_DATA_LEN, "N"},
        {SQL_CURSOR_COMMIT_BEHAVIOR, S{SQL_CB_CLOSE}},
        {SQL_CURSOR_ROLLBACK_BEHAVIOR, S{SQL_CB_CLOSE}},
        {SQL_IDENTIFIER_CASE, S{SQL_IC_MIXED}},
        {SQL_MAX_TABLE_NAME_LEN, S{128}},
        {SQL_MAX_COLUMN_NAME_LEN, S{128}},
        {SQL_MAX_CONCURRENT_ACTIVITIES, S{1}},
        {SQL_TXN_CAPABLE, S{SQL_TC_ALL}},
        {SQL_BATCH_SUPPORT, N{SQL_BS_SELECT_EXPLICIT | SQL_BS_ROW_COUNT_EXPLICIT}},
        {SQL_SCHEMA_USAGE, N{SQL_SU_DML_STATEMENTS | SQL_SU_TABLE_DEFINITION}},
        {SQL_DEFAULT_TXN_ISOLATION, N{SQL_TXN_SERIALIZABLE}},
        {SQL_TXN_ISOLATION_OPTION, N{SQL_TXN_SERIALIZABLE}},
        {SQL_GETDATA_EXTENSIONS, N{SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER | SQL_GD_BLOCK | SQL_GD_BOUND}},
    };
    return infos;
}

} // namespace

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT *count)
{
    return Guarded<Statement>(__func__, handle, [&](Statement &statement) { Give(count, statement.Columns().size()); });
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR *name, SQLSMALLINT capacity,
                                  SQLSMALLINT *nameLength, SQLSMALLINT *type, SQLULEN *size, SQLSMALLINT *digits,
                                  SQLSMALLINT *nullable)
{
    const auto body = [&](Statement &statement)
    {
        const tsql::Column &column = statement.ColumnAt(number);
        const ColumnSizes sizes(column, statement.GetSettings().claimedTextSize);
        Give(type, InfoOf(column.type).code);
        Give(size, sizes.size);
        Give(digits, sizes.digits);
        Give(nullable, SQL_NULLABLE);
        GiveText(statement, column.name, name, capacity, nameLength);
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT field, SQLPOINTER text,
                                   SQLSMALLINT octets, SQLSMALLINT *textLength, SQLLEN *value)
{
    const auto body = [&](Statement &statement)
    {
        if (field == SQL_DESC_COUNT || field == SQL_COLUMN_COUNT)
            return Give(value, statement.Columns().size());
        const tsql::Column &column = statement.ColumnAt(number);
        const auto found = FieldOf(column, field, ColumnSizes(column, statement.GetSettings().claimedTextSize));
        if (const std::string *const words = std::get_if<std::string>(&found))
            GiveOctets(statement, *words, text, octets, textLength);
        else
            Give(value, std::get<SQLLEN>(found));
    };
    return Guarded<Statement>(__func__, handle, body);
}

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT what, SQLPOINTER out, SQLSMALLINT octets,
                              SQLSMALLINT *length)
{
    const auto body = [&](Connection &connection)
    {
        const Settings &settings = connection.GetSettings();
        const std::map<SQLUSMALLINT, std::string> ofConnection = {
            {SQL_SERVER_NAME, settings.server}, {SQL_DATABASE_NAME, settings.database}, {SQL_USER_NAME, settings.user}};
        if (const auto own = ofConnection.find(what); own != ofConnection.end())
            return GiveOctets(connection, own->second, out, octets, length);
        const auto found = Infos().find(what);
        if (found == Infos().end())
            throw DriverError("HYC00", "Optional feature not implemented");
        if (const auto *const text = std::get_if<const char *>(&found->second))
            return GiveOctets(connection, *text, out, octets, length);
        const auto *const small = std::get_if<SQLUSMALLINT>(&found->second);
        if (small != nullptr)
            Give(static_cast<SQLUSMALLINT *>(out), *small);
        else
            Give(static_cast<SQLUINTEGER *>(out), std::get<SQLUINTEGER>(found->second));
        Give(length, small != nullptr ? sizeof(SQLUSMALLINT) : sizeof(SQLUINTEGER));
    };
    return Guarded<Connection>(__func__, handle, body);
}
