// The parser's part for tokens, lists of statements, and the statements that steer: IF, BEGIN, DECLARE, SET.
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

} // namespace tsql
