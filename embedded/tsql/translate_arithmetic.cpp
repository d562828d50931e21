// The translator's part for operators between values.
#include "errors.h"
#include "translate.h"

namespace tsql
{
namespace
{

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

} // namespace

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
        if (word == Word::Percent)
            return Made("ts_mod(" + a + "," + b + ")", common);
        if (word == Word::Star)
            return CheckedResult(a + " * " + b, Type::BigInt, common);
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
        decimal ? DecimalResult(token.text[0], left.type, right.type) : ValueType{Type::Float, common.size, 0};
    if (word == Word::Slash)
        return CheckedResult("ts_div(" + a + "," + b + (decimal ? "," + std::to_string(type.scale) : "") + ")",
                             Type::Decimal, type);
    return CheckedResult(word == Word::Percent ? "ts_mod(" + a + "," + b + ")" : native, Type::Decimal, type);
}

} // namespace tsql
