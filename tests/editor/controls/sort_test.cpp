// Sorting texts without regard to case, compared with a plain stable sort.
#include "editor/controls/sort.h"

#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>

using editor::controls::SortedOrder;
using editor::controls::SortOrder;

namespace
{

using Places = std::vector<std::uint32_t>;

TEST(Sort, NothingGivesNothing)
{
    EXPECT_EQ(Places{}, SortedOrder({}, SortOrder::Ascending));
}

TEST(Sort, TiesKeepTheirOrderInBothDirections)
{
    const std::vector<std::string_view> texts = {"b", "B", "a", "A", "b"};
    EXPECT_EQ((Places{2, 3, 0, 1, 4}), SortedOrder(texts, SortOrder::Ascending));
    EXPECT_EQ((Places{0, 1, 4, 2, 3}), SortedOrder(texts, SortOrder::Descending));
}

TEST(Sort, KnowsLettersBeyondAscii)
{
    const std::vector<std::string_view> texts = {"\xC3\xA9tude", "\xC3\x89tage", "zoo"};
    EXPECT_EQ((Places{2, 1, 0}), SortedOrder(texts, SortOrder::Ascending));
}

TEST(Sort, ShortTextsStandBeforeTheirContinuations)
{
    using std::string_view_literals::operator""sv;
    const std::vector<std::string_view> texts = {"abcdefghi", "abcdefgh", "abc", "", "ABCDEFGHA", "abc\0"sv};
    EXPECT_EQ((Places{3, 2, 5, 1, 4, 0}), SortedOrder(texts, SortOrder::Ascending));
}

TEST(Sort, LooksBehindLongCommonBeginnings)
{
    const std::string beginning(40, 'x');
    const std::string texts[] = {beginning + "b", beginning, beginning + "A", beginning + "b", beginning + "abc"};
    const std::vector<std::string_view> views(std::begin(texts), std::end(texts));
    EXPECT_EQ((Places{1, 2, 4, 0, 3}), SortedOrder(views, SortOrder::Ascending));
    EXPECT_EQ((Places{0, 3, 4, 2, 1}), SortedOrder(views, SortOrder::Descending));
}

TEST(Sort, AgreesWithAPlainStableSort)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round)
    {
        std::vector<std::string> texts(random() % 60);
        for (std::string &text : texts)
            for (auto length = random() % 30; length > 0; --length)
                text += "aAaAaAaAaAaAbZ"[random() % 14];
        const std::vector<std::string_view> views(texts.begin(), texts.end());
        for (const SortOrder order : {SortOrder::Ascending, SortOrder::Descending})
        {
            Places expected(texts.size());
            std::iota(expected.begin(), expected.end(), 0);
            std::stable_sort(expected.begin(), expected.end(),
                             [&](std::uint32_t a, std::uint32_t b)
                             {
                                 const std::string left = runtime::UpperCase(texts[a]);
                                 const std::string right = runtime::UpperCase(texts[b]);
                                 return order == SortOrder::Ascending ? left < right : right < left;
                             });
            ASSERT_EQ(expected, SortedOrder(views, order)) << "round " << round;
        }
    }
}

} // namespace
