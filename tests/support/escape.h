// Control characters as they stand in transcripts and approved files.
#pragma once

#include <string>
#include <string_view>

namespace support
{

// \r, \n, \t, \" and \\ as in C.
std::string Escape(std::string_view text);
std::string Unescape(std::string_view text);

// Bytes of a document, readable: a line of text a line; control characters, "\" and bytes beyond ASCII as \r, \t, \\,
// \xNN.
std::string EscapeDocument(std::string_view bytes);

} // namespace support
