// Dates and times as the server keeps them: a count of 1/300 s from the start of 1900.
#include "datetime.h"

#include "errors.h"
#include "text.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace tsql
{
namespace
{

using namespace std::chrono;

constexpr std::string_view months[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};

std::int64_t DayNumber(int y, int m, int d)
{
    constexpr sys_days origin = year{1900} / January / 1;
    return (sys_days{year{y} / month(m) / day(d)} - origin).count();
}

std::int64_t FloorDivide(std::int64_t value, std::int64_t by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

// How a date or time may be written. Y four digits, y four or two, m d H n s one or two, M D two, N the name of a
// month, f the fraction of a second, A AM or PM; a blank stands for any number of them, everything else for itself.
constexpr const char *datePatterns[] = {"Y-m-d", "Y/m/d", "Y.m.d",  "YMD",   "yMD",   "m/d/y",
                                        "m-d-y", "m.d.y", "N d, y", "N d y", "d N y", "d N, y"};
constexpr const char *timePatterns[] = {"", "H:n:s.f A", "H:n:s.f", "H:n:s A", "H:n:s", "H:n A", "H:n", "H A"};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads from `text` at `at` what the pattern says; `at` goes behind it.
bool Match(std::string_view text, std::size_t &at, std::string_view pattern, DateTime &moment, int &ticks)
{
    const auto digits = [&](std::size_t least, std::size_t most, int &value)
    {
        std::size_t count = 0;
        for (value = 0; count < most && at < text.size() && IsDigit(text[at]); ++count, ++at)
            value = value * 10 + (text[at] - '0');
        return count < least ? 0 : static_cast<int>(count);
    };
    for (const char c : pattern)
    {
        int count = 1;
        switch (c)
        {
        case ' ':
            at = std::min(text.find_first_not_of(' ', at), text.size());
            break;
        case 'Y':
            count = digits(4, 4, moment.year);
            break;
        case 'y':
            // Two digits up to 49 lie in this century.
            count = digits(2, pattern == "yMD" ? 2 : 4, moment.year);
            count = count == 3 ? 0 : count;
            moment.year += count == 2 ? (moment.year < 50 ? 2000 : 1900) : 0;
            break;
        case 'm':
        case 'M':
            count = digits(c == 'M' ? 2 : 1, 2, moment.month);
            break;
        case 'd':
        case 'D':
            count = digits(c == 'D' ? 2 : 1, 2, moment.day);
            break;
        case 'H':
            count = digits(1, 2, moment.hour);
            break;
        case 'n':
            count = digits(1, 2, moment.minute);
            break;
        case 's':
            count = digits(1, 2, moment.second);
            break;
        case 'f':
            count = digits(1, 3, ticks);
            for (int i = count; i < 3; ++i)
                ticks *= 10;
            ticks = (ticks * 3 + 5) / 10;
            break;
        case 'A':
        {
            const bool after = Compare(text.substr(at, 2), "PM") == 0;
            if ((!after && Compare(text.substr(at, 2), "AM") != 0) || moment.hour < 1 || moment.hour > 12)
                return false;
            moment.hour = moment.hour % 12 + (after ? 12 : 0);
            at += 2;
            break;
        }
        case 'N':
        {
            const std::size_t end = std::min(text.find_first_of(" 0123456789,", at), text.size());
            const std::string_view name = text.substr(at, end - at);
            for (moment.month = 1; moment.month <= 12; ++moment.month)
                if (Compare(name, months[moment.month - 1]) == 0 ||
                    Compare(name, months[moment.month - 1].substr(0, 3)) == 0)
                    break;
            count = moment.month <= 12 ? 1 : 0;
            at = end;
            break;
        }
        default:
            count = at < text.size() && text[at] == c ? 1 : 0;
            ++at;
            break;
        }
        if (count == 0)
            return false;
    }
    return true;
}

struct Part
{
    const char *name;
    char kind; // y q m d (day of year: e) (weekday: w) (week: k) h n s f
};
constexpr Part parts[] = {
    {"year", 'y'},        {"yy", 'y'}, {"yyyy", 'y'},    {"quarter", 'q'}, {"qq", 'q'},   {"q", 'q'},
    {"month", 'm'},       {"mm", 'm'}, {"m", 'm'},       {"day", 'd'},     {"dd", 'd'},   {"d", 'd'},
    {"dayofyear", 'e'},   {"dy", 'e'}, {"weekday", 'w'}, {"dw", 'w'},      {"hour", 'h'}, {"hh", 'h'},
    {"minute", 'n'},      {"mi", 'n'}, {"n", 'n'},       {"second", 's'},  {"ss", 's'},   {"s", 's'},
    {"millisecond", 'f'}, {"ms", 'f'},
};

char PartOf(std::string_view name)
{
    for (const Part &part : parts)
        if (Compare(name, part.name) == 0)
            return part.kind;
    return 0;
}

} // namespace

const std::int64_t firstTick = DayNumber(1753, 1, 1) * ticksADay;
const std::int64_t lastTick = DayNumber(10000, 1, 1) * ticksADay - 1;

DateTime FromTicks(std::int64_t ticks)
{
    const std::int64_t days = FloorDivide(ticks, ticksADay);
    const int rest = static_cast<int>(ticks - days * ticksADay);
    const year_month_day date{sys_days{year{1900} / January / 1} + std::chrono::days{days}};
    const int seconds = rest / 300;
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            seconds / 3600,
            seconds / 60 % 60,
            seconds % 60,
            (rest % 300 * 10 + 1) / 3 * 1000000};
}

std::int64_t ToTicks(const DateTime &moment)
{
    return DayNumber(moment.year, moment.month, moment.day) * ticksADay +
           (moment.hour * 3600 + moment.minute * 60 + moment.second) * std::int64_t{300} +
           (moment.nanosecond / 1000000 * 3 + 5) / 10;
}

std::int64_t CurrentTicks()
{
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const auto fraction = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    return ToTicks({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                    std::min(local.tm_sec, 59), static_cast<int>(fraction) * 1000000});
}

std::int64_t ParseTicks(std::string_view given)
{
    const std::string_view text = Trim(given);
    // A date, a time behind it, or a time alone.
    for (int dates = 0; dates <= static_cast<int>(std::size(datePatterns)); ++dates)
        for (const char *timePattern : timePatterns)
        {
            DateTime moment{1900, 1, 1, 0, 0, 0, 0};
            int ticks = 0;
            std::size_t at = 0;
            if (dates < static_cast<int>(std::size(datePatterns)))
            {
                if (!Match(text, at, datePatterns[dates], moment, ticks))
                    break;
                if (at < text.size() && text[at] == 'T')
                    ++at;
                else if (at < text.size() && text[at] != ' ')
                    break;
                Match(text, at, " ", moment, ticks);
            }
            if (!Match(text, at, timePattern, moment, ticks) || at != text.size())
                continue;
            const bool day = (year{moment.year} / month(moment.month) / moment.day).ok();
            if (!day || moment.year < 1753 || moment.hour > 23 || moment.minute > 59 || moment.second > 59 ||
                ToTicks(moment) + ticks > lastTick)
                Raise(242, {"varchar"});
            return ToTicks(moment) + ticks;
        }
    Raise(241);
}

std::string FormatTicks(std::int64_t ticks, int style)
{
    // Y y m d H n s as in the patterns above, with leading zeros; N the short name of the month, D and h filled up with
    // a blank, f milliseconds, A AM or PM.
    struct Style
    {
        int number;
        const char *pattern;
    };
    constexpr Style styles[] = {
        {0, "N D Y h:nA"},      {100, "N D Y h:nA"},     {1, "m/d/y"},         {101, "m/d/Y"},
        {102, "Y.m.d"},         {103, "d/m/Y"},          {104, "d.m.Y"},       {105, "d-m-Y"},
        {106, "d N Y"},         {107, "N d, Y"},         {8, "H:n:s"},         {108, "H:n:s"},
        {9, "N D Y h:n:s:fA"},  {109, "N D Y h:n:s:fA"}, {110, "m-d-Y"},       {111, "Y/m/d"},
        {112, "Ymd"},           {20, "Y-m-d H:n:s"},     {120, "Y-m-d H:n:s"}, {21, "Y-m-d H:n:s.f"},
        {121, "Y-m-d H:n:s.f"}, {126, "Y-m-dTH:n:s.f"}};
    const Style *found = std::begin(styles);
    while (found != std::end(styles) && found->number != style)
        ++found;
    if (found == std::end(styles))
        Raise(281, {std::to_string(style)});
    const DateTime at = FromTicks(ticks);
    std::string out;
    const auto number = [&](int value, std::size_t width, char fill)
    {
        const std::string digits = std::to_string(value);
        out.append(width - std::min(width, digits.size()), fill) += digits;
    };
    for (const char *c = found->pattern; *c; ++c)
    {
        switch (*c)
        {
        case 'Y':
            number(at.year, 4, '0');
            break;
        case 'y':
            number(at.year % 100, 2, '0');
            break;
        case 'm':
            number(at.month, 2, '0');
            break;
        case 'd':
        case 'D':
            number(at.day, 2, *c == 'd' ? '0' : ' ');
            break;
        case 'N':
            out += months[at.month - 1].substr(0, 3);
            break;
        case 'H':
            number(at.hour, 2, '0');
            break;
        case 'h':
            number((at.hour + 11) % 12 + 1, 2, ' ');
            break;
        case 'n':
            number(at.minute, 2, '0');
            break;
        case 's':
            number(at.second, 2, '0');
            break;
        case 'f':
            number(at.nanosecond / 1000000, 3, '0');
            break;
        case 'A':
            out += at.hour < 12 ? "AM" : "PM";
            break;
        default:
            out += *c;
            break;
        }
    }
    return out;
}

bool IsDatePart(std::string_view part)
{
    return PartOf(part) != 0;
}

std::int64_t DatePart(std::string_view part, std::int64_t ticks)
{
    const DateTime at = FromTicks(ticks);
    switch (PartOf(part))
    {
    case 'y':
        return at.year;
    case 'q':
        return (at.month + 2) / 3;
    case 'm':
        return at.month;
    case 'd':
        return at.day;
    case 'e':
        return DayNumber(at.year, at.month, at.day) - DayNumber(at.year, 1, 1) + 1;
    case 'w': // Sunday is 1; the first of January 1900 was a Monday
        return ((DayNumber(at.year, at.month, at.day) + 1) % 7 + 7) % 7 + 1;
    case 'h':
        return at.hour;
    case 'n':
        return at.minute;
    case 's':
        return at.second;
    default:
        return at.nanosecond / 1000000;
    }
}

std::int64_t DateAdd(std::string_view part, std::int64_t count, std::int64_t ticks)
{
    std::int64_t unit = 0;
    switch (PartOf(part))
    {
    case 'y':
    case 'q':
    case 'm':
    {
        const int months = PartOf(part) == 'y' ? 12 : PartOf(part) == 'q' ? 3 : 1;
        DateTime at = FromTicks(ticks);
        const std::int64_t month0 = at.year * std::int64_t{12} + at.month - 1 + count * months;
        const std::int64_t newYear = FloorDivide(month0, 12);
        if (newYear < 1753 || newYear > 9999)
            Raise(517);
        const auto lastDay = year(static_cast<int>(newYear)) / month(static_cast<unsigned>(month0 - newYear * 12 + 1)) /
                             std::chrono::last;
        const int newDay = std::min(at.day, static_cast<int>(static_cast<unsigned>(lastDay.day())));
        const std::int64_t rest = ticks - FloorDivide(ticks, ticksADay) * ticksADay;
        return DayNumber(static_cast<int>(newYear), static_cast<int>(month0 - newYear * 12 + 1), newDay) * ticksADay +
               rest;
    }
    case 'h':
        unit = 300 * 3600;
        break;
    case 'n':
        unit = 300 * 60;
        break;
    case 's':
        unit = 300;
        break;
    case 'f':
        count = FloorDivide(count * 3 + 5, 10);
        unit = 1;
        break;
    default:
        unit = ticksADay;
        break;
    }
    const std::int64_t result = ticks + count * unit;
    if (result < firstTick || result > lastTick)
        Raise(517);
    return result;
}

// Counts the borders of the part that lie between the two moments.
std::int64_t DateDiff(std::string_view part, std::int64_t from, std::int64_t to)
{
    const DateTime a = FromTicks(from);
    const DateTime b = FromTicks(to);
    const auto units = [&](std::int64_t unit) { return FloorDivide(to, unit) - FloorDivide(from, unit); };
    std::int64_t result = 0;
    switch (PartOf(part))
    {
    case 'y':
        result = b.year - a.year;
        break;
    case 'q':
        result = (b.year - a.year) * 4 + (b.month + 2) / 3 - (a.month + 2) / 3;
        break;
    case 'm':
        result = (b.year - a.year) * 12 + b.month - a.month;
        break;
    case 'h':
        result = units(300 * 3600);
        break;
    case 'n':
        result = units(300 * 60);
        break;
    case 's':
        result = units(300);
        break;
    case 'f':
        result = (to - from) * 10 / 3;
        break;
    default:
        result = units(ticksADay);
        break;
    }
    if (result < INT32_MIN || result > INT32_MAX)
        Raise(535);
    return result;
}

} // namespace tsql
