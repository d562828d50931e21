// Reading values: operators by rising precedence, constants, columns, casts, CASE, subqueries.
#include "errors.h"
#include "text.h"
#include "translator.h"

#include <charconv>

namespace tsql
{
namespace
{

constexpr int longestChain = 400; // of operators; SQLite limits the depth of its trees to 1000

} // namespace

// Refuses a condition where a value is needed.
void Translator::RequireValue(const Fragment &fragment) const
{
    if (fragment.condition)
        SyntaxError(fragment.at);
}

Fragment Translator::ReadValue()
{
    // Most values are a constant alone: those of INSERT, lists and calls.
    const Word next = Current().IsConstant() ? m_tokens[m_at + 1].word : Word::None;
    if (next == Word::Comma || next == Word::RightParenthesis)
        return Literal(Take());
    Fragment value = Chain(Word::Or);
    RequireValue(value);
    return value;
}

Fragment Translator::SumValue()
{
    Fragment value = Calculation(0);
    RequireValue(value);
    return value;
}

// What is grouped by counts as a whole, so the columns inside it are no fault.
bool Translator::Watches() const
{
    return m_scope && !m_scope->groups.empty() && m_scope->ungrouped.empty();
}

void Translator::Settle(bool watched, const Fragment &fragment)
{
    if (watched && m_scope->IsGroup(fragment.sql))
        m_scope->ungrouped.clear();
}

// Level 0: sums and bit operators; 1: products.
Fragment Translator::Calculation(int level)
{
    const auto isOperator = [&](Word word)
    {
        const bool product = word >= Word::Star && word <= Word::Percent;
        return word >= Word::Plus && word <= Word::Caret && product == (level == 1);
    };
    const bool watch = Watches();
    Fragment left = level == 0 ? Calculation(1) : Operand();
    for (int count = 0; isOperator(Current().word); ++count)
    {
        if (count > longestChain)
            Raise(191);
        RequireValue(left);
        const Token &operation = Take();
        Fragment right = level == 0 ? Calculation(1) : Operand();
        RequireValue(right);
        left = Operated(operation, std::move(left), std::move(right));
        Settle(watch, left);
    }
    return left;
}

Fragment Translator::Operand()
{
    const bool watch = Watches();
    Fragment operand = Sign();
    Settle(watch, operand);
    return operand;
}

Fragment Translator::Sign()
{
    if (!Is(Word::Plus) && !Is(Word::Minus) && !Is(Word::Tilde))
        return Primary();
    const auto deeper = Deeper();
    const Word sign = Take().word;
    Fragment operand = Sign();
    RequireValue(operand);
    if (sign == Word::Plus || m_checking)
        return operand;
    const ValueType &type = operand.type;
    if (sign == Word::Tilde)
    {
        if (!IsInteger(type.type))
            Raise(8117, {MessageName(type), "'~'"});
        const std::string sql = "(~ " + Sql(operand) + ")";
        if (type.type == Type::Bit || type.type == Type::TinyInt)
            return Made("(" + sql + (type.type == Type::Bit ? " & 1)" : " & 255)"), type);
        return Made(sql, type);
    }
    if (!IsNumber(type.type) || type.type == Type::Bit)
        Raise(8117, {MessageName(type), "minus"});
    // Of most constants the sign can be turned here; the lowest number of a type has no positive one.
    if (operand.literal && type.type >= Type::Int && operand.value.integer > INT32_MIN)
    {
        operand.value.integer = -operand.value.integer;
        operand.value.real = -operand.value.real;
        return operand;
    }
    const std::string sql = "(- " + Sql(operand) + ")";
    return IsInteger(type.type) ? Checked(sql, Type::BigInt, type) : Made(sql, type);
}

Fragment Translator::Primary()
{
    if (Current().IsConstant())
        return Literal(Take());
    switch (Current().kind)
    {
    case TokenKind::Variable:
    {
        const Variable &variable = m_session.variables[FindVariable(Take())];
        return m_checking ? Fragment() : MadeLiteral(variable.value, variable.type);
    }
    case TokenKind::Global:
        return Global(Take());
    case TokenKind::Name:
    case TokenKind::QuotedName:
        return Named();
    default:
        break;
    }
    switch (Current().word)
    {
    case Word::Null:
    {
        Take();
        Fragment null = m_checking ? Fragment() : MadeLiteral({}, {Type::Int, 0, 0});
        null.untyped = !m_checking;
        return null;
    }
    case Word::Case:
        return Case();
    case Word::Left:
    case Word::Right:
        return Call(Take());
    case Word::LeftParenthesis:
    {
        Take();
        Fragment inside = Is(Word::Select) ? Subquery() : Chain(Word::Or);
        Expect(Word::RightParenthesis);
        return inside;
    }
    default:
        SyntaxError();
    }
}

Fragment Translator::Literal(const Token &token) const
{
    if (m_checking)
        return {};
    if (token.kind == TokenKind::Text || token.kind == TokenKind::NationalText)
    {
        std::string plain = Unquoted(token);
        const int size = std::max(static_cast<int>(Length(plain)), 1);
        const Type type = token.kind == TokenKind::Text ? Type::VarChar : Type::NVarChar;
        return MadeLiteral(TextValue(std::move(plain)), {type, size > 8000 ? 0 : size, 0});
    }
    const std::string_view text = token.text;
    const char *const end = text.data() + text.size();
    std::int64_t integer = 0;
    if (token.kind == TokenKind::Integer && std::from_chars(text.data(), end, integer).ec == std::errc())
        return MadeLiteral(IntegerValue(integer), {integer <= INT32_MAX ? Type::Int : Type::Decimal,
                                                   static_cast<int>(std::to_string(integer).size()), 0});
    double number = 0;
    const bool inRange = std::from_chars(text.data(), end, number).ec == std::errc();
    if (token.kind == TokenKind::Float)
    {
        if (!inRange)
            Raise(168, {text});
        return MadeLiteral(RealValue(number), {Type::Float, 0, 0});
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    const int scale = static_cast<int>(text.size() - point) - (point < text.size() ? 1 : 0);
    const int whole = static_cast<int>(point - std::min(text.find_first_not_of('0'), point));
    if (whole + scale > 38)
        Raise(1007, {text});
    return MadeLiteral(RealValue(number), {Type::Decimal, std::max(whole + scale, 1), scale});
}

Fragment Translator::Global(const Token &token) const
{
    const auto is = [&](const char *name) { return Compare(token.text, name) == 0; };
    if (m_checking)
        return {};
    if (is("@@ROWCOUNT"))
        return MadeLiteral(IntegerValue(m_session.rowCount), {Type::Int, 0, 0});
    if (is("@@ERROR"))
        return MadeLiteral(IntegerValue(m_session.error), {Type::Int, 0, 0});
    if (is("@@TRANCOUNT"))
        return MadeLiteral(IntegerValue(m_session.transactions), {Type::Int, 0, 0});
    if (is("@@VERSION"))
        return MadeLiteral(TextValue("Embedded database (T-SQL dialect on SQLite)"), {Type::NVarChar, 300, 0});
    Raise(137, {token.text});
}

// A column (of up to four parts, of which the last two count) or a function call.
Fragment Translator::Named()
{
    const Token &first = Take();
    if (Is(Word::LeftParenthesis) && first.kind == TokenKind::Name)
    {
        const bool convert = Compare(first.text, "CONVERT") == 0;
        return convert || Compare(first.text, "CAST") == 0 ? Cast(convert) : Call(first);
    }
    const Token *name = &first;
    const Token *qualifier = nullptr;
    while (Accept(Word::Dot))
    {
        qualifier = name;
        name = &Current();
        TakeName();
    }
    if (m_checking)
        return {};
    return FindColumn(Unquoted(*name), qualifier ? Unquoted(*qualifier) : "", qualifier != nullptr);
}

Fragment Translator::FindColumn(const std::string &name, const std::string &qualifier, bool qualified)
{
    const auto shown = [&] { return qualified ? qualifier + "." + name : name; };
    for (Scope *scope = m_scope; scope; scope = scope->parent)
    {
        Fragment found;
        bool sourceFound = false;
        for (const Source &source : scope->sources)
        {
            if (qualified && Compare(source.name, qualifier) != 0)
                continue;
            sourceFound = true;
            for (std::size_t i = 0; i < source.names.size(); ++i)
            {
                if (Compare(source.names[i], name) != 0)
                    continue;
                if (found.column)
                    Raise(209, {name});
                found = source.ColumnAt(i);
            }
        }
        if (found.column && scope->grouped && !scope->inAggregate && scope->ungrouped.empty() &&
            !scope->IsGroup(found.sql))
            scope->ungrouped = shown();
        if (found.column)
            return found;
        if (qualified && sourceFound)
            Raise(207, {name});
    }
    Raise(qualified ? 4104 : 207, {shown()});
}

// CAST (x AS type), CONVERT (type, x [, style])
Fragment Translator::Cast(bool convert)
{
    Expect(Word::LeftParenthesis);
    ValueType type;
    if (convert)
    {
        type = TypeName(30);
        Expect(Word::Comma);
    }
    Fragment value = ReadValue();
    int style = -1;
    if (!convert)
    {
        Expect(Word::As);
        type = TypeName(30);
    }
    else if (Accept(Word::Comma))
    {
        const Fragment given = Converted(ReadValue(), {Type::Int, 0, 0}, Conversion::Cast);
        if (!given.literal && !m_checking)
            Raise(281, {Sql(given)});
        style = static_cast<int>(given.value.integer);
    }
    Expect(Word::RightParenthesis);
    value = Converted(std::move(value), type, Conversion::Cast, style);
    value.column = false;
    return value;
}

// CASE x WHEN y is read as CASE WHEN x = y, as the server does.
Fragment Translator::Case()
{
    Take();
    const bool simple = !Is(Word::When);
    const Fragment subject = simple ? ReadValue() : Fragment();
    std::vector<std::string> conditions;
    std::vector<Fragment> values;
    if (!Is(Word::When))
        SyntaxError();
    while (Accept(Word::When))
    {
        conditions.push_back(simple ? Compared(" = ", subject, ReadValue()) : Condition());
        Expect(Word::Then);
        values.push_back(ReadValue());
    }
    if (Accept(Word::Else))
        values.push_back(ReadValue());
    Expect(Word::End);
    const ValueType type = Common(values);
    std::string sql = "(CASE";
    for (std::size_t i = 0; i < values.size(); ++i)
        sql += (i < conditions.size() ? " WHEN " + conditions[i] + " THEN " : std::string(" ELSE ")) + Sql(values[i]);
    return Made(sql + " END)", type);
}

Fragment Translator::Subquery()
{
    Query query = ReadQuery(false);
    if (m_checking)
        return {};
    if (query.types.size() != 1)
        Raise(116);
    Write(query, true);
    return Made("(SELECT CASE WHEN ts_single(count(*)) THEN max(c1) END FROM (" + query.sql + "))", query.types[0]);
}

} // namespace tsql
