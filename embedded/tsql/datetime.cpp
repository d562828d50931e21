// Moments as texts of one form.
#include "datetime.h"

#include "errors.h"

#include "runtime/text.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <regex>

namespace tsql
{
namespace
{

using namespace std::chrono;

std::string Format(const DateTime &at)
{
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", at.year, at.month, at.day, at.hour,
                  at.minute, at.second, at.nanosecond / 1000000);
    return text;
}

// To the nearest 1/300 s, which may be on the next day.
DateTime Rounded(sys_time<milliseconds> moment)
{
    const sys_days day = floor<days>(moment);
    const auto ticks = ((moment - day).count() * 3 + 5) / 10;
    const sys_time<milliseconds> rounded = day + milliseconds((ticks * 10 + 1) / 3);
    const year_month_day date(floor<days>(rounded));
    const hh_mm_ss time(rounded - floor<days>(rounded));
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(time.hours().count()),
            static_cast<int>(time.minutes().count()),
            static_cast<int>(time.seconds().count()),
            static_cast<int>(time.subseconds().count()) * 1000000};
}

} // namespace

std::string ReadMoment(std::string_view text)
{
    static const std::regex form(R"((\d{4})(-?)(\d\d)\2(\d\d)(?:[T ](\d\d):(\d\d)(?::(\d\d)(?:\.(\d{1,3}))?)?)?)");
    std::match_results<std::string_view::const_iterator> parts;
    const std::string_view given = runtime::Trim(text);
    if (!std::regex_match(given.begin(), given.end(), parts, form))
        Unsupported("the date '" + std::string(text) + "'");
    const auto part = [&](int i) { return parts[i].matched ? std::stoi(parts[i].str()) : 0; };
    const year_month_day day = year{part(1)} / part(3) / part(4);
    if (!day.ok() || part(1) < 1753 || part(5) > 23 || part(6) > 59 || part(7) > 59)
        Raise(242, {"varchar"});
    const milliseconds fraction(parts[8].matched ? std::stoi((parts[8].str() + "00").substr(0, 3)) : 0);
    return Format(Rounded(sys_days(day) + hours(part(5)) + minutes(part(6)) + seconds(part(7)) + fraction));
}

std::string CurrentMoment()
{
    const auto now = floor<milliseconds>(system_clock::now());
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    return Format(Rounded(now + std::chrono::seconds(local.tm_gmtoff)));
}

DateTime MomentOf(std::string_view text)
{
    DateTime at{};
    std::sscanf(std::string(text).c_str(), "%d-%d-%d %d:%d:%d.%d", &at.year, &at.month, &at.day, &at.hour, &at.minute,
                &at.second, &at.nanosecond);
    at.nanosecond *= 1000000;
    return at;
}

} // namespace tsql
