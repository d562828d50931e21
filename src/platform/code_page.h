// The system's ANSI code page, Windows-1252 where the system has none.
#pragma once

#include <string>
#include <string_view>

namespace platform
{

// Bytes of the code page as UTF-8.
std::string FromAnsi(std::string_view bytes);

// UTF-8 as bytes of the code page; what it does not have becomes "?".
std::string ToAnsi(std::string_view text);

} // namespace platform
