// Reading conditions: AND, OR, NOT, comparisons and the tests that are words.
#include "errors.h"
#include "translator.h"

namespace tsql
{
namespace
{

// Pairs the parts up rather than chaining them, so that a long list makes no deep tree.
std::string Paired(const std::vector<std::string> &parts, std::size_t first, std::size_t last, const char *word)
{
    if (last - first == 1)
        return parts[first];
    const std::size_t middle = first + (last - first) / 2;
    return "(" + Paired(parts, first, middle, word) + word + Paired(parts, middle, last, word) + ")";
}

// A condition; `at` is the token that makes it one.
Fragment Test(std::string sql, std::size_t at)
{
    Fragment fragment = Made(std::move(sql), {});
    fragment.condition = true;
    fragment.at = at;
    return fragment;
}

// Comparing needs no conversion among numbers or among texts.
bool ComparesAsItIs(Type from, Type common)
{
    return (IsNumber(common) && IsNumber(from)) || (IsText(common) && IsText(from));
}

} // namespace

void Translator::RequireCondition(const Fragment &fragment) const
{
    if (!fragment.condition)
        SyntaxError(m_at, 4145);
}

std::string Translator::Condition()
{
    Fragment condition = Chain(Word::Or);
    RequireCondition(condition);
    return std::move(condition.sql);
}

// Operands with OR between, each of which may be a chain with AND. A single one may be a value.
Fragment Translator::Chain(Word word)
{
    const auto part = [&] { return word == Word::Or ? Chain(Word::And) : Not(); };
    Fragment first = part();
    if (!Is(word))
        return first;
    const std::size_t at = m_at;
    RequireCondition(first);
    std::vector<std::string> parts{std::move(first.sql)};
    while (Accept(word))
    {
        Fragment next = part();
        RequireCondition(next);
        parts.push_back(std::move(next.sql));
    }
    return Test(m_checking ? "" : Paired(parts, 0, parts.size(), word == Word::Or ? " OR " : " AND "), at);
}

Fragment Translator::Not()
{
    const auto deeper = Deeper();
    if (!Is(Word::Not))
        return Predicate();
    const std::size_t at = m_at;
    Take();
    const Fragment operand = Not();
    RequireCondition(operand);
    return Test("(NOT " + operand.sql + ")", at);
}

Fragment Translator::Predicate()
{
    std::size_t at = m_at;
    if (Accept(Word::Exists))
    {
        Expect(Word::LeftParenthesis);
        Query query = ReadQuery(false);
        Expect(Word::RightParenthesis);
        Write(query, false);
        return Test("(EXISTS (" + query.sql + "))", at);
    }
    Fragment left = Calculation(0);
    at = m_at;
    const Word word = Current().word;
    if (word >= Word::Equal && word <= Word::GreaterOrEqual)
    {
        constexpr const char *comparisons[] = {" = ", " <> ", " < ", " <= ", " > ", " >= "}; // in the order of Word
        Take();
        RequireValue(left);
        return Test(Compared(comparisons[static_cast<int>(word) - static_cast<int>(Word::Equal)], left, SumValue()),
                    at);
    }
    if (Accept(Word::Is))
    {
        const bool negated = Accept(Word::Not);
        Expect(Word::Null);
        RequireValue(left);
        return Test("(" + Sql(left) + (negated ? " IS NOT NULL)" : " IS NULL)"), at);
    }
    const bool negated = Accept(Word::Not);
    at = m_at;
    std::string test;
    if (Accept(Word::Like))
        test = LikeTest(left);
    else if (Accept(Word::Between))
        test = BetweenTest(left);
    else if (Accept(Word::In))
        test = InTest(std::move(left));
    else if (negated)
        SyntaxError();
    else
        return left;
    return Test((negated ? "(NOT " : "(") + test + ")", at);
}

std::string Translator::LikeTest(const Fragment &left)
{
    RequireValue(left);
    std::vector<Fragment> operands{left, SumValue()};
    if (Accept(Word::Escape))
        operands.push_back(SumValue());
    const bool ignoreBlanks = !IsNational(operands[0].type.type) && !IsNational(operands[1].type.type);
    for (Fragment &operand : operands)
        if (!IsText(operand.type.type))
            operand = Converted(std::move(operand), {Type::VarChar, 0, 0}, Conversion::Cast);
    return "ts_like(" + Sql(operands[0]) + "," + Sql(operands[1]) + (ignoreBlanks ? ",1" : ",0") +
           (operands.size() > 2 ? "," + Sql(operands[2]) : "") + ")";
}

std::string Translator::BetweenTest(const Fragment &left)
{
    const Fragment low = SumValue();
    Expect(Word::And);
    const Fragment high = SumValue();
    RequireValue(left);
    return "(" + Compared(" >= ", left, low) + " AND " + Compared(" <= ", left, high) + ")";
}

std::string Translator::InTest(Fragment left)
{
    RequireValue(left);
    Expect(Word::LeftParenthesis);
    if (!Is(Word::Select))
    {
        std::vector<Fragment> operands{std::move(left)};
        do
            operands.push_back(ReadValue());
        while (Accept(Word::Comma));
        Expect(Word::RightParenthesis);
        const bool text = IsText(Common(operands).type);
        std::string sql = Sql(operands[0]) + (text ? " COLLATE ts" : "");
        for (std::size_t i = 1; i < operands.size(); ++i)
            sql += (i > 1 ? "," : " IN (") + Sql(operands[i]);
        return sql + ")";
    }
    Query query = ReadQuery(false);
    Expect(Word::RightParenthesis);
    if (m_checking)
        return {};
    if (query.types.size() != 1)
        Raise(116);
    const ValueType common = left.untyped ? query.types[0] : CommonType(left.type, query.types[0]);
    const std::vector<ValueType> targets{common};
    const bool convert = !FitsAsItIs(query.types[0], common) && !ComparesAsItIs(query.types[0].type, common.type);
    Write(query, false, convert ? &targets : nullptr);
    if (!ComparesAsItIs(left.type.type, common.type))
        left = Converted(std::move(left), common, Conversion::Store);
    return Sql(left) + (IsText(common.type) ? " COLLATE ts" : "") + " IN (" + query.sql + ")";
}

std::string Translator::Compared(const char *operation, const Fragment &left, const Fragment &right) const
{
    if (m_checking)
        return {};
    const ValueType common = left.untyped ? right.type : right.untyped ? left.type : CommonType(left.type, right.type);
    const auto side = [&](const Fragment &fragment)
    {
        return Sql(ComparesAsItIs(fragment.type.type, common.type) ? fragment
                                                                   : Converted(fragment, common, Conversion::Store));
    };
    return "(" + side(left) + operation + side(right) + (IsText(common.type) ? " COLLATE ts)" : ")");
}

} // namespace tsql
