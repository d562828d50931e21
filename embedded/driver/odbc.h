// What goes between the driver and a client in ODBC's terms: diagnostic records; texts, numbers and values of columns,
// whose buffers need not be aligned.
#pragma once

#include "tsql/session.h"

#include <string>
#include <string_view>
#include <vector>

#pragma GCC visibility push(default) // what the shared library exports: the entry points, and nothing else
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
#pragma GCC visibility pop

namespace driver
{

using tsql::SqlError; // with the number 0 when the driver itself complains

// A diagnostic record: the error with the prefix that all messages have, in the manner "[vendor][driver][server]".
inline SqlError MakeRecord(int number, std::string_view state, std::string_view text)
{
    return {number, state, std::string("[KVHEADERS][Embedded Driver][SQL Server]").append(text)};
}

// Throws when a client asks for what is not there or out of sequence.
inline void Require(bool holds, const char *state, const char *text)
{
    if (!holds)
        throw SqlError(0, state, text);
}

struct Handle
{
    virtual ~Handle() = default;

    // Adds a record. It makes a successful call SQL_SUCCESS_WITH_INFO, and stands behind the error of one that fails.
    void Warn(std::string_view state, std::string_view text) { records.push_back(MakeRecord(0, state, text)); }

    std::vector<SqlError> records; // of the last call; texts are complete with their prefix
};

// Takes `length` units, or up to the terminator when it is SQL_NTS. NULL gives the empty text.
std::string ToUtf8(const SQLWCHAR *text, SQLLEN length);

// Writes text and terminator into a client's buffer of `capacity` units, which may be NULL, and warns of a text that
// was cut (01004). Returns the units of the whole text.
SQLLEN CopyOut(Handle &notes, std::string_view text, SQLPOINTER out, SQLLEN capacity);

// Writes a number where the client asked for it; `out` may be NULL.
template <class T, class From>
void Give(T *out, From value)
{
    if (out != nullptr)
        *out = static_cast<T>(value);
}

struct ColumnInfo
{
    SQLSMALLINT type; // SQL_SMALLINT ...
    int size;
    int display; // characters to show a value
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
const CType &FindCType(SQLSMALLINT code); // throws SqlError HY003 for one that there is not

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

// Writes the value of a column of the row on which the result stands into the target; of a text what fits of it behind
// the `given` units that were handed out before, to which it adds. True when nothing is left; warns of a text that was
// cut (01004). Throws SqlError: 07006 types that do not go together, 22003 out of range, 22002 NULL without a place for
// the length.
bool Store(const tsql::Result &row, int column, tsql::Type type, const Target &target, Handle &notes, size_t &given);

} // namespace driver
