// Dates and times as they lie in the file: a count of 1/300 s from the start of 1900.
#pragma once

#include "session.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

DateTime FromTicks(std::int64_t ticks);

// The moment of the clock, local time.
std::int64_t CurrentTicks();

// Reads what means the same whatever the server's language: "20030211", "2003-02-11", with a time behind a blank or T,
// "08:15", "08:15:30" or "08:15:30.500". Raises 242 when there is no such day or time.
std::int64_t ParseTicks(std::string_view text);

// Writes a moment in style 120, 121 or 126 of CONVERT; no other is supported.
std::string FormatTicks(std::int64_t ticks, int style);

} // namespace tsql
