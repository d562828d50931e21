// Reading expressions: operators by rising precedence, and what the types of their operands make of them.
#include "errors.h"
#include "functions.h"
#include "rewrite.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tsql
{
namespace
{

constexpr int deepest = 60; // of expressions inside one another; SQLite's own parser takes a hundred
enum Level
{
    Or = 1,
    And,
    Not,
    Predicates,
    Sums,
    Products
};

int LevelOf(const Token &token)
{
    struct Entry
    {
        std::string_view text;
        int level;
    };
    constexpr Entry entries[] = {{"OR", Or},          {"AND", And},       {"=", Predicates},    {"<>", Predicates},
                                 {"!=", Predicates},  {"<", Predicates},  {"<=", Predicates},   {">", Predicates},
                                 {">=", Predicates},  {"!<", Predicates}, {"!>", Predicates},   {"IS", Predicates},
                                 {"NOT", Predicates}, {"IN", Predicates}, {"LIKE", Predicates}, {"BETWEEN", Predicates},
                                 {"+", Sums},         {"-", Sums},        {"*", Products},      {"/", Products},
                                 {"%", Products}};
    if (token.kind != TokenKind::Keyword && token.kind != TokenKind::Operator)
        return 0;
    for (const Entry &entry : entries)
        if (token.Is(entry.text))
            return entry.level;
    return 0;
}

// Types that compare with one another as they lie.
int ClassOf(const ValueType &type)
{
    return type.IsText() ? 1 : type.type == Type::DateTime ? 2 : 0;
}

} // namespace

void Rewriter::RequireValue(const Operand &operand) const
{
    if (operand.condition)
        Refuse(operand.last);
}

void Rewriter::RequireCondition(const Operand &operand) const
{
    if (!operand.condition)
        Refuse(m_at);
}

Rewriter::Operand Rewriter::Condition()
{
    const Operand condition = Expression(Or);
    RequireCondition(condition);
    return condition;
}

Rewriter::Operand Rewriter::ReadValue()
{
    const Operand value = Expression(Sums);
    RequireValue(value);
    return value;
}

Rewriter::Operand Rewriter::Expression(int level)
{
    if (++m_depth > deepest)
        Unsupported("Line " + LineOf(m_at) + ": an expression nested so deeply");
    Operand left = Prefix();
    for (int next = LevelOf(Current()); next >= level; next = LevelOf(Current()))
    {
        if (next == Predicates)
        {
            left = Predicate(std::move(left));
            continue;
        }
        const std::size_t at = m_at++;
        Operand right = Expression(next + 1);
        left = next < Not ? Logical(std::move(left), right) : Arithmetic(std::move(left), at, std::move(right));
    }
    --m_depth;
    return left;
}

Rewriter::Operand Rewriter::Logical(Operand left, const Operand &right)
{
    RequireCondition(left);
    RequireCondition(right);
    left.last = right.last;
    return left;
}

Rewriter::Operand Rewriter::Arithmetic(Operand left, std::size_t at, Operand right)
{
    RequireValue(left);
    RequireValue(right);
    const char operation = m_tokens[at].text[0];
    const ValueType type = left.untyped ? right.type : right.untyped ? left.type : CommonType(left.type, right.type);
    const auto fits = [&](const Operand &operand)
    { return operand.untyped || (type.IsText() ? operand.type.IsText() : operand.type.IsInteger()); };
    const bool joins = type.IsText() && operation == '+';
    if (!fits(left) || !fits(right) || type.type == Type::Bit || (!joins && !type.IsInteger()))
        Unsupported("Line " + LineOf(at) + ": '" + operation + "' between " + TypeName(left.type) + " and " +
                    TypeName(right.type));
    Operand result{.first = left.first, .last = right.last, .type = type, .untyped = left.untyped && right.untyped};
    if (joins)
    {
        Replace(at, "||");
        Collate(right);
        const int size = left.type.size + right.type.size;
        const bool known = left.type.size > 0 && right.type.size > 0 && size <= 8000;
        result.type = {type.IsNational() ? Type::NVarChar : Type::VarChar, known ? size : 0};
        return result;
    }
    if (operation == '/' || operation == '%')
    {
        Replace(at, ",");
        Wrap(result, operation == '/' ? "ts_divide(" : "ts_modulo(", ")");
    }
    Wrap(result, "ts_check(", "," + std::to_string(static_cast<int>(type.type)) + ")");
    result.type.size = 0;
    return result;
}

Rewriter::Operand Rewriter::Predicate(Operand left)
{
    RequireValue(left);
    const std::size_t at = m_at++;
    const std::size_t negation = m_tokens[at].Is("NOT") ? at : m_tokens.size();
    if (m_tokens[at].kind == TokenKind::Operator)
    {
        if (m_tokens[at].text[0] == '!' && !m_tokens[at].Is("!="))
            Replace(at, m_tokens[at].Is("!<") ? ">=" : "<=");
        Operand right = ReadValue();
        Compare(left, right);
    }
    else if (m_tokens[at].Is("IS"))
    {
        Accept("NOT");
        Expect("NULL");
    }
    else if (m_tokens[at].Is("LIKE") || (negation == at && Accept("LIKE")))
        Like(left, negation);
    else if (m_tokens[at].Is("IN") || (negation == at && Accept("IN")))
        In(left);
    else if (m_tokens[at].Is("BETWEEN") || (negation == at && Accept("BETWEEN")))
    {
        Operand low = ReadValue();
        Expect("AND");
        Operand high = ReadValue();
        CompareWith(left, low);
        CompareWith(left, high);
    }
    else
        Refuse();
    return {.first = left.first, .last = m_at - 1, .condition = true};
}

// Brings both sides to one type, and says how texts compare.
void Rewriter::Compare(Operand &left, Operand &right)
{
    if (left.untyped || right.untyped || ClassOf(left.type) == ClassOf(right.type))
    {
        if (left.type.IsText() || right.type.IsText())
            Collate(right);
        return;
    }
    const ValueType type = CommonType(left.type, right.type);
    Convert(ClassOf(left.type) == ClassOf(type) ? right : left, type, Conversion::Store);
}

// The same for a left side that stands once for several on the right, and so cannot be converted for each.
void Rewriter::CompareWith(const Operand &left, Operand &right)
{
    Operand same = left;
    if (!left.untyped && !right.untyped && ClassOf(CommonType(left.type, right.type)) != ClassOf(left.type))
        Unsupported("Line " + LineOf(right.first) + ": " + TypeName(left.type) + " beside " + TypeName(right.type));
    Compare(same, right);
}

void Rewriter::Like(const Operand &left, std::size_t negation)
{
    const std::size_t at = m_at - 1;
    Operand text = left;
    Operand pattern = ReadValue();
    for (Operand *operand : {&text, &pattern})
        if (!operand->type.IsText())
            Convert(*operand, {Type::VarChar}, Conversion::Cast);
    const bool national = text.type.IsNational() || pattern.type.IsNational();
    Replace(at, ",");
    if (negation < m_tokens.size())
        Replace(negation, "");
    Wrap({.first = left.first, .last = pattern.last}, negation < m_tokens.size() ? "NOT ts_like(" : "ts_like(",
         national ? ",0)" : ",1)");
}

void Rewriter::In(const Operand &left)
{
    Expect("(");
    if (left.type.IsText())
        Collate(left);
    if (Is("SELECT"))
    {
        Query query = ReadQuery(false);
        if (query.items.size() != 1 || query.items[0].star)
            Refuse(query.first);
        CompareWith(left, query.items[0].value);
    }
    else
        do
        {
            Operand value = ReadValue();
            CompareWith(left, value);
        } while (Accept(","));
    Expect(")");
}

Rewriter::Operand Rewriter::Prefix()
{
    const std::size_t at = m_at;
    if (Accept("NOT"))
    {
        Operand operand = Expression(Not);
        RequireCondition(operand);
        operand.first = at;
        return operand;
    }
    if (Accept("EXISTS"))
    {
        Expect("(");
        ReadQuery(false);
        Expect(")");
        return {.first = at, .last = m_at - 1, .condition = true};
    }
    const bool minus = Is("-");
    if (!minus && !Is("+"))
        return Primary();
    ++m_at;
    if (++m_depth > deepest)
        Refuse();
    Operand operand = Prefix();
    --m_depth;
    RequireValue(operand);
    if (!operand.type.IsNumber() || operand.type.type == Type::Bit)
        Unsupported("Line " + LineOf(at) + ": a sign before " + TypeName(operand.type));
    operand.first = at;
    operand.column = false;
    operand.name = {};
    if (!minus)
        Replace(at, "");
    else if (!operand.literal && operand.type.IsInteger())
        Wrap(operand, "ts_check(", "," + std::to_string(static_cast<int>(operand.type.type)) + ")");
    return operand;
}

Rewriter::Operand Rewriter::Primary()
{
    switch (Current().kind)
    {
    case TokenKind::Integer:
    case TokenKind::Decimal:
    case TokenKind::Float:
    case TokenKind::Text:
    case TokenKind::NationalText:
        return Literal();
    case TokenKind::Variable:
    {
        const ValueType type = Find(Current().text).type;
        ++m_at;
        return {.first = m_at - 1, .last = m_at - 1, .type = type};
    }
    case TokenKind::Name:
    case TokenKind::QuotedName:
        return Current().kind == TokenKind::Name && m_tokens[m_at + 1].Is("(") ? Call() : Name();
    default:
        break;
    }
    if (Is("CASE"))
        return Case();
    if (Is("("))
        return Parentheses();
    if (Is("LEFT") || Is("RIGHT"))
        return Call();
    m_inValue = true; // any other keyword is in the wrong place
    Expect("NULL");
    m_inValue = false;
    return {.first = m_at - 1, .last = m_at - 1, .untyped = true, .literal = true};
}

Rewriter::Operand Rewriter::Literal()
{
    const Token &token = Current();
    const std::size_t at = m_at++;
    Operand operand{.first = at, .last = at, .literal = true};
    if (token.IsText())
    {
        const bool national = token.kind == TokenKind::NationalText;
        const std::string text = LiteralValue(operand).text;
        const int size = std::max(static_cast<int>(runtime::Length(text)), 1);
        operand.type = {national ? Type::NVarChar : Type::VarChar, size > 8000 ? 0 : size};
        m_pieces[at] = {"", Quoted(text, '\'')};
        return operand;
    }
    const std::size_t point = std::min(token.text.find('.'), token.text.size());
    const int scale = std::max(static_cast<int>(token.text.size() - point) - 1, 0);
    const int digits = static_cast<int>(point - std::min(token.text.find_first_not_of('0'), point)) + scale;
    if (token.kind == TokenKind::Float && std::isfinite(LiteralValue(operand).real))
        operand.type = {Type::Float};
    else if (digits > 15 || token.kind == TokenKind::Float)
        Unsupported("Line " + LineOf(at) + ": a number of more than 15 digits");
    else if (token.kind == TokenKind::Decimal || LiteralValue(operand).kind == Value::Real)
        operand.type = {Type::Decimal, std::max(digits, 1), scale};
    return operand;
}

// Of a constant, which may have a sign. Integers beyond int are decimals.
Value Rewriter::LiteralValue(const Operand &operand) const
{
    const Token &token = m_tokens[operand.last];
    if (token.IsText())
    {
        std::string text = Unquoted(token);
        return TextValue(token.kind == TokenKind::Text ? InCodePage(text) : std::move(text));
    }
    if (token.Is("NULL"))
        return {};
    double number = 0;
    if (std::from_chars(token.text.data(), token.text.data() + token.text.size(), number).ec != std::errc())
        number = HUGE_VAL;
    for (std::size_t at = operand.first; at < operand.last; ++at)
        number = m_tokens[at].Is("-") ? -number : number;
    const bool whole = token.kind == TokenKind::Integer && number <= INT32_MAX && number >= INT32_MIN;
    return whole ? IntegerValue(static_cast<std::int64_t>(number)) : RealValue(number);
}

// [table.]column
Rewriter::Operand Rewriter::Name()
{
    const std::size_t first = TakeName();
    std::string qualifier;
    if (Accept("."))
    {
        qualifier = Unquoted(m_tokens[first]);
        TakeName();
        if (Is("."))
            Unsupported("Line " + LineOf(first) + ": a column with its owner");
    }
    const std::string name = Unquoted(m_tokens[m_at - 1]);
    Operand operand{.first = first, .last = m_at - 1, .column = true, .name = {qualifier, name}};
    const Known *found = nullptr;
    bool known = qualifier.empty();
    for (const Known &column : m_columns)
    {
        const bool there = qualifier.empty() || tsql::Compare(column.qualifier, qualifier) == 0;
        known = known || there;
        if (!there || tsql::Compare(column.name, name) != 0)
            continue;
        if (found && qualifier.empty() && found->query == m_query && column.query == m_query)
            Later(MakeError(209, {name}));
        if (found && ClassOf(found->type) != ClassOf(column.type))
            Unsupported("Line " + LineOf(first) + ": '" + name + "' of several tables with different types");
        found = &column;
    }
    if (!found)
        Later(known ? MakeError(207, {name}) : MakeError(4104, {qualifier + "." + name}));
    operand.untyped = !found;
    operand.type = found ? found->type : ValueType{};
    if (!m_inAggregate)
        m_used.push_back(operand);
    return operand;
}

Rewriter::Operand Rewriter::Parentheses()
{
    const std::size_t first = m_at++;
    Operand inside;
    if (Is("SELECT"))
    {
        Query query = ReadQuery(false);
        if (query.items.size() != 1 || query.items[0].star)
            Refuse(query.first);
        if (query.special)
            Unsupported("Line " + LineOf(first) + ": such a query as a value");
        inside = query.items[0].value;
        if (!query.single)
            Wrap(inside, "ts_single(", ")");
        inside.column = false;
        inside.name = {};
    }
    else
        inside = Expression(Or);
    Expect(")");
    inside.first = first;
    inside.last = m_at - 1;
    inside.literal = false;
    return inside;
}

// The type of several values of which one is taken.
void Rewriter::Mix(Operand &common, Operand &next)
{
    RequireValue(next);
    if (common.untyped || next.untyped)
        common.type = common.untyped ? next.type : common.type;
    else if (common.type.IsInteger() != next.type.IsInteger() || ClassOf(common.type) != ClassOf(next.type))
        Unsupported("Line " + LineOf(next.first) + ": " + TypeName(common.type) + " and " + TypeName(next.type) +
                    " in one column");
    else
        common.type = CommonType(common.type, next.type);
    common.untyped = common.untyped && next.untyped;
}

Rewriter::Operand Rewriter::Case()
{
    Operand result{.first = m_at++, .untyped = true};
    const bool simple = !Is("WHEN");
    Operand subject = simple ? ReadValue() : Operand();
    if (simple && subject.type.IsText())
        Collate(subject);
    for (bool first = true; first || Is("WHEN"); first = false)
    {
        Expect("WHEN");
        if (simple)
        {
            Operand value = ReadValue();
            CompareWith(subject, value);
        }
        else
            Condition();
        Expect("THEN");
        Operand value = ReadValue();
        Mix(result, value);
    }
    if (Accept("ELSE"))
    {
        Operand value = ReadValue();
        Mix(result, value);
    }
    Expect("END");
    result.last = m_at - 1;
    return result;
}

// CAST (x AS type), CONVERT (type, x [, style])
Rewriter::Operand Rewriter::Cast(bool convert)
{
    const std::size_t first = m_at;
    ValueType type;
    int style = 0;
    Replace(m_at++, "");
    Expect("(");
    std::size_t start = m_at;
    if (convert)
    {
        type = ReadType(30);
        Expect(",");
        Blank(start, m_at);
    }
    Operand value = ReadValue();
    start = m_at;
    if (!convert)
    {
        Expect("AS");
        type = ReadType(30);
    }
    else if (Accept(","))
        style = ReadNumber();
    Blank(start, m_at);
    Expect(")");
    Convert(value, type, Conversion::Cast, style);
    return {.first = first, .last = m_at - 1, .type = type};
}

Rewriter::Operand Rewriter::Call()
{
    const std::size_t at = m_at;
    const auto is = [&](const char *name) { return SameWord(m_tokens[at].text, name); };
    if (is("CAST") || is("CONVERT"))
        return Cast(is("CONVERT"));
    if (is("ISNULL") || is("COALESCE"))
        return Choice(is("ISNULL"));
    if (is("COUNT") || is("SUM") || is("MIN") || is("MAX"))
        return Aggregate();
    const Function *const function = FindFunction(m_tokens[at].text);
    if (!function)
        Unsupported("Line " + LineOf(at) + ": the function " + std::string(m_tokens[at].text));
    m_pieces[at].before = "ts_";
    ++m_at;
    Expect("(");
    bool national = false;
    std::size_t count = 0;
    for (; !Is(")") && (count == 0 || Accept(",")); ++count)
    {
        Operand value = ReadValue();
        if (count >= function->arguments.size())
            Refuse(value.first);
        const bool text = function->arguments[count] == 't';
        if (!text && !value.type.IsText() && !value.type.IsInteger())
            Unsupported("Line " + LineOf(at) + ": " + function->name.data() + " of " + TypeName(value.type));
        national = national || (count == 0 && value.type.IsNational());
        if (text != value.type.IsText())
            Convert(value, {text ? Type::VarChar : Type::Int}, text ? Conversion::Cast : Conversion::Store);
    }
    Expect(")");
    if (static_cast<int>(count) < function->least)
        Refuse(m_at - 1);
    const Type type = function->result == 'I'               ? Type::Int
                      : function->result == 'D'             ? Type::DateTime
                      : national && function->result == 'T' ? Type::NVarChar
                                                            : Type::VarChar;
    return {.first = at, .last = m_at - 1, .type = {type}};
}

// ISNULL takes the type of its first argument, COALESCE that which wins.
Rewriter::Operand Rewriter::Choice(bool isNull)
{
    const std::size_t first = m_at++;
    Replace(first, "coalesce");
    Expect("(");
    Operand result = ReadValue();
    for (int more = 0; more == 0 || (!isNull && Is(",")); ++more)
    {
        Expect(",");
        Operand next = ReadValue();
        if (!isNull || result.untyped)
            Mix(result, next);
        else
            Convert(next, result.type, Conversion::Cast);
    }
    Expect(")");
    return {.first = first, .last = m_at - 1, .type = result.type, .untyped = result.untyped};
}

Rewriter::Operand Rewriter::Aggregate()
{
    const std::size_t first = m_at++;
    const auto is = [&](const char *name) { return SameWord(m_tokens[first].text, name); };
    Expect("(");
    if (m_inAggregate)
        Refuse(first);
    ++m_aggregates;
    Operand result{.first = first};
    if (!is("COUNT") || !Accept("*"))
    {
        const std::size_t start = m_at;
        if (Accept("ALL"))
            Replace(start, "");
        else
            Accept("DISTINCT");
        m_inAggregate = true;
        const Operand value = ReadValue();
        m_inAggregate = false;
        if (value.type.IsText() && !value.column)
            Collate(value);
        if (!is("COUNT"))
            result.type = value.type;
        if ((is("SUM") && !value.type.IsInteger()) || (!is("COUNT") && value.type.type == Type::Bit))
            Unsupported("Line " + LineOf(first) + ": " + std::string(m_tokens[first].text) + " of " +
                        TypeName(value.type));
    }
    Expect(")");
    result.last = m_at - 1;
    if (is("SUM"))
    {
        result.type = {std::max(result.type.type, Type::Int)};
        Wrap(result, "ts_check(", "," + std::to_string(static_cast<int>(result.type.type)) + ")");
    }
    return result;
}

} // namespace tsql
