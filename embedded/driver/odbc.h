// What goes between the driver and a client in ODBC's terms: diagnostic records; texts, numbers and values of columns,
// whose buffers need not be aligned.
#pragma once

#include "tsql/session.h"

#include <exception>
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

struct DiagnosticRecord
{
    std::string state; // SQLSTATE, five characters
    int native = 0;    // the server's error number, 0 when the driver itself complains
    std::string text;  // UTF-8, complete with its prefix
};
using Records = std::vector<DiagnosticRecord>;

// A record whose text has the prefix that all messages have, in the manner "[vendor][driver][server]".
inline DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text)
{
    return {std::string(state), native, std::string("[KVHEADERS][Embedded Driver][SQL Server]").append(text)};
}

// A failure with its records, the telling one first.
struct DriverError : std::exception
{
    DriverError(std::string_view state, std::string_view text) : records{MakeRecord(state, 0, text)} {}
    explicit DriverError(Records all) : records(std::move(all)) {}

    Records records;
};

struct Handle
{
    virtual ~Handle() = default;

    // A record that makes a successful call SQL_SUCCESS_WITH_INFO.
    void Warn(std::string_view state, std::string_view text) { records.push_back(MakeRecord(state, 0, text)); }

    Records records; // of the last call
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
