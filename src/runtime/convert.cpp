// Conversions between what the database gives and what records hold.
#include "runtime/convert.h"

#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
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

// A number as it is written: its sign, its digits, and how many of these are before the decimal point (negative: so
// many zeros follow the point).
struct Decimal
{
    bool negative = false;
    std::string digits;
    std::int64_t point = 0;
};

// Decimal or exponential notation. Error 13 for anything else.
Decimal ReadDecimal(std::string_view text)
{
    std::size_t at = 0;
    const auto peek = [&] { return at < text.size() ? text[at] : '\0'; };
    const auto isDigit = [&] { return peek() >= '0' && peek() <= '9'; };
    const auto sign = [&]
    {
        const bool negative = peek() == '-';
        at += negative || peek() == '+';
        return negative;
    };

    Decimal number;
    number.negative = sign();
    for (; isDigit(); ++at)
        number.digits += text[at];
    number.point = static_cast<std::int64_t>(number.digits.size());
    if (peek() == '.')
        for (++at; isDigit(); ++at)
            number.digits += text[at];
    if (number.digits.empty())
        Raise(kTypeMismatch);
    if (peek() == 'e' || peek() == 'E')
    {
        ++at;
        const bool small = sign();
        if (!isDigit())
            Raise(kTypeMismatch);
        std::int64_t exponent = 0;
        for (; isDigit(); ++at)
            exponent = std::min<std::int64_t>(exponent * 10 + (text[at] - '0'), 100000);
        number.point += small ? -exponent : exponent;
    }
    if (at != text.size())
        Raise(kTypeMismatch);
    return number;
}

// Rounded in decimal, so that halves are exact. Not through double: the library's own reader and writer of it would add
// a sixth to the component's size.
std::int64_t IntegerFromText(std::string_view text)
{
    auto [negative, digits, point] = ReadDecimal(text);
    const std::size_t leading = std::min(digits.find_first_not_of('0'), digits.size());
    digits.erase(0, leading);
    point -= static_cast<std::int64_t>(leading);
    constexpr std::int64_t kMostDigits = 18; // what 64 bits hold for sure; anything longer is out of range below
    if (digits.empty() || point < 0)
        return 0;
    if (point > kMostDigits)
        Raise(kOverflow);
    digits.resize(std::max(digits.size(), static_cast<std::size_t>(point)), '0');
    std::int64_t integer = 0;
    for (std::int64_t i = 0; i < point; ++i)
        integer = integer * 10 + (digits[static_cast<std::size_t>(i)] - '0');
    const std::string_view rest = std::string_view(digits).substr(static_cast<std::size_t>(point));
    if (!rest.empty() && rest.front() >= '5')
    {
        const bool half = rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
        integer += half ? integer % 2 : 1;
    }
    return negative ? -integer : integer;
}

template <class Integer>
Integer Narrow(std::string_view text)
{
    return Narrow<Integer>(IntegerFromText(Trim(text)));
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

std::int16_t ToInteger(std::int32_t value)
{
    return Narrow<std::int16_t>(std::int64_t{value});
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
        std::snprintf(buffer, sizeof buffer, "%.15g", *number);
        std::string text = buffer;
        std::replace(text.begin(), text.end(), ',', '.'); // whatever locale the host has set
        return text;
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
