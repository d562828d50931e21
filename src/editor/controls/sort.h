// Sorting texts without regard to case.
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

// The places of the texts (from 0) in sorted order; texts that differ in case alone stay in their order, in both
// directions. Each text is put in upper case once.
std::vector<std::uint32_t> SortedOrder(const std::vector<std::string_view> &texts, SortOrder order);

} // namespace editor::controls
