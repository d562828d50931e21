// Reading calls of functions: those of the table, the aggregates, and the few that need a rule of their own.
#include "datetime.h"
#include "errors.h"
#include "functions.h"
#include "text.h"
#include "translator.h"

namespace tsql
{
namespace
{

enum Aggregates
{
    Count,
    CountBig,
    Sum,
    Average,
    Minimum,
    Maximum,
    NoAggregate
};
constexpr const char *aggregateNames[] = {"count", "count_big", "sum", "avg", "min", "max"};

} // namespace

Fragment Translator::Call(const Token &name)
{
    int aggregate = 0;
    while (aggregate < NoAggregate && Compare(name.text, aggregateNames[aggregate]) != 0)
        ++aggregate;
    Expect(Word::LeftParenthesis);
    if (aggregate != NoAggregate)
        return Aggregate(aggregate);
    const std::string upper = Upper(name.text);
    if (upper == "ISNULL" || upper == "COALESCE" || upper == "NULLIF")
        return Choice(upper);
    const Function *function = FindFunction(upper);
    if (!function && !m_checking)
        Raise(195, {name.text});

    Fragment result;
    result.sql = "ts_" + upper + "(";
    ValueType first;
    int count = 0;
    const int most = function ? static_cast<int>(function->arguments.size()) : 0;
    for (; !Is(Word::RightParenthesis) && (count == 0 || Accept(Word::Comma)); ++count)
    {
        const char kind = count < most ? function->arguments[count] : 0;
        result.sql += count > 0 ? "," : "";
        if (kind == 'p' && !m_checking)
        {
            const Token &part = Take();
            if (part.kind != TokenKind::Name || !IsDatePart(part.text) || !Is(Word::Comma))
                Raise(155, {part.text, Lower(upper)});
            result.sql += "'" + std::string(part.text) + "'";
            continue;
        }
        Fragment value = ReadValue();
        if (count == 0)
            first = value.type;
        if (kind == 't' && !IsText(value.type.type))
            value = Converted(std::move(value), {Type::VarChar, 0, 0}, Conversion::Cast);
        else if (kind == 'i')
            value = Converted(std::move(value), {Type::Int, 0, 0}, Conversion::Store);
        else if (kind == 'd')
            value = Converted(std::move(value), {Type::DateTime, 0, 0}, Conversion::Store);
        else if (kind == 'f' || (kind == 'n' && !IsNumber(value.type.type)))
            value = Converted(std::move(value), {Type::Float, 0, 0}, Conversion::Store);
        if (kind == 'n')
            first = value.type.type < Type::Int ? ValueType{Type::Int, 0, 0} : value.type;
        result.sql += Sql(value) + (kind == 'a' ? "," + std::to_string(Pack(value.type)) : "");
    }
    Expect(Word::RightParenthesis);
    if (m_checking)
        return {};
    if (count < function->least || count > most)
        Raise(174, {Lower(upper), function->least == most
                                      ? std::to_string(most)
                                      : std::to_string(function->least) + " to " + std::to_string(most)});
    result.sql += ")";
    switch (function->result)
    {
    case 'I':
        result.type.type = Type::Int;
        return result;
    case 'D':
        result.type.type = Type::DateTime;
        return result;
    case 'V':
        result.type.type = Type::VarChar;
        return result;
    case 'N':
        result.type.type = Type::NVarChar;
        return result;
    case 'T':
        result.type.type = IsNational(first.type) ? Type::NVarChar : Type::VarChar;
        return result;
    default: // '=' and '0'
        result.type = {first.type, first.size, function->result == '0' ? 0 : first.scale};
    }
    // ABS and ROUND can leave the range.
    return IsInteger(first.type) ? Checked(result.sql, Type::BigInt, first) : result;
}

// ISNULL takes the type of its first argument, COALESCE that which wins; NULLIF is a CASE.
Fragment Translator::Choice(const std::string &name)
{
    std::vector<Fragment> values;
    if (!Is(Word::RightParenthesis))
        do
            values.push_back(ReadValue());
        while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    if (m_checking)
        return {};
    if (values.size() < 2 || (values.size() > 2 && name != "COALESCE"))
        Raise(174, {Lower(name), "2"});
    if (name == "NULLIF")
        return Made("(CASE WHEN " + Compared(" = ", values[0], values[1]) + " THEN NULL ELSE " + Sql(values[0]) +
                        " END)",
                    values[0].type);
    ValueType type = values[0].untyped ? values[1].type : values[0].type;
    if (name == "ISNULL")
        values[1] = Converted(std::move(values[1]), type, Conversion::Cast);
    else
        type = Common(values);
    std::string sql = "coalesce(";
    for (std::size_t i = 0; i < values.size(); ++i)
        sql += (i > 0 ? "," : "") + Sql(values[i]);
    return Made(sql + ")", type);
}

Fragment Translator::Aggregate(int which)
{
    const bool counts = which == Count || which == CountBig;
    const ValueType counted{which == CountBig ? Type::BigInt : Type::Int, 0, 0};
    if (m_checking)
        m_tokens[m_select].aggregates = true;
    else if (!m_scope || !m_scope->aggregatesAllowed)
        Raise(147);
    else if (m_scope->inAggregate)
        Raise(130);
    const bool distinct = Accept(Word::Distinct);
    if (!distinct)
        Accept(Word::All);
    if (counts && !distinct && Accept(Word::Star))
    {
        Expect(Word::RightParenthesis);
        return Made("count(*)", counted);
    }
    bool ignored = false;
    bool &inAggregate = m_checking ? ignored : m_scope->inAggregate;
    inAggregate = true;
    const Fragment value = ReadValue();
    inAggregate = false;
    Expect(Word::RightParenthesis);
    if (m_checking)
        return {};
    const std::string inside = "(" + std::string(distinct ? "DISTINCT " : "") + Collated(value) + ")";
    if (counts)
        return Made("count" + inside, counted);
    if (value.type.type == Type::Bit || ((which == Sum || which == Average) && !IsNumber(value.type.type)))
        Raise(8117, {MessageName(value.type), aggregateNames[which]});
    if (which == Minimum || which == Maximum)
        return Made((which == Minimum ? "min" : "max") + inside, value.type);
    ValueType type = value.type;
    if (type.type < Type::Int)
        type = {Type::Int, 0, 0};
    else if (type.type == Type::Decimal)
        type = {Type::Decimal, 38, which == Sum ? type.scale : std::max(type.scale, 6)};
    else if (type.type == Type::Float)
        type = {Type::Float, 0, 0};
    const bool integer = IsInteger(type.type);
    if (which == Sum)
        return Checked("sum" + inside, integer ? Type::BigInt : Type::Decimal, type);
    if (integer)
        return Checked("(sum" + inside + " / count" + inside + ")", Type::BigInt, type);
    if (type.type == Type::Decimal)
        return Made("ts_div(sum" + inside + ",nullif(count" + inside + ",0)," + std::to_string(type.scale) + ")", type);
    return Made("avg" + inside, type);
}

} // namespace tsql
