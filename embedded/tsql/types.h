// The types: their names, how values lie in SQLite, and converting between them with the server's errors.
#pragma once

#include "session.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

// Bit to BigInt lie in SQLite as integers, Decimal and Float as numbers, texts as texts, DateTime as an integer count
// of 1/300 s from the start of 1900.
struct ValueType
{
    Type type = Type::Int;
    int size = 0;  // texts: characters, 0 for max or unknown; decimals: precision
    int scale = 0; // decimals

    bool operator==(const ValueType &) const = default;
    bool IsInteger() const { return type <= Type::BigInt; }
    bool IsNumber() const { return type <= Type::Float; }
    bool IsText() const { return type >= Type::Char && type <= Type::NVarChar; }
    bool IsNational() const { return type == Type::NChar || type == Type::NVarChar; }
    bool IsFixed() const { return type == Type::Char || type == Type::NChar; }
};

// What a description of a column says: texts and decimals have a size.
inline int ShownSize(const ValueType &type)
{
    return type.IsText() || type.type == Type::Decimal ? type.size : 0;
}

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
    std::string text{};
};

inline Value IntegerValue(std::int64_t value)
{
    return {Value::Integer, value, 0};
}
inline Value RealValue(double value)
{
    return {Value::Real, 0, value};
}
inline Value TextValue(std::string value)
{
    return {Value::Text, 0, 0, std::move(value)};
}

// The type that a declaration names, sizes -1 where none is written and 0 for max. False when there is no such type.
bool MakeType(std::string_view name, int size, int scale, int defaultSize, ValueType &type);

// As a declaration has it ("varchar(30)", "varchar" for varchar(max)), and what it was made from.
std::string Declaration(const ValueType &type);
ValueType ParseDeclaration(std::string_view text);

std::string TypeName(const ValueType &type);

// Of two types the one that wins where they meet; of two texts the longer size.
ValueType CommonType(const ValueType &left, const ValueType &right);

enum class Conversion
{
    Store, // assigning to a column: a text that is too long is an error
    Cast   // CAST, CONVERT and variables: a text that is too long is cut
};

// True when a value of `from` is, as it lies in SQLite, already one of `to`.
bool FitsAsItIs(const ValueType &from, const ValueType &to);

// Converts a value that is not NULL. Raises the server's errors.
Value Convert(const Value &value, const ValueType &from, const ValueType &to, Conversion how, int style = 0);

// An integer as a type that it has to fit; `expression` for the result of a calculation.
std::int64_t Checked(std::int64_t number, Type type, bool expression);

// The server's conversion of a number or moment to text.
std::string ToText(const Value &value, const ValueType &type, int style = 0);

// A type packed into one integer, for handing it to an SQLite function.
std::int64_t Pack(const ValueType &type);
ValueType Unpack(std::int64_t packed);

} // namespace tsql
