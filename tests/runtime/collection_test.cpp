// The general collection: order, positions, keys, errors, and who owns what.
#include "runtime/collection.h"
#include "support/error_number.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace
{

using namespace runtime;
using support::NumberOf;

struct Thing : RefCounted<Thing>
{
    explicit Thing(int v) : value(v) { ++living; }
    ~Thing() { --living; }
    int value;
    static inline int living = 0;
};

std::string Order(const Collection<Thing> &things)
{
    std::string order;
    for (std::size_t i = 1; i <= things.Count(); ++i)
        order += std::to_string(things.Item(static_cast<std::int64_t>(i))->value);
    return order;
}

TEST(Collection, KeepsTheOrderOfAdding)
{
    Collection<Thing> things;
    for (int i : {3, 1, 2})
        things.Add(MakeRef<Thing>(i));
    EXPECT_EQ(things.Count(), 3u);
    EXPECT_EQ(Order(things), "312");
}

TEST(Collection, AddsBefore)
{
    Collection<Thing> things;
    things.Add(MakeRef<Thing>(1));
    things.AddBefore(MakeRef<Thing>(2), "", 1);
    things.AddBefore(MakeRef<Thing>(3), "k", 2);
    EXPECT_EQ(Order(things), "231");
    EXPECT_EQ(things.Position("K"), 2);
    for (const std::int64_t position : {0, 4})
        EXPECT_EQ(NumberOf([&] { things.AddBefore(MakeRef<Thing>(5), "", position); }), 9);
    EXPECT_EQ(Order(things), "231");
}

TEST(Collection, IteratesOverWhatIsThereAtEachStep)
{
    Collection<Thing> things;
    EXPECT_TRUE(things.begin() == things.end());
    things.Add(MakeRef<Thing>(1));
    things.Add(MakeRef<Thing>(2));
    std::string seen;
    for (Ref<Thing> thing : things)
    {
        seen += std::to_string(thing->value);
        if (thing->value == 1)
            things.Add(MakeRef<Thing>(3));
        if (thing->value == 2)
            things.Remove(std::int64_t{1});
    }
    EXPECT_EQ(seen, "12") << "behind the second, the third has moved to its position";
}

TEST(Collection, FindsKeysWithoutRegardToCase)
{
    Collection<Thing> things;
    things.Add(MakeRef<Thing>(1), "Key");
    things.Add(MakeRef<Thing>(2), "ä");
    EXPECT_EQ(things.Item("KEY")->value, 1);
    EXPECT_EQ(things.Item("Ä")->value, 2);
    EXPECT_EQ(NumberOf([&] { things.Item("other"); }), 5);
    EXPECT_EQ(things.Find("other"), nullptr);
    EXPECT_EQ(NumberOf([&] { things.Position("other"); }), 5);
}

TEST(Collection, RefusesAKeyThatIsTakenAndAddsNothing)
{
    Collection<Thing> things;
    things.Add(MakeRef<Thing>(1), "a");
    EXPECT_EQ(NumberOf([&] { things.Add(MakeRef<Thing>(2), "A"); }), 457);
    EXPECT_EQ(Order(things), "1");
    EXPECT_EQ(Thing::living, 1);
}

TEST(Collection, PositionsStartAtOne)
{
    Collection<Thing> things;
    things.Add(MakeRef<Thing>(1));
    EXPECT_EQ(NumberOf([&] { things.Item(std::int64_t{0}); }), 9);
    EXPECT_EQ(NumberOf([&] { things.Item(std::int64_t{2}); }), 9);
    EXPECT_EQ(NumberOf([&] { things.Item(std::int64_t{-1}); }), 9);
}

TEST(Collection, RemovesByPositionAndKey)
{
    Collection<Thing> things;
    for (int i = 1; i <= 4; ++i)
        things.Add(MakeRef<Thing>(i), "k" + std::to_string(i));
    things.Remove(std::int64_t{2});
    things.Remove("K4");
    EXPECT_EQ(Order(things), "13");
    EXPECT_EQ(things.Find("k2"), nullptr);
    EXPECT_EQ(things.Position("k3"), 2);
    EXPECT_EQ(NumberOf([&] { things.Remove(std::int64_t{3}); }), 9);
    EXPECT_EQ(NumberOf([&] { things.Remove("k2"); }), 5);
    things.Add(MakeRef<Thing>(5), "k2");
    EXPECT_EQ(Order(things), "135");
}

TEST(Collection, OneObjectMayStandTwiceUnderTwoKeys)
{
    Collection<Thing> things;
    const auto thing = MakeRef<Thing>(1);
    things.Add(thing, "a");
    things.Add(thing, "b");
    things.Remove(std::int64_t{1});
    EXPECT_EQ(things.Find("a"), nullptr);
    ASSERT_NE(things.Find("b"), nullptr);
    EXPECT_EQ(*things.Find("b"), thing);
}

TEST(Collection, RevisionRisesWithEveryChangeButAnAppend)
{
    Collection<Thing> things;
    things.Add(MakeRef<Thing>(1));
    things.Add(MakeRef<Thing>(2));
    EXPECT_EQ(things.Revision(), 0u);
    things.AddBefore(MakeRef<Thing>(3), "", 1);
    EXPECT_EQ(things.Revision(), 1u);
    things.Add(MakeRef<Thing>(4));
    EXPECT_EQ(things.Revision(), 1u);
    things.Remove(std::int64_t{1});
    EXPECT_EQ(things.Revision(), 2u);
}

TEST(Collection, ReleasesWhatItHeld)
{
    {
        Collection<Thing> things;
        things.Add(MakeRef<Thing>(1), "a");
        const Ref<Thing> kept = things.Item("a");
        things.Remove("a");
        EXPECT_EQ(Thing::living, 1);
        things.Add(kept);
    }
    EXPECT_EQ(Thing::living, 0);
}

TEST(ErrorTrap, KeepsTheLastErrorAndGoesOn)
{
    ErrorTrap trap;
    int steps = 0;
    EXPECT_FALSE(trap.Pending());
    EXPECT_EQ(trap.Number(), 0);
    EXPECT_EQ(trap.Description(), "");
    EXPECT_TRUE(trap.Try([&] { ++steps; }));
    EXPECT_FALSE(trap.Try([] { Raise(kOverflow); }));
    EXPECT_FALSE(trap.Try([] { throw Error(40002, "42S02: gone"); }));
    EXPECT_TRUE(trap.Try([&] { ++steps; }));
    EXPECT_EQ(steps, 2);
    EXPECT_TRUE(trap.Pending());
    EXPECT_EQ(trap.Number(), 40002);
    EXPECT_EQ(trap.Description(), "42S02: gone");
}

TEST(ErrorTrap, TranslatesForeignExceptions)
{
    ErrorTrap trap;
    trap.Try([] { throw std::bad_alloc(); });
    EXPECT_EQ(trap.Number(), 7);
    trap.Try([] { throw std::runtime_error("why"); });
    EXPECT_EQ(trap.Number(), 51);
    EXPECT_EQ(trap.Description(), "Internal error: why");
    trap.Try([] { throw 1; });
    EXPECT_EQ(trap.Description(), "Internal error");
}

struct TextCase
{
    std::int32_t number;
    const char *text;
};

class ErrorTexts : public testing::TestWithParam<TextCase>
{
};

TEST_P(ErrorTexts, AreTheHostsOwn)
{
    EXPECT_EQ(ErrorText(GetParam().number), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, ErrorTexts,
    testing::Values(TextCase{5, "Invalid procedure call or argument"}, TextCase{6, "Overflow"},
                    TextCase{7, "Out of memory"}, TextCase{9, "Subscript out of range"}, TextCase{13, "Type mismatch"},
                    TextCase{51, "Internal error"}, TextCase{53, "File not found"}, TextCase{54, "Bad file mode"},
                    TextCase{57, "Device I/O error"}, TextCase{61, "Disk full"}, TextCase{70, "Permission denied"},
                    TextCase{75, "Path/File access error"}, TextCase{76, "Path not found"},
                    TextCase{91, "Object variable or With block variable not set"}, TextCase{94, "Invalid use of Null"},
                    TextCase{380, "Invalid property value"}, TextCase{381, "Invalid property array index"},
                    TextCase{457, "This key is already associated with an element of this collection"},
                    TextCase{35600, "Index out of bounds"}, TextCase{35601, "Element not found"},
                    TextCase{35602, "Key is not unique in collection"},
                    TextCase{1, "Application-defined or object-defined error"}));

} // namespace
