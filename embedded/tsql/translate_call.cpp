// The translator's part for functions: one table, and the few that need a rule of their own.
#include "datetime.h"
#include "errors.h"
#include "text.h"
#include "translate.h"

namespace tsql
{
namespace
{

struct Builtin
{
    const char *name;
    int least;
    int most;
    const char *arguments; // t text, i integer, f float, n number as it is, d datetime, p name of a date part
    char result; // T text, as national as the first argument; I integer; D datetime; V varchar; = as the argument; 0 so
                 // without places
    const char *sql; // how the call begins and ends in SQLite's language
    const char *end = ")";
};

constexpr Builtin builtins[] = {
    {"ABS", 1, 1, "n", '=', "ts_abs("},
    {"CEILING", 1, 1, "n", '0', "ts_ceiling("},
    {"CHARINDEX", 2, 3, "tti", 'I', "ts_charindex("},
    {"DATEADD", 3, 3, "pid", 'D', "ts_dateadd("},
    {"DATEDIFF", 3, 3, "pdd", 'I', "ts_datediff("},
    {"DATEPART", 2, 2, "pd", 'I', "ts_datepart("},
    {"DAY", 1, 1, "d", 'I', "ts_datepart('day',"},
    {"FLOOR", 1, 1, "n", '0', "ts_floor("},
    {"GETDATE", 0, 0, "", 'D', "ts_getdate("},
    {"LEFT", 2, 2, "ti", 'T', "ts_left("},
    {"LEN", 1, 1, "t", 'I', "ts_len("},
    {"LOWER", 1, 1, "t", 'T', "ts_lower("},
    {"LTRIM", 1, 1, "t", 'T', "ltrim(", ",' ')"},
    {"MONTH", 1, 1, "d", 'I', "ts_datepart('month',"},
    {"REPLACE", 3, 3, "ttt", 'T', "ts_replace("},
    {"RIGHT", 2, 2, "ti", 'T', "ts_right("},
    {"ROUND", 2, 3, "nii", '=', "ts_round("},
    {"RTRIM", 1, 1, "t", 'T', "rtrim(", ",' ')"},
    {"SIGN", 1, 1, "n", '=', "ts_sign("},
    {"STR", 1, 3, "fii", 'V', "ts_str("},
    {"SUBSTRING", 3, 3, "tii", 'T', "ts_substring("},
    {"UPPER", 1, 1, "t", 'T', "ts_upper("},
    {"YEAR", 1, 1, "d", 'I', "ts_datepart('year',"},
};

constexpr const char *aggregates[] = {"count", "count_big", "sum", "avg", "min", "max"};

std::size_t CountOf(const Expr *first)
{
    std::size_t count = 0;
    for (; first; first = first->next)
        ++count;
    return count;
}

} // namespace

Fragment Translator::TranslateCall(const Expr &expr)
{
    const std::string name(expr.token.text);
    for (int i = 0; i < static_cast<int>(std::size(aggregates)); ++i)
        if (Compare(name, aggregates[i]) == 0)
            return TranslateAggregate(expr, i);
    if (Compare(name, "ISNULL") == 0 || Compare(name, "COALESCE") == 0 || Compare(name, "NULLIF") == 0)
        return TranslateChoice(expr, Upper(name));
    const Builtin *builtin = std::begin(builtins);
    while (builtin != std::end(builtins) && Compare(builtin->name, name) != 0)
        ++builtin;
    if (builtin == std::end(builtins))
        Raise(195, {name});
    const int count = static_cast<int>(CountOf(expr.first));
    if (count < builtin->least || count > builtin->most)
        Raise(174, {Lower(name), builtin->least == builtin->most
                                     ? std::to_string(builtin->least)
                                     : std::to_string(builtin->least) + " to " + std::to_string(builtin->most)});

    Fragment result;
    result.sql = builtin->sql;
    ValueType numeric;
    bool national = false;
    const char *kind = builtin->arguments;
    for (const Expr *argument = expr.first; argument; argument = argument->next, ++kind)
    {
        if (argument != expr.first)
            result.sql += ',';
        if (*kind == 'p')
        {
            if (argument->kind != ExprKind::Column || !IsDatePart(argument->token.text))
                Raise(155, {argument->token.text, Lower(name)});
            result.sql += "'" + std::string(argument->token.text) + "'";
            continue;
        }
        Fragment value = Translate(*argument);
        if (*kind == 't')
        {
            if (!IsText(value.type.type))
                value = Converted(std::move(value), {Type::VarChar, 0, 0}, Conversion::Cast);
            national = national || (argument == expr.first && IsNational(value.type.type));
        }
        else if (*kind == 'i')
            value = Converted(std::move(value), {Type::Int, 0, 0}, Conversion::Store);
        else if (*kind == 'd')
            value = Converted(std::move(value), {Type::DateTime, 0, 0}, Conversion::Store);
        else if (*kind == 'f' || !IsNumber(value.type.type))
            value = Converted(std::move(value), {Type::Float, 0, 0}, Conversion::Store);
        if (argument == expr.first)
            numeric = value.type.type < Type::Int ? ValueType{Type::Int, 0, 0} : value.type;
        result.sql += Sql(value);
    }
    result.sql += builtin->end;
    switch (builtin->result)
    {
    case 'T':
        result.type = {national ? Type::NVarChar : Type::VarChar, 0, 0};
        break;
    case 'V':
        result.type = {Type::VarChar, 0, 0};
        break;
    case 'D':
        result.type = {Type::DateTime, 0, 0};
        break;
    case '0':
        numeric.scale = 0;
        [[fallthrough]];
    case '=':
        result.type = numeric;
        if (IsInteger(numeric.type)) // ABS and ROUND can leave the range
            return CheckedResult(result.sql, Type::BigInt, numeric);
        break;
    default:
        break;
    }
    return result;
}

// ISNULL takes the type of its first argument, COALESCE that which wins; NULLIF is a CASE.
Fragment Translator::TranslateChoice(const Expr &expr, const std::string &name)
{
    std::vector<Fragment> values = TranslateAll(expr.first);
    if (values.size() < 2 || (values.size() > 2 && name != "COALESCE"))
        Raise(174, {Lower(name), "2"});
    Fragment result;
    if (name == "NULLIF")
    {
        result.type = values[0].type;
        result.sql =
            "(CASE WHEN " + Compared(" = ", values[0], values[1]) + " THEN NULL ELSE " + Sql(values[0]) + " END)";
        return result;
    }
    if (name == "ISNULL")
    {
        result.type = values[0].untyped ? values[1].type : values[0].type;
        values[1] = Converted(std::move(values[1]), result.type, Conversion::Cast);
    }
    else
        result = Common(values);
    result.sql = "coalesce(";
    for (std::size_t i = 0; i < values.size(); ++i)
        result.sql += (i > 0 ? "," : "") + Sql(values[i]);
    result.sql += ")";
    return result;
}

Fragment Translator::TranslateAggregate(const Expr &expr, int which)
{
    enum
    {
        Count,
        CountBig,
        Sum,
        Average,
        Minimum,
        Maximum
    };
    const std::string name = aggregates[which];
    if (!m_scope || !m_scope->aggregatesAllowed)
        Raise(147);
    if (m_scope->inAggregate)
        Raise(130);
    if (CountOf(expr.first) != 1)
        Raise(174, {name, "1"});
    const bool counts = which == Count || which == CountBig;
    if (expr.first->kind == ExprKind::Star && !counts)
        Raise(102, {"1", "*"});
    Fragment result;
    result.type = {which == CountBig ? Type::BigInt : Type::Int, 0, 0};
    if (expr.first->kind == ExprKind::Star)
    {
        result.sql = "count(*)";
        return result;
    }
    m_scope->inAggregate = true;
    const Fragment value = Translate(*expr.first);
    m_scope->inAggregate = false;
    const std::string inside = "(" + std::string(expr.distinct ? "DISTINCT " : "") + Collated(value) + ")";
    if (counts)
    {
        result.sql = "count" + inside;
        return result;
    }
    if (value.type.type == Type::Bit || ((which == Sum || which == Average) && !IsNumber(value.type.type)))
        Raise(8117, {MessageName(value.type), name});
    result.type = value.type;
    if (which == Minimum || which == Maximum)
    {
        result.sql = (which == Minimum ? "min" : "max") + inside;
        return result;
    }
    if (value.type.type < Type::Int)
        result.type = {Type::Int, 0, 0};
    else if (value.type.type == Type::Decimal)
        result.type = {Type::Decimal, 38, which == Sum ? value.type.scale : std::max(value.type.scale, 6)};
    else if (value.type.type == Type::Float)
        result.type = {Type::Float, 0, 0};
    const bool integer = IsInteger(value.type.type);
    if (which == Sum)
        return CheckedResult("sum" + inside, integer ? Type::BigInt : Type::Decimal, result.type);
    if (integer)
        return CheckedResult("(sum" + inside + " / count" + inside + ")", Type::BigInt, result.type);
    if (value.type.type == Type::Decimal)
        result.sql =
            "ts_div(sum" + inside + ",nullif(count" + inside + ",0)," + std::to_string(result.type.scale) + ")";
    else
        result.sql = "avg" + inside;
    return result;
}

} // namespace tsql
