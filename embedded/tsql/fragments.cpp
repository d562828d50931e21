// Pieces of translated expressions: writing constants, converting, the collation, operators between values.
#include "errors.h"
#include "translator.h"

#include <charconv>

namespace tsql
{
namespace
{

// A text literal; one with a zero byte is written in hexadecimal, since SQLite would stop there.
std::string TextLiteral(const std::string &text)
{
    if (text.find('\0') == std::string::npos)
        return Quoted(text, '\'');
    constexpr char digits[] = "0123456789abcdef";
    std::string hex = "CAST(x'";
    for (const unsigned char c : text)
        (hex += digits[c >> 4]) += digits[c & 15];
    return hex + "' AS TEXT)";
}

// A call that converts a value of the type packed in `from`.
std::string ConversionCall(const std::string &sql, const ValueType &from, const ValueType &to, Conversion how)
{
    return "ts_cv(" + sql + "," + std::to_string(Pack(from)) + "," + std::to_string(Pack(to)) + "," +
           std::to_string(static_cast<int>(how));
}

} // namespace

Fragment Made(std::string sql, const ValueType &type)
{
    Fragment fragment;
    fragment.sql = std::move(sql);
    fragment.type = type;
    return fragment;
}

Fragment MadeLiteral(Value value, const ValueType &type)
{
    Fragment fragment;
    fragment.type = type;
    fragment.literal = true;
    fragment.value = std::move(value);
    return fragment;
}

Fragment Checked(const std::string &sql, Type from, const ValueType &type)
{
    return Made(ConversionCall(sql, {from, 0, 0}, type, Conversion::Expression) + ")", type);
}

std::string Sql(const Fragment &fragment)
{
    if (!fragment.literal)
        return fragment.sql;
    switch (fragment.value.kind)
    {
    case Value::Integer:
        return std::to_string(fragment.value.integer);
    case Value::Real:
    {
        char text[64];
        const auto end =
            std::to_chars(text, text + sizeof text, fragment.value.real, std::chars_format::scientific, 16);
        return std::string(text, end.ptr);
    }
    case Value::Text:
        return TextLiteral(fragment.value.text);
    default:
        return "NULL";
    }
}

std::string Collated(const Fragment &fragment)
{
    return IsText(fragment.type.type) && !fragment.column ? Sql(fragment) + " COLLATE ts" : Sql(fragment);
}

// Literals are converted here and now; one that cannot be converted fails when the statement comes to it.
Fragment Translator::Converted(Fragment fragment, const ValueType &type, Conversion how, int style) const
{
    if (m_checking)
        return {};
    const ValueType from = fragment.type;
    fragment.type = type;
    if (fragment.untyped || (fragment.literal && fragment.value.kind == Value::Null))
    {
        fragment.untyped = false;
        return fragment;
    }
    if (how != Conversion::Cast && from.type == Type::DateTime && IsNumber(type.type))
        Raise(257, {MessageName(from), MessageName(type)});
    if (FitsAsItIs(from, type))
        return fragment;
    if (fragment.literal)
    {
        try
        {
            return MadeLiteral(Convert(fragment.value, from, type, how, std::max(style, 0)), type);
        }
        catch (const SqlError &)
        {
        }
    }
    return Made(ConversionCall(Sql(fragment), from, type, how) + (style >= 0 ? "," + std::to_string(style) : "") + ")",
                type);
}

// Brings all fragments to the type that wins among them and returns it; NULLs have no say.
ValueType Translator::Common(std::vector<Fragment> &fragments) const
{
    ValueType common;
    bool first = true;
    for (const Fragment &fragment : fragments)
    {
        if (!fragment.untyped)
            common = first ? fragment.type : CommonType(common, fragment.type);
        first = first && fragment.untyped;
    }
    for (Fragment &fragment : fragments)
        fragment = Converted(std::move(fragment), common, Conversion::Store);
    return common;
}

// left OPERATION right, for + - * / % & | ^
Fragment Translator::Operated(const Token &operation, Fragment left, Fragment right) const
{
    if (m_checking)
        return {};
    if (left.untyped && !right.untyped)
        left.type = right.type;
    if (right.untyped)
        right.type = left.type;
    if (operation.word != Word::Plus || !IsText(left.type.type) || !IsText(right.type.type))
        return Arithmetic(operation, std::move(left), std::move(right));
    ValueType type{IsNational(left.type.type) || IsNational(right.type.type) ? Type::NVarChar : Type::VarChar, 0, 0};
    if (left.type.size > 0 && right.type.size > 0 && left.type.size + right.type.size <= 8000)
        type.size = left.type.size + right.type.size;
    // A chain is written without inner parentheses, of which SQLite takes no more than a hundred.
    Fragment result = Made(left.joined ? std::move(left.sql) : "(" + Sql(left) + ")", type);
    result.sql.pop_back();
    result.sql += " || " + Sql(right) + ")";
    result.joined = true;
    return result;
}

Fragment Translator::Arithmetic(const Token &operation, Fragment left, Fragment right) const
{
    const Word word = operation.word;
    const ValueType common = CommonType(left.type, right.type);
    const bool bits = word == Word::Ampersand || word == Word::Bar || word == Word::Caret;
    const bool moment = common.type == Type::DateTime;
    // In the order of the operators in Word.
    constexpr const char *names[] = {"add", "subtract", "multiply", "divide", "modulo", "'&'", "'|'", "'^'"};
    const char *name = names[static_cast<int>(word) - static_cast<int>(Word::Plus)];
    if (!bits && (IsText(common.type) || common.type == Type::Bit))
        Raise(8117, {MessageName(common), name});
    if (bits ? !IsInteger(common.type)
             : (moment && word != Word::Plus && word != Word::Minus) ||
                   (common.type == Type::Float && word == Word::Percent))
        Raise(402, {MessageName(left.type), MessageName(right.type), name});
    // A text or a datetime among numbers, or a number beside a datetime, takes the other's type.
    for (Fragment *side : {&left, &right})
        if (!IsNumber(side->type.type) || moment)
            *side = Converted(std::move(*side), common, Conversion::Store);
    const std::string a = Sql(left);
    const std::string b = Sql(right);
    const std::string native = "(" + a + " " + std::string(operation.text) + " " + b + ")";

    if (word == Word::Caret)
        return Made("((" + a + " | " + b + ") - (" + a + " & " + b + "))", common);
    if (bits)
        return Made(native, common);
    if (moment)
        return Checked(native, Type::DateTime, common);
    if (word == Word::Percent && IsInteger(common.type))
        return Made("ts_mod(" + a + "," + b + ")", common);
    if (word == Word::Slash && IsInteger(common.type))
        return Checked("ts_idiv(" + a + "," + b + ")", Type::BigInt, common);
    if (word == Word::Star && IsInteger(common.type))
        return Checked(native, Type::BigInt, common);
    if (IsInteger(common.type))
    {
        // A chain becomes one call, since SQLite takes only some twenty calls inside each other.
        const bool longer = left.terms > 0 && left.terms < 50 && left.type.type == common.type;
        Fragment sum =
            Made(longer ? a.substr(0, a.size() - 1) : "ts_sum(" + std::to_string(Pack(common)) + "," + a, common);
        sum.sql += (word == Word::Plus ? ",0," : ",1,") + b + ")";
        sum.terms = longer ? left.terms + 1 : 2;
        return sum;
    }
    const bool decimal = common.type == Type::Decimal;
    const ValueType type =
        decimal ? DecimalResult(operation.text[0], left.type, right.type) : ValueType{Type::Float, common.size, 0};
    if (word == Word::Slash)
        return Checked("ts_div(" + a + "," + b + (decimal ? "," + std::to_string(type.scale) : "") + ")", Type::Decimal,
                       type);
    return Checked(word == Word::Percent ? "ts_mod(" + a + "," + b + ")" : native, Type::Decimal, type);
}

} // namespace tsql
