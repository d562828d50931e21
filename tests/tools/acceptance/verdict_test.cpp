// The verdicts on plays, and the report.
#include "acceptance/verdict.h"

#include <gtest/gtest.h>

namespace
{

using namespace acceptance;
using namespace std::chrono_literals;

constexpr char kApproved[] = "> show\nsql SELECT 1\nsql! SELECT 2\n  error broken\n> close\nreturned 0\n";

TEST(Verdicts, PassOverTheStatementsOfTheApprovedTranscript)
{
    EXPECT_EQ(Judge("s", {0, "> show\n> close\nreturned 0\n", "", 0ms}, kApproved).difference, "");
}

TEST(Verdicts, SayWhatIsWrong)
{
    const struct
    {
        const char *name;
        Play play;
        const char *difference;
    } cases[] = {
        {"a line",
         {0, "> show\n> close\nreturned 1\n", "", 0ms},
         "  differs from line 3 on behind \"> close\":\n    approved  returned 0\n    played    returned 1\n"},
        {"its end",
         {0, "> show\n> close\n", "", 0ms},
         "  differs from line 3 on behind \"> close\":\n    approved  returned 0\n    played    (its end)\n"},
        {"more",
         {0, "> show\n> close\nreturned 0\nreturned 0\n", "", 0ms},
         "  differs from line 4 on behind \"returned 0\":\n    approved  (its end)\n    played    returned 0\n"},
        {"nothing",
         {0, "", "", 0ms},
         "  differs from line 1 on:\n    approved  > show\n    approved  > close\n    approved  returned 0\n"
         "    played    (its end)\n"},
        {"exit status", {1, "> show\n> close\nreturned 0\n", "", 0ms}, "  not played to its end (exit status 1):\n"},
        {"a message", {0, "> show\n> close\nreturned 0\n", "s:3: a reason\n", 0ms}, "    s:3: a reason\n"},
    };
    for (const auto &one : cases)
        EXPECT_EQ(Judge("s", one.play, kApproved).difference, one.difference) << one.name;
}

TEST(Verdicts, AreReportedWithFactsDifferencesAndTotals)
{
    EXPECT_EQ(Report({{"login", "sa"}}, {{"a-day", "", 1250ms}, {"saving/nothing", "  differs\n", 300ms}}),
              "KVHEADERS: acceptance\n\n"
              "login         sa\n\n"
              "a-day                                                passed     1.2 s\n"
              "saving/nothing                                       FAILED     0.3 s\n\n"
              "saving/nothing\n  differs\n\n"
              "2 scenarios, 1 passed, 1 failed\n");
}

} // namespace
