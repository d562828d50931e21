// What the server's types are in ODBC's terms: see types.h.
#include "types.h"

namespace driver
{

const SqlTypeInfo &InfoOf(tsql::Type type)
{
    // in the order of tsql::Type
    static const SqlTypeInfo infos[] = {
        {SQL_BIT, SQL_BIT, SQL_C_BIT, "bit", 1, 1, 1, ""},
        {SQL_TINYINT, SQL_TINYINT, SQL_C_UTINYINT, "tinyint", 3, 1, 3, ""},
        {SQL_SMALLINT, SQL_SMALLINT, SQL_C_SSHORT, "smallint", 5, 2, 6, ""},
        {SQL_INTEGER, SQL_INTEGER, SQL_C_SLONG, "int", 10, 4, 11, ""},
        {SQL_BIGINT, SQL_BIGINT, SQL_C_SBIGINT, "bigint", 19, 8, 20, ""},
        {SQL_DECIMAL, SQL_DECIMAL, SQL_C_CHAR, "decimal", 0, 0, 0, ""},
        {SQL_FLOAT, SQL_FLOAT, SQL_C_DOUBLE, "float", 53, 8, 24, ""},
        {SQL_CHAR, SQL_CHAR, SQL_C_CHAR, "char", 0, 0, 0, "'"},
        {SQL_VARCHAR, SQL_VARCHAR, SQL_C_CHAR, "varchar", 0, 0, 0, "'"},
        {SQL_WCHAR, SQL_WCHAR, SQL_C_WCHAR, "nchar", 0, 0, 0, "N'"},
        {SQL_WVARCHAR, SQL_WVARCHAR, SQL_C_WCHAR, "nvarchar", 0, 0, 0, "N'"},
        {SQL_TYPE_TIMESTAMP, SQL_DATETIME, SQL_C_TYPE_TIMESTAMP, "datetime", 23, 16, 23, "'"},
    };
    return infos[static_cast<int>(type)];
}

bool IsText(tsql::Type type)
{
    return type >= tsql::Type::Char && type <= tsql::Type::NVarChar;
}

bool IsNumeric(tsql::Type type)
{
    return type >= tsql::Type::TinyInt && type <= tsql::Type::Float;
}

SQLULEN ColumnSize(const tsql::Column &column, int claimedTextSize)
{
    if (IsText(column.type) && claimedTextSize >= 0)
        return static_cast<SQLULEN>(claimedTextSize);
    const int own = InfoOf(column.type).size;
    return static_cast<SQLULEN>(own != 0 ? own : column.size);
}

SQLSMALLINT DecimalDigits(const tsql::Column &column)
{
    if (column.type == tsql::Type::DateTime)
        return 3;
    return column.type == tsql::Type::Decimal ? static_cast<SQLSMALLINT>(column.scale) : SQLSMALLINT{0};
}

SQLLEN SizeOfC(SQLSMALLINT cType)
{
    switch (cType)
    {
    case SQL_C_BIT:
    case SQL_C_TINYINT:
    case SQL_C_STINYINT:
    case SQL_C_UTINYINT:
        return 1;
    case SQL_C_SHORT:
    case SQL_C_SSHORT:
    case SQL_C_USHORT:
        return 2;
    case SQL_C_LONG:
    case SQL_C_SLONG:
    case SQL_C_ULONG:
    case SQL_C_FLOAT:
        return 4;
    case SQL_C_SBIGINT:
    case SQL_C_UBIGINT:
    case SQL_C_DOUBLE:
        return 8;
    case SQL_C_DATE:
    case SQL_C_TYPE_DATE:
        return sizeof(SQL_DATE_STRUCT);
    case SQL_C_TIME:
    case SQL_C_TYPE_TIME:
        return sizeof(SQL_TIME_STRUCT);
    case SQL_C_TIMESTAMP:
    case SQL_C_TYPE_TIMESTAMP:
        return sizeof(SQL_TIMESTAMP_STRUCT);
    default:
        return 0;
    }
}

} // namespace driver
