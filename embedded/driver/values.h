// What columns say of themselves in ODBC's terms, and their values on the way into the buffers of a client.
#pragma once

#include "handles.h"
#include "tsql/session.h"

namespace driver
{

// A column as SQLDescribeCol and SQLColAttribute give it. `claimedTextSize` above -1 is what texts claim instead of the
// truth.
struct ColumnInfo
{
    ColumnInfo(const tsql::Column &column, int claimedTextSize);

    SQLSMALLINT type;   // SQL_SMALLINT ...
    SQLSMALLINT digits; // behind the point; of a second for dates
    SQLLEN size;
    SQLLEN display; // characters to show a value
    bool isUnsigned;
};

// A client's buffer, as SQLBindCol and SQLGetData name it.
struct Target
{
    SQLSMALLINT cType = 0;
    void *buffer = nullptr;   // may be NULL
    SQLLEN capacity = 0;      // octets
    SQLLEN *length = nullptr; // octets of the value, or SQL_NULL_DATA; may be NULL

    // Octets from one row's value to the next one's in a block, which is bound by column. Throws DriverError HY003.
    size_t Stride() const;
};

// How far a value has been read.
struct Progress
{
    bool finished = false;
    size_t given = 0;    // units of a text that were handed out
    std::u16string wide; // the whole text, where that is asked for
};

// Writes the value of a column of the row on which the result stands into the target; of a text what is left of it and
// fits. Warns of a text that was cut (01004). Throws DriverError: HY003 no such C type, 07006 types that do not go
// together, 22003 out of range, 22002 NULL without a place for the length.
void Store(const tsql::Result &row, int column, tsql::Type type, const Target &target, Handle &notes,
           Progress &progress);
// The same of a text that is there already, as SQL_C_WCHAR.
void StoreText(const std::u16string &text, const Target &target, Handle &notes, Progress &progress);

} // namespace driver
