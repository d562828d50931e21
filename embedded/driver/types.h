// What types are in ODBC's terms: the server's, and those of C programs.
#pragma once

#include "odbc.h"
#include "tsql/session.h"

namespace driver
{

struct SqlTypeInfo
{
    SQLSMALLINT code;     // SQL_SMALLINT ...
    SQLSMALLINT verbose;  // SQL_DATETIME for timestamps, else the code
    SQLSMALLINT defaultC; // what SQL_C_DEFAULT means
    const char *name;     // the server's name
    int size;             // column size where the type has one of its own, else 0
    int octets;           // of a value, 0 where it depends on the size
    int display;          // characters to show a value, 0 where it depends on the size
    int radix;            // of numbers: 2 or 10, else 0
    const char *prefix;   // of literals, empty for numbers
};
const SqlTypeInfo &InfoOf(tsql::Type type);

inline bool IsInteger(tsql::Type type)
{
    return type <= tsql::Type::BigInt;
}
inline bool IsText(tsql::Type type)
{
    return type >= tsql::Type::Char && type <= tsql::Type::NVarChar;
}
inline bool IsNumeric(tsql::Type type)
{
    return type >= tsql::Type::TinyInt && type <= tsql::Type::Float;
}

// A column's sizes as SQLDescribeCol and SQLColAttribute give them. `claimedTextSize` above -1 is what texts claim
// instead of the truth.
struct ColumnSizes
{
    ColumnSizes(const tsql::Column &column, int claimedTextSize);

    SQLLEN size;
    SQLLEN octets;
    SQLLEN display;
    SQLSMALLINT digits; // behind the point; of a second for dates
};

// How a value lies in a client's buffer.
enum class CKind
{
    Narrow, // UTF-8
    Wide,   // UTF-16
    Signed,
    Unsigned,
    Real,
    Moment // a timestamp, or its front: a date
};
struct CType
{
    SQLSMALLINT code;
    CKind kind;
    int bits; // 0 for texts, 1 for a bit, which takes an octet

    size_t Octets() const { return static_cast<size_t>((bits + 7) / 8); }
};
// Throws DriverError 07006 for a type that is not supported.
const CType &FindC(SQLSMALLINT code);

} // namespace driver
