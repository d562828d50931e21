// From a value of a row to the C type and buffer of the caller.
#pragma once

#include "diagnostics.h"
#include "row_block.h"
#include "types.h"

namespace driver
{

// Where a value goes. Each pointer may be NULL where ODBC allows it.
struct Target
{
    SQLSMALLINT cType = SQL_C_DEFAULT;
    void *buffer = nullptr;
    SQLLEN capacity = 0;         // octets
    SQLLEN *length = nullptr;    // octets of the value
    SQLLEN *indicator = nullptr; // SQL_NULL_DATA; usually the same place as length
};

// How far a value has been read in pieces.
struct Pieces
{
    bool started = false;
    bool finished = false;
    size_t given = 0;   // octets handed out so far
    std::string narrow; // the whole value, in the form that is asked for
    std::u16string wide;
};

// Writes the value, or its next piece when `pieces` is given. Gives SQL_SUCCESS, SQL_SUCCESS_WITH_INFO when a text was
// cut or a number lost its fraction (01004, 01S07 in `notes`), SQL_NO_DATA when all pieces have been read. Throws
// DriverError: 07006 types that do not go together, 22003 out of range, 22018 no number, 22002 NULL without an
// indicator.
SQLRETURN Convert(const Value &value, const Target &target, Diagnostics &notes, Pieces *pieces);

// The value as text, in the form the server's conversions give; timestamps as "2003-02-11 08:15:30.000".
std::string TextOf(const Value &value);

} // namespace driver
