// How the server looks at texts.
#include "text.h"

#include "platform/code_page.h"
#include "runtime/collation.h"
#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace tsql
{
namespace
{

// Takes the first character of a text that is not empty.
std::string_view Take(std::string_view &text)
{
    const std::string_view first = text.substr(0, runtime::FirstCharacter(text).length);
    text.remove_prefix(first.size());
    return first;
}

bool Same(std::string_view left, std::string_view right)
{
    return runtime::UpperCase(runtime::FirstCharacter(left).code) ==
           runtime::UpperCase(runtime::FirstCharacter(right).code);
}

// Matches one character against the class behind '[', which `pattern` loses. A class that does not end matches nothing.
bool MatchesClass(std::string_view character, std::string_view &pattern)
{
    const bool negated = pattern.starts_with('^');
    pattern.remove_prefix(negated ? 1 : 0);
    const std::size_t end = pattern.find(']', 1);
    std::string_view members = pattern.substr(0, end);
    pattern.remove_prefix(std::min(members.size() + 1, pattern.size()));
    if (end == std::string_view::npos)
        return false;
    bool found = false;
    while (!members.empty())
    {
        const std::string_view low = Take(members);
        const bool range = members.size() > 1 && members[0] == '-';
        members.remove_prefix(range ? 1 : 0);
        const std::string_view high = range ? Take(members) : low;
        found = found || (Compare(low, character) <= 0 && Compare(character, high) <= 0);
    }
    return found != negated;
}

} // namespace

int Compare(std::string_view left, std::string_view right)
{
    thread_local std::string keys[2]; // kept for their memory
    for (const auto &[key, text] : {std::pair(&keys[0], left), std::pair(&keys[1], right)})
    {
        key->clear();
        runtime::AppendSortKey(*key, text);
    }
    return keys[0].compare(keys[1]);
}

bool Like(std::string_view text, std::string_view pattern)
{
    while (!pattern.empty())
    {
        const std::string_view wanted = Take(pattern);
        if (wanted == "%")
        {
            while (!text.empty() && !Like(text, pattern))
                Take(text);
            return !text.empty() || Like(text, pattern);
        }
        if (text.empty())
            return false;
        const std::string_view character = Take(text);
        if (wanted == "[" ? !MatchesClass(character, pattern) : wanted != "_" && !Same(wanted, character))
            return false;
    }
    return runtime::TrimRight(text).empty();
}

std::string InCodePage(std::string_view text)
{
    if (std::ranges::none_of(text, [](char c) { return (c & 0x80) != 0; }))
        return std::string(text);
    std::string kept;
    while (!text.empty())
    {
        const std::string_view character = Take(text);
        kept += character.size() > 3 ? "??" : platform::FromAnsi(platform::ToAnsi(character));
    }
    return kept;
}

} // namespace tsql
