// Sorting the texts of a list: the order of the queries.
#include "editor/controls/sort.h"

#include "support/database_fixture.h"

#include <algorithm>
#include <random>

using editor::controls::SortedOrder;
using editor::controls::SortOrder;

namespace
{

using Places = std::vector<std::uint32_t>;

Places Sorted(const std::vector<std::string> &texts, SortOrder order = SortOrder::Ascending)
{
    return SortedOrder({texts.begin(), texts.end()}, order);
}

// In their order: punctuation, digits, letters with their marks beside them; case and trailing blanks aside.
// clang-format off
const std::vector<std::string> kInOrder = {
    "", " x", "(old)", "-1", "_", "\u00A7", "10", "9", "a", "\u00E0", "A b", "A-B", "AA", "\u00C4b", "cote", "cot\u00E9",
    "c\u00F4te", "E", "e1", "\u00C9tage", "etude", "\u00E9tude", "\u00C9tudes", "Fa\u00E7ade", "facades", "nino",
    "Ni\u00F1o", "\u00D6l", "\u0160a", "sb", "xxxxxxxxxxxxxxxxxxxxxxxx A", "xxxxxxxxxxxxxxxxxxxxxxxx ab", "\u00FFz",
    "zoo"};
// clang-format on

class Sort : public support::DatabaseTest
{
};

TEST_F(Sort, IsThatOfTheQueries)
{
    std::vector<std::string> texts = kInOrder;
    std::shuffle(texts.begin(), texts.end(), std::mt19937(7));
    for (std::size_t i = 0; i < texts.size(); ++i)
        Run("INSERT INTO Report_headers VALUES (" + std::to_string(i) + ", '" + texts[i] + "', 1)");
    std::vector<std::string> sorted;
    support::Lines ids;
    for (const std::uint32_t place : Sorted(texts))
    {
        sorted.push_back(texts[place]);
        ids.push_back(std::to_string(place));
    }
    EXPECT_EQ(sorted, kInOrder);
    EXPECT_EQ(Query("SELECT heading_id FROM Report_headers ORDER BY heading ASC"), ids);
}

TEST_F(Sort, TiesKeepTheirOrderInBothDirections)
{
    const std::vector<std::string> texts = {"b", "B", "a ", "A", "b ", "\u00E9", "\u00C9"};
    EXPECT_EQ((Places{2, 3, 0, 1, 4, 5, 6}), Sorted(texts));
    EXPECT_EQ((Places{5, 6, 0, 1, 4, 2, 3}), Sorted(texts, SortOrder::Descending));
    EXPECT_EQ(Places{}, Sorted({}));
}

} // namespace
