// Scripts as commands, and what is no command.
#include "script/script.h"

#include "script/failure.h"

#include <gtest/gtest.h>

namespace
{

using scenario::ParseScript;
using scenario::Script;
using scenario::Verb;

TEST(ScenarioScript, HasEachCommandWithItsLine)
{
    const Script script = ParseScript("a", "\xEF\xBB\xBF# comment\r\nshow\r\n\r\ntab 2\nanswer Yes No OK");
    ASSERT_EQ(script.commands.size(), 3u);
    EXPECT_EQ(script.commands[0].form->verb, Verb::Show);
    EXPECT_EQ(script.commands[0].line, 2);
    EXPECT_EQ(script.commands[0].echo, "show");
    EXPECT_EQ(script.commands[1].form->verb, Verb::Tab);
    EXPECT_EQ(script.commands[1].line, 4);
    EXPECT_EQ(script.commands[1].Number(0), 2);
    EXPECT_EQ(script.commands[2].arguments.size(), 3u);
}

TEST(ScenarioScript, TakesQuietAndWithoutInFrontOfACommand)
{
    const Script script = ParseScript("a", "quiet show\nshow\nwithout \"a b\" show");
    ASSERT_EQ(script.commands.size(), 3u);
    EXPECT_EQ(script.commands[0].form->verb, Verb::Show);
    EXPECT_EQ(script.commands[0].without, "");
    EXPECT_EQ(script.commands[0].echo, "quiet show");
    EXPECT_FALSE(script.commands[1].without);
    EXPECT_EQ(script.commands[2].form->verb, Verb::Show);
    EXPECT_EQ(script.commands[2].without, "a b");
}

TEST(ScenarioScript, KnowsEveryCommand)
{
    const char *const lines[] = {
        "data x.sql",
        "exec \"SELECT 1\"",
        "query \"SELECT 1\"",
        "host PartitionID 3",
        "site System NetworkRootDir \"\"",
        "registry K N V",
        "show",
        "tab 0",
        "choose cmbFormats 0",
        "choose cmbFormats \"Bold \\\\ Site\"",
        "pick lvwFormats Key12-3",
        "pick lvwFormats \"Bold\"",
        "column lvwFormats 1",
        "rename lvwFormats \"New\"",
        "escape lvwFormats",
        "toggle SSCheck1(5)",
        "click btnSave",
        "close",
        "answer OK",
        "fail 1 \"INSERT\" \"HY000: full\"",
        "dump frmHeadings lvwFormats",
        "selected lvwFormats cmbFormats",
    };
    for (const char *const line : lines)
        EXPECT_EQ(ParseScript("a", line).commands.size(), 1u) << line;
}

TEST(ScenarioScript, RefusesWhatIsNoCommandWithFileLineAndReason)
{
    const struct
    {
        const char *text;
        const char *message;
    } cases[] = {
        {"shew", "s.scenario:1: unknown command \"shew\""},
        {"\"show\"", "s.scenario:1: unknown command \"show\""},
        {"show\n\nshow now", "s.scenario:3: wrong number of words: show"},
        {"rename lvwFormats", "s.scenario:1: wrong number of words: rename LIST TEXT"},
        {"pick lvwFormats a b", "s.scenario:1: wrong number of words: pick LIST ITEM"},
        {"answer", "s.scenario:1: wrong number of words: answer WORD..."},
        {"dump", "s.scenario:1: wrong number of words: dump NAME..."},
        {"tab one", "s.scenario:1: \"one\" is not a number: tab N"},
        {"tab -1", "s.scenario:1: \"-1\" is not a number: tab N"},
        {"tab 99999999999", "s.scenario:1: \"99999999999\" is not a number: tab N"},
        {"fail 2x \"a\" \"b\"", "s.scenario:1: \"2x\" is not a number: fail COUNT TEXT MESSAGE"},
        {"choose cmbFormats Bold", "s.scenario:1: an entry is a number or a text in quotes"},
        {"answer Maybe", "s.scenario:1: \"Maybe\" is not an answer: OK, Yes or No"},
        {"# fine\nexec \"open", "s.scenario:2: a quote is not closed"},
    };
    for (const auto &c : cases)
        try
        {
            ParseScript("s.scenario", c.text);
            ADD_FAILURE() << c.text;
        }
        catch (const scenario::Failure &failure)
        {
            EXPECT_STREQ(failure.what(), c.message) << c.text;
        }
}

} // namespace
