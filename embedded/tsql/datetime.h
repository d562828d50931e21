// Dates and times as the server keeps them: a count of 1/300 s from the start of 1900.
#pragma once

#include "session.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

constexpr std::int64_t ticksADay = std::int64_t{300} * 86400;

// The first and last moment a datetime can hold: 1753-01-01 and 9999-12-31 23:59:59.997.
extern const std::int64_t firstTick;
extern const std::int64_t lastTick;

DateTime FromTicks(std::int64_t ticks);
std::int64_t ToTicks(const DateTime &moment);

// The moment of the clock, local time.
std::int64_t CurrentTicks();

// Reads a text; raises 241 when it is no date, 242 when there is no such day.
std::int64_t ParseTicks(std::string_view text);

// Writes a moment in a style of CONVERT; raises 281 for a style that is not known.
std::string FormatTicks(std::int64_t ticks, int style);

// DATEPART, DATEADD and DATEDIFF; `part` is a name such as yy, month or dw and has been checked with IsDatePart.
bool IsDatePart(std::string_view part);
std::int64_t DatePart(std::string_view part, std::int64_t ticks);
std::int64_t DateAdd(std::string_view part, std::int64_t count, std::int64_t ticks);
std::int64_t DateDiff(std::string_view part, std::int64_t from, std::int64_t to);

} // namespace tsql
