// Sorting by keys that are made once.
#include "editor/controls/sort.h"

#include "runtime/text.h"

#include <algorithm>
#include <string>

namespace editor::controls
{

namespace
{

// The upper-case text, and its first bytes as a number that compares like them: most comparisons end there.
struct SortKey
{
    std::uint64_t head;
    std::string upper;
};

std::uint64_t Head(std::string_view text)
{
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < sizeof head; ++i)
        head = head << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
    return head;
}

int Compare(const SortKey &a, const SortKey &b)
{
    if (a.head != b.head)
        return a.head < b.head ? -1 : 1;
    return a.upper.compare(b.upper);
}

} // namespace

std::vector<std::uint32_t> SortedOrder(const std::vector<std::string_view> &texts, SortOrder order)
{
    std::vector<SortKey> keys;
    keys.reserve(texts.size());
    for (const std::string_view text : texts)
    {
        std::string upper = runtime::UpperCase(text);
        const std::uint64_t head = Head(upper);
        keys.push_back({head, std::move(upper)});
    }

    std::vector<std::uint32_t> places(texts.size());
    for (std::uint32_t i = 0; i < places.size(); ++i)
        places[i] = i;
    const int sign = order == SortOrder::Ascending ? 1 : -1;
    std::sort(places.begin(), places.end(),
              [&](std::uint32_t a, std::uint32_t b)
              {
                  const int compared = sign * Compare(keys[a], keys[b]);
                  return compared != 0 ? compared < 0 : a < b;
              });
    return places;
}

} // namespace editor::controls
