// The translator's part for values: constants, columns, variables, casts, CASE, subqueries.
#include "errors.h"
#include "text.h"
#include "translate.h"

#include <charconv>

namespace tsql
{

Fragment Translator::Translate(const Expr &expr)
{
    if (++m_depth > maxDepth)
        Raise(191);
    // What is grouped by counts as a whole, so the columns inside it are no fault.
    const bool watch = m_scope && !m_scope->groups.empty() && m_scope->ungrouped.empty();
    Fragment fragment = TranslateAny(expr);
    if (watch && m_scope->IsGroup(fragment.sql))
        m_scope->ungrouped.clear();
    --m_depth;
    return fragment;
}

Fragment Translator::TranslateAny(const Expr &expr)
{
    switch (expr.kind)
    {
    case ExprKind::Literal:
        return TranslateLiteral(expr);
    case ExprKind::Column:
        return TranslateColumn(expr);
    case ExprKind::Variable:
        return Literal(m_session.variables[expr.variable], m_session.declarations[expr.variable].type);
    case ExprKind::Global:
        return TranslateGlobal(expr);
    case ExprKind::Call:
        return TranslateCall(expr);
    case ExprKind::Cast:
        return TranslateCast(expr);
    case ExprKind::Case:
        return TranslateCase(expr);
    case ExprKind::Negate:
    case ExprKind::Complement:
        return TranslateNegate(expr);
    case ExprKind::Binary:
        return TranslateBinary(expr);
    case ExprKind::Subquery:
        return TranslateSubquery(expr);
    default:
        Raise(102, {"1", expr.token.text});
    }
}

Fragment Translator::TranslateLiteral(const Expr &expr) const
{
    const std::string_view text = expr.token.text;
    const char *const end = text.data() + text.size();
    switch (expr.token.kind)
    {
    case TokenKind::Integer:
    {
        std::int64_t number = 0;
        const auto read = std::from_chars(text.data(), end, number);
        const int digits = static_cast<int>(std::to_string(number).size());
        if (read.ec == std::errc())
            return Literal(IntegerValue(number), {number <= INT32_MAX ? Type::Int : Type::Decimal, digits, 0});
        [[fallthrough]];
    }
    case TokenKind::Decimal:
    {
        const std::size_t point = std::min(text.find('.'), text.size());
        const int scale = static_cast<int>(text.size() - point) - (point < text.size() ? 1 : 0);
        const std::string_view whole = text.substr(std::min(text.find_first_not_of('0'), point), point);
        const std::size_t wholeDigits = std::min(whole.find('.'), whole.size());
        if (wholeDigits + scale > 38)
            Raise(1007, {text});
        double number = 0;
        std::from_chars(text.data(), end, number);
        return Literal(RealValue(number), {Type::Decimal, std::max(static_cast<int>(wholeDigits) + scale, 1), scale});
    }
    case TokenKind::Float:
    {
        double number = 0;
        if (std::from_chars(text.data(), end, number).ec != std::errc())
            Raise(168, {text});
        return Literal(RealValue(number), {Type::Float, 0, 0});
    }
    case TokenKind::Text:
    case TokenKind::NationalText:
    {
        std::string plain = Unquoted(expr.token);
        const int size = std::max(static_cast<int>(Length(plain)), 1);
        const Type type = expr.token.kind == TokenKind::Text ? Type::VarChar : Type::NVarChar;
        return Literal(TextValue(std::move(plain)), {type, size > 8000 ? 0 : size, 0});
    }
    default: // NULL
    {
        Fragment fragment = Literal({}, {Type::Int, 0, 0});
        fragment.untyped = true;
        return fragment;
    }
    }
}

Fragment Translator::TranslateGlobal(const Expr &expr) const
{
    const auto is = [&](const char *name) { return Compare(expr.token.text, name) == 0; };
    if (is("@@ROWCOUNT"))
        return Literal(IntegerValue(m_session.rowCount), {Type::Int, 0, 0});
    if (is("@@ERROR"))
        return Literal(IntegerValue(m_session.error), {Type::Int, 0, 0});
    if (is("@@TRANCOUNT"))
        return Literal(IntegerValue(m_session.transactions), {Type::Int, 0, 0});
    if (is("@@VERSION"))
        return Literal(TextValue("Embedded database (T-SQL dialect on SQLite)"), {Type::NVarChar, 300, 0});
    Raise(137, {expr.token.text});
}

Fragment Translator::TranslateColumn(const Expr &expr)
{
    const std::string name = Unquoted(expr.token);
    const bool qualified = !expr.qualifier.text.empty();
    const std::string qualifier = qualified ? Unquoted(expr.qualifier) : std::string();
    for (Scope *scope = m_scope; scope; scope = scope->parent)
    {
        const Fragment *found = nullptr;
        bool sourceFound = false;
        for (const BoundSource &source : scope->sources)
        {
            if (qualified && Compare(source.name, qualifier) != 0)
                continue;
            sourceFound = true;
            for (std::size_t i = 0; i < source.columnNames.size(); ++i)
            {
                if (Compare(source.columnNames[i], name) != 0)
                    continue;
                if (found)
                    Raise(209, {name});
                found = &source.columns[i];
            }
        }
        if (found)
        {
            if (scope->grouped && !scope->inAggregate && scope->ungrouped.empty())
            {
                if (!scope->IsGroup(found->sql))
                    scope->ungrouped = qualified ? qualifier + "." + name : name;
            }
            return *found;
        }
        if (qualified && sourceFound)
            Raise(207, {name});
    }
    if (qualified)
        Raise(4104, {qualifier + "." + name});
    Raise(207, {name});
}

Fragment Translator::TranslateCast(const Expr &expr)
{
    int style = -1;
    if (expr.first->next)
    {
        const Fragment given = Converted(Translate(*expr.first->next), {Type::Int, 0, 0}, Conversion::Cast);
        style = given.literal ? static_cast<int>(given.value.integer) : -1;
        if (!given.literal)
            Raise(281, {Sql(given)});
    }
    Fragment fragment = Converted(Translate(*expr.first), expr.type, Conversion::Cast, style);
    fragment.column = false;
    return fragment;
}

Fragment Translator::TranslateCase(const Expr &expr)
{
    std::vector<std::string> conditions;
    std::vector<Fragment> values;
    for (const Expr *operand = expr.first; operand; operand = operand->next)
    {
        if (operand->IsCondition())
        {
            conditions.push_back(Condition(*operand));
            operand = operand->next;
        }
        values.push_back(Translate(*operand));
    }
    Fragment result = Common(values);
    result.sql = "CASE";
    for (std::size_t i = 0; i < values.size(); ++i)
        result.sql +=
            (i < conditions.size() ? " WHEN " + conditions[i] + " THEN " : std::string(" ELSE ")) + Sql(values[i]);
    result.sql = "(" + result.sql + " END)";
    return result;
}

Fragment Translator::TranslateSubquery(const Expr &expr)
{
    const Query query = BuildQuery(*expr.select, {true, false, nullptr});
    if (query.types.size() != 1)
        Raise(116);
    return Made(query.oneRow ? "(" + query.sql + ")" : "(SELECT ts_single(c1) FROM (" + query.sql + "))",
                query.types[0]);
}

std::vector<Fragment> Translator::TranslateAll(const Expr *first)
{
    std::vector<Fragment> fragments;
    for (const Expr *expr = first; expr; expr = expr->next)
        fragments.push_back(Translate(*expr));
    return fragments;
}

} // namespace tsql
