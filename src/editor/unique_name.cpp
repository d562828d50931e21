// Numbering of names. The passes are not walked: a table gives, for the name reached, the next place where it collides.
// It holds the names alone that have a beginning in common with every name that the numbering can reach.
#include "editor/unique_name.h"

#include "runtime/text.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_map>

namespace editor
{

namespace
{

std::string Numbered(std::string_view name, int number)
{
    const auto bracket = name.find('(');
    const std::string_view base = bracket == std::string_view::npos ? name : runtime::Trim(name.substr(0, bracket));
    return std::string(base) + " (" + std::to_string(number) + ")";
}

bool BeginsWith(std::string_view text, std::string_view upperBeginning)
{
    while (!upperBeginning.empty())
    {
        if (text.empty())
            return false;
        const runtime::Character one = runtime::FirstCharacter(text);
        const runtime::Character other = runtime::FirstCharacter(upperBeginning);
        if (runtime::UpperCase(one.code) != other.code)
            return false;
        text.remove_prefix(one.length);
        upperBeginning.remove_prefix(other.length);
    }
    return true;
}

} // namespace

std::string CopyName(std::string_view text)
{
    constexpr std::string_view kCopyOf = "Copy of";
    if (runtime::Trim(text).starts_with(kCopyOf))
        return std::string(text);
    return std::string(kCopyOf) + " " + std::string(text);
}

std::string ComparedName(std::string_view name)
{
    return runtime::UpperCase(runtime::Trim(name));
}

std::string UniqueName(std::string proposed, const std::vector<std::string_view> &names)
{
    const std::string beginning = ComparedName(std::string_view(proposed).substr(0, proposed.find('(')));
    std::unordered_map<std::string, std::vector<std::size_t>> indices;
    for (std::size_t i = 0; i < names.size(); ++i)
        if (BeginsWith(runtime::Trim(names[i]), beginning))
            indices[ComparedName(names[i])].push_back(i);

    // The first place from `from` on where the name is taken.
    const auto collision = [&](std::string_view name, std::size_t from) -> std::optional<std::size_t>
    {
        const auto taken = indices.find(ComparedName(name));
        if (taken == indices.end())
            return std::nullopt;
        const auto index = std::lower_bound(taken->second.begin(), taken->second.end(), from);
        return index == taken->second.end() ? std::nullopt : std::optional(*index);
    };

    int number = 1;
    bool collided = true;
    while (collided)
    {
        collided = false;
        std::size_t next = 0;
        while (const auto index = collision(proposed, next))
        {
            collided = true;
            next = *index + 1;
            proposed = Numbered(proposed, number++);
        }
    }
    return proposed;
}

} // namespace editor
