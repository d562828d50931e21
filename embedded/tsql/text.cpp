// How the server looks at texts: comparing without regard to case and trailing blanks, LIKE, searching, upper case.
#include "text.h"

#include <algorithm>
#include <array>

namespace tsql
{
namespace
{

constexpr std::size_t none = std::string_view::npos;

// Capital letters beyond ASCII and their distance to the small ones; distance 1 stands for pairs (capital, small).
struct CaseRange
{
    std::uint32_t first, last, distance;
};
constexpr CaseRange caseRanges[] = {
    {0xC0, 0xD6, 32},    {0xD8, 0xDE, 32},    {0x100, 0x12F, 1},  {0x132, 0x137, 1},  {0x139, 0x148, 1},
    {0x14A, 0x177, 1},   {0x179, 0x17E, 1},   {0x388, 0x38A, 37}, {0x391, 0x3A1, 32}, {0x3A3, 0x3AB, 32},
    {0x400, 0x40F, 80},  {0x410, 0x42F, 32},  {0x460, 0x481, 1},  {0x48A, 0x4BF, 1},  {0x4D0, 0x52F, 1},
    {0x1E00, 0x1E95, 1}, {0x1EA0, 0x1EFF, 1},
};

std::uint32_t ToLower(std::uint32_t c)
{
    if (c < 128)
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    if (c == 0x178)
        return 0xFF;
    for (const CaseRange &range : caseRanges)
        if (c >= range.first && c <= range.last)
            return range.distance > 1 ? c + range.distance : c + ((c - range.first) % 2 == 0 ? 1 : 0);
    return c;
}

std::uint32_t ToUpper(std::uint32_t c)
{
    if (c < 128)
        return c >= 'a' && c <= 'z' ? c - 32 : c;
    if (c == 0xFF)
        return 0x178;
    for (const CaseRange &range : caseRanges)
    {
        if (range.distance > 1 && c >= range.first + range.distance && c <= range.last + range.distance)
            return c - range.distance;
        if (range.distance == 1 && c >= range.first && c <= range.last)
            return c - ((c - range.first) % 2 == 1 ? 1 : 0);
    }
    return c;
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

constexpr std::uint32_t digitWeight = 0x100;
constexpr std::uint32_t letterWeight = 0x200;
constexpr std::uint32_t otherWeight = 0x1000;

constexpr auto asciiWeights = []
{
    std::array<std::uint16_t, 128> table{};
    for (int c = 0; c < 128; ++c)
    {
        table[c] = c >= '0' && c <= '9'   ? digitWeight + c
                   : c >= 'a' && c <= 'z' ? letterWeight + c
                   : c >= 'A' && c <= 'Z' ? letterWeight + c + 32
                                          : c;
    }
    return table;
}();

// Where a character stands in the collation; `small` is its small form.
std::uint32_t Weight(std::uint32_t c, std::uint32_t small)
{
    if (c < 128)
        return asciiWeights[c];
    if (small < 0xC0)
        return small;
    if (small >= 0xDF && small <= 0x17F && small != 0xF7)
        return letterWeight + static_cast<unsigned char>(plainLetters[small - 0xDF]);
    return otherWeight + small;
}

// Below, equal or above 0 for two characters alone.
int CompareCharacters(std::uint32_t left, std::uint32_t right)
{
    const std::uint32_t smallLeft = ToLower(left);
    const std::uint32_t smallRight = ToLower(right);
    const std::uint32_t leftWeight = Weight(left, smallLeft);
    const std::uint32_t rightWeight = Weight(right, smallRight);
    if (leftWeight != rightWeight)
        return leftWeight < rightWeight ? -1 : 1;
    return smallLeft == smallRight ? 0 : smallLeft < smallRight ? -1 : 1;
}

void Append(std::string &out, std::uint32_t c)
{
    if (c >= 0x110000)
        out += static_cast<char>(c - 0x110000);
    else if (c < 0x80)
        out += static_cast<char>(c);
    else if (c < 0x800)
    {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    else
    {
        if (c < 0x10000)
            out += static_cast<char>(0xE0 | c >> 12);
        else
        {
            out += static_cast<char>(0xF0 | c >> 18);
            out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
        }
        out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

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
bool MatchClass(std::uint32_t c, std::string_view pattern, std::size_t &at, std::uint32_t escape)
{
    bool negated = false;
    bool found = false;
    if (at < pattern.size() && pattern[at] == '^')
    {
        negated = true;
        ++at;
    }
    for (bool first = true; at < pattern.size(); first = false)
    {
        std::uint32_t low = Decode(pattern, at);
        if (low == ']' && !first)
            return found != negated;
        if (low == escape && escape != 0 && at < pattern.size())
            low = Decode(pattern, at);
        std::uint32_t high = low;
        if (at + 1 < pattern.size() && pattern[at] == '-' && pattern[at + 1] != ']')
        {
            ++at;
            high = Decode(pattern, at);
        }
        found = found || (CompareCharacters(low, c) <= 0 && CompareCharacters(c, high) <= 0);
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

int Compare(std::string_view left, std::string_view right)
{
    int accents = 0;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < left.size() || j < right.size())
    {
        // The shorter text is taken as filled up with blanks.
        const std::uint32_t a = i < left.size() ? Decode(left, i) : ' ';
        const std::uint32_t b = j < right.size() ? Decode(right, j) : ' ';
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
        const std::uint32_t weightA = Weight(a, smallA);
        const std::uint32_t weightB = Weight(b, smallB);
        if (weightA != weightB)
            return weightA < weightB ? -1 : 1;
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
                    matched = MatchClass(c, pattern, nextPattern, escape);
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
