// How the server looks at texts: comparing without regard to case and trailing blanks, LIKE, searching, upper case.
#include "text.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cwctype>

namespace tsql
{
namespace
{

constexpr std::size_t none = std::string_view::npos;

// The C library's tables of letters, whatever language the process has chosen.
const locale_t letters = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);

std::uint32_t ToLower(std::uint32_t c)
{
    if (c < 128)
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    return c < 0x110000 && letters ? static_cast<std::uint32_t>(towlower_l(c, letters)) : c;
}

std::uint32_t ToUpper(std::uint32_t c)
{
    if (c < 128)
        return c >= 'a' && c <= 'z' ? c - 32 : c;
    return c < 0x110000 && letters ? static_cast<std::uint32_t>(towupper_l(c, letters)) : c;
}

// The plain letters under 0xDF to 0x17F, small.
constexpr char plainLetters[] = "saaaaaaaceeeeiiiidnooooo\xF7ouuuuyty"
                                "aaaaaaccccccccdd"
                                "ddeeeeeeeeeegggg"
                                "gggghhhhiiiiiiii"
                                "iiiijjkkklllllll"
                                "lllnnnnnnnnnoooo"
                                "oooorrrrrrssssss"
                                "ssttttttuuuuuuuu"
                                "uuuuwwyyyzzzzzzs";

// Where a character stands in the collation: marks, digits, letters (those with an accent as the plain one), others.
// `small` is its small form.
constexpr std::uint32_t Weight(std::uint32_t small)
{
    constexpr std::uint32_t digits = 0x100;
    constexpr std::uint32_t letters = 0x200;
    constexpr std::uint32_t others = 0x1000;
    if (small >= '0' && small <= '9')
        return digits + small;
    if (small >= 'a' && small <= 'z')
        return letters + small;
    if (small < 0xC0)
        return small;
    if (small >= 0xDF && small <= 0x17F && small != 0xF7)
        return letters + static_cast<unsigned char>(plainLetters[small - 0xDF]);
    return others + small;
}

constexpr auto asciiWeights = []
{
    std::array<std::uint16_t, 128> table{};
    for (int c = 0; c < 128; ++c)
        table[c] = static_cast<std::uint16_t>(Weight(c >= 'A' && c <= 'Z' ? c + 32 : c));
    return table;
}();

std::string Mapped(std::string_view text, std::uint32_t (*map)(std::uint32_t))
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();)
        Append(out, map(Decode(text, at)));
    return out;
}

// Matches one character against the class behind '[' at `at`, which goes behind the ']'. A class that does not end
// matches nothing.
bool MatchClass(std::string_view character, std::string_view pattern, std::size_t &at, std::uint32_t escape)
{
    const bool negated = pattern.substr(at, 1) == "^";
    bool found = false;
    const auto next = [&]
    {
        const std::size_t start = at;
        Decode(pattern, at);
        return pattern.substr(start, at - start);
    };
    at += negated ? 1 : 0;
    for (bool first = true; at < pattern.size(); first = false)
    {
        std::string_view low = next();
        std::size_t start = 0;
        if (low == "]" && !first)
            return found != negated;
        if (escape != 0 && Decode(low, start) == escape && at < pattern.size())
            low = next();
        std::string_view high = low;
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']')
        {
            ++at;
            high = next();
        }
        found = found || (Compare(low, character) <= 0 && Compare(character, high) <= 0);
    }
    return false;
}

} // namespace

std::uint32_t Decode(std::string_view text, std::size_t &at)
{
    const auto byte = [&](std::size_t place) { return static_cast<unsigned char>(text[place]); };
    const std::uint32_t first = byte(at++);
    if (first < 0x80)
        return first;
    const int more = first >= 0xC2 && first < 0xE0   ? 1
                     : first >= 0xE0 && first < 0xF0 ? 2
                     : first >= 0xF0 && first < 0xF5 ? 3
                                                     : 0;
    if (more == 0 || at + more > text.size())
        return 0x110000 + first;
    std::uint32_t c = first & (0x3F >> more);
    for (int i = 0; i < more; ++i)
    {
        if ((byte(at + i) & 0xC0) != 0x80)
            return 0x110000 + first;
        c = c << 6 | (byte(at + i) & 0x3F);
    }
    if (c > 0x10FFFF || (more == 2 && c < 0x800) || (more == 3 && c < 0x10000))
        return 0x110000 + first;
    at += more;
    return c;
}

void Append(std::string &out, std::uint32_t c)
{
    const int more = c < 0x80 || c >= 0x110000 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    if (more == 0)
        out += static_cast<char>(c < 0x80 ? c : c - 0x110000);
    else
        out += static_cast<char>(0xFF << (7 - more) | c >> 6 * more);
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6)
        out += static_cast<char>(0x80 | (c >> shift & 0x3F));
}

std::size_t Length(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count)
        Decode(text, at);
    return count;
}

std::size_t Prefix(std::string_view text, std::size_t count)
{
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count)
        Decode(text, at);
    return at;
}

std::string Upper(std::string_view text)
{
    return Mapped(text, ToUpper);
}

std::string Lower(std::string_view text)
{
    return Mapped(text, ToLower);
}

std::string_view TrimRight(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view Trim(std::string_view text)
{
    text = TrimRight(text);
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

namespace
{

inline std::uint32_t NextOrBlank(std::string_view text, std::size_t &at)
{
    if (at >= text.size())
        return ' ';
    return static_cast<unsigned char>(text[at]) < 128 ? static_cast<unsigned char>(text[at++]) : Decode(text, at);
}

} // namespace

int Compare(std::string_view left, std::string_view right)
{
    int accents = 0;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < left.size() || j < right.size())
    {
        // The shorter text is taken as filled up with blanks.
        const std::uint32_t a = NextOrBlank(left, i);
        const std::uint32_t b = NextOrBlank(right, j);
        if (a == b)
            continue;
        if ((a | b) < 128)
        {
            if (asciiWeights[a] != asciiWeights[b])
                return asciiWeights[a] < asciiWeights[b] ? -1 : 1;
            continue;
        }
        const std::uint32_t smallA = ToLower(a);
        const std::uint32_t smallB = ToLower(b);
        if (Weight(smallA) != Weight(smallB))
            return Weight(smallA) < Weight(smallB) ? -1 : 1;
        if (accents == 0 && smallA != smallB)
            accents = smallA < smallB ? -1 : 1;
    }
    return accents;
}

bool Like(std::string_view text, std::string_view pattern, std::uint32_t escape, bool ignoreBlanks)
{
    std::size_t textAt = 0;
    std::size_t patternAt = 0;
    std::size_t starPattern = none; // behind the last '%' met, and where in the text its match ends for now
    std::size_t starText = 0;
    for (;;)
    {
        bool matched = false;
        std::size_t nextText = textAt;
        std::size_t nextPattern = patternAt;
        if (patternAt < pattern.size())
        {
            std::uint32_t p = Decode(pattern, nextPattern);
            const bool escaped = escape != 0 && p == escape && nextPattern < pattern.size();
            if (escaped)
                p = Decode(pattern, nextPattern);
            if (!escaped && p == '%')
            {
                starPattern = patternAt = nextPattern;
                starText = textAt;
                continue;
            }
            if (textAt < text.size())
            {
                const std::uint32_t c = Decode(text, nextText);
                if (!escaped && p == '[')
                    matched = MatchClass(text.substr(textAt, nextText - textAt), pattern, nextPattern, escape);
                else
                    matched = (!escaped && p == '_') || ToLower(c) == ToLower(p);
            }
        }
        else if (textAt == text.size() || starPattern == pattern.size() ||
                 (ignoreBlanks && text.find_first_not_of(' ', textAt) == none))
            return true;
        if (matched)
        {
            textAt = nextText;
            patternAt = nextPattern;
        }
        else if (starPattern != none && starText < text.size())
        {
            Decode(text, starText);
            textAt = starText;
            patternAt = starPattern;
        }
        else
            return false;
    }
}

Place Find(std::string_view text, std::string_view part, std::size_t start)
{
    for (std::size_t at = start; at < text.size();)
    {
        std::size_t i = at;
        std::size_t j = 0;
        while (j < part.size() && i < text.size())
        {
            std::size_t nextText = i;
            std::size_t nextPart = j;
            if (ToLower(Decode(text, nextText)) != ToLower(Decode(part, nextPart)))
                break;
            i = nextText;
            j = nextPart;
        }
        if (j == part.size())
            return {at, i - at};
        Decode(text, at);
    }
    return {none, 0};
}

} // namespace tsql
