// The parser's part for INSERT, UPDATE and DELETE.
#include "errors.h"
#include "parser.h"

namespace tsql
{

Statement *Parser::ParseInsert()
{
    Advance();
    Accept(Word::Into);
    Statement *statement = NewStatement(StatementKind::Insert);
    statement->table = ParseTableName();
    if (Is(Word::LeftParenthesis))
        statement->columns = ParseColumnNames();
    if (Is(Word::Select))
    {
        statement->select = ParseSelect();
        return statement;
    }
    Expect(Word::Values);
    Appender<Expr> append(statement->rows);
    int rows = 0;
    do
    {
        if (++rows > 1000)
            Raise(10738);
        Expr *row = NewExpr(ExprKind::Call, Expect(Word::LeftParenthesis));
        Appender<Expr> appendValue(row->first);
        do
            appendValue(Is(Word::Default) ? NewExpr(ExprKind::Default, Take()) : Value());
        while (Accept(Word::Comma));
        Expect(Word::RightParenthesis);
        append(row);
    } while (Accept(Word::Comma));
    return statement;
}

Statement *Parser::ParseUpdate()
{
    Advance();
    Statement *statement = NewStatement(StatementKind::Update);
    statement->table = ParseTableName();
    Expect(Word::Set);
    Appender<Item> append(statement->columns);
    do
    {
        Item *item = New<Item>();
        item->name = ExpectName();
        while (Accept(Word::Dot))
            item->name = ExpectName();
        Expect(Word::Equal);
        item->value = Is(Word::Default) ? NewExpr(ExprKind::Default, Take()) : Value();
        append(item);
    } while (Accept(Word::Comma));
    if (Accept(Word::From))
        statement->from = ParseFrom();
    if (Accept(Word::Where))
        statement->where = Condition();
    return statement;
}

Statement *Parser::ParseDelete()
{
    Advance();
    Accept(Word::From);
    Statement *statement = NewStatement(StatementKind::Delete);
    statement->table = ParseTableName();
    if (Accept(Word::From))
        statement->from = ParseFrom();
    if (Accept(Word::Where))
        statement->where = Condition();
    return statement;
}

} // namespace tsql
