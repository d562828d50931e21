// How the server looks at texts: comparing without regard to case and trailing blanks, LIKE, searching, the code page.
// Everything here takes UTF-8.
#pragma once

#include "runtime/text.h"

#include <string>
#include <string_view>

namespace tsql
{

// The collation: below, equal or above 0.
int Compare(std::string_view left, std::string_view right);

// `text` LIKE `pattern` with %, _, [a-f], [^a-f]. Trailing blanks of `text` are passed over when `ignoreBlanks` is set.
bool Like(std::string_view text, std::string_view pattern, bool ignoreBlanks);

// The byte place of `part`, which is not empty, in `text` from byte `start` on without regard to case, and the byte
// length it has there; npos when it is not there.
struct Place
{
    std::size_t at;
    std::size_t length;
};
Place Find(std::string_view text, std::string_view part, std::size_t start);

std::string Lower(std::string_view text);

// What a literal without N keeps of a text: Windows-1252, with a question mark for every unit outside of it.
std::string InCodePage(std::string_view text);

} // namespace tsql
