// The order of texts: that of the database's default collation, for lists that are sorted here.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// Appends a key to `to`; keys of two texts compare, byte by byte, as the texts do. Punctuation comes before digits and
// these before letters. Case and trailing blanks make no difference. A Latin letter with a mark sorts with its base
// letter, and after it only where the texts are otherwise equal. Letters of other alphabets follow in the order of
// their code points.
void AppendSortKey(std::string &to, std::string_view text);

} // namespace runtime
