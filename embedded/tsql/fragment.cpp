// Pieces of translated expressions: writing constants, converting, the collation.
#include "errors.h"
#include "translate.h"

#include <charconv>

namespace tsql
{
namespace
{

std::string RealText(double value)
{
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, 16);
    return std::string(text, end.ptr);
}

// A text literal; one with a zero byte is written in hexadecimal, since SQLite would stop there.
std::string TextLiteral(const std::string &text)
{
    if (text.find('\0') != std::string::npos)
    {
        constexpr char digits[] = "0123456789abcdef";
        std::string hex = "CAST(x'";
        for (const unsigned char c : text)
            (hex += digits[c >> 4]) += digits[c & 15];
        return hex + "' AS TEXT)";
    }
    std::string quoted = "'";
    for (const char c : text)
        quoted.append(c == '\'' ? 2 : 1, c);
    return quoted += '\'';
}

} // namespace

// Checked against, and rounded to, the type; `from` says how the value lies in SQLite.
Fragment Translator::CheckedResult(const std::string &sql, Type from, const ValueType &type) const
{
    return Made("ts_cv(" + sql + "," + std::to_string(Pack({from, 0, 0})) + "," + std::to_string(Pack(type)) + "," +
                    std::to_string(static_cast<int>(Conversion::Expression)) + ")",
                type);
}

std::string Translator::Sql(const Fragment &fragment) const
{
    if (!fragment.literal)
        return fragment.sql;
    switch (fragment.value.kind)
    {
    case Value::Integer:
        return std::to_string(fragment.value.integer);
    case Value::Real:
        return RealText(fragment.value.real);
    case Value::Text:
        return TextLiteral(fragment.value.text);
    default:
        return "NULL";
    }
}

// With the collation, where SQLite would not know it by itself.
std::string Translator::Collated(const Fragment &fragment) const
{
    return IsText(fragment.type.type) && !fragment.column ? Sql(fragment) + " COLLATE ts" : Sql(fragment);
}

// Literals are converted here and now; one that cannot be converted fails when the statement comes to it.
Fragment Translator::Converted(Fragment fragment, const ValueType &type, Conversion how, int style) const
{
    if (fragment.untyped || (fragment.literal && fragment.value.kind == Value::Null))
    {
        fragment.untyped = false;
        fragment.type = type;
        return fragment;
    }
    if (how != Conversion::Cast && fragment.type.type == Type::DateTime && IsNumber(type.type))
        Raise(257, {MessageName(fragment.type), MessageName(type)});
    if (FitsAsItIs(fragment.type, type))
    {
        fragment.type = type;
        return fragment;
    }
    if (fragment.literal)
    {
        try
        {
            return Literal(Convert(fragment.value, fragment.type, type, how, std::max(style, 0)), type);
        }
        catch (const SqlError &)
        {
        }
    }
    return Made("ts_cv(" + Sql(fragment) + "," + std::to_string(Pack(fragment.type)) + "," +
                    std::to_string(Pack(type)) + "," + std::to_string(static_cast<int>(how)) +
                    (style >= 0 ? "," + std::to_string(style) : "") + ")",
                type);
}

// Brings all fragments to the type that wins among them and returns one of that type; NULLs have no say.
Fragment Translator::Common(std::vector<Fragment> &fragments) const
{
    Fragment common;
    bool first = true;
    for (const Fragment &fragment : fragments)
    {
        if (fragment.untyped)
            continue;
        common.type = first ? fragment.type : CommonType(common.type, fragment.type);
        first = false;
    }
    for (Fragment &fragment : fragments)
        fragment = Converted(std::move(fragment), common.type, Conversion::Store);
    return common;
}

} // namespace tsql
