// How the server looks at texts: comparing without regard to case and trailing blanks, LIKE, searching, upper case.
// Everything here takes UTF-8; bytes that are no UTF-8 stand for themselves.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

// The code point at `at`, which goes behind it. A byte that begins no code point comes back as 0x110000 + byte.
std::uint32_t Decode(std::string_view text, std::size_t &at);

// The number of characters; the byte place behind the first `count` characters.
std::size_t Length(std::string_view text);
std::size_t Prefix(std::string_view text, std::size_t count);

void Append(std::string &out, std::uint32_t c); // encodes what Decode gave

std::string Upper(std::string_view text);
std::string Lower(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);

// The collation: below, equal or above 0. Marks come before digits and these before letters; a letter with an accent
// stands behind the plain one and is told from it only when the rest is equal.
int Compare(std::string_view left, std::string_view right);

// `text` LIKE `pattern` with %, _, [a-f], [^a-f]. `escape` is a code point, 0 for none. Trailing blanks of `text` are
// passed over when `ignoreBlanks` is set.
bool Like(std::string_view text, std::string_view pattern, std::uint32_t escape, bool ignoreBlanks);

// The byte place of `part` in `text` from byte `start` on, and the byte length it has there; npos when it is not there.
struct Place
{
    std::size_t at;
    std::size_t length;
};
Place Find(std::string_view text, std::string_view part, std::size_t start);

} // namespace tsql
