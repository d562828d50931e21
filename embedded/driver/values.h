// Values on their way between the database and the buffers of a client, in both directions.
#pragma once

#include "handles.h"
#include "types.h"

#include <map>

namespace driver
{

struct Value
{
    enum Kind
    {
        Null,
        Integer,
        Number, // and the server's text of it
        Text,
        Moment
    };
    Kind kind = Null;
    std::int64_t integer = 0;
    double number = 0;
    std::string text;
    SQL_TIMESTAMP_STRUCT moment{};

    // Becomes the value of a column of the row that the result stands on; keeps the memory of the text.
    void Load(const tsql::Result &row, int column, tsql::Type type);
};

// A client's buffer, as SQLBindCol and SQLGetData name it.
struct Target
{
    SQLSMALLINT cType = SQL_C_DEFAULT;
    void *buffer = nullptr;   // may be NULL
    SQLLEN capacity = 0;      // octets
    SQLLEN *length = nullptr; // octets of the value, or SQL_NULL_DATA; may be NULL
};

// How far a value has been read in pieces.
struct Pieces
{
    bool finished = false;
    size_t given = 0;    // units handed out so far
    std::u16string wide; // the whole value, where that is asked for
};

// Writes the value, or its next piece, into the target as a C type. Warns of a text that was cut (01004) and of a
// fraction that was lost (01S07). Throws DriverError: 07006 types that do not go together, 22003 out of range, 22018 no
// number or date, 22002 NULL without a place for the length.
void Store(const Value &value, const CType &type, const Target &target, Handle &notes, Pieces &pieces);

// Numbers as they are, dates as "2003-02-11 08:15:30.000" with the given character in the middle.
std::string TextOf(const Value &value, char between = ' ');

} // namespace driver
