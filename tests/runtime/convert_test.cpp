// Conversions: ranges, rounding of halves, texts that are numbers and texts that are not.
#include "runtime/convert.h"
#include "runtime/error.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using namespace runtime;

template <class Action>
std::int32_t NumberOf(Action action)
{
    try
    {
        action();
    }
    catch (const Error &error)
    {
        return error.Number();
    }
    return 0;
}

struct IntegerCase
{
    const char *text;
    int expected;
};

class IntegerFromText : public testing::TestWithParam<IntegerCase>
{
};

TEST_P(IntegerFromText, IsRead)
{
    EXPECT_EQ(ToInteger(std::string_view(GetParam().text)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, IntegerFromText,
                         testing::Values(IntegerCase{"0", 0}, IntegerCase{"12", 12}, IntegerCase{"-12", -12},
                                         IntegerCase{"+7", 7}, IntegerCase{"  42  ", 42}, IntegerCase{"007", 7},
                                         IntegerCase{"1e3", 1000}, IntegerCase{"2.5", 2}, IntegerCase{"3.5", 4},
                                         IntegerCase{"-2.5", -2}, IntegerCase{"0.5", 0}, IntegerCase{"1.5", 2},
                                         IntegerCase{"32767", 32767}, IntegerCase{"-32768", -32768},
                                         IntegerCase{"32767.49", 32767}, IntegerCase{".5", 0}, IntegerCase{"5.", 5},
                                         IntegerCase{"25e-1", 2}, IntegerCase{"35E-1", 4}, IntegerCase{"0.00015e+4", 2},
                                         IntegerCase{"2.50000000000000000001", 3}, IntegerCase{"1e-400", 0},
                                         IntegerCase{"000000000000000000000012", 12}, IntegerCase{"0e99999", 0}));

class NoIntegerFromText : public testing::TestWithParam<IntegerCase>
{
};

TEST_P(NoIntegerFromText, IsAnError)
{
    EXPECT_EQ(NumberOf([] { ToInteger(std::string_view(GetParam().text)); }), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, NoIntegerFromText,
                         testing::Values(IntegerCase{"", 13}, IntegerCase{"   ", 13}, IntegerCase{"x", 13},
                                         IntegerCase{"1x", 13}, IntegerCase{"1 2", 13}, IntegerCase{"nan", 13},
                                         IntegerCase{"inf", 13}, IntegerCase{"+-1", 13}, IntegerCase{"1e", 13},
                                         IntegerCase{".", 13}, IntegerCase{"e5", 13}, IntegerCase{"1e+", 13},
                                         IntegerCase{"1.2.3", 13}, IntegerCase{"0x10", 13}, IntegerCase{"32768", 6},
                                         IntegerCase{"-32769", 6}, IntegerCase{"32767.5", 6},
                                         IntegerCase{"99999999999999999999", 6}, IntegerCase{"1e999", 6}));

TEST(Convert, IntegerRoundsHalvesToEven)
{
    EXPECT_EQ(ToInteger(0.5), 0);
    EXPECT_EQ(ToInteger(1.5), 2);
    EXPECT_EQ(ToInteger(2.5), 2);
    EXPECT_EQ(ToInteger(-0.5), 0);
    EXPECT_EQ(ToInteger(-1.5), -2);
    EXPECT_EQ(ToInteger(2.4999), 2);
    EXPECT_EQ(ToInteger(2.5001), 3);
}

TEST(Convert, IntegerOverflowsBeyondSixteenBits)
{
    EXPECT_EQ(ToInteger(std::int64_t{32767}), 32767);
    EXPECT_EQ(ToInteger(std::int64_t{-32768}), -32768);
    EXPECT_EQ(NumberOf([] { ToInteger(std::int64_t{32768}); }), 6);
    EXPECT_EQ(NumberOf([] { ToInteger(std::int64_t{-32769}); }), 6);
    EXPECT_EQ(NumberOf([] { ToInteger(std::numeric_limits<double>::quiet_NaN()); }), 6);
    EXPECT_EQ(NumberOf([] { ToInteger(std::numeric_limits<double>::infinity()); }), 6);
}

TEST(Convert, LongOverflowsBeyondThirtyTwoBits)
{
    EXPECT_EQ(ToLong(std::int64_t{2147483647}), 2147483647);
    EXPECT_EQ(ToLong(std::int64_t{-2147483648}), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(NumberOf([] { ToLong(std::int64_t{2147483648}); }), 6);
    EXPECT_EQ(ToLong(std::string_view("        42")), 42);
    EXPECT_EQ(ToLong(2147483646.5), 2147483646);
    EXPECT_EQ(NumberOf([] { ToLong(2147483647.5); }), 6);
}

TEST(Convert, ValuesConvertByWhatTheyHold)
{
    EXPECT_EQ(ToInteger(Value(std::int64_t{5})), 5);
    EXPECT_EQ(ToInteger(Value(std::string("5"))), 5);
    EXPECT_EQ(ToInteger(Value(5.5)), 6);
    EXPECT_EQ(ToInteger(Value(true)), -1);
    EXPECT_EQ(ToInteger(Value(false)), 0);
    EXPECT_EQ(ToLong(Value(true)), -1);
    EXPECT_EQ(NumberOf([] { ToInteger(Value(Null())); }), 94);
    EXPECT_EQ(NumberOf([] { ToLong(Value(Null())); }), 94);
}

TEST(Convert, TextsOfValues)
{
    EXPECT_EQ(ToText(Value(std::string(" a "))), " a ");
    EXPECT_EQ(ToText(Value(std::int64_t{-7})), "-7");
    EXPECT_EQ(ToText(Value(2.5)), "2.5");
    EXPECT_EQ(ToText(Value(true)), "True");
    EXPECT_EQ(ToText(true), "True");
    EXPECT_EQ(ToText(false), "False");
    EXPECT_EQ(NumberOf([] { ToText(Value(Null())); }), 94);
    EXPECT_EQ(ToTextOrEmpty(Value(Null())), "");
    EXPECT_EQ(ToTextOrEmpty(Value(std::int64_t{3})), "3");
}

TEST(Convert, OnlyOneIsOne)
{
    EXPECT_TRUE(IsOne(Value(std::int64_t{1})));
    EXPECT_TRUE(IsOne(Value(true)));
    EXPECT_TRUE(IsOne(Value(1.0)));
    EXPECT_TRUE(IsOne(Value(std::string("1"))));
    EXPECT_FALSE(IsOne(Value(std::int64_t{0})));
    EXPECT_FALSE(IsOne(Value(std::int64_t{2})));
    EXPECT_FALSE(IsOne(Value(std::int64_t{-1})));
    EXPECT_FALSE(IsOne(Value(false)));
    EXPECT_FALSE(IsOne(Value(std::string("yes"))));
    EXPECT_FALSE(IsOne(Value(Null())));
}

} // namespace
