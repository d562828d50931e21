// Sorting the texts of a list.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace editor::controls
{

enum class SortOrder
{
    Ascending,
    Descending,
};

// The places of the texts (from 0) in sorted order, which is that of the queries (runtime/collation.h). Texts that are
// equal there stay in their order, in both directions.
std::vector<std::uint32_t> SortedOrder(const std::vector<std::string_view> &texts, SortOrder order);

} // namespace editor::controls
