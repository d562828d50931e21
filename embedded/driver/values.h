// What columns say of themselves in ODBC's terms, and their values on the way into the buffers of a client.
#pragma once

#include "handles.h"
#include "tsql/session.h"

namespace driver
{

struct ColumnInfo
{
    SQLSMALLINT type; // SQL_SMALLINT ...
    int size;
    int display;        // characters to show a value
    SQLSMALLINT digits; // of a second
    bool isUnsigned;
};
ColumnInfo InfoOf(const tsql::Column &column);

// How a value lies in a client's buffer. Integers of a C type have a range; the other types have none.
struct CType
{
    SQLSMALLINT code;
    size_t octets; // 0 for texts
    std::int64_t least = 0;
    std::int64_t most = 0;
};
const CType &FindCType(SQLSMALLINT code); // throws DriverError HY003 for one that there is not

// A client's buffer, as SQLBindCol and SQLGetData name it.
struct Target
{
    const CType *type = nullptr; // null: not bound
    char *buffer = nullptr;      // may be NULL
    SQLLEN capacity = 0;         // octets
    SQLLEN *length = nullptr;    // octets of the value, or SQL_NULL_DATA; may be NULL

    // The place of a row of a block, which is bound by column.
    Target At(size_t row) const
    {
        const size_t stride = type->octets != 0 ? type->octets : static_cast<size_t>(capacity);
        return {type, buffer != nullptr ? buffer + row * stride : nullptr, capacity,
                length != nullptr ? length + row : nullptr};
    }
};

// How far a value has been read.
struct Progress
{
    bool finished = false;
    size_t given = 0; // units of a text that were handed out
};

// Writes the value of a column of the row on which the result stands into the target; of a text what is left of it and
// fits. Warns of a text that was cut (01004). Throws DriverError: 07006 types that do not go together, 22003 out of
// range, 22002 NULL without a place for the length.
void Store(const tsql::Result &row, int column, tsql::Type type, const Target &target, Handle &notes,
           Progress &progress);

} // namespace driver
