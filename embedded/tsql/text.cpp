// How the server looks at texts: comparing without regard to case and trailing blanks, LIKE, searching, the code page.
#include "text.h"

#include "runtime/collation.h"

#include <algorithm>

namespace tsql
{
namespace
{

using runtime::FirstCharacter;
using runtime::UpperCase;

// The first character of a text that is not empty.
std::string_view First(std::string_view text)
{
    return text.substr(0, FirstCharacter(text).length);
}

// Where an ASCII character stands: the others, digits, letters.
int Weight(char c)
{
    const bool small = c >= 'a' && c <= 'z';
    return small || (c >= 'A' && c <= 'Z') ? c - (small ? 32 : 0) + 0x200 : c >= '0' && c <= '9' ? c + 0x100 : c;
}

bool Same(std::string_view left, std::string_view right)
{
    return UpperCase(FirstCharacter(left).code) == UpperCase(FirstCharacter(right).code);
}

// Matches one character against the class behind '[' at the start of `pattern`, which loses it. A class that does not
// end matches nothing.
bool MatchClass(std::string_view character, std::string_view &pattern)
{
    const bool negated = pattern.starts_with('^');
    bool found = false;
    const auto next = [&]
    {
        const std::string_view one = First(pattern);
        pattern.remove_prefix(one.size());
        return one;
    };
    pattern.remove_prefix(negated ? 1 : 0);
    for (bool first = true; !pattern.empty(); first = false)
    {
        const std::string_view low = next();
        if (low == "]" && !first)
            return found != negated;
        std::string_view high = low;
        if (pattern.size() > 1 && pattern[0] == '-' && pattern[1] != ']')
        {
            pattern.remove_prefix(1);
            high = next();
        }
        found = found || (Compare(low, character) <= 0 && Compare(character, high) <= 0);
    }
    return false;
}

} // namespace

int Compare(std::string_view left, std::string_view right)
{
    left = runtime::TrimRight(left);
    right = runtime::TrimRight(right);
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t at = 0; at < common; ++at)
    {
        if (((left[at] | right[at]) & 0x80) != 0)
        {
            std::string keys[2];
            runtime::AppendSortKey(keys[0], left);
            runtime::AppendSortKey(keys[1], right);
            return keys[0].compare(keys[1]);
        }
        if (const int difference = Weight(left[at]) - Weight(right[at]); difference != 0)
            return difference;
    }
    return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
}

bool Like(std::string_view text, std::string_view pattern, bool ignoreBlanks)
{
    // Behind the last '%' met, and the text that its match leaves for now.
    bool star = false;
    std::string_view starPattern;
    std::string_view starText;
    for (;;)
    {
        std::string_view nextPattern = pattern;
        bool matched = false;
        if (pattern.empty() && (text.empty() || (ignoreBlanks && runtime::TrimRight(text).empty())))
            return true;
        if (pattern.starts_with('%'))
        {
            star = true;
            starPattern = pattern = pattern.substr(1);
            starText = text;
            continue;
        }
        if (!pattern.empty() && !text.empty())
        {
            const std::string_view p = First(pattern);
            nextPattern.remove_prefix(p.size());
            matched = p == "[" ? MatchClass(First(text), nextPattern) : p == "_" || Same(text, pattern);
        }
        if (matched)
        {
            pattern = nextPattern;
            text.remove_prefix(First(text).size());
            continue;
        }
        if (!star || starText.empty())
            return false;
        starText.remove_prefix(First(starText).size());
        pattern = starPattern;
        text = starText;
    }
}

Place Find(std::string_view text, std::string_view part, std::size_t start)
{
    for (std::size_t at = start; at < text.size(); at += First(text.substr(at)).size())
    {
        std::string_view rest = text.substr(at);
        std::string_view wanted = part;
        for (; !wanted.empty() && !rest.empty() && Same(rest, wanted); wanted.remove_prefix(First(wanted).size()))
            rest.remove_prefix(First(rest).size());
        if (wanted.empty())
            return {at, text.size() - at - rest.size()};
    }
    return {std::string_view::npos, 0};
}

// A small letter stands behind its capital, at one of a few distances.
std::string Lower(std::string_view text)
{
    std::string out;
    for (; !text.empty(); text.remove_prefix(First(text).size()))
    {
        const char32_t code = FirstCharacter(text).code;
        char32_t small = code;
        for (const char32_t distance : {1u, 32u, 37u, 38u, 48u, 63u, 64u, 80u})
            if (UpperCase(code) == code && UpperCase(code + distance) == code)
                small = code + distance;
        if (small == code)
            out += First(text); // also when it is broken
        else
            runtime::AppendCharacter(out, small);
    }
    return out;
}

std::string InCodePage(std::string_view text)
{
    // The characters from 0x80 to 0x9F of the code page.
    constexpr std::u32string_view others =
        U"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D\u2018\u2019\u201C\u201D\u2022"
        U"\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178";
    std::string out;
    for (; !text.empty(); text.remove_prefix(First(text).size()))
    {
        const char32_t code = FirstCharacter(text).code;
        if (code < 0x100 || others.find(code) != std::u32string_view::npos)
            out += First(text);
        else
            out.append(code >= 0x10000 ? 2 : 1, '?');
    }
    return out;
}

} // namespace tsql
