// The types of values, as far as they are seen without reading the statement as a whole, and what the server would
// refuse where SQLite would not.
#include "rewrite.h"

#include "datetime.h"
#include "errors.h"
#include "runtime/text.h"

#include <algorithm>
#include <charconv>

namespace tsql
{
namespace
{

constexpr std::string_view comparisons[] = {"=", "<>", "!=", "<", ">", "<=", ">="};

bool IsComparison(const Token &token)
{
    return token.kind == TokenKind::Operator &&
           std::ranges::any_of(comparisons, [&](std::string_view sign) { return token.text == sign; });
}

enum class Kind
{
    Unknown, // also NULL
    Number,
    Text,
    Moment
};

Kind KindOf(const std::optional<ValueType> &type)
{
    return !type                          ? Kind::Unknown
           : type->type == Type::DateTime ? Kind::Moment
           : IsText(type->type)           ? Kind::Text
                                          : Kind::Number;
}

} // namespace

bool IsAny(std::string_view word, std::initializer_list<std::string_view> words)
{
    return std::ranges::any_of(words, [&](std::string_view one) { return SameWord(one, word); });
}

// The type of the value that begins at a place; nothing for NULL and for what is not known.
std::optional<ValueType> Rewriter::TypeFrom(Place first) const
{
    if (first >= m_last)
        return std::nullopt;
    const Token &token = m_tokens[first];
    if (token.IsText())
        return ValueType{token.kind == TokenKind::Text ? Type::VarChar : Type::NVarChar,
                         std::max(1, static_cast<int>(runtime::Length(Unquoted(token))))};
    if (token.kind == TokenKind::Integer)
        return ValueType{IsWide(first) ? Type::BigInt : Type::Int};
    if (token.kind == TokenKind::Variable)
    {
        const auto variable = m_variables.find(Small(token.text));
        return variable == m_variables.end() ? std::nullopt : std::optional(variable->second);
    }
    if (token.Is("(") || token.Is("DISTINCT") || token.Is("-"))
        return TypeFrom(first + (IsSubquery(first) ? 2 : 1));
    if (token.Is("CASE"))
        return TypeOfCase(first);
    if (IsCall(first))
        return TypeOfFunction(first);
    if (!token.IsName())
        return std::nullopt;
    return TypeOfColumn(Is(first + 1, ".") ? first + 2 : first);
}

// The type of the value that ends at a place.
std::optional<ValueType> Rewriter::TypeUpTo(Place last) const
{
    const bool closes = Is(last, ")") || Is(last, "END");
    const Place open = closes ? m_partner[last] : last;
    return TypeFrom(closes && open > m_first && IsCall(open - 1) ? open - 1 : open);
}

// A constant beyond int, which is a decimal there: good for a column or a comparison only.
bool Rewriter::IsWide(Place at) const
{
    at += Is(at, "-") ? 1 : 0;
    std::int32_t value = 0;
    const std::string_view text = m_tokens[at].text;
    return m_tokens[at].kind == TokenKind::Integer &&
           std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc();
}

// Functions of texts take no moments, which lie as they were written, and counts are numbers.
void Rewriter::Arguments(Place name) const
{
    const std::string_view word = m_tokens[name].text;
    if (IsAny(word, {"CAST", "CONVERT", "ISNULL", "COALESCE", "NULLIF", "MAX", "MIN", "COUNT"}))
        return;
    const bool counts = IsAny(word, {"LEFT", "RIGHT", "SUBSTRING", "STR"});
    for (Place at = name + 1; at < m_partner[name + 1]; at = Find(at + 1, {","}))
    {
        const auto type = TypeOfValue(at + 1, Find(at + 1, {","}));
        if (type && (type->type == Type::DateTime || type->type == Type::Float))
            Refuse(at + 1);
        if (counts && at != name + 1)
            Common(type, ValueType{Type::Int}, at + 1);
    }
}

// Of a value with its signs: the largest type, and for texts the sum of their lengths.
std::optional<ValueType> Rewriter::TypeOfValue(Place first, Place end) const
{
    std::optional<ValueType> type = TypeFrom(first);
    for (Place at = first; at < end; ++at)
    {
        if (const auto operand = TypeFrom(at + 1); at > first && at + 1 < end && IsSign(at) && operand)
        {
            const int size = type && type->size > 0 && operand->size > 0 ? type->size + operand->size : 0;
            type = ValueType{type ? std::max(type->type, operand->type) : operand->type, size};
        }
        if (Is(at, "(") || Is(at, "CASE"))
            at = m_partner[at];
    }
    return type;
}

// The type of values that stand for each other, which have to be of one kind.
std::optional<ValueType> Rewriter::Common(const std::optional<ValueType> &one, const std::optional<ValueType> &other,
                                          Place at) const
{
    if (!one || !other)
        return one ? one : other;
    if (KindOf(one) != KindOf(other))
        Refuse(at);
    return ValueType{std::max(one->type, other->type),
                     one->size == 0 || other->size == 0 ? 0 : std::max(one->size, other->size)};
}

std::optional<ValueType> Rewriter::TypeOfCase(Place at) const
{
    std::optional<ValueType> type;
    for (Place word = Find(at + 1, {"THEN", "ELSE"}); word < m_partner[at]; word = Find(word + 1, {"THEN", "ELSE"}))
        type = Common(type, TypeOfValue(word + 1, Find(word + 1, {"WHEN", "ELSE"})), at);
    for (Place when = Find(at + 1, {"WHEN"}); when > at + 1 && Is(when, "WHEN"); when = Find(when + 1, {"WHEN"}))
        if (!Is(at + 1, "WHEN"))
            Common(TypeFrom(at + 1), TypeFrom(when + 1), at);
    return type;
}

std::optional<ValueType> Rewriter::TypeOfFunction(Place name) const
{
    const std::string_view word = m_tokens[name].text;
    if (IsAny(word, {"CAST", "CONVERT"}))
    {
        Place type = IsAny(word, {"CAST"}) ? Find(name + 2, {"AS"}) + 1 : name + 2;
        return ReadType(type, 30);
    }
    if (IsAny(word, {"COALESCE"}) || (IsAny(word, {"ISNULL"}) && Is(name + 2, "NULL")))
    {
        std::optional<ValueType> type;
        for (Place at = name + 1; at < m_partner[name + 1]; at = Find(at + 1, {","}))
            type = Common(type, TypeOfValue(at + 1, Find(at + 1, {","})), name);
        return type;
    }
    if (IsAny(word, {"ISNULL", "NULLIF", "MAX", "MIN", "ABS"}))
        return TypeOfValue(name + 2, Find(name + 2, {","}));
    if (IsAny(word, {"SUM"}))
    {
        const auto type = TypeOfValue(name + 2, m_partner[name + 1]);
        if (type && !IsInteger(type->type))
            Refuse(name);
        return ValueType{type ? std::max(type->type, Type::Int) : Type::Int};
    }
    if (IsAny(word, {"CHARINDEX", "COUNT", "LEN"}))
        return ValueType{Type::Int};
    if (IsAny(word, {"GETDATE"}))
        return ValueType{Type::DateTime};
    const std::optional<ValueType> argument = TypeFrom(name + 2);
    const bool kept = IsAny(word, {"LTRIM", "RTRIM", "UPPER", "LOWER"}) && KindOf(argument) == Kind::Text;
    const bool national = argument && (argument->type == Type::NVarChar || argument->type == Type::NChar);
    return kept       ? *argument
           : national ? ValueType{Type::NVarChar}
                      : ValueType{Type::VarChar, IsAny(word, {"STR"}) ? 10 : 0};
}

// By the tables that the statement names, or by what a query within it calls so.
std::optional<ValueType> Rewriter::TypeOfColumn(Place name) const
{
    const std::string wanted = Unquoted(m_tokens[name]);
    for (const Table *table : m_tables)
        for (const TableColumn &column : *table)
            if (SameWord(column.name, wanted))
                return column.type;
    for (Place at = m_first; at + 1 < m_last; ++at)
        if (Is(at, "AS") && at + 1 != name && m_tokens[at + 1].IsName() && SameWord(Unquoted(m_tokens[at + 1]), wanted))
            return TypeUpTo(at - 1);
    if (m_view && IsAny(wanted, {"TABLE_NAME", "COLUMN_NAME", "DATA_TYPE"}))
        return ValueType{Type::NVarChar, 128};
    return std::nullopt;
}

// + - * between two values, or a sign in front of one.
bool Rewriter::IsSign(Place at) const
{
    return (Is(at, "+") || Is(at, "-") || Is(at, "*")) && at + 1 < m_last && !Is(at + 1, ")") && !Is(at + 1, ",") &&
           !Is(at + 1, "FROM");
}

// Texts have one sign, which SQLite writes in its own way.
void Rewriter::Arithmetic(Place at)
{
    if (!IsSign(at))
        return;
    const Token &before = m_tokens[at - 1];
    const bool leads = before.kind == TokenKind::Operator && !before.Is(")");
    const bool operand = !leads && (before.kind != TokenKind::Keyword || before.Is("END") || before.Is("NULL"));
    const Kind left = operand ? KindOf(TypeUpTo(at - 1)) : Kind::Unknown;
    const Kind right = KindOf(TypeFrom(at + 1));
    const bool text = left == Kind::Text || right == Kind::Text;
    if (left == Kind::Moment || right == Kind::Moment || (text && (!operand || !Is(at, "+"))) ||
        (text && left != right && left != Kind::Unknown && right != Kind::Unknown))
        Refuse(at);
    if (text)
    {
        m_pieces[at] = "||";
        m_pieces[OperandEnd(at + 1)] += " COLLATE ts";
    }
    else if (operand)
        Calculation(at);
}

// The last token of the operand that begins at a place.
Rewriter::Place Rewriter::OperandEnd(Place first) const
{
    first += Is(first, "-") || Is(first, "+") ? 1 : 0;
    if (Is(first + 1, ".") || IsCall(first))
        first += Is(first + 1, ".") ? 2 : 1;
    return std::min(Is(first, "(") || Is(first, "CASE") ? m_partner[first] : first, m_last - 1);
}

// SQLite calculates in 64 bits: the result of each sign is checked. Called for each sign; the first deals with all.
void Rewriter::Calculation(Place sign)
{
    const bool closes = Is(sign - 1, ")") || Is(sign - 1, "END");
    Place start = closes ? m_partner[sign - 1] : sign - 1;
    start -= (closes && start > m_first && IsCall(start - 1)) ? 1 : Is(start - 1, ".") ? 2 : 0;
    if (const Token &before = m_tokens[start - 1];
        start > m_first && (before.Is("-") || before.Is("+") || before.Is("*")))
    {
        const Token &other = m_tokens[start - 2];
        if ((other.kind != TokenKind::Operator || other.Is(")")) &&
            (other.kind != TokenKind::Keyword || other.Is("END")))
            return; // not the first
        --start;
    }
    std::string checks;
    std::optional<ValueType> type = TypeFrom(start);
    const bool product = Is(sign, "*");
    while (sign < m_last && IsSign(sign))
    {
        if (Is(sign, "*") != product)
            Refuse(sign);
        type = Common(type, TypeFrom(sign + 1), sign);
        if ((type && (!IsInteger(type->type) || type->type == Type::Bit)) || IsWide(start) || IsWide(sign + 1))
            Refuse(sign);
        checks.insert(0, "ts_range(" + std::to_string(static_cast<int>(type.value_or(ValueType()).type)) + ",");
        sign = OperandEnd(sign + 1);
        m_pieces[sign++] += ")";
    }
    m_pieces[start].insert(0, checks);
}

// Values of two kinds: the server converts the text, as SQLite does for the constant beside a column alone.
void Rewriter::Compare(Place left, Place right)
{
    const Kind one = KindOf(TypeUpTo(left));
    const Kind other = KindOf(TypeFrom(right));
    if (one == other || one == Kind::Unknown || other == Kind::Unknown)
        return;
    const Token &constant = m_tokens[right];
    const std::string text = constant.IsText() ? Unquoted(constant) : "";
    if (one == Kind::Moment && constant.IsText())
        return void(ParseTicks(text)); // compared by the column's collation
    if (one != Kind::Number || !constant.IsText() || !m_tokens[left].IsName())
        Refuse(right);
    if (text.empty() || text.find_first_not_of("0123456789", text[0] == '-' ? 1 : 0) != std::string::npos)
        Raise(245, {"varchar", text, "int"});
}

// Conditions between the words that connect them. SQLite would take a number for one.
void Rewriter::Conditions(Place first, Place end)
{
    for (Place next; first < end; first = next + 1)
    {
        bool between = false;
        if (Is(first, "NOT"))
            m_roles[first] = Role::Condition;
        for (next = first; next < end && !Is(next, "OR") && (!Is(next, "AND") || between); ++next)
        {
            between = Is(next, "BETWEEN") || (between && !Is(next, "AND"));
            if (Is(next, "(") || Is(next, "CASE"))
                next = m_partner[next];
        }
        Condition(first + (Is(first, "NOT") ? 1 : 0), next);
        if (next < end)
            m_roles[next] = Role::Condition;
    }
}

void Rewriter::Condition(Place first, Place end)
{
    if (Is(first, "EXISTS"))
        return;
    if (Is(first, "(") && m_partner[first] + 1 == end && !IsSubquery(first))
        return Conditions(first + 1, end - 1);
    int compared = 0;
    for (Place at = first; at < end; ++at)
    {
        if (Is(at, "(") || Is(at, "CASE"))
            at = m_partner[at];
        const bool sign = IsComparison(m_tokens[at]);
        m_roles[at] = sign || m_tokens[at].kind == TokenKind::Keyword ? Role::Condition : m_roles[at];
        const Place left = at - (Is(at - 1, "NOT") ? 2 : 1);
        if (Is(at, "LIKE"))
            Common(TypeUpTo(left), TypeFrom(at + 1), at);
        if (sign || Is(at, "BETWEEN"))
            Compare(left, at + 1);
        if (Is(at, "BETWEEN"))
            Compare(left, Find(at, {"AND"}) + 1);
        else if (Is(at, "IN") && IsSubquery(at + 1))
            Common(TypeUpTo(left), TypeFrom(at + 1), at);
        else if (Is(at, "IN"))
            for (Place item = at + 1; !Is(item, ")"); item = Find(item + 1, {","}))
                Compare(left, item + 1);
        compared += sign || Is(at, "IN") || Is(at, "LIKE") || Is(at, "IS") || Is(at, "BETWEEN");
    }
    if (compared > 1)
        RefuseToken(m_tokens, std::min(end, m_last - 1), true);
    if (compared == 0)
        Raise(4145, {m_tokens[std::min(end, m_last - 1)].text});
}

// What follows a word: conditions up to the next clause.
void Rewriter::ConditionsBehind(Place word)
{
    const Place end = Find(
        word + 1, {"WHERE", "GROUP", "HAVING", "ORDER", "UNION", "INNER", "LEFT", "CROSS", "JOIN", "ON", "THEN", ","});
    Conditions(word + 1, end);
}

} // namespace tsql
