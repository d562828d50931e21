// Conversions: ranges, rounding of halves, texts that are numbers and texts that are not.
#include "runtime/convert.h"
#include "support/error_number.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using namespace runtime;
using support::NumberOf;

struct IntegerCase
{
    const char *text;
    int expected;
};

TEST(Convert, TextsThatAreIntegers)
{
    static const IntegerCase kCases[] = {{"0", 0},
                                         {"12", 12},
                                         {"-12", -12},
                                         {"+7", 7},
                                         {"  42  ", 42},
                                         {"007", 7},
                                         {"1e3", 1000},
                                         {"2.5", 2},
                                         {"3.5", 4},
                                         {"-2.5", -2},
                                         {"0.5", 0},
                                         {"1.5", 2},
                                         {"32767", 32767},
                                         {"-32768", -32768},
                                         {"32767.49", 32767},
                                         {".5", 0},
                                         {"5.", 5},
                                         {"25e-1", 2},
                                         {"35E-1", 4},
                                         {"0.00015e+4", 2},
                                         {"2.50000000000000000001", 3},
                                         {"1e-400", 0},
                                         {"000000000000000000000012", 12},
                                         {"0e99999", 0}};
    for (const auto &[text, expected] : kCases)
        EXPECT_EQ(ToInteger(std::string_view(text)), expected) << text;
}

TEST(Convert, TextsThatAreNot)
{
    static const IntegerCase kCases[] = {
        {"", 13},      {"   ", 13},  {"x", 13},    {"1x", 13},    {"1 2", 13},    {"nan", 13},
        {"inf", 13},   {"+-1", 13},  {"1e", 13},   {".", 13},     {"e5", 13},     {"1e+", 13},
        {"1.2.3", 13}, {"0x10", 13}, {"32768", 6}, {"-32769", 6}, {"32767.5", 6}, {"99999999999999999999", 6},
        {"1e999", 6}};
    for (const auto &[text, number] : kCases)
        EXPECT_EQ(NumberOf([&, from = text] { ToInteger(std::string_view(from)); }), number) << text;
}

TEST(Convert, IntegerRoundsHalvesToEven)
{
    static const std::pair<double, int> kCases[] = {{0.5, 0},   {1.5, 2},    {2.5, 2},   {-0.5, 0},
                                                    {-1.5, -2}, {2.4999, 2}, {2.5001, 3}};
    for (const auto &[value, expected] : kCases)
        EXPECT_EQ(ToInteger(value), expected) << value;
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
