// The parser's part for SELECT: the list, FROM with joins, grouping, order, UNION.
#include "errors.h"
#include "parser.h"

namespace tsql
{

// Queries joined by UNION, with the ORDER BY of the whole.
Select *Parser::ParseSelect()
{
    const Deeper deeper(*this);
    Select *outer = m_select;
    Select *first = ParseQuery();
    Select *last = first;
    while (Accept(Word::Union))
    {
        last->unionAll = Accept(Word::All);
        last->unionNext = ParseQuery();
        last = last->unionNext;
    }
    if (Is(Word::Order))
    {
        m_select = first;
        first->orderBy = ParseOrderBy();
    }
    m_select = outer;
    return first;
}

Select *Parser::ParseQuery()
{
    Expect(Word::Select);
    Select *select = New<Select>();
    m_select = select;
    select->distinct = Accept(Word::Distinct);
    if (!select->distinct)
        Accept(Word::All);
    if (Accept(Word::Top))
    {
        if (Accept(Word::LeftParenthesis))
        {
            select->top = Value();
            Expect(Word::RightParenthesis);
        }
        else if (m_token.kind == TokenKind::Integer)
            select->top = NewExpr(ExprKind::Literal, Take());
        else
            SyntaxError();
    }
    Appender<Item> append(select->items);
    do
        append(ParseItem());
    while (Accept(Word::Comma));
    if (Accept(Word::From))
        select->from = ParseFrom();
    if (Accept(Word::Where))
        select->where = Condition();
    if (Accept(Word::Group))
    {
        Expect(Word::By);
        select->groupBy = ValueList();
    }
    if (Accept(Word::Having))
        select->having = Condition();
    return select;
}

// *, t.*, alias = value, @variable = value, value [[AS] alias]
Item *Parser::ParseItem()
{
    Item *item = New<Item>();
    const bool name = m_token.kind == TokenKind::Name || m_token.kind == TokenKind::QuotedName;
    if (Is(Word::Star))
    {
        item->value = NewExpr(ExprKind::Star, Take());
        return item;
    }
    const Word next = name || m_token.kind == TokenKind::Variable ? Peek().word : Word::None;
    if (name && next == Word::Equal)
    {
        item->name = Take();
        Advance();
        item->value = Value();
        return item;
    }
    if (m_token.kind == TokenKind::Variable && next == Word::Equal)
    {
        item->variable = FindVariable(m_token);
        Advance();
        Advance();
        item->value = Value();
        return item;
    }
    if (name && next == Word::Dot)
    {
        // t.* or dbo.t.*: looked at on a copy of the place, since a column may begin alike
        const std::size_t at = m_at;
        const Token start = m_token;
        Token qualifier = m_token;
        Advance();
        while (Accept(Word::Dot))
        {
            if (Is(Word::Star))
            {
                item->value = NewExpr(ExprKind::Star, Take());
                item->value->qualifier = qualifier;
                return item;
            }
            qualifier = ExpectName();
        }
        m_at = at;
        m_token = start;
    }
    item->value = Value();
    ParseAlias(item->name);
    return item;
}

// [AS] alias, which may be a text in quotes
void Parser::ParseAlias(Token &alias)
{
    const bool as = Accept(Word::As);
    if (m_token.kind == TokenKind::Name || m_token.kind == TokenKind::QuotedName || m_token.kind == TokenKind::Text)
        alias = Take();
    else if (as)
        SyntaxError();
}

Item *Parser::ParseOrderBy()
{
    Advance();
    Expect(Word::By);
    Item *first = nullptr;
    Appender<Item> append(first);
    do
    {
        Item *item = New<Item>();
        item->value = Value();
        item->descending = Accept(Word::Desc);
        if (!item->descending)
            Accept(Word::Asc);
        append(item);
    } while (Accept(Word::Comma));
    return first;
}

Source *Parser::ParseFrom()
{
    Source *first = ParseJoins();
    for (Source *last = first; Accept(Word::Comma); last = last->next)
        last->next = ParseJoins();
    return first;
}

Source *Parser::ParseJoins()
{
    const Deeper deeper(*this);
    Source *left = ParseSource();
    for (int joins = 0;; ++joins)
    {
        const char *kind = nullptr;
        if (Is(Word::Join) || Is(Word::Inner))
            kind = "JOIN";
        else if (Is(Word::Left))
            kind = "LEFT JOIN";
        else if (Is(Word::Right))
            kind = "RIGHT JOIN";
        else if (Is(Word::Full))
            kind = "FULL JOIN";
        else if (Is(Word::Cross))
            kind = "CROSS JOIN";
        else
            return left;
        if (joins > 60) // as many as SQLite takes
            Raise(191);
        const bool cross = Is(Word::Cross);
        const bool outer = Is(Word::Left) || Is(Word::Right) || Is(Word::Full);
        if (!Is(Word::Join))
            Advance();
        if (outer)
            Accept(Word::Outer);
        Expect(Word::Join);
        Source *join = New<Source>();
        join->kind = Source::Join;
        join->join = kind;
        join->left = left;
        join->right = ParseSource();
        if (!cross)
        {
            Expect(Word::On);
            join->on = Condition();
        }
        left = join;
    }
}

// table [[AS] alias], (SELECT ...) [AS] alias, (joins)
Source *Parser::ParseSource()
{
    if (!Is(Word::LeftParenthesis))
    {
        Source *source = New<Source>();
        source->name = ParseTableName();
        source->alias = source->name;
        ParseAlias(source->alias);
        if (source->alias.kind == TokenKind::Text)
            SyntaxError(source->alias);
        return source;
    }
    Advance();
    Source *source = nullptr;
    if (Is(Word::Select))
    {
        source = New<Source>();
        source->kind = Source::Derived;
        source->derived = ParseSelect();
        Expect(Word::RightParenthesis);
        Accept(Word::As);
        source->alias = ExpectName();
    }
    else
    {
        source = ParseJoins();
        Expect(Word::RightParenthesis);
    }
    return source;
}

} // namespace tsql
