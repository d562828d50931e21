// Comparing, LIKE, searching and changing the case of texts.
#include "tsql/text.h"

#include <gtest/gtest.h>

namespace
{

using namespace tsql;

TEST(Text, CompareIgnoresCaseAndTrailingBlanks)
{
    EXPECT_EQ(0, Compare("abc", "ABC"));
    EXPECT_EQ(0, Compare("abc", "abc   "));
    EXPECT_EQ(0, Compare("", "  "));
    EXPECT_EQ(0, Compare("\xC3\xA9tat", "\xC3\x89TAT")) << "é and É";
    EXPECT_EQ(0, Compare("\xD0\xB0", "\xD0\x90")) << "Cyrillic a";
    EXPECT_EQ(0, Compare("\xCF\x89", "\xCE\xA9")) << "omega";
    EXPECT_NE(0, Compare(" abc", "abc")) << "leading blanks count";
    EXPECT_NE(0, Compare("abc", "abd"));
    EXPECT_NE(0, Compare("cafe", "caf\xC3\xA9")) << "accents count";
}

TEST(Text, CompareOrdersMarksDigitsLetters)
{
    const char *const ordered[] = {"",          "<Default>", "_b",  "10",          "1a",      "2", "a", "ab",
                                   "\xC3\xA1z", "b",         "ear", "\xC3\xA9lan", "element", "f", "z", "\xCE\xB1"};
    for (std::size_t i = 0; i + 1 < std::size(ordered); ++i)
    {
        EXPECT_LT(Compare(ordered[i], ordered[i + 1]), 0) << ordered[i] << " " << ordered[i + 1];
        EXPECT_GT(Compare(ordered[i + 1], ordered[i]), 0) << ordered[i] << " " << ordered[i + 1];
    }
    EXPECT_LT(Compare("resume", "r\xC3\xA9sum\xC3\xA9"), 0) << "the plain one first when only accents differ";
    EXPECT_LT(Compare("r\xC3\xA9sum\xC3\xA9", "resumed"), 0) << "accents weigh less than a letter more";
}

TEST(Text, CompareIsAnOrder)
{
    // Every pair both ways and every triple over a set with accents, blanks and bytes that are no UTF-8.
    const std::string words[] = {"",  " ", "\t",   "a",    "A ",       "\xC3\xA0", "\xC3\x80x", "ax", "b",
                                 "1", "_", "\xFF", "\xC3", "\xE2\x82", "ss",       "\xC3\x9F",  "e",  "\xC3\xA9"};
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    for (const std::string &a : words)
        for (const std::string &b : words)
        {
            EXPECT_EQ(sign(Compare(a, b)), -sign(Compare(b, a))) << a << "/" << b;
            for (const std::string &c : words)
                if (Compare(a, b) <= 0 && Compare(b, c) <= 0)
                {
                    EXPECT_LE(Compare(a, c), 0) << a << "/" << b << "/" << c;
                }
        }
}

TEST(Text, DecodeTakesWholeCharactersAndSingleWrongBytes)
{
    const auto decode = [](std::string_view text)
    {
        std::size_t at = 0;
        const std::uint32_t c = Decode(text, at);
        return std::pair(c, at);
    };
    EXPECT_EQ(std::pair(std::uint32_t{'a'}, std::size_t{1}), decode("ab"));
    EXPECT_EQ(std::pair(std::uint32_t{0xE9}, std::size_t{2}), decode("\xC3\xA9"));
    EXPECT_EQ(std::pair(std::uint32_t{0x20AC}, std::size_t{3}), decode("\xE2\x82\xAC"));
    EXPECT_EQ(std::pair(std::uint32_t{0x1F600}, std::size_t{4}), decode("\xF0\x9F\x98\x80"));
    EXPECT_EQ(std::pair(std::uint32_t{0x1100C3}, std::size_t{1}), decode("\xC3"));
    EXPECT_EQ(std::pair(std::uint32_t{0x1100C3}, std::size_t{1}), decode("\xC3z"));
    EXPECT_EQ(std::pair(std::uint32_t{0x1100FF}, std::size_t{1}), decode("\xFF"));
    EXPECT_EQ(std::pair(std::uint32_t{0x1100C0}, std::size_t{1}), decode("\xC0\x80")) << "an overlong form";
}

TEST(Text, LengthAndPrefixCountCharacters)
{
    EXPECT_EQ(3u, Length("\xC3\xA9t\xC3\xA9"));
    EXPECT_EQ(0u, Length(""));
    EXPECT_EQ(2u, Length("\xFF\xFE"));
    EXPECT_EQ(3u, Prefix("\xC3\xA9t\xC3\xA9", 2));
    EXPECT_EQ(5u, Prefix("\xC3\xA9t\xC3\xA9", 9));
}

TEST(Text, UpperAndLower)
{
    EXPECT_EQ("ABC1\xC3\x89", Upper("abc1\xC3\xA9"));
    EXPECT_EQ("abc1\xC3\xA9", Lower("ABC1\xC3\x89"));
    EXPECT_EQ("\xC5\xBB", Upper("\xC5\xBC")) << "z with a dot";
    EXPECT_EQ("\xC5\xB8", Upper("\xC3\xBF")) << "y with two dots";
    EXPECT_EQ("\xC3\xB7", Upper("\xC3\xB7")) << "the division sign is no letter";
    EXPECT_EQ("\xFF", Upper("\xFF"));
}

TEST(Text, Trim)
{
    EXPECT_EQ("a b", Trim("  a b  "));
    EXPECT_EQ("", Trim("   "));
    EXPECT_EQ("  a", TrimRight("  a  "));
}

struct LikeCase
{
    const char *text;
    const char *pattern;
    bool matches;
};

TEST(Text, Like)
{
    constexpr LikeCase cases[] = {
        {"", "", true},
        {"", "%", true},
        {"a", "", false},
        {"abc", "abc", true},
        {"abc", "ABC", true},
        {"abc", "ab", false},
        {"abc", "a%", true},
        {"abc", "%c", true},
        {"abc", "%b%", true},
        {"abc", "%d%", false},
        {"abc", "a_c", true},
        {"abc", "a_", false},
        {"abc", "_%_%_", true},
        {"ab", "_%_%_", false},
        {"/1/5/", "%/5/%", true},
        {"/1/15/", "%/5/%", false},
        {"abcabd", "%abd", true},
        {"aaaaaaaaab", "%a%a%a%b", true},
        {"b", "[abc]", true},
        {"d", "[abc]", false},
        {"d", "[^abc]", true},
        {"b", "[^abc]", false},
        {"e", "[a-f]", true},
        {"E", "[a-f]", true},
        {"g", "[a-f]", false},
        {"5", "[0-9]", true},
        {"-", "[a-]", true},
        {"]", "[]]", true},
        {"%", "[%]", true},
        {"a", "[%]", false},
        {"[", "[[]", true},
        {"x[y", "x[[]y", true},
        {"a", "[", false},
        {"a", "[a", false},
        {"", "_", false},
        {"\xC3\xA9t\xC3\xA9", "_t_", true},
        {"\xC3\xA9", "\xC3\x89", true},
        {"\xC3\xA9", "e", false},
        {"\xC3\xA9", "[e-f]", true},
        {"abc  ", "abc", true},
        {"abc", "abc ", false},
        {"abc ", "abc ", true},
    };
    for (const LikeCase &one : cases)
        EXPECT_EQ(one.matches, Like(one.text, one.pattern, 0, true)) << one.text << " LIKE " << one.pattern;
    EXPECT_FALSE(Like("abc  ", "abc", 0, false)) << "trailing blanks count in national texts";
}

TEST(Text, LikeWithEscape)
{
    EXPECT_TRUE(Like("50%", "50!%", '!', true));
    EXPECT_FALSE(Like("501", "50!%", '!', true));
    EXPECT_TRUE(Like("a_b", "a!_b", '!', true));
    EXPECT_FALSE(Like("axb", "a!_b", '!', true));
    EXPECT_TRUE(Like("a!b", "a!!b", '!', true));
    EXPECT_TRUE(Like("[a]", "![a]", '!', true));
    EXPECT_TRUE(Like("]", "[!]]", '!', true));
}

TEST(Text, LikeOnMuchTextIsQuick)
{
    const std::string text(20000, 'a');
    EXPECT_FALSE(Like(text, "%a%a%a%a%a%a%a%b", 0, true));
}

TEST(Text, FindIgnoresCase)
{
    EXPECT_EQ(2u, Find("xxABC", "abc", 0).at);
    EXPECT_EQ(3u, Find("xxABC", "abc", 0).length);
    EXPECT_EQ(std::string_view::npos, Find("xxABC", "abd", 0).at);
    EXPECT_EQ(3u, Find("aaaa", "A", 3).at);
    EXPECT_EQ(std::string_view::npos, Find("", "a", 0).at);
}

} // namespace
