// Sorting by keys that are made once.
#include "editor/controls/sort.h"

#include "runtime/text.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>

namespace editor::controls
{

namespace
{

// Neighbours of one and the same text, such as the partition's name beside each of its records, are sorted as one.
struct Run
{
    std::uint32_t begin;
    std::uint32_t end;
    std::string upper;
};

std::vector<Run> RunsOf(const std::vector<std::string_view> &texts)
{
    std::vector<Run> runs;
    for (std::uint32_t i = 0; i < texts.size(); ++i)
    {
        if (i > 0 && texts[i] == texts[i - 1])
            runs.back().end = i + 1;
        else
            runs.push_back({i, i + 1, runtime::UpperCase(texts[i])});
    }
    return runs;
}

constexpr std::size_t kPart = sizeof(std::uint64_t);

// A part of a text as a number that compares like its bytes.
struct Key
{
    std::uint64_t part;
    std::uint32_t length; // bytes of the text from this part on; more than a part has counts as one more
    std::uint32_t run;
};

Key KeyAt(const std::vector<Run> &runs, std::uint32_t run, std::size_t offset)
{
    const std::string_view rest = std::string_view(runs[run].upper).substr(offset);
    std::uint64_t part = 0;
    for (std::size_t i = 0; i < kPart; ++i)
        part = part << 8 | (i < rest.size() ? static_cast<unsigned char>(rest[i]) : 0);
    return {part, static_cast<std::uint32_t>(std::min(rest.size(), kPart + 1)), run};
}

// Sorts texts that are the same before `offset`; part by part, so that most comparisons are of numbers side by side.
void SortFrom(const std::vector<Run> &runs, std::span<Key> keys, std::size_t offset, bool ascending)
{
    for (Key &key : keys)
        key = KeyAt(runs, key.run, offset);
    std::sort(keys.begin(), keys.end(),
              [&](const Key &a, const Key &b)
              {
                  if (a.part != b.part)
                      return (a.part < b.part) == ascending;
                  if (a.length != b.length)
                      return (a.length < b.length) == ascending;
                  return a.run < b.run;
              });
    for (std::size_t begin = 0, end = 0; begin < keys.size(); begin = end)
    {
        while (end < keys.size() && keys[end].part == keys[begin].part && keys[end].length == keys[begin].length)
            ++end;
        if (keys[begin].length > kPart && end - begin > 1)
            SortFrom(runs, keys.subspan(begin, end - begin), offset + kPart, ascending);
    }
}

} // namespace

std::vector<std::uint32_t> SortedOrder(const std::vector<std::string_view> &texts, SortOrder order)
{
    const std::vector<Run> runs = RunsOf(texts);
    std::vector<Key> keys(runs.size());
    for (std::uint32_t i = 0; i < runs.size(); ++i)
        keys[i].run = i;
    SortFrom(runs, keys, 0, order == SortOrder::Ascending);

    std::vector<std::uint32_t> places;
    places.reserve(texts.size());
    for (const Key &key : keys)
        for (std::uint32_t i = runs[key.run].begin; i < runs[key.run].end; ++i)
            places.push_back(i);
    return places;
}

} // namespace editor::controls
