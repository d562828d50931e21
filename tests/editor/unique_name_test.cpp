// Names for new records: the table of places gives what walking the passes gives.
#include "editor/unique_name.h"

#include "runtime/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace editor;

namespace
{

// The rule as it is told: pass over all records until a pass finds nothing.
std::string Walked(std::string proposed, const std::vector<std::string> &names)
{
    int number = 1;
    bool collided = true;
    while (collided)
    {
        collided = false;
        for (const std::string &name : names)
        {
            if (runtime::UpperCase(runtime::Trim(name)) != runtime::UpperCase(runtime::Trim(proposed)))
                continue;
            collided = true;
            const auto bracket = proposed.find('(');
            if (bracket != std::string::npos)
                proposed =
                    std::string(runtime::Trim(proposed.substr(0, bracket))) + " (" + std::to_string(number) + ")";
            else
                proposed += " (" + std::to_string(number) + ")";
            ++number;
        }
    }
    return proposed;
}

std::string Unique(const std::string &proposed, const std::vector<std::string> &names)
{
    return UniqueName(proposed, {names.begin(), names.end()});
}

TEST(UniqueName, IsNumberedWhenTaken)
{
    struct Case
    {
        const char *name;
        std::string proposed;
        std::vector<std::string> names;
        std::string result;
    };
    const Case cases[] = {
        {"free", "Copy of Bold", {"Bold"}, "Copy of Bold"},
        {"free with blanks stays so", " New ", {"Old"}, " New "},
        {"taken", "Copy of Bold", {"Copy of Bold"}, "Copy of Bold (1)"},
        {"taken twice", "Copy of Bold", {"Copy of Bold", "Copy of Bold (1)"}, "Copy of Bold (2)"},
        {"case and blanks do not matter", "New Format", {"  NEW format "}, "New Format (1)"},
        {"tabs do", "New Format", {"\tNew Format"}, "New Format"},
        {"a number in brackets is replaced", "Plain (7)", {"Plain (7)"}, "Plain (1)"},
        {"everything from the first bracket goes", "A (b) (c) d", {"A (b) (c) d"}, "A (1)"},
        {"nothing before the bracket", "(x)", {"(x)"}, " (1)"},
        {"the number rises across passes", "N", {"N (2)", "N (1)", "N"}, "N (3)"},
        {"a name passed in the first pass is met in the second", "N", {"N (1)", "N"}, "N (2)"},
        {"beyond ASCII", "\xC3\xA9t\xC3\xA9", {"\xC3\x89T\xC3\x89"}, "\xC3\xA9t\xC3\xA9 (1)"},
        {"blanks alone", "  ", {""}, "   (1)"},
    };
    for (const Case &c : cases)
    {
        EXPECT_EQ(c.result, Unique(c.proposed, c.names)) << c.name;
        EXPECT_EQ(c.result, Walked(c.proposed, c.names)) << c.name;
    }
}

TEST(UniqueName, AgreesWithTheWalkedRule)
{
    std::mt19937 random(11);
    const std::string roots[] = {"N",    "n ", " N", "N (1)",  "N (2)", "N (3)", "N (4)",
                                 "N(5)", "(",  "M",  "N (12)", " (1)",  ""};
    for (int round = 0; round < 4000; ++round)
    {
        std::vector<std::string> names(random() % 14);
        for (std::string &name : names)
            name = roots[random() % std::size(roots)];
        const std::string proposed = roots[random() % std::size(roots)];
        ASSERT_EQ(Walked(proposed, names), Unique(proposed, names)) << "round " << round;
    }
}

TEST(UniqueName, AgreesAmongThousandsOfCopies)
{
    std::mt19937 random(12);
    std::vector<std::string> names;
    for (int i = 0; i < 600; ++i)
        names.push_back("Heading " + std::to_string(i));
    for (int i = 0; i < 100; ++i)
        names.push_back(i == 0 ? "Copy of X" : "Copy of X (" + std::to_string(i) + ")");
    for (int round = 0; round < 3; ++round)
    {
        EXPECT_EQ(Walked("Copy of X", names), Unique("Copy of X", names));
        std::shuffle(names.begin(), names.end(), random);
    }
}

TEST(CopyName, HasOnePrefix)
{
    EXPECT_EQ("Copy of Bold", CopyName("Bold"));
    EXPECT_EQ("Copy of Bold", CopyName("Copy of Bold"));
    EXPECT_EQ("  Copy of Bold", CopyName("  Copy of Bold")) << "the text itself is kept";
    EXPECT_EQ("Copy offer", CopyName("Copy offer"));
    EXPECT_EQ("Copy of copy of Bold", CopyName("copy of Bold")) << "case counts";
    EXPECT_EQ("Copy of ", CopyName(""));
}

} // namespace
