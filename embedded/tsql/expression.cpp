// Values and conditions.
#include "reader.h"

#include "errors.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tsql
{
namespace
{

// A function: its arguments (N a number, T a text, P a text whose letters have no case, A any value, S one that becomes
// what the first is), what stands in front of them in SQLite, and its type, or none when it has that of its arguments.
// The clock is read to 1/100 s, which is a time that the server could give.
struct Function
{
    std::string_view name;
    std::string_view arguments;
    std::string_view opening;
    std::string_view type;
    bool aggregate = false;
};
constexpr Function functions[] = {
    {"count", "*", "count(", "int", true},
    {"getdate", "", "substr(strftime('%Y-%m-%d %H:%M:%f', 'now', 'localtime'), 1, 22) || char(48", "datetime"},
    {"isnull", "AS", "ifnull(", ""},
    {"len", "T", "ts_len(", "int"},
    {"ltrim", "T", "ltrim(", "varchar"},
    {"max", "A", "max(", "", true},
    {"min", "A", "min(", "", true},
    {"rtrim", "T", "rtrim(", "varchar"},
    {"replace", "TPT", "replace(", "varchar"},
    {"str", "N", "ts_str(", "varchar"},
    {"upper", "T", "ts_upper(", "varchar"},
};

} // namespace

// Conditions between ORs, or between ANDs. A value alone passes through.
Reader::Value Reader::Logic(std::string_view word)
{
    const auto next = [&]
    {
        std::string negations;
        while (word == "AND" && Accept("NOT"))
            negations += "NOT ";
        Value value = word == "OR" ? Logic("AND") : Comparison();
        value.sql.insert(0, negations);
        return negations.empty() ? value : Must(true, std::move(value));
    };
    Value left = next();
    while (Is(word))
    {
        left = Must(true, std::move(left));
        ++m_at;
        left.sql += " " + std::string(word) + " " + Must(true, next()).sql;
    }
    return left;
}

Reader::Value Reader::Comparison()
{
    constexpr std::string_view operators[] = {"LIKE", "=", "<>", "!=", "<", ">", "<=", ">="};
    Value left = Sum();
    const bool negated = Accept("NOT");
    std::string sql = negated ? " NOT" : "";
    if (Accept("IN"))
        sql += " IN " + List(left);
    else if (Accept("BETWEEN"))
    {
        sql += " BETWEEN " + Beside(left, Operand()).sql;
        Expect("AND");
        sql += " AND " + Beside(left, Operand()).sql;
    }
    else if (!negated && Accept("IS"))
    {
        sql = Accept("NOT") ? " IS NOT NULL" : " IS NULL";
        Expect("NULL");
    }
    else
    {
        const auto *const found = std::ranges::find_if(operators, [this](auto one) { return Is(one); });
        Require(!negated || found == operators);
        if (found == std::end(operators))
            return left;
        ++m_at;
        Value right = Operand();
        for (const Value *const side : {&left, &right})
            Support(found != operators || KindOf(side->type) == Kind::Text || KindOf(side->type) == Kind::None);
        Match(left, right);
        sql += " " + std::string(*found) + " " + right.sql;
    }
    return {Must(false, left).Collated() + sql, "condition"};
}

// (value, ...) or (SELECT ...)
std::string Reader::List(const Value &left)
{
    if (!Is("SELECT", 1))
        return Bracketed([&] { return Beside(left, Operand()).sql; });
    Expect("(");
    const Query query = ReadQuery(Use::Other);
    std::string type = left.type;
    Common(type, query.items[0]);
    Expect(")");
    return "(" + query.sql + ")";
}

// SQLite calculates in 64 bits: each result is checked. Texts have one sign, which SQLite writes in its own way.
Reader::Value Reader::Sum()
{
    Value left = Primary();
    while (Is("+") || Is("-"))
    {
        const std::string operation = " " + std::string(m_tokens[m_at++].text) + " ";
        Value right = Must(false, Primary());
        left = Must(false, std::move(left));
        Match(left, right);
        std::string type = left.type;
        Common(type, right);
        const bool join = KindOf(type) == Kind::Text && operation == " + ";
        Support(join || type.empty() || type == "int" || type == "bigint");
        if (join)
            left = {left.sql + " || " + right.sql, std::string(Larger(type, type))};
        else
            left = Converted({left.sql + operation + right.sql}, type.empty() ? "int" : type);
    }
    return left;
}

Reader::Value Reader::Primary()
{
    Require(++m_depth <= 50);
    const Token &token = m_tokens[m_place = m_at];
    const std::size_t loose = m_scope ? m_scope->loose : 0;
    Value value;
    if (token.IsText() || token.kind == TokenKind::Integer || token.kind == TokenKind::Variable || Is("-"))
        value = Literal();
    else if (Accept("NULL"))
        value.sql = "NULL";
    else if (Accept("CASE"))
        value = Case();
    else if (Is("(") || Is("EXISTS"))
        value = Brackets();
    else if (token.IsName() && Is("(", 1))
        value = Call();
    else
        value = ColumnValue();
    if (m_scope && std::ranges::count(m_scope->groups, value.sql) > 0)
        m_scope->loose = loose;
    --m_depth;
    return value;
}

// A text, a number with a sign or without, or a variable.
Reader::Value Reader::Literal()
{
    const std::string sign = Accept("-") ? "-" : "";
    const Token &token = m_tokens[m_at++];
    Support(sign.empty() || token.kind == TokenKind::Integer);
    if (token.IsText())
        return {Quoted(Unquoted(token), '\''), token.IsNational() ? "nvarchar" : "varchar"};
    if (token.kind == TokenKind::Integer)
    {
        std::int64_t value = 0;
        const auto read = std::from_chars(token.text.data(), token.text.data() + token.text.size(), value);
        const bool wide = value > INT32_MAX; // a decimal, which VALUES alone may have
        Support(read.ec == std::errc() && (!wide || (!m_scope && (Is(",") || Is(")")))));
        return {sign + std::string(token.text), wide ? "bigint" : "int"};
    }
    const auto known = m_variables.find(Small(token.text));
    if (known == m_variables.end())
        Raise(137, {token.text});
    return {known->first, known->second.type};
}

// EXISTS (query), (query), (condition) and (value)
Reader::Value Reader::Brackets()
{
    const bool exists = Accept("EXISTS");
    Expect("(");
    Value value;
    if (exists || Is("SELECT"))
    {
        Query query = ReadQuery(exists ? Use::Other : Use::Value);
        value = {(exists ? "EXISTS (" : "(") + query.sql + ")", exists ? "condition" : query.items[0].type};
    }
    else
    {
        value = Logic("OR");
        value.sql = "(" + value.sql + ")";
        value.name.clear();
    }
    Expect(")");
    return value;
}

// CASE [value] WHEN condition or value THEN value ... [ELSE value] END
Reader::Value Reader::Case()
{
    const bool simple = !Is("WHEN");
    const Value tested = simple ? Operand() : Value();
    Value all{"CASE " + tested.Collated()};
    const auto branch = [&](const char *word)
    {
        const Value value = Operand();
        Common(all.type, value);
        all.sql += word + value.sql;
    };
    Require(Is("WHEN"));
    while (Accept("WHEN"))
    {
        all.sql += " WHEN " + (simple ? Beside(tested, Operand()) : Condition()).sql;
        Expect("THEN");
        branch(" THEN ");
    }
    if (Accept("ELSE"))
        branch(" ELSE ");
    Expect("END");
    all.sql += " END";
    return all;
}

// A column, with the name of its table in front or without.
Reader::Value Reader::ColumnValue()
{
    std::string name = TakeName();
    const std::string source = Accept(".") ? std::exchange(name, TakeName()) : "";
    Support(!Is(".") && !Is("("));
    bool known = source.empty() || !m_catalog;
    for (Scope *scope = m_scope; scope != nullptr; scope = scope->outer)
    {
        Value found;
        for (const Source &one : scope->sources)
        {
            const bool meant = source.empty() || SameWord(one.name, source);
            known = known || meant;
            const TableColumn *const column = meant ? Find(one.columns, name) : nullptr;
            Support(!column || found.sql.empty());
            if (column)
                found = {Quoted(one.name) + "." + Quoted(column->name), column->type, name};
        }
        if (found.sql.empty())
            continue;
        Support(scope == m_scope || !m_scope->closed);
        scope->loose += std::ranges::count(scope->groups, found.sql) == 0 ? 1 : 0;
        return found;
    }
    Support(known);
    if (m_catalog)
        Raise(207, {name});
    return {"NULL", "", name};
}

// A function, with its arguments in brackets.
Reader::Value Reader::Call()
{
    const std::string name = Small(m_tokens[m_at].text);
    if (name == "cast" || name == "convert")
        return Conversion(name == "cast");
    const auto *const known = std::ranges::find(functions, name, &Function::name);
    Support(known != std::end(functions) && (!known->aggregate || (m_scope && !m_scope->closed)));
    Value value{std::string(known->opening), std::string(known->type)};
    const std::size_t loose = m_scope ? m_scope->loose : 0;
    if (known->aggregate) // SQLite knows where it may stand
        m_scope->aggregated = m_scope->closed = true;
    ++m_at;
    Expect("(");
    for (const char &kind : known->arguments)
    {
        const bool isFirst = &kind == known->arguments.data();
        Require(isFirst || Accept(","));
        value.sql += isFirst ? "" : ", ";
        value.sql += kind == '*' && Accept("*") ? "*" : Argument(kind, value).sql;
    }
    Expect(")");
    value.sql += ")";
    if (known->aggregate)
    {
        Support(value.type != "bit");
        m_scope->closed = false;
        m_scope->loose = loose;
    }
    return value;
}

// An argument of a kind of Function, of the call that has been read so far.
Reader::Value Reader::Argument(char kind, Value &call)
{
    const Place behind = m_at + 1;
    Value argument = Operand();
    const Kind given = KindOf(argument.type);
    const bool marks = m_at == behind && argument.sql.find_first_not_of("'/-.,;:_ 0123456789") == std::string::npos;
    Support(kind != 'P' || marks); // SQLite minds the case
    const Kind wanted = kind == 'N' ? Kind::Number : kind == 'T' || kind == 'P' ? Kind::Text : given;
    Support(given == Kind::None || given == wanted);
    if (kind == 'S' && !call.type.empty())
        argument = Converted(argument, call.type);
    if (kind == 'A' || kind == 'S' || (KindOf(call.type) == Kind::Text && wanted == Kind::Text))
        Common(call.type, argument);
    return kind == 'A' ? Value{argument.Collated()} : argument;
}

// CAST(value AS type) and CONVERT(type, value)
Reader::Value Reader::Conversion(bool cast)
{
    m_at += 2;
    std::string type = cast ? "" : TakeType(30);
    Require(cast || Accept(","));
    const Value value = Operand();
    Require(!cast || Accept("AS"));
    type = cast ? TakeType(30) : type;
    Expect(")");
    return Converted(value, type);
}

// The type of values that stand for each other, which have to be of one kind.
void Reader::Common(std::string &type, const Value &value) const
{
    Support(type.empty() || value.type.empty() || KindOf(type) == KindOf(value.type));
    if (type.empty())
        type = value.type;
    else if (!value.type.empty() && type != value.type)
        type = Larger(type, value.type);
}

// Two values beside each other: a text becomes what the other is, as on the server.
void Reader::Match(Value &left, Value &right) const
{
    if (KindOf(left.type) == Kind::Text)
        left = Beside(right, left);
    else
        right = Beside(left, right);
}

Reader::Value Reader::Beside(const Value &other, const Value &value) const
{
    const Kind kind = KindOf(value.type);
    if (kind == Kind::None || KindOf(other.type) == Kind::None || kind == KindOf(other.type))
        return value;
    Support(kind == Kind::Text);
    return Converted(value, other.type);
}

// Texts become anything, integers become texts and numbers; no other conversion is supported.
Reader::Value Reader::Converted(const Value &value, std::string_view type) const
{
    const Kind from = KindOf(value.type);
    const Kind to = KindOf(type);
    if (value.type == type)
        return value;
    Support(from == Kind::None || from == Kind::Text || from == to || (from == Kind::Number && to != Kind::Moment));
    return {"ts_convert('" + std::string(type) + "', " + value.sql + ")", std::string(type)};
}

} // namespace tsql
