// Windows-1252, the ANSI code page of a system that has none of its own.
#include "platform/code_page.h"

#include "runtime/text.h"

#include <cstdint>

namespace platform
{

namespace
{

// 0x80 to 0x9F; the five codes that are not assigned map to the control character of their number.
constexpr char16_t kUpper[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                                 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char ToByte(char32_t code)
{
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF))
        return static_cast<char>(code);
    for (unsigned i = 0; i < 32; ++i)
        if (kUpper[i] == code)
            return static_cast<char>(0x80 + i);
    return '?';
}

} // namespace

std::string FromAnsi(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes)
    {
        const auto byte = static_cast<unsigned char>(c);
        runtime::AppendCharacter(text, byte >= 0x80 && byte < 0xA0 ? kUpper[byte - 0x80] : byte);
    }
    return text;
}

std::string ToAnsi(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty())
    {
        const runtime::Character character = runtime::FirstCharacter(text);
        bytes += ToByte(character.code);
        text.remove_prefix(character.length);
    }
    return bytes;
}

} // namespace platform
