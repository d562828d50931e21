// The server's types: their names, which of two wins in an expression, and converting values between them.
#pragma once

#include "session.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

// How values lie in SQLite: Bit to BigInt as integers, Decimal and Float as numbers (a decimal rounded to its scale),
// texts as texts, DateTime as an integer count of 1/300 s.
struct ValueType
{
    Type type = Type::Int;
    // Texts: characters, 0 for max or unknown. Decimals: precision. Integer constants: digits. 24: real.
    // 16: smalldatetime.
    int size = 0;
    int scale = 0;
};

constexpr int realSize = 24;
constexpr int smallDateSize = 16;

struct Value
{
    enum Kind : std::uint8_t
    {
        Null,
        Integer,
        Real,
        Text
    };
    Kind kind = Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string text;

    double AsReal() const { return kind == Integer ? static_cast<double>(integer) : real; }
};

inline Value IntegerValue(std::int64_t value)
{
    return {Value::Integer, value, 0, {}};
}
inline Value RealValue(double value)
{
    return {Value::Real, 0, value, {}};
}
inline Value TextValue(std::string value)
{
    return {Value::Text, 0, 0, std::move(value)};
}

inline bool IsInteger(Type type)
{
    return type <= Type::BigInt;
}
inline bool IsNumber(Type type)
{
    return type <= Type::Float;
}
inline bool IsText(Type type)
{
    return type >= Type::Char && type <= Type::NVarChar;
}
inline bool IsNational(Type type)
{
    return type == Type::NChar || type == Type::NVarChar;
}
inline bool IsFixed(Type type)
{
    return type == Type::Char || type == Type::NChar;
}

// What a description of a column says: texts and decimals have a size.
inline int ShownSize(const ValueType &type)
{
    return IsText(type.type) || type.type == Type::Decimal ? type.size : 0;
}

// The type a declaration names. `size` is -1 when none is written, 0 for max; `scale` is -1 when none is written.
// `defaultSize` is the length of a text type without one. Raises 2715, 2716, 131.
ValueType MakeType(std::string_view name, int size, int scale, int defaultSize);

// As a declaration has it ("varchar(30)", "varchar" for varchar(max)), and as messages have it ("varchar").
std::string Declaration(const ValueType &type);
std::string MessageName(const ValueType &type);

// Reads what Declaration wrote.
ValueType ParseDeclaration(std::string_view text);

// An integer or decimal type as a decimal.
ValueType AsDecimal(const ValueType &type);

// The type both are converted to when they meet. Texts: the longer size.
ValueType CommonType(const ValueType &left, const ValueType &right);

// The type of left OP right (+ - * / %) for two numbers of which one is a decimal.
ValueType DecimalResult(char operation, const ValueType &left, const ValueType &right);

enum class Conversion
{
    Store,     // assigning to a column: a text that is too long is an error
    Cast,      // CAST, CONVERT and variables: a text that is too long is cut
    Expression // the result of arithmetic: the message says "expression"
};

// True when a value of `from` is, as it lies in SQLite, already one of `to`.
bool FitsAsItIs(const ValueType &from, const ValueType &to);

// Converts a value that is not NULL. Raises the server's errors.
Value Convert(const Value &value, const ValueType &from, const ValueType &to, Conversion how, int style = 0);

// The server's conversion to text, as Convert to varchar(max) does it.
std::string ToText(const Value &value, const ValueType &type, int style = 0);

// Halves away from zero, with what a binary number lacks to its decimal digits made up for.
double RoundTo(double value, int digits, bool truncate = false);

// A type packed into one integer, for handing it to an SQLite function.
std::int64_t Pack(const ValueType &type);
ValueType Unpack(std::int64_t packed);

} // namespace tsql
