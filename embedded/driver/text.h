// Text at the boundary: UTF-16 of the callers to the driver's UTF-8 and back, and the escapes of the log and fault
// list.
#pragma once

#include "odbc.h"

#include <string>
#include <string_view>
#include <vector>

namespace driver
{

// Takes `length` units, or up to the terminator when it is SQL_NTS. NULL gives the empty text; lone surrogates become
// U+FFFD. Throws DriverError HY090 for any other negative length.
std::string ToUtf8(const SQLWCHAR *text, SQLLEN length);

// Malformed sequences become U+FFFD. Replaces the contents of `wide`, keeping its memory.
void ToUtf16(std::string_view text, std::u16string &wide);
std::u16string ToUtf16(std::string_view text);

// Writes text and terminator into a buffer of `capacity` units, cutting what does not fit. `buffer` may be NULL.
// Returns true when it was cut.
bool CopyOut(std::u16string_view wide, SQLWCHAR *buffer, SQLLEN capacity);

bool EqualsIgnoringCase(std::string_view a, std::string_view b);
std::string_view TrimBlanks(std::string_view text);
std::vector<std::string> SplitList(std::string_view text, char separator); // trimmed, empty ones left out

// \r, \n, \t, \" and \\ as C writes them; Unescape takes any other escaped character as itself.
std::string Escape(std::string_view text);
std::string Unescape(std::string_view text);

} // namespace driver
