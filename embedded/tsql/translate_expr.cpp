// The translator's part for values and conditions.
#include "errors.h"
#include "text.h"
#include "translate.h"

#include <charconv>

namespace tsql
{
namespace
{

constexpr int maxDepth = 1200;

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

const char *OperatorName(Word word)
{
    switch (word)
    {
    case Word::Plus:
        return "add";
    case Word::Minus:
        return "subtract";
    case Word::Star:
        return "multiply";
    case Word::Slash:
        return "divide";
    case Word::Percent:
        return "modulo";
    case Word::Ampersand:
        return "'&'";
    case Word::Bar:
        return "'|'";
    default:
        return "'^'";
    }
}

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

Fragment Literal(Value value, const ValueType &type)
{
    Fragment fragment;
    fragment.type = type;
    fragment.literal = true;
    fragment.value = std::move(value);
    return fragment;
}

Fragment Made(std::string sql, const ValueType &type)
{
    Fragment fragment;
    fragment.sql = std::move(sql);
    fragment.type = type;
    return fragment;
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

Fragment Translator::TranslateNegate(const Expr &expr)
{
    Fragment operand = Translate(*expr.first);
    const bool complement = expr.kind == ExprKind::Complement;
    if (complement ? !IsInteger(operand.type.type) : !IsNumber(operand.type.type) || operand.type.type == Type::Bit)
        Raise(8117, {MessageName(operand.type), complement ? "'~'" : "minus"});
    if (operand.literal && !complement && expr.first->kind != ExprKind::Variable && expr.first->kind != ExprKind::Cast)
    {
        operand.value.integer = -operand.value.integer;
        operand.value.real = -operand.value.real;
        return operand;
    }
    const std::string sql = (complement ? "(~ " : "(- ") + Sql(operand) + ")";
    if (complement && operand.type.type != Type::Bit && operand.type.type != Type::TinyInt)
        return Made(sql, operand.type);
    if (complement)
        return Made("(" + sql + (operand.type.type == Type::Bit ? " & 1)" : " & 255)"), operand.type);
    return IsInteger(operand.type.type) ? CheckedResult(sql, Type::BigInt, operand.type) : Made(sql, operand.type);
}

Fragment Translator::TranslateBinary(const Expr &expr)
{
    Fragment left = Translate(*expr.first);
    Fragment right = Translate(*expr.first->next);
    if (left.untyped && !right.untyped)
        left.type = right.type;
    if (right.untyped)
        right.type = left.type;
    if (expr.token.word == Word::Plus && IsText(left.type.type) && IsText(right.type.type))
    {
        ValueType type = IsNational(left.type.type) || IsNational(right.type.type) ? ValueType{Type::NVarChar, 0, 0}
                                                                                   : ValueType{Type::VarChar, 0, 0};
        if (left.type.size > 0 && right.type.size > 0 && left.type.size + right.type.size <= 8000)
            type.size = left.type.size + right.type.size;
        // A chain is written without inner parentheses, of which SQLite takes no more than a hundred.
        const std::string start = left.joined ? left.sql.substr(0, left.sql.size() - 1) : "(" + Sql(left);
        Fragment result = Made(start + " || " + Sql(right) + ")", type);
        result.joined = true;
        return result;
    }
    return Arithmetic(expr.token, std::move(left), std::move(right));
}

Fragment Translator::Arithmetic(const Token &token, Fragment left, Fragment right) const
{
    const Word word = token.word;
    const ValueType common = CommonType(left.type, right.type);
    const bool bits = word == Word::Ampersand || word == Word::Bar || word == Word::Caret;
    if (IsText(common.type) && !bits)
        Raise(8117, {MessageName(common), OperatorName(word)});
    if (bits ? !IsInteger(common.type)
             : (common.type == Type::DateTime && word != Word::Plus && word != Word::Minus) ||
                   (common.type == Type::Float && word == Word::Percent))
        Raise(402, {MessageName(left.type), MessageName(right.type), OperatorName(word)});
    if (common.type == Type::Bit && !bits)
        Raise(8117, {"bit", OperatorName(word)});
    // A text or a datetime among numbers, or a number beside a datetime, takes the other's type.
    if (!IsNumber(left.type.type) || common.type == Type::DateTime)
        left = Converted(std::move(left), common, Conversion::Store);
    if (!IsNumber(right.type.type) || common.type == Type::DateTime)
        right = Converted(std::move(right), common, Conversion::Store);
    const std::string a = Sql(left);
    const std::string b = Sql(right);
    const std::string native = "(" + a + " " + std::string(token.text) + " " + b + ")";

    if (word == Word::Caret)
        return Made("((" + a + " | " + b + ") - (" + a + " & " + b + "))", common);
    if (bits)
        return Made(native, common);
    if (common.type == Type::DateTime)
        return CheckedResult(native, Type::DateTime, common);
    if (IsInteger(common.type))
    {
        if (word == Word::Slash)
            return CheckedResult("ts_idiv(" + a + "," + b + ")", Type::BigInt, common);
        return word == Word::Percent ? Made("ts_mod(" + a + "," + b + ")", common)
                                     : CheckedResult(native, Type::BigInt, common);
    }
    const bool decimal = common.type == Type::Decimal;
    const ValueType type =
        decimal ? DecimalResult(token.text[0], left.type, right.type) : ValueType{Type::Float, common.size, 0};
    if (word == Word::Slash)
        return CheckedResult("ts_div(" + a + "," + b + (decimal ? "," + std::to_string(type.scale) : "") + ")",
                             Type::Decimal, type);
    return CheckedResult(word == Word::Percent ? "ts_mod(" + a + "," + b + ")" : native, Type::Decimal, type);
}

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
