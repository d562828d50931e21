// How the server looks at texts, all of which are UTF-8 here.
#pragma once

#include <string>
#include <string_view>

namespace tsql
{

// The collation, without regard to case and trailing blanks: below, equal or above 0.
int Compare(std::string_view left, std::string_view right);

// `text` LIKE `pattern` with %, _, [a-f], [^a-f]. Trailing blanks of `text` are passed over.
bool Like(std::string_view text, std::string_view pattern);

// What a literal without N keeps of a text: Windows-1252, with a question mark for every unit outside of it.
std::string InCodePage(std::string_view text);

} // namespace tsql
