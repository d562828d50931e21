// Moments: in the file and in SQLite's hands they are texts of one form, "2003-02-11 08:15:30.500", in steps of 1/300
// s.
#pragma once

#include "session.h"

#include <string>
#include <string_view>

namespace tsql
{

// Reads what means the same whatever the server's language: "20030211", "2003-02-11", with a time behind a blank or T,
// "08:15", "08:15:30" or "08:15:30.500". Raises 242 when there is no such day or time.
std::string ReadMoment(std::string_view text);

// The moment of the clock, local time.
std::string CurrentMoment();

// The parts of a text of that form.
DateTime MomentOf(std::string_view text);

} // namespace tsql
