// Converting values between the server's types, with the server's errors.
#include "datetime.h"
#include "errors.h"
#include "text.h"
#include "types.h"

#include <charconv>
#include <cmath>

namespace tsql
{
namespace
{

constexpr double maxExact = 1e15; // up to here a double holds every decimal digit

struct Range
{
    std::int64_t low, high;
};
constexpr Range ranges[] = {{0, 1}, {0, 255}, {-32768, 32767}, {INT32_MIN, INT32_MAX}, {INT64_MIN, INT64_MAX}};

std::string FixedText(double value, int scale)
{
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, scale);
    std::string out(text, end.ptr);
    if (out[0] == '-' && out.find_first_not_of("-0.") == std::string::npos)
        out.erase(0, 1);
    return out;
}

// Six digits, an exponent of three: 1.23457e+006.
std::string FloatText(double value)
{
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
    std::string out(text, end.ptr);
    const std::size_t exponent = out.find('e');
    if (exponent != std::string::npos && out.size() - exponent == 4)
        out.insert(exponent + 2, 1, '0');
    return out;
}

// Reads an optional sign, digits, and with `fraction` a point, with `exponent` an exponent. False when it is no number.
bool ReadReal(std::string_view text, bool exponent, double &value)
{
    if (!text.empty() && text[0] == '+')
        text.remove_prefix(1);
    const std::size_t first = text.find_first_not_of("-.");
    if (text.substr(0, 1) == "+" || first == std::string_view::npos || text[first] < '0' || text[first] > '9')
        return false;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value,
                                      exponent ? std::chars_format::general : std::chars_format::fixed);
    if (read.ec == std::errc::result_out_of_range)
        Raise(8115, {"expression", "float"});
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

Value TextToInteger(const std::string &text, const ValueType &from, const ValueType &to)
{
    std::string_view digits = Trim(text);
    if (to.type == Type::Bit && (Compare(digits, "true") == 0 || Compare(digits, "false") == 0))
        return IntegerValue(digits.size() == 4 ? 1 : 0);
    const bool negative = digits.substr(0, 1) == "-";
    if (negative || digits.substr(0, 1) == "+")
        digits.remove_prefix(1);
    std::uint64_t number = 0; // of no digits 0
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ptr != digits.data() + digits.size())
        Raise(245, {MessageName(from), text, MessageName(to)});
    if (to.type == Type::Bit)
        return IntegerValue(number != 0 || read.ec == std::errc::result_out_of_range ? 1 : 0);
    const Range range = ranges[static_cast<int>(to.type)];
    const std::uint64_t limit =
        negative ? 0 - static_cast<std::uint64_t>(range.low) : static_cast<std::uint64_t>(range.high);
    if (read.ec == std::errc::result_out_of_range || number > limit)
    {
        if (to.type == Type::BigInt)
            Raise(8115, {"expression", "bigint"});
        if (to.type == Type::Int)
            Raise(248, {MessageName(from), text});
        Raise(244, {MessageName(from), text, to.type == Type::SmallInt ? "INT2" : "INT1"});
    }
    return IntegerValue(static_cast<std::int64_t>(negative ? 0 - number : number));
}

Value ToInteger(const Value &value, const ValueType &from, const ValueType &to, Conversion how)
{
    if (IsText(from.type))
        return TextToInteger(value.text, from, to);
    if (to.type == Type::Bit && from.type != Type::DateTime)
        return IntegerValue(value.integer != 0 || value.real != 0 ? 1 : 0);
    const Range range = ranges[static_cast<int>(to.type)];
    const std::string source = how == Conversion::Expression || IsInteger(from.type) ? "expression" : MessageName(from);
    std::int64_t number = value.integer;
    if (from.type == Type::DateTime)
        number = static_cast<std::int64_t>(std::floor(value.AsReal() / ticksADay + 0.5));
    else if (value.kind == Value::Real)
    {
        // Out of range for the type, or for any integer: the same message.
        const double whole = std::trunc(value.real);
        if (!(whole >= -9223372036854775808.0 && whole < 9223372036854775808.0) ||
            whole < static_cast<double>(range.low) || whole > static_cast<double>(range.high))
        {
            if (from.type == Type::Float)
                Raise(232, {MessageName(to), FixedText(value.real, 6)});
            Raise(8115, {source, MessageName(to)});
        }
        number = static_cast<std::int64_t>(whole);
    }
    if (to.type == Type::Bit)
        return IntegerValue(number != 0 ? 1 : 0);
    if (number >= range.low && number <= range.high)
        return IntegerValue(number);
    if (how != Conversion::Expression && to.type < Type::Int && IsInteger(from.type))
        Raise(220, {MessageName(to), std::to_string(number)});
    Raise(8115, {source, MessageName(to)});
}

Value ToDecimal(const Value &value, const ValueType &from, const ValueType &to, Conversion how)
{
    double number = value.AsReal();
    if (IsText(from.type) && !ReadReal(Trim(value.text), false, number))
        Raise(8114, {MessageName(from), "numeric"});
    if (from.type == Type::DateTime)
        number = static_cast<double>(value.integer) / static_cast<double>(ticksADay);
    const bool whole = value.kind == Value::Integer && from.type != Type::DateTime;
    const double rounded = whole ? number : RoundTo(number, to.scale);
    if (!(std::fabs(rounded) < std::pow(10, to.size - to.scale)))
        Raise(8115, {how == Conversion::Expression ? "expression" : MessageName(from), "numeric"});
    return whole ? value : RealValue(rounded);
}

Value ToFloat(const Value &value, const ValueType &from, const ValueType &to)
{
    double number = value.AsReal();
    if (IsText(from.type))
    {
        const std::string_view text = Trim(value.text);
        number = 0;
        if (!text.empty() && !ReadReal(text, true, number))
            Raise(8114, {MessageName(from), MessageName(to)});
    }
    if (from.type == Type::DateTime)
        number = static_cast<double>(value.integer) / static_cast<double>(ticksADay);
    if (to.size == realSize && std::fabs(number) <= 3.4028234663852886e38)
        number = static_cast<float>(number);
    else if (to.size == realSize || !std::isfinite(number))
        Raise(8115, {"expression", MessageName(to)});
    return RealValue(number);
}

Value ToDateTime(const Value &value, const ValueType &from, const ValueType &to)
{
    std::int64_t ticks = value.integer;
    if (IsText(from.type))
        ticks = ParseTicks(value.text);
    else if (IsNumber(from.type))
    {
        if (!(std::fabs(value.AsReal()) < 1e7))
            Raise(8115, {"expression", MessageName(to)});
        ticks = std::llround(value.AsReal() * static_cast<double>(ticksADay));
    }
    constexpr std::int64_t minute = 300 * 60;
    if (to.size == smallDateSize)
        ticks = (ticks + minute / 2) / minute * minute;
    const std::int64_t lastSmall = 65535 * ticksADay + ticksADay - 1; // 2079-06-06
    if (to.size == smallDateSize ? ticks < 0 || ticks > lastSmall : ticks < firstTick || ticks > lastTick)
        Raise(8115, {"expression", MessageName(to)});
    return IntegerValue(ticks);
}

Value ToTextOf(const Value &value, const ValueType &from, const ValueType &to, Conversion how, int style)
{
    std::string text = IsText(from.type) ? value.text : ToText(value, from, style);
    if (to.size == 0)
        return TextValue(std::move(text));
    const std::size_t size = static_cast<std::size_t>(to.size);
    const std::size_t length = text.size() <= size && !IsFixed(to.type) ? size : Length(text);
    if (length > size)
    {
        if (from.type < Type::BigInt && from.type != Type::Bit && !IsNational(to.type))
            text.assign(1, '*'); // an integer that does not fit shows as one star
        else if (IsNumber(from.type))
            Raise(8115, {MessageName(from), MessageName(to)});
        else
        {
            const std::size_t end = Prefix(text, size);
            if (how == Conversion::Store && text.find_first_not_of(' ', end) != std::string::npos)
                Raise(8152);
            text.resize(end);
        }
    }
    if (IsFixed(to.type))
        text.append(size - Length(text), ' ');
    return TextValue(std::move(text));
}

} // namespace

double RoundTo(double value, int digits, bool truncate)
{
    const double power = std::pow(10, std::abs(digits));
    double scaled = digits < 0 ? value / power : value * power;
    if (!(std::fabs(scaled) < maxExact))
        return value;
    scaled += std::copysign(std::fabs(scaled) * 4e-15, scaled);
    scaled = truncate ? std::trunc(scaled) : std::round(scaled);
    return digits < 0 ? scaled * power : scaled / power;
}

std::string ToText(const Value &value, const ValueType &type, int style)
{
    switch (type.type)
    {
    case Type::Decimal:
        if (value.kind == Value::Integer)
            return std::to_string(value.integer) + (type.scale > 0 ? "." + std::string(type.scale, '0') : "");
        return FixedText(value.real, type.scale);
    case Type::Float:
        return FloatText(value.AsReal());
    case Type::DateTime:
        return FormatTicks(value.integer, style);
    default:
        return IsInteger(type.type) ? std::to_string(value.integer) : value.text;
    }
}

bool FitsAsItIs(const ValueType &from, const ValueType &to)
{
    if (IsInteger(to.type))
        return IsInteger(from.type) && from.type <= to.type;
    switch (to.type)
    {
    case Type::Decimal:
    {
        const ValueType decimal = AsDecimal(from);
        return from.type != Type::Float && IsNumber(from.type) && decimal.scale <= to.scale &&
               decimal.size - decimal.scale <= to.size - to.scale;
    }
    case Type::Float:
        return IsNumber(from.type) && (to.size == 0 || from.size == to.size) && from.type != Type::Decimal;
    case Type::DateTime:
        return from.type == Type::DateTime && (to.size == 0 || to.size == from.size);
    default:
        if (!IsText(from.type))
            return false;
        if (IsFixed(to.type))
            return IsFixed(from.type) && from.size == to.size;
        return to.size == 0 || (from.size != 0 && from.size <= to.size);
    }
}

Value Convert(const Value &value, const ValueType &from, const ValueType &to, Conversion how, int style)
{
    if (IsInteger(to.type))
        return ToInteger(value, from, to, how);
    switch (to.type)
    {
    case Type::Decimal:
        return ToDecimal(value, from, to, how);
    case Type::Float:
        return ToFloat(value, from, to);
    case Type::DateTime:
        return ToDateTime(value, from, to);
    default:
        return ToTextOf(value, from, to, how, style);
    }
}

} // namespace tsql
