// The order of texts, LIKE, and the code page.
#include "play.h"

namespace
{

class TextTest : public tsqltest::PlayTest
{
protected:
    bool Holds(const std::string &condition) { return Play("SELECT 1 WHERE " + condition) == "1"; }
};

TEST_F(TextTest, Compare)
{
    // In ascending order; texts in one row are equal.
    const std::vector<std::vector<std::string>> order = {
        {"", "  "},   {"!"},      {"1", "1 "},           {"a", "A", "a  "},
        {"ab", "aB"}, {"e", "E"}, {"\u00E9", "\u00C9 "}, {"\u00E9a", "\u00C9A"},
        {"eb"},       {"z"},      {"\u0416", "\u0436"}};
    for (std::size_t i = 0; i < order.size(); ++i)
        for (std::size_t j = 0; j < order.size(); ++j)
        {
            const std::string sign = i < j ? "' < N'" : i > j ? "' > N'" : "' = N'";
            for (const std::string &left : order[i])
                for (const std::string &right : order[j])
                    EXPECT_TRUE(Holds("N'" + left + sign + right + "'")) << left << sign << right;
        }
}

TEST_F(TextTest, Like)
{
    const struct
    {
        std::string text, pattern;
        bool expected;
    } cases[] = {
        {"", "", true},
        {"", "%", true},
        {"abc", "ABC", true},
        {"abc", "a_c", true},
        {"abc", "a%", true},
        {"abc", "%b%", true},
        {"abc", "%c%b%", false},
        {"aab", "%ab", true},
        {"abc  ", "abc", true},
        {"abc", "abc  ", false},
        {"\u00E4x", "_x", true},
        {"\u00C4", "\u00E4", true},
        {"b", "[a-c]", true},
        {"B", "[^a-c]", false},
        {"d", "[^a-c]", true},
        {"a%", "a[%]", true},
        {"axb", "a[%]b", false},
        {"]", "[]]", true},
        {"a", "[a", false},
        {"-", "[a-]", true},
        {"12x", "%[^0-9]%", true},
        {"12", "%[^0-9]%", false},
        {"/1/23/", "%/2/%", false},
        {"/1/2/", "%/2/%", true},
    };
    for (const auto &[text, pattern, expected] : cases)
        EXPECT_EQ(Holds("N'" + text + "' LIKE N'" + pattern + "'"), expected) << text << " LIKE " << pattern;
}

TEST_F(TextTest, CodePage)
{
    EXPECT_EQ(Play("SELECT 'a\u00FC\u20AC\u2013\u0178 \u5317\U0001F600'"), "a\u00FC\u20AC\u2013\u0178 ???");
}

} // namespace
