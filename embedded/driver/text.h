// Texts and numbers at the boundary: UTF-16 of the callers to the driver's UTF-8 and back.
#pragma once

#include "handles.h"
#include "runtime/text.h"

namespace driver
{

using runtime::EqualNoCase;
using runtime::Trim;

// Takes `length` units, or up to the terminator when it is SQL_NTS. NULL gives the empty text. Throws DriverError HY090
// for any other negative length.
std::string ToUtf8(const SQLWCHAR *text, SQLLEN length);

// Writes text and terminator into a client's buffer of `capacity` units, cutting what does not fit; `out` may be NULL.
// Gives the units of the whole text and warns of one that was cut (01004).
SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity);

// Writes a number where the client asked for it; `out` may be NULL.
template <class T, class From>
void Give(T *out, From value)
{
    if (out != nullptr)
        *out = static_cast<T>(value);
}

// A text and its length, counted in units or, both ways, in octets.
template <class Length>
void GiveText(Handle &handle, std::string_view text, SQLPOINTER out, Length capacity, Length *length)
{
    Give(length, CopyOut(handle, text, out, capacity));
}
template <class Length>
void GiveOctets(Handle &handle, std::string_view text, SQLPOINTER out, Length capacity, Length *length)
{
    Give(length, 2 * CopyOut(handle, text, out, capacity / 2));
}

std::vector<std::string> SplitList(std::string_view text, char separator); // trimmed, empty ones left out
std::string Quoted(std::string_view text);                                 // 'it''s'

} // namespace driver
