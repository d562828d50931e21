// The server's types: their names and which of two wins in an expression.
#include "types.h"

#include "errors.h"
#include "text.h"

#include <algorithm>
#include <charconv>

namespace tsql
{
namespace
{

struct NamedType
{
    std::string_view name;
    Type type;
    int size;  // of a type that takes none; 0 with `limit` set: the declaration says
    int limit; // the longest size that may be declared, 0 when none may
};

// clang-format off
constexpr NamedType namedTypes[] = {
    {"bit", Type::Bit, 0, 0}, {"tinyint", Type::TinyInt, 0, 0}, {"smallint", Type::SmallInt, 0, 0},
    {"int", Type::Int, 0, 0}, {"integer", Type::Int, 0, 0}, {"bigint", Type::BigInt, 0, 0},
    {"decimal", Type::Decimal, 0, 38}, {"numeric", Type::Decimal, 0, 38}, {"dec", Type::Decimal, 0, 38},
    {"float", Type::Float, 0, 53}, {"real", Type::Float, realSize, 0}, {"char", Type::Char, 0, 8000},
    {"character", Type::Char, 0, 8000}, {"varchar", Type::VarChar, 0, 8000}, {"nchar", Type::NChar, 0, 4000},
    {"nvarchar", Type::NVarChar, 0, 4000}, {"text", Type::VarChar, 0, 0}, {"ntext", Type::NVarChar, 0, 0},
    {"datetime", Type::DateTime, 0, 0}, {"smalldatetime", Type::DateTime, smallDateSize, 0}};
// clang-format on

const NamedType *FindType(std::string_view name)
{
    const NamedType *found = std::find_if(std::begin(namedTypes), std::end(namedTypes),
                                          [&](const NamedType &type) { return Compare(type.name, name) == 0; });
    return found == std::end(namedTypes) ? nullptr : found;
}

constexpr const char *typeNames[] = {"bit",   "tinyint", "smallint", "int",   "bigint",   "numeric",
                                     "float", "char",    "varchar",  "nchar", "nvarchar", "datetime"};

// Which type wins when two meet: the one with the higher number. Texts are lowest, datetime stands above all.
int Precedence(Type type)
{
    return static_cast<int>(type) + (IsText(type) ? -10 : 10);
}

ValueType LimitDecimal(int precision, int scale)
{
    if (precision > 38)
    {
        scale = std::max(std::min(scale, 6), scale - (precision - 38));
        precision = 38;
    }
    return {Type::Decimal, precision, scale};
}

} // namespace

ValueType MakeType(std::string_view name, int size, int scale, int defaultSize)
{
    const NamedType *named = FindType(name);
    if (!named)
        Raise(2715, {name});
    if (size >= 0 && named->limit == 0)
        Raise(2716, {named->name});
    if (size > named->limit || (size == 0 && !IsText(named->type)))
        Raise(131, {std::to_string(size), named->name, std::to_string(named->limit)});
    ValueType type{named->type, named->size, 0};
    if (named->type == Type::Decimal)
    {
        type.size = size < 0 ? 18 : size;
        type.scale = std::max(scale, 0);
        if (type.scale > type.size)
            Raise(131, {std::to_string(scale), "scale", std::to_string(type.size)});
    }
    else if (scale >= 0 || (size == 0 && IsFixed(named->type)))
        Raise(2716, {named->name});
    else if (named->type == Type::Float && named->limit > 0)
        type.size = size > 0 && size <= realSize ? realSize : 0;
    else if (named->limit > 0)
        type.size = size < 0 ? defaultSize : size;
    return type;
}

std::string Declaration(const ValueType &type)
{
    if (type.type == Type::Decimal)
        return "numeric(" + std::to_string(type.size) + "," + std::to_string(type.scale) + ")";
    std::string name = MessageName(type);
    if (IsText(type.type) && type.size > 0)
        name += "(" + std::to_string(type.size) + ")";
    return name;
}

std::string MessageName(const ValueType &type)
{
    if (type.type == Type::Float && type.size == realSize)
        return "real";
    if (type.type == Type::DateTime && type.size == smallDateSize)
        return "smalldatetime";
    return typeNames[static_cast<int>(type.type)];
}

ValueType ParseDeclaration(std::string_view text)
{
    const std::size_t open = text.find('(');
    if (open == std::string_view::npos)
        return FindType(text) ? MakeType(text, -1, -1, 0) : ValueType{Type::VarChar, 0, 0};
    int size = -1;
    int scale = -1;
    const auto read = std::from_chars(text.data() + open + 1, text.data() + text.size(), size);
    if (*read.ptr == ',')
        std::from_chars(read.ptr + 1, text.data() + text.size(), scale);
    return MakeType(text.substr(0, open), size, scale, 0);
}

ValueType AsDecimal(const ValueType &type)
{
    constexpr int digits[] = {1, 3, 5, 10, 19};
    if (!IsInteger(type.type))
        return type;
    return {Type::Decimal, type.size > 0 ? type.size : digits[static_cast<int>(type.type)], 0};
}

ValueType CommonType(const ValueType &left, const ValueType &right)
{
    const bool leftWins = Precedence(left.type) >= Precedence(right.type);
    ValueType winner = leftWins ? left : right;
    const ValueType &loser = leftWins ? right : left;
    if (winner.type == Type::Decimal && IsNumber(loser.type))
    {
        const ValueType other = AsDecimal(loser);
        const int scale = std::max(winner.scale, other.scale);
        return LimitDecimal(std::max(winner.size - winner.scale, other.size - other.scale) + scale, scale);
    }
    if (IsText(winner.type) && IsText(loser.type))
    {
        winner.size = left.size == 0 || right.size == 0 ? 0 : std::max(left.size, right.size);
        if (IsFixed(winner.type) && (!IsFixed(loser.type) || left.size != right.size))
            winner.type = winner.type == Type::Char ? Type::VarChar : Type::NVarChar;
    }
    if (IsInteger(winner.type))
        winner.size = 0;
    if ((winner.type == Type::Float || winner.type == Type::DateTime) && loser.type == winner.type)
        winner.size = left.size == right.size ? left.size : 0;
    return winner;
}

ValueType DecimalResult(char operation, const ValueType &leftType, const ValueType &rightType)
{
    const ValueType left = AsDecimal(leftType);
    const ValueType right = AsDecimal(rightType);
    const int scale = std::max(left.scale, right.scale);
    const int quotient = std::max(6, left.scale + right.size + 1);
    if (operation == '*')
        return LimitDecimal(left.size + right.size + 1, left.scale + right.scale);
    if (operation == '/')
        return LimitDecimal(left.size - left.scale + right.scale + quotient, quotient);
    const auto [lower, higher] = std::minmax({left.size - left.scale, right.size - right.scale});
    return operation == '%' ? LimitDecimal(lower + scale, scale) : LimitDecimal(higher + scale + 1, scale);
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
