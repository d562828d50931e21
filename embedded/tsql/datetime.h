// Moments: in the file and in SQLite's hands they are texts of one form, "2003-02-11 08:15:30.500".
#pragma once

#include <string>
#include <string_view>

namespace tsql
{

struct DateTime
{
    int year, month, day, hour, minute, second;
    int nanosecond;
};

// Reads what means the same whatever the server's language: "20030211" or "2003-02-11", with a time behind a blank or
// T, "08:15", "08:15:30" or "08:15:30.50"; the server's clock ticks in 1/300 s, so that a fraction of whole hundredths
// alone is kept as it stands. Raises 242 when there is no such day, and refuses any other text.
std::string ReadMoment(std::string_view text);

// The moment of the clock, local time, to 1/100 s.
std::string CurrentMoment();

// The parts of a text of that form.
DateTime MomentOf(std::string_view text);

} // namespace tsql
