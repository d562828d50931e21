// What the server's types are in ODBC's terms: codes, sizes, names; and which C type a column is read as by default.
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
    int octets;           // SQL_DESC_OCTET_LENGTH of a value, 0 where it depends on the size
    int display;          // characters to show a value, 0 where it depends on the size
    const char *prefix;   // of literals
};

const SqlTypeInfo &InfoOf(tsql::Type type);

bool IsText(tsql::Type type);
bool IsNumeric(tsql::Type type);

// Column size as SQLDescribeCol gives it. `claimedTextSize` above -1 is what texts claim instead of the truth.
SQLULEN ColumnSize(const tsql::Column &column, int claimedTextSize);
SQLSMALLINT DecimalDigits(const tsql::Column &column);

// Octets of a C type of fixed length, 0 for texts and types that are not supported.
SQLLEN SizeOfC(SQLSMALLINT cType);

} // namespace driver
