// The parser's part for CREATE and DROP of tables and indexes.
#include "parser.h"

namespace tsql
{

// (a, b, c), a direction behind each allowed
Item *Parser::ParseColumnNames()
{
    Item *first = nullptr;
    Appender<Item> append(first);
    Expect(Word::LeftParenthesis);
    do
    {
        Item *item = New<Item>();
        item->name = ExpectName();
        append(item);
        item->descending = Accept(Word::Desc);
        if (!item->descending)
            Accept(Word::Asc);
    } while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    return first;
}

Statement *Parser::ParseCreate()
{
    Advance();
    if (Accept(Word::Table))
        return ParseCreateTable();
    Statement *statement = NewStatement(StatementKind::CreateIndex);
    statement->unique = Accept(Word::Unique);
    if (!Accept(Word::Clustered))
        Accept(Word::Nonclustered);
    Expect(Word::Index);
    statement->name = ExpectName();
    Expect(Word::On);
    statement->table = ParseTableName();
    statement->columns = ParseColumnNames();
    return statement;
}

Statement *Parser::ParseCreateTable()
{
    Statement *statement = NewStatement(StatementKind::CreateTable);
    statement->table = ParseTableName();
    Appender<ColumnDefinition> append(statement->definitions);
    Expect(Word::LeftParenthesis);
    do
    {
        if (Is(Word::RightParenthesis) && statement->definitions)
            break; // a comma may stand behind the last column
        Token constraint;
        if (Accept(Word::Constraint))
            constraint = ExpectName();
        if (Is(Word::Primary) || Is(Word::Unique))
            ParseKey(*statement, constraint, nullptr);
        else if (!constraint.text.empty())
            SyntaxError();
        else
        {
            ColumnDefinition *column = New<ColumnDefinition>();
            column->name = ExpectName();
            column->type = ParseType(1);
            ParseColumnOptions(*statement, *column);
            append(column);
        }
    } while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    if (!statement->definitions)
        SyntaxError();
    return statement;
}

void Parser::ParseColumnOptions(Statement &statement, ColumnDefinition &column)
{
    for (;;)
    {
        Token constraint;
        if (Accept(Word::Constraint))
            constraint = ExpectName();
        if (Is(Word::Primary) || Is(Word::Unique))
            ParseKey(statement, constraint, &column.name);
        else if (Accept(Word::Default))
            column.defaultValue = Checked(ParseSum());
        else if (Accept(Word::Not))
        {
            Expect(Word::Null);
            column.notNull = true;
        }
        else if (!constraint.text.empty())
            SyntaxError();
        else if (!Accept(Word::Null))
            return;
    }
}

// PRIMARY KEY or UNIQUE [CLUSTERED | NONCLUSTERED] (columns); the columns are `column` alone when it stands there.
void Parser::ParseKey(Statement &statement, const Token &name, const Token *column)
{
    KeyDefinition *key = New<KeyDefinition>();
    key->name = name;
    key->primary = Accept(Word::Primary);
    Expect(key->primary ? Word::Key : Word::Unique);
    if (!Accept(Word::Clustered))
        Accept(Word::Nonclustered);
    if (column)
    {
        key->columns = New<Item>();
        key->columns->name = *column;
    }
    else
        key->columns = ParseColumnNames();
    Appender<KeyDefinition> append(statement.keys);
    append(key);
}

Statement *Parser::ParseDrop()
{
    Advance();
    const bool table = Accept(Word::Table);
    if (!table)
        Expect(Word::Index);
    Statement *statement = NewStatement(table ? StatementKind::DropTable : StatementKind::DropIndex);
    if (!table)
    {
        // DROP INDEX table.index, or DROP INDEX index ON table
        statement->name = ExpectName();
        while (Accept(Word::Dot))
        {
            statement->table = statement->name;
            statement->name = ExpectName();
        }
        if (statement->table.text.empty())
        {
            Expect(Word::On);
            statement->table = ParseTableName();
        }
        return statement;
    }
    Appender<Item> append(statement->columns);
    do
    {
        Item *item = New<Item>();
        item->name = ParseTableName();
        append(item);
    } while (Accept(Word::Comma));
    return statement;
}

} // namespace tsql
