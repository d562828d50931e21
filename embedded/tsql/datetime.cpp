// Moments as texts of one form.
#include "datetime.h"

#include "errors.h"

#include "runtime/text.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

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

} // namespace

std::string ReadMoment(std::string_view text)
{
    constexpr std::string_view times[] = {"", " 00:00", " 00:00:00", " 00:00:00.0", " 00:00:00.00", " 00:00:00.000"};
    std::string form; // with 0 for each digit
    std::string digits;
    for (const char c : runtime::Trim(text))
    {
        const bool digit = c >= '0' && c <= '9';
        form += digit ? '0' : c == 'T' ? ' ' : c;
        digits.append(digit ? 1 : 0, c);
    }
    const std::string_view date = form.starts_with("0000-00-00") ? "0000-00-00" : "00000000";
    digits.resize(std::max<std::size_t>(digits.size(), 17), '0');
    if (!form.starts_with(date) || std::ranges::count(times, form.substr(date.size())) == 0 || digits[16] != '0')
        Unsupported("the date '" + std::string(text) + "'");
    const auto part = [&](int at, int count) { return std::stoi(digits.substr(at, count)); };
    const DateTime at{part(0, 4), part(4, 2), part(6, 2), part(8, 2), part(10, 2), part(12, 2), part(14, 3) * 1000000};
    if (!(year(at.year) / at.month / at.day).ok() || at.year < 1753 || at.hour > 23 || at.minute > 59 || at.second > 59)
        Raise(242, {"varchar"});
    return Format(at);
}

std::string CurrentMoment()
{
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    const auto hundredths = static_cast<int>(floor<milliseconds>(now.time_since_epoch()).count() / 10 % 100);
    return Format({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec,
                   hundredths * 10000000});
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
