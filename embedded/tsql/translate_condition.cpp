// The translator's part for conditions.
#include "errors.h"
#include "translate.h"

namespace tsql
{
namespace
{

const char *ComparisonSql(Word word)
{
    switch (word)
    {
    case Word::Equal:
        return " = ";
    case Word::NotEqual:
        return " <> ";
    case Word::Less:
        return " < ";
    case Word::LessOrEqual:
        return " <= ";
    case Word::Greater:
        return " > ";
    default:
        return " >= ";
    }
}

} // namespace

std::string Translator::Compared(const char *operation, const Fragment &left, const Fragment &right) const
{
    const ValueType common = left.untyped ? right.type : right.untyped ? left.type : CommonType(left.type, right.type);
    const auto side = [&](const Fragment &fragment)
    {
        const bool alike = (IsNumber(common.type) && IsNumber(fragment.type.type)) ||
                           (IsText(common.type) && IsText(fragment.type.type));
        return Sql(alike ? fragment : Converted(fragment, common, Conversion::Store));
    };
    return "(" + side(left) + operation + side(right) + (IsText(common.type) ? " COLLATE ts)" : ")");
}

std::string Translator::Condition(const Expr &expr)
{
    if (++m_depth > maxDepth)
        Raise(191);
    std::string sql = ConditionAny(expr);
    --m_depth;
    return sql;
}

// Pairs the parts up rather than chaining them, so that a long list makes no deep tree.
std::string Translator::JoinConditions(const std::vector<std::string> &parts, std::size_t first, std::size_t last,
                                       const char *word) const
{
    if (last - first == 1)
        return parts[first];
    const std::size_t middle = first + (last - first) / 2;
    return "(" + JoinConditions(parts, first, middle, word) + word + JoinConditions(parts, middle, last, word) + ")";
}

std::string Translator::ConditionAny(const Expr &expr)
{
    switch (expr.kind)
    {
    case ExprKind::And:
    case ExprKind::Or:
    {
        std::vector<std::string> parts;
        for (const Expr *operand = expr.first; operand; operand = operand->next)
            parts.push_back(Condition(*operand));
        return JoinConditions(parts, 0, parts.size(), expr.kind == ExprKind::And ? " AND " : " OR ");
    }
    case ExprKind::Not:
        return "(NOT " + Condition(*expr.first) + ")";
    case ExprKind::Compare:
    {
        const Fragment left = Translate(*expr.first);
        return Compared(ComparisonSql(expr.token.word), left, Translate(*expr.first->next));
    }
    case ExprKind::Between:
    {
        const Fragment value = Translate(*expr.first);
        const std::string low = Compared(" >= ", value, Translate(*expr.first->next));
        const std::string high = Compared(" <= ", value, Translate(*expr.first->next->next));
        return std::string(expr.negated ? "(NOT (" : "((") + low + " AND " + high + "))";
    }
    case ExprKind::IsNull:
        return "(" + Sql(Translate(*expr.first)) + (expr.negated ? " IS NOT NULL)" : " IS NULL)");
    case ExprKind::Like:
    {
        std::vector<Fragment> operands = TranslateAll(expr.first);
        const bool ignoreBlanks = !IsNational(operands[0].type.type) && !IsNational(operands[1].type.type);
        for (Fragment &operand : operands)
            if (!IsText(operand.type.type))
                operand = Converted(std::move(operand), {Type::VarChar, 0, 0}, Conversion::Cast);
        return std::string(expr.negated ? "(NOT " : "(") + "ts_like(" + Sql(operands[0]) + "," + Sql(operands[1]) +
               (ignoreBlanks ? ",1" : ",0") + (operands.size() > 2 ? "," + Sql(operands[2]) : "") + "))";
    }
    case ExprKind::InList:
    {
        std::vector<Fragment> operands = TranslateAll(expr.first);
        const bool text = IsText(Common(operands).type.type);
        std::string sql = "(" + Sql(operands[0]) + (text ? " COLLATE ts" : "") + (expr.negated ? " NOT IN (" : " IN (");
        for (std::size_t i = 1; i < operands.size(); ++i)
            sql += (i > 1 ? "," : "") + Sql(operands[i]);
        return sql + "))";
    }
    case ExprKind::InSelect:
    {
        Fragment value = Translate(*expr.first);
        // The columns are converted to the common type, which is known only when the query has been read.
        Query query = BuildQuery(*expr.select, {});
        if (query.types.size() != 1)
            Raise(116);
        const ValueType common = value.untyped ? query.types[0] : CommonType(value.type, query.types[0]);
        if (!FitsAsItIs(query.types[0], common) && !(IsNumber(common.type) && IsNumber(query.types[0].type)) &&
            !(IsText(common.type) && IsText(query.types[0].type)))
        {
            const std::vector<ValueType> targets{common};
            query = BuildQuery(*expr.select, {false, false, &targets});
        }
        if (!IsNumber(value.type.type) || !IsNumber(common.type))
            value = IsText(value.type.type) && IsText(common.type)
                        ? value
                        : Converted(std::move(value), common, Conversion::Store);
        return "(" + Sql(value) + (IsText(common.type) ? " COLLATE ts" : "") + (expr.negated ? " NOT IN (" : " IN (") +
               query.sql + "))";
    }
    case ExprKind::Exists:
        return "(EXISTS (" + BuildQuery(*expr.select, {}).sql + "))";
    default:
        Raise(102, {"1", expr.token.text});
    }
}

} // namespace tsql
