// Reading, writing and reckoning with dates.
#include "tsql/datetime.h"

#include <gtest/gtest.h>

namespace
{

using namespace tsql;

std::string Shown(std::string_view text)
{
    try
    {
        return FormatTicks(ParseTicks(text), 121);
    }
    catch (const SqlError &error)
    {
        return std::to_string(error.Number());
    }
}

struct DateCase
{
    const char *text;
    const char *shown;
};

TEST(DateTime, ReadsTheFormsOfTheServer)
{
    constexpr DateCase cases[] = {
        {"", "1900-01-01 00:00:00.000"},
        {"2006-01-02", "2006-01-02 00:00:00.000"},
        {"20060102", "2006-01-02 00:00:00.000"},
        {"060102", "2006-01-02 00:00:00.000"},
        {"2006-01-02 15:04:05", "2006-01-02 15:04:05.000"},
        {"2006-01-02T15:04:05", "2006-01-02 15:04:05.000"},
        {"2006-01-02 15:04:05.5", "2006-01-02 15:04:05.500"},
        {"2006-01-02 15:04", "2006-01-02 15:04:00.000"},
        {"20060102 3:04PM", "2006-01-02 15:04:00.000"},
        {"1/2/2006", "2006-01-02 00:00:00.000"},
        {"1/2/49", "2049-01-02 00:00:00.000"},
        {"1/2/50", "1950-01-02 00:00:00.000"},
        {"Jan 2 2006", "2006-01-02 00:00:00.000"},
        {"Jan  2 2006  3:04PM", "2006-01-02 15:04:00.000"},
        {"january 2, 2006", "2006-01-02 00:00:00.000"},
        {"2 Jan 2006 12:00AM", "2006-01-02 00:00:00.000"},
        {"15:04", "1900-01-01 15:04:00.000"},
        {"  2006-01-02  ", "2006-01-02 00:00:00.000"},
        {"1753-01-01", "1753-01-01 00:00:00.000"},
        {"9999-12-31 23:59:59.997", "9999-12-31 23:59:59.997"},
        {"2004-02-29", "2004-02-29 00:00:00.000"},
        {"2005-02-29", "242"},
        {"2006-13-01", "242"},
        {"1752-12-31", "242"},
        {"2006-01-02 24:00", "242"},
        {"9999-12-31 23:59:59.999", "242"},
        {"never", "241"},
        {"2006", "241"},
        {"2006-01", "241"},
        {"2006-01-02 x", "241"},
        {"2006-01-02 13:00PM", "241"},
    };
    for (const DateCase &one : cases)
        EXPECT_EQ(one.shown, Shown(one.text)) << one.text;
}

TEST(DateTime, KeepsThreeHundredthsOfASecond)
{
    // The rounding table of the type's documentation.
    constexpr DateCase cases[] = {
        {"1998-01-01 23:59:59.990", "1998-01-01 23:59:59.990"}, {"1998-01-01 23:59:59.991", "1998-01-01 23:59:59.990"},
        {"1998-01-01 23:59:59.992", "1998-01-01 23:59:59.993"}, {"1998-01-01 23:59:59.993", "1998-01-01 23:59:59.993"},
        {"1998-01-01 23:59:59.994", "1998-01-01 23:59:59.993"}, {"1998-01-01 23:59:59.995", "1998-01-01 23:59:59.997"},
        {"1998-01-01 23:59:59.998", "1998-01-01 23:59:59.997"}, {"1998-01-01 23:59:59.999", "1998-01-02 00:00:00.000"},
    };
    for (const DateCase &one : cases)
        EXPECT_EQ(one.shown, Shown(one.text)) << one.text;
}

TEST(DateTime, StylesOfConvert)
{
    const std::int64_t ticks = ParseTicks("2006-01-02 15:04:05.007");
    const std::pair<int, const char *> styles[] = {
        {0, "Jan  2 2006  3:04PM"},
        {100, "Jan  2 2006  3:04PM"},
        {1, "01/02/06"},
        {101, "01/02/2006"},
        {102, "2006.01.02"},
        {103, "02/01/2006"},
        {104, "02.01.2006"},
        {105, "02-01-2006"},
        {106, "02 Jan 2006"},
        {107, "Jan 02, 2006"},
        {108, "15:04:05"},
        {109, "Jan  2 2006  3:04:05:007PM"},
        {110, "01-02-2006"},
        {111, "2006/01/02"},
        {112, "20060102"},
        {120, "2006-01-02 15:04:05"},
        {121, "2006-01-02 15:04:05.007"},
        {126, "2006-01-02T15:04:05.007"},
    };
    for (const auto &[style, text] : styles)
        EXPECT_EQ(text, FormatTicks(ticks, style)) << style;
    EXPECT_EQ("Dec 31 1999 12:00AM", FormatTicks(ParseTicks("1999-12-31"), 0));
    EXPECT_EQ("Dec 31 1999 12:30PM", FormatTicks(ParseTicks("1999-12-31 12:30"), 0));
    EXPECT_THROW(FormatTicks(ticks, 999), SqlError);
}

TEST(DateTime, TicksAndPartsAgree)
{
    const DateTime moment{1867, 7, 1, 13, 14, 15, 7000000};
    const DateTime back = FromTicks(ToTicks(moment));
    EXPECT_EQ(1867, back.year);
    EXPECT_EQ(7, back.month);
    EXPECT_EQ(1, back.day);
    EXPECT_EQ(13, back.hour);
    EXPECT_EQ(14, back.minute);
    EXPECT_EQ(15, back.second);
    EXPECT_EQ(7000000, back.nanosecond);
    EXPECT_EQ(0, ToTicks({1900, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(ticksADay, ToTicks({1900, 1, 2, 0, 0, 0, 0}));
}

TEST(DateTime, CurrentTicksIsNow)
{
    const std::int64_t first = CurrentTicks();
    EXPECT_GT(first, ParseTicks("2020-01-01"));
    EXPECT_LE(first, CurrentTicks());
}

} // namespace
