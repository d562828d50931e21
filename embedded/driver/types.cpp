// What types are in ODBC's terms: see types.h.
#include "types.h"

#include "handles.h"

namespace driver
{

const SqlTypeInfo &InfoOf(tsql::Type type)
{
    // in the order of tsql::Type
    static const SqlTypeInfo infos[] = {
        {SQL_BIT, SQL_BIT, SQL_C_BIT, "bit", 1, 1, 1, 0, ""},
        {SQL_TINYINT, SQL_TINYINT, SQL_C_UTINYINT, "tinyint", 3, 1, 3, 10, ""},
        {SQL_SMALLINT, SQL_SMALLINT, SQL_C_SSHORT, "smallint", 5, 2, 6, 10, ""},
        {SQL_INTEGER, SQL_INTEGER, SQL_C_SLONG, "int", 10, 4, 11, 10, ""},
        {SQL_BIGINT, SQL_BIGINT, SQL_C_SBIGINT, "bigint", 19, 8, 20, 10, ""},
        {SQL_DECIMAL, SQL_DECIMAL, SQL_C_CHAR, "decimal", 0, 0, 0, 10, ""},
        {SQL_FLOAT, SQL_FLOAT, SQL_C_DOUBLE, "float", 53, 8, 24, 2, ""},
        {SQL_CHAR, SQL_CHAR, SQL_C_CHAR, "char", 0, 0, 0, 0, "'"},
        {SQL_VARCHAR, SQL_VARCHAR, SQL_C_CHAR, "varchar", 0, 0, 0, 0, "'"},
        {SQL_WCHAR, SQL_WCHAR, SQL_C_WCHAR, "nchar", 0, 0, 0, 0, "N'"},
        {SQL_WVARCHAR, SQL_WVARCHAR, SQL_C_WCHAR, "nvarchar", 0, 0, 0, 0, "N'"},
        {SQL_TYPE_TIMESTAMP, SQL_DATETIME, SQL_C_TYPE_TIMESTAMP, "datetime", 23, 16, 23, 0, "'"},
    };
    return infos[static_cast<int>(type)];
}

ColumnSizes::ColumnSizes(const tsql::Column &column, int claimedTextSize)
{
    const SqlTypeInfo &info = InfoOf(column.type);
    const bool isDecimal = column.type == tsql::Type::Decimal;
    const bool isWide = column.type >= tsql::Type::NChar && IsText(column.type);
    size = info.size != 0 ? info.size : column.size;
    if (IsText(column.type) && claimedTextSize >= 0)
        size = claimedTextSize;
    const SQLLEN signAndPoint = isDecimal ? 2 : 0;
    octets = info.octets != 0 ? info.octets : size * (isWide ? 2 : 1) + signAndPoint;
    display = info.display != 0 ? info.display : size + signAndPoint;
    digits = static_cast<SQLSMALLINT>(column.type == tsql::Type::DateTime ? 3 : isDecimal ? column.scale : 0);
}

const CType &FindC(SQLSMALLINT code)
{
    static const CType types[] = {
        {SQL_C_CHAR, CKind::Narrow, 0},
        {SQL_C_WCHAR, CKind::Wide, 0},
        {SQL_C_BIT, CKind::Unsigned, 1},
        {SQL_C_TINYINT, CKind::Signed, 8},
        {SQL_C_STINYINT, CKind::Signed, 8},
        {SQL_C_UTINYINT, CKind::Unsigned, 8},
        {SQL_C_SHORT, CKind::Signed, 16},
        {SQL_C_SSHORT, CKind::Signed, 16},
        {SQL_C_USHORT, CKind::Unsigned, 16},
        {SQL_C_LONG, CKind::Signed, 32},
        {SQL_C_SLONG, CKind::Signed, 32},
        {SQL_C_ULONG, CKind::Unsigned, 32},
        {SQL_C_SBIGINT, CKind::Signed, 64},
        {SQL_C_UBIGINT, CKind::Unsigned, 64},
        {SQL_C_DOUBLE, CKind::Real, 64},
        {SQL_C_TYPE_DATE, CKind::Moment, 8 * sizeof(SQL_DATE_STRUCT)},
        {SQL_C_TYPE_TIMESTAMP, CKind::Moment, 8 * sizeof(SQL_TIMESTAMP_STRUCT)},
    };
    for (const CType &type : types)
        if (type.code == code)
            return type;
    throw DriverError("07006", "Restricted data type attribute violation");
}

} // namespace driver
