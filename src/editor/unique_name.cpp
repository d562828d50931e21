// Numbering of names. The passes are not walked: a table gives, for the name reached, the next place where it collides.
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
    std::unordered_map<std::string, std::vector<std::size_t>> places;
    places.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        places[ComparedName(names[i])].push_back(i);

    // The first place from `from` on where the name is taken.
    const auto collision = [&](std::string_view name, std::size_t from) -> std::optional<std::size_t>
    {
        const auto taken = places.find(ComparedName(name));
        if (taken == places.end())
            return std::nullopt;
        const auto place = std::lower_bound(taken->second.begin(), taken->second.end(), from);
        return place == taken->second.end() ? std::nullopt : std::optional(*place);
    };

    int number = 1;
    bool collided = true;
    while (collided)
    {
        collided = false;
        std::size_t next = 0;
        while (const auto place = collision(proposed, next))
        {
            collided = true;
            next = *place + 1;
            proposed = Numbered(proposed, number++);
        }
    }
    return proposed;
}

} // namespace editor
