// The parser's half for tokens and statements.
#include "parser.h"

#include "errors.h"
#include "text.h"

#include <algorithm>

namespace tsql
{
namespace
{

constexpr int maxNesting = 150;

} // namespace

void Parse(std::string_view text, std::pmr::memory_resource &memory, Batch &batch)
{
    Parser(text, memory, batch).ParseBatch();
}

Parser::Deeper::Deeper(Parser &parser) : m_parser(parser)
{
    if (++m_parser.m_depth > maxNesting)
        Raise(191);
}

void Parser::Advance()
{
    m_last = m_token.text;
    m_token = NextToken(m_text, m_at);
    switch (m_token.kind)
    {
    case TokenKind::Bad:
        SyntaxError();
    case TokenKind::Unclosed:
        Raise(105, {LineOf(m_token), m_token.text.substr(1)});
    case TokenKind::UnclosedComment:
        Raise(113, {LineOf(m_token)});
    case TokenKind::Name:
    case TokenKind::QuotedName:
        if (m_token.text.size() > 512 || Length(m_token.text) > 130)
            Raise(103, {m_token.text.substr(0, Prefix(m_token.text, 128))});
        break;
    default:
        break;
    }
}

Token Parser::Take()
{
    const Token token = m_token;
    Advance();
    return token;
}

Token Parser::Peek() const
{
    std::size_t at = m_at;
    return NextToken(m_text, at);
}

bool Parser::IsName(std::string_view name) const
{
    return m_token.kind == TokenKind::Name && Compare(m_token.text, name) == 0;
}

bool Parser::Accept(Word word)
{
    if (!Is(word))
        return false;
    Advance();
    return true;
}

bool Parser::AcceptName(std::string_view name)
{
    if (!IsName(name))
        return false;
    Advance();
    return true;
}

Token Parser::Expect(Word word)
{
    if (!Is(word))
        SyntaxError();
    return Take();
}

Token Parser::ExpectName()
{
    if (m_token.kind != TokenKind::Name && m_token.kind != TokenKind::QuotedName)
        SyntaxError();
    return Take();
}

// At the end of the text the server names the last token it has read.
void Parser::SyntaxError(const Token &token) const
{
    Raise(102, {LineOf(token), token.kind == TokenKind::End ? m_last : token.text});
}

std::string Parser::LineOf(const Token &token) const
{
    const char *end = token.text.data() ? token.text.data() : m_text.data() + m_text.size();
    return std::to_string(std::count(m_text.data(), end, '\n') + 1);
}

int Parser::FindVariable(const Token &name) const
{
    for (std::size_t i = 0; i < m_batch.variables.size(); ++i)
        if (Compare(m_batch.variables[i].name, name.text) == 0)
            return static_cast<int>(i);
    Raise(137, {name.text});
}

void Parser::ParseBatch()
{
    m_batch.statements = ParseStatementList(Word::None);
    if (m_token.kind != TokenKind::End)
        SyntaxError();
}

// Statements up to the word `end` or the end of the text.
Statement *Parser::ParseStatementList(Word end)
{
    Statement *first = nullptr;
    Appender<Statement> append(first);
    for (;;)
    {
        while (Accept(Word::Semicolon))
            ;
        if (m_token.kind == TokenKind::End || (end != Word::None && Is(end)))
            return first;
        append(ParseStatement());
    }
}

Statement *Parser::NewStatement(StatementKind kind)
{
    Statement *statement = New<Statement>();
    statement->kind = kind;
    return statement;
}

Statement *Parser::ParseStatement()
{
    const Deeper deeper(*this);
    switch (m_token.word)
    {
    case Word::Select:
    {
        Statement *statement = NewStatement(StatementKind::Select);
        statement->select = ParseSelect();
        return statement;
    }
    case Word::Insert:
        return ParseInsert();
    case Word::Update:
        return ParseUpdate();
    case Word::Delete:
        return ParseDelete();
    case Word::If:
        return ParseIf();
    case Word::Begin:
        return ParseBegin();
    case Word::Declare:
        return ParseDeclare();
    case Word::Set:
        return ParseSet();
    case Word::Create:
        return ParseCreate();
    case Word::Drop:
        return ParseDrop();
    case Word::Print:
    {
        Advance();
        Statement *statement = NewStatement(StatementKind::Print);
        statement->value = Value();
        return statement;
    }
    case Word::Commit:
    case Word::Rollback:
    {
        Statement *statement = NewStatement(Is(Word::Commit) ? StatementKind::Commit : StatementKind::Rollback);
        Advance();
        if (!AcceptName("WORK"))
            SkipTransactionName();
        return statement;
    }
    default:
        SyntaxError();
    }
}

// TRAN[SACTION] [name]; the name means nothing, as on the server.
void Parser::SkipTransactionName()
{
    if ((Accept(Word::Tran) || Accept(Word::Transaction)) &&
        (m_token.kind == TokenKind::Name || m_token.kind == TokenKind::QuotedName))
        Advance();
}

// [[database.]owner.]table: there is one database and one owner, only the last part counts.
Token Parser::ParseTableName()
{
    Token name = ExpectName();
    while (Accept(Word::Dot))
        if (!Is(Word::Dot)) // db..table
            name = ExpectName();
    return name;
}

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

Statement *Parser::ParseIf()
{
    Advance();
    Statement *statement = NewStatement(StatementKind::If);
    statement->value = Condition();
    statement->body = ParseStatement();
    // A semicolon may stand before ELSE.
    if (Is(Word::Semicolon) && Peek().word == Word::Else)
        Advance();
    if (Accept(Word::Else))
        statement->otherwise = ParseStatement();
    return statement;
}

Statement *Parser::ParseBegin()
{
    Advance();
    if (Is(Word::Tran) || Is(Word::Transaction))
    {
        SkipTransactionName();
        return NewStatement(StatementKind::BeginTransaction);
    }
    Statement *statement = NewStatement(StatementKind::Block);
    statement->body = ParseStatementList(Word::End);
    if (!statement->body)
        SyntaxError();
    Expect(Word::End);
    return statement;
}

// Declares for the whole batch from here on; a value given at once becomes a SET.
Statement *Parser::ParseDeclare()
{
    Advance();
    Statement *statement = NewStatement(StatementKind::Block);
    Appender<Statement> append(statement->body);
    do
    {
        if (m_token.kind != TokenKind::Variable)
            SyntaxError();
        const Token name = Take();
        for (const VariableDeclaration &variable : m_batch.variables)
            if (Compare(variable.name, name.text) == 0)
                Raise(134, {name.text});
        Accept(Word::As);
        m_batch.variables.push_back({name.text, ParseType(1)});
        if (Accept(Word::Equal))
        {
            Statement *set = NewStatement(StatementKind::SetVariable);
            set->variable = static_cast<int>(m_batch.variables.size()) - 1;
            set->value = Value();
            append(set);
        }
    } while (Accept(Word::Comma));
    return statement;
}

Statement *Parser::ParseSet()
{
    Advance();
    if (m_token.kind == TokenKind::Variable)
    {
        Statement *statement = NewStatement(StatementKind::SetVariable);
        statement->variable = FindVariable(m_token);
        Advance();
        Expect(Word::Equal);
        statement->value = Value();
        return statement;
    }
    // Options: NOCOUNT does what it says; those that name how this dialect works anyway may be switched on.
    Statement *statement = NewStatement(StatementKind::SetOption);
    statement->name = m_token;
    const bool noCount = IsName("NOCOUNT");
    if (!noCount && !IsName("ANSI_NULLS") && !IsName("ANSI_PADDING") && !IsName("ANSI_WARNINGS") &&
        !IsName("ARITHABORT") && !IsName("CONCAT_NULL_YIELDS_NULL") && !IsName("QUOTED_IDENTIFIER"))
        SyntaxError();
    Advance();
    statement->unique = Is(Word::On);
    if (!Is(Word::On) && !(Is(Word::Off) && noCount))
        SyntaxError();
    Advance();
    return noCount ? statement : NewStatement(StatementKind::Block);
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
