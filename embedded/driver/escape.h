// Control characters in the lines of the statement log and the fault list; transcripts of scenarios write them alike.
#pragma once

#include <string>
#include <string_view>

namespace driver
{

// \r, \n, \t, \" and \\ as in C.
std::string Escape(std::string_view text);
std::string Unescape(std::string_view text);

} // namespace driver
