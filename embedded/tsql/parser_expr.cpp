// The parser's half for expressions, by rising precedence: OR, AND, NOT, predicates, sums, products, signs.
#include "errors.h"
#include "parser.h"
#include "text.h"

#include <algorithm>
#include <charconv>

namespace tsql
{
namespace
{

constexpr int maxDepth = 400; // of a tree of operators, which SQLite limits to 1000 of its own

bool IsAggregate(std::string_view name)
{
    constexpr std::string_view names[] = {"COUNT", "SUM", "AVG", "MIN", "MAX", "COUNT_BIG"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](std::string_view candidate) { return Compare(candidate, name) == 0; });
}

} // namespace

Expr *Parser::NewExpr(ExprKind kind, const Token &token)
{
    Expr *expr = New<Expr>();
    expr->kind = kind;
    expr->token = token;
    return expr;
}

Expr *Parser::Join(ExprKind kind, const Token &token, Expr *left, Expr *right) const
{
    Expr *expr = new (m_memory.allocate(sizeof(Expr), alignof(Expr))) Expr();
    expr->kind = kind;
    expr->token = token;
    expr->first = left;
    for (Expr *operand = left; operand; operand = operand->next)
        expr->depth = std::max(expr->depth, operand->depth + 1);
    left->next = right;
    for (Expr *operand = right; operand; operand = operand->next)
        expr->depth = std::max(expr->depth, operand->depth + 1);
    if (expr->depth > maxDepth)
        Raise(191);
    return expr;
}

Expr *Parser::Condition()
{
    Expr *expr = ParseOr();
    if (!expr->IsCondition())
        Raise(4145, {LineOf(m_token), m_token.kind == TokenKind::End ? m_last : m_token.text});
    return expr;
}

Expr *Parser::Value()
{
    return Checked(ParseOr());
}

// Values with commas between.
Expr *Parser::ValueList()
{
    Expr *first = nullptr;
    Appender<Expr> append(first);
    do
        append(Value());
    while (Accept(Word::Comma));
    return first;
}

// Refuses a condition where a value is needed.
Expr *Parser::Checked(Expr *expr) const
{
    if (expr->IsCondition())
        SyntaxError(expr->token);
    return expr;
}

Expr *Parser::ParseOr()
{
    const Deeper deeper(*this);
    return ParseChain(Word::Or, ExprKind::Or, &Parser::ParseAnd);
}

Expr *Parser::ParseAnd()
{
    return ParseChain(Word::And, ExprKind::And, &Parser::ParseNot);
}

// One operand, or any number of conditions with the word between.
Expr *Parser::ParseChain(Word word, ExprKind kind, Expr *(Parser::*parse)())
{
    Expr *first = (this->*parse)();
    if (!Is(word))
        return first;
    const Token token = m_token;
    Appender<Expr> append(first);
    for (Expr *last = first; last; last = last->next)
    {
        if (!last->IsCondition())
            Raise(4145, {LineOf(m_token), m_token.kind == TokenKind::End ? m_last : m_token.text});
        if (Accept(word))
            append((this->*parse)());
    }
    return Join(kind, token, first, first->next);
}

Expr *Parser::ParseNot()
{
    if (!Is(Word::Not))
        return ParsePredicate();
    const Deeper deeper(*this);
    const Token token = Take();
    Expr *operand = ParseNot();
    if (!operand->IsCondition())
        Raise(4145, {LineOf(m_token), m_token.kind == TokenKind::End ? m_last : m_token.text});
    return Join(ExprKind::Not, token, operand, nullptr);
}

Expr *Parser::ParsePredicate()
{
    if (Is(Word::Exists))
    {
        Expr *expr = NewExpr(ExprKind::Exists, Take());
        Expect(Word::LeftParenthesis);
        expr->select = ParseSelect();
        Expect(Word::RightParenthesis);
        return expr;
    }
    Expr *left = ParseSum();
    const Token token = m_token;
    if (token.word >= Word::Equal && token.word <= Word::GreaterOrEqual)
    {
        Advance();
        Checked(left);
        return Join(ExprKind::Compare, token, left, Checked(ParseSum()));
    }
    if (Is(Word::Is))
    {
        Advance();
        const bool negated = Accept(Word::Not);
        Expect(Word::Null);
        Expr *expr = Join(ExprKind::IsNull, token, Checked(left), nullptr);
        expr->negated = negated;
        return expr;
    }
    const bool negated = Is(Word::Not);
    if (negated)
        Advance();
    const Token operation = m_token;
    Expr *expr = nullptr;
    if (Accept(Word::Like))
    {
        expr = Join(ExprKind::Like, operation, Checked(left), Checked(ParseSum()));
        if (Accept(Word::Escape))
            left->next->next = Checked(ParseSum());
    }
    else if (Accept(Word::Between))
    {
        Expr *low = Checked(ParseSum());
        Expect(Word::And);
        low->next = Checked(ParseSum());
        expr = Join(ExprKind::Between, operation, Checked(left), low);
    }
    else if (Accept(Word::In))
    {
        Checked(left);
        Expect(Word::LeftParenthesis);
        if (Is(Word::Select))
        {
            expr = Join(ExprKind::InSelect, operation, left, nullptr);
            expr->select = ParseSelect();
        }
        else
        {
            expr = Join(ExprKind::InList, operation, left, ValueList());
        }
        Expect(Word::RightParenthesis);
    }
    else if (negated)
        SyntaxError();
    else
        return left;
    expr->negated = negated;
    return expr;
}

Expr *Parser::ParseSum()
{
    Expr *left = ParseProduct();
    while (Is(Word::Plus) || Is(Word::Minus) || Is(Word::Ampersand) || Is(Word::Bar) || Is(Word::Caret))
    {
        Checked(left);
        const Token token = Take();
        left = Join(ExprKind::Binary, token, left, Checked(ParseProduct()));
    }
    return left;
}

Expr *Parser::ParseProduct()
{
    Expr *left = ParseUnary();
    while (Is(Word::Star) || Is(Word::Slash) || Is(Word::Percent))
    {
        Checked(left);
        const Token token = Take();
        left = Join(ExprKind::Binary, token, left, Checked(ParseUnary()));
    }
    return left;
}

Expr *Parser::ParseUnary()
{
    if (!Is(Word::Plus) && !Is(Word::Minus) && !Is(Word::Tilde))
        return ParsePrimary();
    const Deeper deeper(*this);
    const Token token = Take();
    Expr *operand = Checked(ParseUnary());
    if (token.word == Word::Plus)
        return operand;
    return Join(token.word == Word::Minus ? ExprKind::Negate : ExprKind::Complement, token, operand, nullptr);
}

Expr *Parser::ParsePrimary()
{
    switch (m_token.kind)
    {
    case TokenKind::Integer:
    case TokenKind::Decimal:
    case TokenKind::Float:
    case TokenKind::Text:
    case TokenKind::NationalText:
        return NewExpr(ExprKind::Literal, Take());
    case TokenKind::Variable:
        return ParseVariable();
    case TokenKind::Global:
        return NewExpr(ExprKind::Global, Take());
    case TokenKind::Name:
    case TokenKind::QuotedName:
        return ParseNamed();
    default:
        break;
    }
    switch (m_token.word)
    {
    case Word::Null:
        return NewExpr(ExprKind::Literal, Take());
    case Word::Case:
        return ParseCase();
    case Word::Left:
    case Word::Right:
        return ParseCall(Take());
    case Word::LeftParenthesis:
    {
        Advance();
        Expr *expr = nullptr;
        if (Is(Word::Select))
        {
            expr = NewExpr(ExprKind::Subquery, m_token);
            expr->select = ParseSelect();
        }
        else
            expr = ParseOr();
        Expect(Word::RightParenthesis);
        return expr;
    }
    default:
        SyntaxError();
    }
}

Expr *Parser::ParseVariable()
{
    Expr *expr = NewExpr(ExprKind::Variable, m_token);
    expr->variable = FindVariable(m_token);
    Advance();
    return expr;
}

// A column (of up to four parts, of which the last two count) or a function call.
Expr *Parser::ParseNamed()
{
    const Token name = Take();
    if (Is(Word::LeftParenthesis) && name.kind == TokenKind::Name)
    {
        if (Compare(name.text, "CAST") == 0)
            return ParseCast();
        if (Compare(name.text, "CONVERT") == 0)
            return ParseConvert();
        return ParseCall(name);
    }
    Expr *expr = NewExpr(ExprKind::Column, name);
    while (Accept(Word::Dot))
    {
        expr->qualifier = expr->token;
        expr->token = ExpectName();
    }
    return expr;
}

Expr *Parser::ParseCall(const Token &name)
{
    Expr *call = NewExpr(ExprKind::Call, name);
    Expect(Word::LeftParenthesis);
    if (IsAggregate(name.text))
    {
        if (m_select)
            m_select->aggregates = true;
        call->distinct = Accept(Word::Distinct);
        if (!call->distinct)
            Accept(Word::All);
        if (Is(Word::Star) && !call->distinct)
            call->first = NewExpr(ExprKind::Star, Take());
    }
    if (!call->first && !Is(Word::RightParenthesis))
    {
        call->first = ValueList();
        for (const Expr *argument = call->first; argument; argument = argument->next)
            call->depth = std::max(call->depth, argument->depth + 1);
    }
    Expect(Word::RightParenthesis);
    return call;
}

Expr *Parser::ParseCast()
{
    const Token token = Expect(Word::LeftParenthesis);
    Expr *expr = Join(ExprKind::Cast, token, Value(), nullptr);
    Expect(Word::As);
    expr->type = ParseType(30);
    Expect(Word::RightParenthesis);
    return expr;
}

Expr *Parser::ParseConvert()
{
    const Token token = Expect(Word::LeftParenthesis);
    const ValueType type = ParseType(30);
    Expect(Word::Comma);
    Expr *expr = Join(ExprKind::Cast, token, Value(), nullptr);
    expr->type = type;
    if (Accept(Word::Comma))
        expr->first->next = Value();
    Expect(Word::RightParenthesis);
    return expr;
}

// CASE x WHEN y is read as CASE WHEN x = y, as the server does.
Expr *Parser::ParseCase()
{
    Expr *expr = NewExpr(ExprKind::Case, Take());
    Expr *subject = Is(Word::When) ? nullptr : Value();
    Expr **end = &expr->first;
    const auto append = [&](Expr *operand)
    {
        *end = operand;
        end = &operand->next;
    };
    if (!Is(Word::When))
        SyntaxError();
    while (Is(Word::When))
    {
        const Token token = Take();
        if (subject)
        {
            Expr *copy = NewExpr(subject->kind, subject->token);
            *copy = *subject;
            copy->next = nullptr;
            Token equal = token;
            equal.word = Word::Equal;
            append(Join(ExprKind::Compare, equal, copy, Value()));
        }
        else
            append(Condition());
        Expect(Word::Then);
        append(Value());
    }
    if (Accept(Word::Else))
        append(Value());
    Expect(Word::End);
    for (const Expr *operand = expr->first; operand; operand = operand->next)
        expr->depth = std::max(expr->depth, operand->depth + 1);
    return expr;
}

ValueType Parser::ParseType(int defaultSize)
{
    const std::string name = Unquoted(ExpectName());
    int size = -1;
    int scale = -1;
    const auto number = [&]
    {
        if (m_token.kind != TokenKind::Integer)
            SyntaxError();
        const Token token = Take();
        int value = 0;
        if (std::from_chars(token.text.data(), token.text.data() + token.text.size(), value).ec != std::errc())
            value = INT32_MAX;
        return value;
    };
    if (Accept(Word::LeftParenthesis))
    {
        if (AcceptName("max"))
            size = 0;
        else if ((size = number()) == 0)
            size = INT32_MAX; // a length of 0 is out of range as well
        if (Accept(Word::Comma))
            scale = number();
        Expect(Word::RightParenthesis);
    }
    return MakeType(name, size, scale, defaultSize);
}

} // namespace tsql
