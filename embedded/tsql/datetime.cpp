// Dates and times as they lie in the file: a count of 1/300 s from the start of 1900.
#include "datetime.h"

#include "errors.h"
#include "text.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace tsql
{
namespace
{

using namespace std::chrono;

constexpr sys_days origin = year{1900} / January / 1;
constexpr std::int64_t ticksADay = std::int64_t{300} * 86400;

std::int64_t ToTicks(const year_month_day &day, const DateTime &time)
{
    return (sys_days{day} - origin).count() * ticksADay +
           (time.hour * 3600 + time.minute * 60 + time.second) * std::int64_t{300} +
           (time.nanosecond / 1000000 * 3 + 5) / 10;
}

// Takes `count` digits off the front of `text`.
bool Digits(std::string_view &text, std::size_t count, int &value)
{
    value = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (i >= text.size() || text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
    }
    text.remove_prefix(count);
    return true;
}

bool Mark(std::string_view &text, char mark)
{
    const bool there = text.starts_with(mark);
    text.remove_prefix(there ? 1 : 0);
    return there;
}

bool Date(std::string_view &text, DateTime &moment)
{
    if (!Digits(text, 4, moment.year))
        return false;
    const bool dashes = Mark(text, '-');
    return Digits(text, 2, moment.month) && Mark(text, '-') == dashes && Digits(text, 2, moment.day);
}

// hh:mm[:ss[.f[f[f]]]]
bool Time(std::string_view &text, DateTime &moment)
{
    if (!Digits(text, 2, moment.hour) || !Mark(text, ':') || !Digits(text, 2, moment.minute))
        return false;
    if (!Mark(text, ':'))
        return true;
    if (!Digits(text, 2, moment.second))
        return false;
    const bool fraction = Mark(text, '.');
    int unit = 100'000'000;
    for (int digit = 0; unit >= 1'000'000 && fraction && Digits(text, 1, digit); unit /= 10)
        moment.nanosecond += digit * unit;
    return !fraction || unit < 100'000'000;
}

} // namespace

DateTime FromTicks(std::int64_t ticks)
{
    const std::int64_t days = ticks / ticksADay - (ticks % ticksADay < 0 ? 1 : 0);
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

std::int64_t CurrentTicks()
{
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const auto fraction = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    const year_month_day day = year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday;
    return ToTicks(
        day, {0, 0, 0, local.tm_hour, local.tm_min, std::min(local.tm_sec, 59), static_cast<int>(fraction) * 1000000});
}

std::int64_t ParseTicks(std::string_view given)
{
    std::string_view text = runtime::Trim(given);
    DateTime moment{};
    const bool isDate = Date(text, moment);
    const bool withTime = isDate && (Mark(text, 'T') || Mark(text, ' '));
    if (!isDate || (withTime && !Time(text, moment)) || !text.empty())
        Unsupported("the date '" + std::string(given) + "'");
    const year_month_day day = year{moment.year} / moment.month / moment.day;
    if (!day.ok() || moment.year < 1753 || moment.hour > 23 || moment.minute > 59 || moment.second > 59)
        Raise(242, {"varchar"});
    return ToTicks(day, moment);
}

std::string FormatTicks(std::int64_t ticks, int style)
{
    if (style != 120 && style != 121 && style != 126)
        Unsupported("datetime as text in style " + std::to_string(style));
    const DateTime at = FromTicks(ticks);
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d%c%02d:%02d:%02d.%03d", at.year, at.month, at.day,
                  style == 126 ? 'T' : ' ', at.hour, at.minute, at.second, at.nanosecond / 1000000);
    return std::string(text, style == 120 ? 19 : 23);
}

} // namespace tsql
