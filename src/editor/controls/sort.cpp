// Sorting by keys that are made once.
#include "editor/controls/sort.h"

#include "runtime/collation.h"

#include <algorithm>
#include <functional>
#include <string>

namespace editor::controls
{

namespace
{

struct Entry
{
    std::string_view key;
    std::uint32_t index;
};

// The keys refer to `keys`.
std::vector<Entry> Keyed(const std::vector<std::string_view> &texts, std::string &keys)
{
    std::vector<std::size_t> ends;
    ends.reserve(texts.size());
    keys.reserve(texts.size() * 16);
    for (const std::string_view text : texts)
    {
        runtime::AppendSortKey(keys, text);
        ends.push_back(keys.size());
    }
    std::vector<Entry> entries(texts.size());
    for (std::uint32_t i = 0; i < entries.size(); ++i)
    {
        const std::size_t begin = i > 0 ? ends[i - 1] : 0;
        entries[i] = {std::string_view(keys).substr(begin, ends[i] - begin), i};
    }
    return entries;
}

} // namespace

std::vector<std::uint32_t> SortedOrder(const std::vector<std::string_view> &texts, SortOrder order)
{
    std::string keys;
    std::vector<Entry> entries = Keyed(texts, keys);
    if (order == SortOrder::Ascending)
        std::ranges::stable_sort(entries, std::less(), &Entry::key);
    else
        std::ranges::stable_sort(entries, std::greater(), &Entry::key);
    std::vector<std::uint32_t> indices;
    indices.reserve(entries.size());
    for (const Entry &entry : entries)
        indices.push_back(entry.index);
    return indices;
}

} // namespace editor::controls
