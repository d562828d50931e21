// The lines of HEADINGS.TXT as a transcript prints them.
#pragma once

#include <string>
#include <string_view>

namespace scenario
{

// From the file's bytes in the ANSI code page: control characters escaped, the date and time of the first line as
// <now>, each line ended by a line break.
std::string ReportLines(std::string_view bytes);

} // namespace scenario
