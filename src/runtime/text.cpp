// Texts: UTF-8 decoding and encoding, trimming, upper case.
#include "runtime/text.h"

#include <algorithm>

namespace runtime
{

namespace
{

constexpr char32_t kReplacement = 0xFFFD;

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Letters in pairs: the upper case at an even (or odd) code, its lower case at the next one.
struct Pairs
{
    char32_t first;
    char32_t last;
};
constexpr Pairs kPairs[] = {{0x100, 0x12F}, {0x132, 0x137}, {0x139, 0x148}, {0x14A, 0x177},   {0x179, 0x17E},
                            {0x1CD, 0x1DC}, {0x1DE, 0x1EF}, {0x1F8, 0x21F}, {0x222, 0x233},   {0x460, 0x481},
                            {0x48A, 0x4BF}, {0x4C1, 0x4CE}, {0x4D0, 0x52F}, {0x1E00, 0x1E95}, {0x1EA0, 0x1EFF}};

// Letters whose upper case is a fixed distance before them.
struct Shift
{
    char32_t first;
    char32_t last;
    char32_t distance;
};
constexpr Shift kShifts[] = {{'a', 'z', 32},     {0xE0, 0xF6, 32},   {0xF8, 0xFE, 32},
                             {0x3AD, 0x3AF, 37}, {0x3B1, 0x3C1, 32}, {0x3C3, 0x3CB, 32},
                             {0x430, 0x44F, 32}, {0x450, 0x45F, 80}, {0x561, 0x586, 48}};

} // namespace

std::string_view TrimRight(std::string_view text)
{
    const auto last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

std::string_view Trim(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : TrimRight(text.substr(first));
}

char32_t UpperCase(char32_t code)
{
    if (code < 'a')
        return code;
    for (const Shift &shift : kShifts)
        if (code >= shift.first && code <= shift.last)
            return code - shift.distance;
    for (const Pairs &pairs : kPairs)
        if (code >= pairs.first && code <= pairs.last)
            return (code - pairs.first) % 2 == 1 ? code - 1 : code;
    switch (code)
    {
    case 0xFF:
        return 0x178;
    case 0x3AC:
        return 0x386;
    case 0x3C2:
        return 0x3A3;
    case 0x3CC:
        return 0x38C;
    case 0x3CD:
        return 0x38E;
    case 0x3CE:
        return 0x38F;
    case 0x4CF:
        return 0x4C0;
    default:
        return code;
    }
}

Character FirstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 && lead < 0xF5 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead >= 0xF5 || text.size() < length)
        return {kReplacement, 1};
    char32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
    {
        if (!IsContinuation(text[i]))
            return {kReplacement, 1};
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < kSmallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return {kReplacement, 1};
    return {code, length};
}

void AppendCharacter(std::string &to, char32_t code)
{
    if (code < 0x80)
        to += static_cast<char>(code);
    else if (code < 0x800)
        to.append({static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))});
    else if (code < 0x10000)
        to.append({static_cast<char>(0xE0 | (code >> 12)), static_cast<char>(0x80 | ((code >> 6) & 0x3F)),
                   static_cast<char>(0x80 | (code & 0x3F))});
    else
        to.append({static_cast<char>(0xF0 | (code >> 18)), static_cast<char>(0x80 | ((code >> 12) & 0x3F)),
                   static_cast<char>(0x80 | ((code >> 6) & 0x3F)), static_cast<char>(0x80 | (code & 0x3F))});
}

std::string UpperCase(std::string_view text)
{
    // Nothing below 'a' changes: keys are numbers nearly always.
    if (std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 'a'; }))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
    {
        const Character character = FirstCharacter(text);
        const char32_t upper = UpperCase(character.code);
        if (upper == character.code)
            result.append(text.substr(0, character.length));
        else
            AppendCharacter(result, upper);
        text.remove_prefix(character.length);
    }
    return result;
}

bool EqualNoCase(std::string_view a, std::string_view b)
{
    while (!a.empty() && !b.empty())
    {
        const Character left = FirstCharacter(a);
        const Character right = FirstCharacter(b);
        if (left.code == kReplacement && right.code == kReplacement)
        {
            // Broken bytes are equal only to themselves.
            if (a.substr(0, left.length) != b.substr(0, right.length))
                return false;
        }
        else if (UpperCase(left.code) != UpperCase(right.code))
            return false;
        a.remove_prefix(left.length);
        b.remove_prefix(right.length);
    }
    return a.empty() && b.empty();
}

std::string_view Left(std::string_view text, std::size_t count)
{
    return text.substr(0, text.size() - Without(text, count).size());
}

std::string_view Without(std::string_view text, std::size_t count)
{
    while (count-- > 0 && !text.empty())
        text.remove_prefix(FirstCharacter(text).length);
    return text;
}

std::size_t Length(std::string_view text)
{
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        text.remove_prefix(FirstCharacter(text).length);
    return count;
}

std::u16string ToUtf16(std::string_view text)
{
    const auto ascii =
        std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    std::u16string result(text.begin(), ascii);
    if (ascii == text.end())
        return result;
    result.reserve(text.size());
    text.remove_prefix(result.size());
    while (!text.empty())
    {
        const Character character = FirstCharacter(text);
        if (character.code >= 0x10000)
        {
            result += static_cast<char16_t>(0xD800 + ((character.code - 0x10000) >> 10));
            result += static_cast<char16_t>(0xDC00 + ((character.code - 0x10000) & 0x3FF));
        }
        else
            result += static_cast<char16_t>(character.code);
        text.remove_prefix(character.length);
    }
    return result;
}

void AppendFromUtf16(std::string &to, std::u16string_view text)
{
    // Most texts are ASCII, whole or at their beginning.
    const auto ascii = std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; });
    const auto count = static_cast<std::size_t>(ascii - text.begin());
    const std::size_t before = to.size();
    to.resize(before + count);
    std::transform(text.begin(), ascii, to.begin() + static_cast<std::ptrdiff_t>(before),
                   [](char16_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(count);
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const char32_t unit = text[i];
        if (unit < 0x80)
            to += static_cast<char>(unit);
        else if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                 text[i + 1] <= 0xDFFF)
            AppendCharacter(to, 0x10000 + ((unit - 0xD800) << 10) + (text[++i] - 0xDC00));
        else
            AppendCharacter(to, unit >= 0xD800 && unit <= 0xDFFF ? kReplacement : unit);
    }
}

std::string FromUtf16(std::u16string_view text)
{
    std::string result;
    result.reserve(text.size());
    AppendFromUtf16(result, text);
    return result;
}

} // namespace runtime
