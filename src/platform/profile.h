// One value of an INI file of sections and keys.
#pragma once

#include <string>

namespace platform
{

// The value of `key` in `section` of the file, without the blanks and the pair of quotes around it; empty when the
// file, the section or the key is missing. At most 127 characters of the code page: the buffer has 128, one for the
// terminating zero. Section and key are looked up without regard to case; the file is in the ANSI code page, the result
// in UTF-8.
std::string ReadProfileString(const std::string &section, const std::string &key, const std::string &file);

} // namespace platform
