// Dates and times as the server keeps them: a count of 1/300 s from the start of 1900.
#include "datetime.h"

#include "errors.h"
#include "text.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace tsql
{
namespace
{

using namespace std::chrono;

constexpr const char *monthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::int64_t DayNumber(int y, int m, int d)
{
    constexpr sys_days origin = year{1900} / January / 1;
    return (sys_days{year{y} / month(m) / day(d)} - origin).count();
}

std::int64_t FloorDivide(std::int64_t value, std::int64_t by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

// Reads a date text piece by piece.
class Reader
{
public:
    explicit Reader(std::string_view text) : m_text(Trim(text)) {}

    bool AtEnd() const { return m_at == m_text.size(); }
    char Peek() const { return AtEnd() ? '\0' : m_text[m_at]; }
    void SkipBlanks()
    {
        while (Peek() == ' ')
            ++m_at;
    }
    bool Skip(char c)
    {
        const bool there = Peek() == c;
        m_at += there ? 1 : 0;
        return there;
    }
    // A number of digits; `digits` receives how many there were.
    int Number(int &digits)
    {
        int value = 0;
        for (digits = 0; Peek() >= '0' && Peek() <= '9'; ++digits, ++m_at)
            if (digits < 9)
                value = value * 10 + (Peek() - '0');
        if (digits == 0 || digits > 9)
            Raise(241);
        return value;
    }
    std::string Word()
    {
        std::string word;
        for (; (Peek() | 32) >= 'a' && (Peek() | 32) <= 'z'; ++m_at)
            word += static_cast<char>(Peek() | 32);
        return word;
    }
    std::size_t m_at = 0;

private:
    std::string_view m_text;
};

// The month a word names by its first three letters or in full, 0 for none.
int MonthOf(const std::string &word)
{
    static constexpr const char *names[] = {"january", "february", "march",     "april",   "may",      "june",
                                            "july",    "august",   "september", "october", "november", "december"};
    for (int i = 0; i < 12; ++i)
        if (word == names[i] || (word.size() == 3 && std::string_view(names[i]).substr(0, 3) == word))
            return i + 1;
    return 0;
}

int FullYear(int y, int digits)
{
    return digits <= 2 ? (y < 50 ? 2000 + y : 1900 + y) : y;
}

void ReadDate(Reader &reader, DateTime &moment)
{
    int digits = 0;
    int ignored = 0;
    if (const int named = MonthOf(reader.Word()))
    {
        // Jan 2 2006, January 2, 2006
        moment.month = named;
        reader.SkipBlanks();
        moment.day = reader.Number(ignored);
        reader.Skip(',');
        reader.SkipBlanks();
        moment.year = reader.Number(digits);
        moment.year = FullYear(moment.year, digits);
        return;
    }
    const int first = reader.Number(digits);
    if (digits == 8 || digits == 6)
    {
        moment.year = digits == 8 ? first / 10000 : FullYear(first / 10000, 2);
        moment.month = first / 100 % 100;
        moment.day = first % 100;
        return;
    }
    const char separator = reader.Peek();
    if (separator == ' ')
    {
        // 2 Jan 2006
        reader.SkipBlanks();
        moment.day = first;
        moment.month = MonthOf(reader.Word());
        reader.SkipBlanks();
        moment.year = reader.Number(digits);
        moment.year = FullYear(moment.year, digits);
        if (moment.month == 0)
            Raise(241);
        return;
    }
    if ((separator != '-' && separator != '/' && separator != '.') || !reader.Skip(separator))
        Raise(241);
    const int second = reader.Number(ignored);
    if (!reader.Skip(separator))
        Raise(241);
    int lastDigits = 0;
    const int third = reader.Number(lastDigits);
    if (digits == 4) // 2006-01-02
    {
        moment.year = first;
        moment.month = second;
        moment.day = third;
    }
    else // 1/2/2006
    {
        moment.month = first;
        moment.day = second;
        moment.year = FullYear(third, lastDigits);
    }
}

// Reads hh:mm[:ss[.fff]] [AM|PM] and gives the rounded 1/300 s behind the second.
int ReadTime(Reader &reader, DateTime &moment)
{
    int digits = 0;
    int ticks = 0;
    moment.hour = reader.Number(digits);
    bool clock = reader.Skip(':');
    if (clock)
    {
        moment.minute = reader.Number(digits);
        if (reader.Skip(':'))
        {
            moment.second = reader.Number(digits);
            if (reader.Skip('.'))
            {
                int fraction = reader.Number(digits);
                for (; digits < 3; ++digits)
                    fraction *= 10;
                if (digits > 3)
                    Raise(241);
                ticks = (fraction * 3 + 5) / 10;
            }
        }
    }
    reader.SkipBlanks();
    const std::string half = reader.Word();
    if (half == "am" || half == "pm")
    {
        if (moment.hour < 1 || moment.hour > 12)
            Raise(241);
        moment.hour = moment.hour % 12 + (half == "pm" ? 12 : 0);
    }
    else if (!half.empty() || !clock)
        Raise(241);
    return ticks;
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

std::int64_t ParseTicks(std::string_view text)
{
    DateTime moment{1900, 1, 1, 0, 0, 0, 0};
    Reader reader(text);
    if (reader.AtEnd())
        return 0;
    int ticks = 0;
    const Reader start = reader;
    int digits = 0;
    const bool startsWithDigit = reader.Peek() >= '0' && reader.Peek() <= '9';
    if (startsWithDigit)
        reader.Number(digits);
    reader.SkipBlanks();
    const bool timeAlone = startsWithDigit && digits <= 2 &&
                           (reader.Peek() == ':' || (reader.Peek() | 32) == 'p' || (reader.Peek() | 32) == 'a');
    reader = start;
    if (!timeAlone || MonthOf(reader.Word()) != 0)
    {
        ReadDate(reader, moment);
        if (reader.Peek() == 'T')
            ++reader.m_at;
        reader.SkipBlanks();
    }
    if (!reader.AtEnd())
        ticks = ReadTime(reader, moment);
    if (!reader.AtEnd())
        Raise(241);
    if (moment.year < 1753 || moment.year > 9999 || moment.hour > 23 || moment.minute > 59 || moment.second > 59 ||
        !(year{moment.year} / month(moment.month) / day(moment.day)).ok())
        Raise(242, {"varchar"});
    const std::int64_t result = ToTicks(moment) + ticks;
    if (result > lastTick)
        Raise(242, {"varchar"});
    return result;
}

std::string FormatTicks(std::int64_t ticks, int style)
{
    const DateTime at = FromTicks(ticks);
    const int milliseconds = at.nanosecond / 1000000;
    const int hour = at.hour % 12 == 0 ? 12 : at.hour % 12;
    const char *half = at.hour < 12 ? "AM" : "PM";
    const char *name = monthNames[at.month - 1];
    char text[64];
    const auto write = [&](const char *format, auto... values)
    {
        std::snprintf(text, sizeof text, format, values...);
        return std::string(text);
    };
    const int shortYear = at.year % 100;
    switch (style)
    {
    case 0:
    case 100:
        return write("%s %2d %04d %2d:%02d%s", name, at.day, at.year, hour, at.minute, half);
    case 1:
        return write("%02d/%02d/%02d", at.month, at.day, shortYear);
    case 101:
        return write("%02d/%02d/%04d", at.month, at.day, at.year);
    case 102:
        return write("%04d.%02d.%02d", at.year, at.month, at.day);
    case 103:
        return write("%02d/%02d/%04d", at.day, at.month, at.year);
    case 104:
        return write("%02d.%02d.%04d", at.day, at.month, at.year);
    case 105:
        return write("%02d-%02d-%04d", at.day, at.month, at.year);
    case 106:
        return write("%02d %s %04d", at.day, name, at.year);
    case 107:
        return write("%s %02d, %04d", name, at.day, at.year);
    case 8:
    case 108:
        return write("%02d:%02d:%02d", at.hour, at.minute, at.second);
    case 9:
    case 109:
        return write("%s %2d %04d %2d:%02d:%02d:%03d%s", name, at.day, at.year, hour, at.minute, at.second,
                     milliseconds, half);
    case 110:
        return write("%02d-%02d-%04d", at.month, at.day, at.year);
    case 111:
        return write("%04d/%02d/%02d", at.year, at.month, at.day);
    case 112:
        return write("%04d%02d%02d", at.year, at.month, at.day);
    case 20:
    case 120:
        return write("%04d-%02d-%02d %02d:%02d:%02d", at.year, at.month, at.day, at.hour, at.minute, at.second);
    case 21:
    case 121:
        return write("%04d-%02d-%02d %02d:%02d:%02d.%03d", at.year, at.month, at.day, at.hour, at.minute, at.second,
                     milliseconds);
    case 126:
        return write("%04d-%02d-%02dT%02d:%02d:%02d.%03d", at.year, at.month, at.day, at.hour, at.minute, at.second,
                     milliseconds);
    default:
        Raise(281, {std::to_string(style)});
    }
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
