// Lines of a scenario as words.
#include "script/words.h"

#include "script/failure.h"

#include <gtest/gtest.h>

namespace
{

using scenario::SplitLine;
using scenario::Word;

TEST(ScenarioWords, AreSeparatedByBlanks)
{
    EXPECT_EQ(SplitLine("  pick \tlvwFormats  Key12-3 \r").words,
              (std::vector<Word>{{"pick"}, {"lvwFormats"}, {"Key12-3"}}));
}

TEST(ScenarioWords, InQuotesKeepBlanksAndMayBeEmpty)
{
    EXPECT_EQ(SplitLine(R"(rename lvwFormats " a b " "")").words,
              (std::vector<Word>{{"rename"}, {"lvwFormats"}, {" a b ", true}, {"", true}}));
}

TEST(ScenarioWords, InQuotesHaveEscapes)
{
    EXPECT_EQ(SplitLine(R"("\"\\\t\r\n#")").words, (std::vector<Word>{{"\"\\\t\r\n#", true}}));
}

TEST(ScenarioWords, EndAtAComment)
{
    EXPECT_TRUE(SplitLine("# nothing but a comment").words.empty());
    EXPECT_TRUE(SplitLine("").words.empty());
    EXPECT_EQ(SplitLine("close# now").words, (std::vector<Word>{{"close"}}));
}

TEST(ScenarioWords, AreEchoedAsWritten)
{
    EXPECT_EQ(SplitLine("  exec  \"a\\tb\"   # why").echo, "exec  \"a\\tb\"");
    EXPECT_EQ(SplitLine("  # why").echo, "");
}

TEST(ScenarioWords, RefuseWhatCannotBeRead)
{
    const struct
    {
        const char *line;
        const char *reason;
    } cases[] = {
        {"exec \"open", "a quote is not closed"},
        {"exec \"open\\", "a quote is not closed"},
        {"exec \"\\x\"", "unknown escape \\x"},
        {"exec \"a\"b", "a blank is missing between two words"},
        {"exec a\"b\"", "a blank is missing between two words"},
    };
    for (const auto &c : cases)
        try
        {
            SplitLine(c.line);
            ADD_FAILURE() << c.line;
        }
        catch (const scenario::Refusal &refusal)
        {
            EXPECT_STREQ(refusal.what(), c.reason) << c.line;
        }
}

} // namespace
