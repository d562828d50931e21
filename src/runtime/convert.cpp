// Conversions between what the database gives and what records hold.
#include "runtime/convert.h"

#include "runtime/error.h"
#include "runtime/text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace runtime
{

namespace
{

template <class Integer>
Integer Narrow(std::int64_t value)
{
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max())
        Raise(kOverflow);
    return static_cast<Integer>(value);
}

template <class Integer>
Integer Narrow(double value)
{
    const double rounded = RoundHalfToEven(value);
    // Written so that not-a-number fails too.
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        Raise(kOverflow);
    return static_cast<Integer>(rounded);
}

template <class Integer>
Integer Narrow(std::string_view text)
{
    text = Trim(text);
    if (!text.empty() && text.front() == '+')
    {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-')
            Raise(kTypeMismatch);
    }
    const char *const end = text.data() + text.size();
    std::int64_t whole = 0;
    if (const auto read = std::from_chars(text.data(), end, whole); read.ec == std::errc() && read.ptr == end)
        return Narrow<Integer>(whole);
    // from_chars also reads "inf" and "nan", which are no numbers here.
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
        Raise(kTypeMismatch);
    double number = 0;
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ptr != end)
        Raise(kTypeMismatch);
    if (read.ec == std::errc::result_out_of_range)
        Raise(kOverflow);
    if (read.ec != std::errc())
        Raise(kTypeMismatch);
    return Narrow<Integer>(number);
}

template <class Integer>
Integer Convert(const Value &value)
{
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return Narrow<Integer>(*whole);
    if (const auto *text = std::get_if<std::string>(&value))
        return Narrow<Integer>(std::string_view(*text));
    if (const auto *number = std::get_if<double>(&value))
        return Narrow<Integer>(*number);
    if (const auto *truth = std::get_if<bool>(&value))
        return *truth ? -1 : 0;
    Raise(kInvalidUseOfNull);
}

} // namespace

double RoundHalfToEven(double value)
{
    const double floor = std::floor(value);
    const double rest = value - floor;
    if (rest < 0.5)
        return floor;
    if (rest > 0.5)
        return floor + 1;
    return std::fmod(floor, 2) == 0 ? floor : floor + 1;
}

std::int16_t ToInteger(std::int64_t value)
{
    return Narrow<std::int16_t>(value);
}

std::int16_t ToInteger(double value)
{
    return Narrow<std::int16_t>(value);
}

std::int16_t ToInteger(std::string_view text)
{
    return Narrow<std::int16_t>(text);
}

std::int16_t ToInteger(const Value &value)
{
    return Convert<std::int16_t>(value);
}

std::int32_t ToLong(std::int64_t value)
{
    return Narrow<std::int32_t>(value);
}

std::int32_t ToLong(double value)
{
    return Narrow<std::int32_t>(value);
}

std::int32_t ToLong(std::string_view text)
{
    return Narrow<std::int32_t>(text);
}

std::int32_t ToLong(const Value &value)
{
    return Convert<std::int32_t>(value);
}

std::string ToText(const Value &value)
{
    if (const auto *text = std::get_if<std::string>(&value))
        return *text;
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return std::to_string(*whole);
    if (const auto *truth = std::get_if<bool>(&value))
        return ToText(*truth);
    if (const auto *number = std::get_if<double>(&value))
    {
        char buffer[32];
        const auto written = std::to_chars(buffer, buffer + sizeof buffer, *number);
        return std::string(buffer, written.ptr);
    }
    Raise(kInvalidUseOfNull);
}

std::string ToTextOrEmpty(const Value &value)
{
    return IsNull(value) ? std::string() : ToText(value);
}

std::string ToText(bool value)
{
    return value ? "True" : "False";
}

bool IsOne(const Value &value)
{
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return *whole == 1;
    if (const auto *truth = std::get_if<bool>(&value))
        return *truth;
    if (const auto *number = std::get_if<double>(&value))
        return *number == 1;
    if (const auto *text = std::get_if<std::string>(&value))
        return Trim(*text) == "1";
    return false;
}

} // namespace runtime
