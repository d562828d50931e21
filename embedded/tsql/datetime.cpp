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

constexpr sys_days origin = year{1900} / January / 1;

std::int64_t DayNumber(int y, int m, int d)
{
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

struct Digits
{
    char letter;
    int least, most;
    int DateTime::*field;
};
constexpr Digits numbers[] = {
    {'Y', 4, 4, &DateTime::year},       {'y', 2, 4, &DateTime::year},   {'m', 1, 2, &DateTime::month},
    {'M', 2, 2, &DateTime::month},      {'d', 1, 2, &DateTime::day},    {'D', 2, 2, &DateTime::day},
    {'H', 1, 2, &DateTime::hour},       {'n', 1, 2, &DateTime::minute}, {'s', 1, 2, &DateTime::second},
    {'f', 1, 3, &DateTime::nanosecond}, // thousandths while a text is read
};

// Takes a month's name off the front of `text`; 0 when it has none.
int TakeMonth(std::string_view &text)
{
    const std::string_view name = text.substr(0, text.find_first_of(" 0123456789,"));
    text.remove_prefix(name.size());
    for (int month = 1; month <= 12; ++month)
        if (Compare(name, months[month - 1]) == 0 || Compare(name, months[month - 1].substr(0, 3)) == 0)
            return month;
    return 0;
}

bool TakeNumber(std::string_view &text, const Digits &digits, bool shortYear, DateTime &moment)
{
    int &value = moment.*digits.field;
    const int most = shortYear ? 2 : digits.most;
    int count = 0;
    for (value = 0; count < most && !text.empty() && text[0] >= '0' && text[0] <= '9'; ++count, text.remove_prefix(1))
        value = value * 10 + (text[0] - '0');
    if (digits.letter == 'y' && count == 2) // up to 49 they lie in this century
        value += value < 50 ? 2000 : 1900;
    for (int i = count; digits.letter == 'f' && i < 3; ++i)
        value *= 10;
    return count >= digits.least && !(digits.letter == 'y' && count == 3);
}

bool TakeHalfOfDay(std::string_view &text, int &hour)
{
    const bool after = Compare(text.substr(0, 2), "PM") == 0;
    if ((!after && Compare(text.substr(0, 2), "AM") != 0) || hour < 1 || hour > 12)
        return false;
    hour = hour % 12 + (after ? 12 : 0);
    text.remove_prefix(2);
    return true;
}

// Takes off the front of `text` what the pattern says.
bool Match(std::string_view &text, std::string_view pattern, DateTime &moment)
{
    for (const char c : pattern)
    {
        const Digits *digits = std::find_if(std::begin(numbers), std::end(numbers),
                                            [&](const Digits &candidate) { return candidate.letter == c; });
        bool matched = true;
        if (digits != std::end(numbers))
            matched = TakeNumber(text, *digits, pattern == "yMD" && c == 'y', moment);
        else if (c == ' ')
            text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        else if (c == 'A')
            matched = TakeHalfOfDay(text, moment.hour);
        else if (c == 'N')
            matched = (moment.month = TakeMonth(text)) > 0;
        else if ((matched = text.substr(0, 1) == std::string_view(&c, 1)))
            text.remove_prefix(1);
        if (!matched)
            return false;
    }
    return true;
}

// A part of a moment: what it is called, its length in ticks or in months.
struct Part
{
    std::string_view names[3];
    std::int64_t ticks;
    int months;
};
constexpr std::int64_t ticksAnHour = 300 * 3600;
constexpr Part parts[] = {
    {{"year", "yy", "yyyy"}, 0, 12},
    {{"quarter", "qq", "q"}, 0, 3},
    {{"month", "mm", "m"}, 0, 1},
    {{"day", "dd", "d"}, ticksADay, 0},
    {{"dayofyear", "dy", "dy"}, ticksADay, 0},
    {{"weekday", "dw", "dw"}, ticksADay, 0},
    {{"hour", "hh", "hh"}, ticksAnHour, 0},
    {{"minute", "mi", "n"}, ticksAnHour / 60, 0},
    {{"second", "ss", "s"}, 300, 0},
    {{"millisecond", "ms", "ms"}, 0, 0}, // three tenths of a tick
};

// Null when there is no such part.
const Part *PartOf(std::string_view name)
{
    const Part *found =
        std::find_if(std::begin(parts), std::end(parts),
                     [&](const Part &part)
                     {
                         return std::any_of(std::begin(part.names), std::end(part.names),
                                            [&](std::string_view known) { return Compare(name, known) == 0; });
                     });
    return found == std::end(parts) ? nullptr : found;
}

} // namespace

const std::int64_t firstTick = DayNumber(1753, 1, 1) * ticksADay;
const std::int64_t lastTick = DayNumber(10000, 1, 1) * ticksADay - 1;

DateTime FromTicks(std::int64_t ticks)
{
    const std::int64_t days = FloorDivide(ticks, ticksADay);
    const int rest = static_cast<int>(ticks - days * ticksADay);
    const year_month_day date{origin + std::chrono::days{days}};
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
    for (std::size_t dates = 0; dates <= std::size(datePatterns); ++dates)
        for (const char *timePattern : timePatterns)
        {
            DateTime moment{1900, 1, 1, 0, 0, 0, 0};
            std::string_view rest = text;
            if (dates < std::size(datePatterns))
            {
                if (!Match(rest, datePatterns[dates], moment) || (!rest.empty() && rest[0] != 'T' && rest[0] != ' '))
                    break;
                Match(rest, rest.substr(0, 1) == "T" ? "T " : " ", moment);
            }
            if (!Match(rest, timePattern, moment) || !rest.empty())
                continue;
            moment.nanosecond *= 1000000;
            const bool day = (year{moment.year} / month(moment.month) / moment.day).ok();
            if (!day || moment.year < 1753 || moment.hour > 23 || moment.minute > 59 || moment.second > 59 ||
                ToTicks(moment) > lastTick)
                Raise(242, {"varchar"});
            return ToTicks(moment);
        }
    Raise(241);
}

std::string FormatTicks(std::int64_t ticks, int style)
{
    // Y y m d H n s as in the patterns above, with leading zeros; N the short name of the month, D and h filled up with
    // a blank, f milliseconds, A AM or PM.
    // clang-format off
    constexpr std::pair<int, const char *> styles[] = {
        {100, "N D Y h:nA"}, {1, "m/d/y"}, {101, "m/d/Y"}, {102, "Y.m.d"}, {103, "d/m/Y"}, {104, "d.m.Y"},
        {105, "d-m-Y"}, {106, "d N Y"}, {107, "N d, Y"}, {108, "H:n:s"}, {109, "N D Y h:n:s:fA"}, {110, "m-d-Y"},
        {111, "Y/m/d"}, {112, "Ymd"}, {120, "Y-m-d H:n:s"}, {121, "Y-m-d H:n:s.f"}, {126, "Y-m-dTH:n:s.f"}};
    // clang-format on
    const bool plain =
        style == 0 || style == 8 || style == 9 || style == 20 || style == 21; // the same as with 100 more
    const auto found =
        std::find_if(std::begin(styles), std::end(styles),
                     [&](const auto &candidate) { return candidate.first == style + (plain ? 100 : 0); });
    if (found == std::end(styles))
        Raise(281, {std::to_string(style)});
    const DateTime at = FromTicks(ticks);
    const struct
    {
        char letter;
        int value;
        std::size_t width;
        char fill;
    } fields[] = {{'Y', at.year, 4, '0'},   {'y', at.year % 100, 2, '0'},
                  {'m', at.month, 2, '0'},  {'d', at.day, 2, '0'},
                  {'D', at.day, 2, ' '},    {'H', at.hour, 2, '0'},
                  {'n', at.minute, 2, '0'}, {'h', (at.hour + 11) % 12 + 1, 2, ' '},
                  {'s', at.second, 2, '0'}, {'f', at.nanosecond / 1000000, 3, '0'}};
    std::string out;
    for (const char *c = found->second; *c; ++c)
    {
        const auto field = std::find_if(std::begin(fields), std::end(fields),
                                        [&](const auto &candidate) { return candidate.letter == *c; });
        if (field != std::end(fields))
        {
            const std::string digits = std::to_string(field->value);
            out.append(field->width - std::min(field->width, digits.size()), field->fill) += digits;
        }
        else if (*c == 'N')
            out += months[at.month - 1].substr(0, 3);
        else if (*c == 'A')
            out += at.hour < 12 ? "AM" : "PM";
        else
            out += *c;
    }
    return out;
}

bool IsDatePart(std::string_view part)
{
    return PartOf(part) != nullptr;
}

std::int64_t DatePart(std::string_view part, std::int64_t ticks)
{
    const DateTime at = FromTicks(ticks);
    const std::int64_t day = FloorDivide(ticks, ticksADay);
    const std::int64_t dayOfYear = day - DayNumber(at.year, 1, 1) + 1;
    const std::int64_t weekDay = ((day + 1) % 7 + 7) % 7 + 1; // Sunday is 1; 1 January 1900 was a Monday
    const std::int64_t values[] = {
        at.year,   (at.month + 2) / 3,     at.month, at.day, dayOfYear, weekDay, at.hour, at.minute,
        at.second, at.nanosecond / 1000000};
    return values[PartOf(part) - parts]; // in the order of the parts
}

std::int64_t DateAdd(std::string_view name, std::int64_t count, std::int64_t ticks)
{
    const Part &part = *PartOf(name);
    std::int64_t result = ticks + (part.ticks > 0 ? count * part.ticks : FloorDivide(count * 3 + 5, 10));
    if (part.months > 0)
    {
        // The last day of a month stays the last when the new one is shorter.
        const DateTime at = FromTicks(ticks);
        const std::int64_t since = at.year * std::int64_t{12} + at.month - 1 + count * part.months;
        const std::int64_t newYear = FloorDivide(since, 12);
        if (newYear < 1753 || newYear > 9999)
            Raise(517);
        const auto newMonth = year(static_cast<int>(newYear)) / month(static_cast<unsigned>(since % 12 + 1));
        const unsigned lastDay = static_cast<unsigned>((newMonth / std::chrono::last).day());
        const sys_days newDay{newMonth / std::min(at.day, static_cast<int>(lastDay))};
        result = ticks + ((newDay - origin).count() - FloorDivide(ticks, ticksADay)) * ticksADay;
    }
    if (result < firstTick || result > lastTick)
        Raise(517);
    return result;
}

// Counts the borders of the part that lie between the two moments.
std::int64_t DateDiff(std::string_view name, std::int64_t from, std::int64_t to)
{
    const Part &part = *PartOf(name);
    std::int64_t result = (to - from) * 10 / 3;
    const auto monthsOf = [](std::int64_t ticks) { return FromTicks(ticks).year * 12 + FromTicks(ticks).month - 1; };
    if (part.months > 0)
        result = monthsOf(to) / part.months - monthsOf(from) / part.months;
    else if (part.ticks > 0)
        result = FloorDivide(to, part.ticks) - FloorDivide(from, part.ticks);
    if (result < INT32_MIN || result > INT32_MAX)
        Raise(535);
    return result;
}

} // namespace tsql
