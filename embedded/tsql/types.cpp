// The types: their names, how values lie in SQLite, and converting between them with the server's errors.
#include "types.h"

#include "datetime.h"
#include "errors.h"
#include "text.h"
#include "token.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tsql
{
namespace
{

struct NamedType
{
    std::string_view name;
    Type type;
    int limit; // the longest size that may be declared, 0 when none may
};

// The names in the order of Type come first.
// clang-format off
constexpr NamedType namedTypes[] = {
    {"bit", Type::Bit, 0}, {"tinyint", Type::TinyInt, 0}, {"smallint", Type::SmallInt, 0}, {"int", Type::Int, 0},
    {"bigint", Type::BigInt, 0}, {"numeric", Type::Decimal, 15}, {"float", Type::Float, 0}, {"char", Type::Char, 8000},
    {"varchar", Type::VarChar, 8000}, {"nchar", Type::NChar, 4000}, {"nvarchar", Type::NVarChar, 4000},
    {"datetime", Type::DateTime, 0}, {"integer", Type::Int, 0}, {"decimal", Type::Decimal, 15}};
// clang-format on

struct Range
{
    std::int64_t low, high;
};
constexpr Range ranges[] = {{0, 1}, {0, 255}, {-32768, 32767}, {INT32_MIN, INT32_MAX}, {INT64_MIN, INT64_MAX}};

// The highest type wins; texts are the lowest.
int Precedence(const ValueType &type)
{
    return static_cast<int>(type.type) + (type.IsText() ? -20 : 0);
}

Value TextToInteger(const std::string &text, const ValueType &from, const ValueType &to)
{
    std::string_view digits = runtime::Trim(text);
    if (to.type == Type::Bit && (SameWord(digits, "true") || SameWord(digits, "false")))
        return IntegerValue(digits.size() == 4 ? 1 : 0);
    const bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+'))
        digits.remove_prefix(1);
    std::uint64_t number = 0; // of no digits 0
    const char *const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number);
    if (read.ptr != end)
        Raise(245, {TypeName(from), text, TypeName(to)});
    const Range range = ranges[static_cast<int>(to.type)];
    const auto most = static_cast<std::uint64_t>(range.high) + (negative && range.low < 0 ? 1 : 0);
    if (to.type == Type::Bit)
        return IntegerValue(number != 0 ? 1 : 0);
    if (read.ec != std::errc::result_out_of_range && number <= (negative && range.low == 0 ? 0 : most))
        return IntegerValue(static_cast<std::int64_t>(negative ? 0 - number : number));
    if (to.type == Type::BigInt)
        Raise(8115, {"expression", "bigint"});
    if (to.type == Type::Int)
        Raise(248, {TypeName(from), text});
    Raise(244, {TypeName(from), text, to.type == Type::SmallInt ? "INT2" : "INT1"});
}

Value ToInteger(const Value &value, const ValueType &from, const ValueType &to)
{
    if (from.IsText())
        return TextToInteger(value.text, from, to);
    if (to.type == Type::Bit)
        return IntegerValue(value.integer != 0 || value.real != 0 ? 1 : 0);
    if (value.kind == Value::Integer)
        return IntegerValue(Checked(value.integer, to.type, false));
    const double whole = std::trunc(value.real);
    const Range range = ranges[static_cast<int>(to.type)];
    if (!(whole >= static_cast<double>(range.low) && whole <= static_cast<double>(range.high) && whole < 0x1p63))
        Raise(8115, {from.type == Type::Float ? "expression" : TypeName(from), TypeName(to)});
    return IntegerValue(static_cast<std::int64_t>(whole));
}

// To Decimal or Float. Decimals lie there as binary numbers, which hold fifteen digits.
Value ToNumber(const Value &value, const ValueType &from, const ValueType &to)
{
    double number = value.kind == Value::Integer ? static_cast<double>(value.integer) : value.real;
    const std::string_view text = runtime::Trim(value.text);
    const char *const end = text.data() + text.size();
    if (from.IsText())
    {
        const auto read = std::from_chars(text.data(), end, number);
        if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number))
            Raise(8114, {TypeName(from), TypeName(to)});
    }
    if (to.type == Type::Float)
        return RealValue(number);
    const double power = std::pow(10, to.scale);
    number = std::round(number * power * (1 + 4e-16)) / power;
    if (!(std::fabs(number) < std::pow(10, to.size - to.scale)))
        Raise(8115, {TypeName(from), "numeric"});
    return RealValue(number);
}

Value ToTextType(std::string text, const ValueType &from, const ValueType &to, Conversion how)
{
    if (to.size == 0)
        return TextValue(std::move(text));
    const auto size = static_cast<std::size_t>(to.size);
    std::size_t length = text.size() <= size && !to.IsFixed() ? size : runtime::Length(text);
    if (length > size)
    {
        const std::size_t end = runtime::Left(text, size).size();
        if (from.IsInteger() && from.type != Type::BigInt && !to.IsNational())
            return TextValue("*"); // an integer that does not fit shows as one star
        if (!from.IsText())
            Raise(8115, {TypeName(from), TypeName(to)});
        if (how == Conversion::Store && text.find_first_not_of(' ', end) != std::string::npos)
            Raise(8152);
        text.resize(end);
        length = size;
    }
    if (to.IsFixed())
        text.append(size - length, ' ');
    return TextValue(std::move(text));
}

} // namespace

bool MakeType(std::string_view name, int size, int scale, int defaultSize, ValueType &type)
{
    const auto named = std::find_if(std::begin(namedTypes), std::end(namedTypes),
                                    [&](const NamedType &candidate) { return SameWord(candidate.name, name); });
    if (named == std::end(namedTypes) || size > named->limit || (size >= 0 && named->limit == 0))
        return false;
    type = {named->type};
    if (type.type == Type::Decimal)
        type = {Type::Decimal, size < 0 ? 15 : size, std::max(scale, 0)};
    else if (named->limit > 0)
        type.size = size < 0 ? defaultSize : size;
    const bool noSize = size == 0 && (type.IsFixed() || type.type == Type::Decimal);
    return !noSize && type.scale <= type.size && (scale < 0 || type.type == Type::Decimal);
}

std::string TypeName(const ValueType &type)
{
    return std::string(namedTypes[static_cast<int>(type.type)].name);
}

std::string Declaration(const ValueType &type)
{
    const std::string scale = type.type == Type::Decimal ? "," + std::to_string(type.scale) : "";
    return TypeName(type) + (type.size > 0 ? "(" + std::to_string(type.size) + scale + ")" : "");
}

ValueType ParseDeclaration(std::string_view text)
{
    int size = -1;
    int scale = -1;
    const std::size_t open = text.find('(');
    const char *const end = text.data() + text.size();
    if (open != std::string_view::npos)
    {
        const auto read = std::from_chars(text.data() + open + 1, end, size);
        if (read.ptr != end && *read.ptr == ',')
            std::from_chars(read.ptr + 1, end, scale);
    }
    ValueType type;
    return MakeType(text.substr(0, open), size, scale, 0, type) ? type : ValueType{Type::VarChar};
}

ValueType CommonType(const ValueType &left, const ValueType &right)
{
    const bool leftWins = Precedence(left) >= Precedence(right);
    ValueType winner = leftWins ? left : right;
    if (!left.IsText() || !right.IsText())
        return winner;
    winner.size = left.size == 0 || right.size == 0 ? 0 : std::max(left.size, right.size);
    if (winner.IsFixed() && left != right)
        winner.type = winner.IsNational() ? Type::NVarChar : Type::VarChar;
    return winner;
}

bool FitsAsItIs(const ValueType &from, const ValueType &to)
{
    if (from == to)
        return true;
    if (to.IsInteger())
        return from.IsInteger() && from.type <= to.type;
    if (!to.IsText() || !from.IsText() || to.IsFixed())
        return to.type == Type::Float && from.IsNumber();
    return to.size == 0 || (from.size != 0 && from.size <= to.size);
}

Value Convert(const Value &value, const ValueType &from, const ValueType &to, Conversion how, int style)
{
    const bool moment = from.type == Type::DateTime;
    if (to.type == Type::DateTime && moment)
        return value;
    if (to.type == Type::DateTime && from.IsText())
        return IntegerValue(ParseTicks(value.text));
    if (moment != (to.type == Type::DateTime) && !to.IsText())
        Raise(257, {TypeName(from), TypeName(to)});
    if (from.type == Type::Float && to.IsText())
        Unsupported("float as text");
    if (to.IsText())
        return ToTextType(from.IsText() ? value.text : ToText(value, from, style), from, to, how);
    return to.IsInteger() ? ToInteger(value, from, to) : ToNumber(value, from, to);
}

std::int64_t Checked(std::int64_t number, Type type, bool expression)
{
    const Range range = ranges[static_cast<int>(type)];
    if (number >= range.low && number <= range.high)
        return number;
    if (!expression && type < Type::Int)
        Raise(220, {TypeName({type}), std::to_string(number)});
    Raise(8115, {"expression", TypeName({type})});
}

std::string ToText(const Value &value, const ValueType &type, int style)
{
    if (type.type == Type::DateTime)
        return FormatTicks(value.integer, style);
    if (value.kind == Value::Integer && type.IsInteger())
        return std::to_string(value.integer);
    const double number = value.kind == Value::Integer ? static_cast<double>(value.integer) : value.real;
    char text[400];
    const auto fixed = std::chars_format::fixed;
    const auto end = type.type == Type::Decimal ? std::to_chars(text, text + sizeof text, number, fixed, type.scale)
                                                : std::to_chars(text, text + sizeof text, number);
    return std::string(text, end.ptr);
}

std::int64_t Pack(const ValueType &type)
{
    return static_cast<std::int64_t>(type.type) | type.scale << 4 | std::int64_t{type.size} << 12;
}

ValueType Unpack(std::int64_t packed)
{
    return {static_cast<Type>(packed & 15), static_cast<int>(packed >> 12), static_cast<int>(packed >> 4 & 0xff)};
}

} // namespace tsql
