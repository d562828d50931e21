// The rules for texts: UTF-8 inside, blanks-only trimming, upper case beyond ASCII, counting in whole characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace runtime
{

// Without the blanks (U+0020 only; tabs and line breaks stay) at both ends, or at the end alone.
std::string_view Trim(std::string_view text);
std::string_view TrimRight(std::string_view text);

// Upper case, letter by letter, for the Latin, Greek, Cyrillic and Armenian alphabets; the length in characters never
// changes. Bytes that are not UTF-8 are kept as they are.
std::string UpperCase(std::string_view text);

// True when both are the same text in upper case.
bool EqualNoCase(std::string_view a, std::string_view b);

// The first `count` characters (code points); the whole text when it has fewer.
std::string_view Left(std::string_view text, std::size_t count);

// The text without its first `count` characters; empty when it has fewer.
std::string_view Without(std::string_view text, std::size_t count);

// Number of characters (code points).
std::size_t Length(std::string_view text);

// UTF-16 both ways. What is not valid becomes U+FFFD.
std::u16string ToUtf16(std::string_view text);
std::string FromUtf16(std::u16string_view text);
// The same, appended to `to`, for callers that keep one buffer.
void AppendFromUtf16(std::string &to, std::u16string_view text);

// One character of a text that may be broken: its code point and its length in bytes (1 and U+FFFD when broken).
struct Character
{
    char32_t code;
    std::size_t length;
};
// The character at the start of a text that is not empty.
Character FirstCharacter(std::string_view text);
void AppendCharacter(std::string &to, char32_t code);

// A single character in upper case.
char32_t UpperCase(char32_t code);

} // namespace runtime
