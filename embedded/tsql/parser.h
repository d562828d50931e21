// Recursive descent over the tokens of a batch; used only by Parse.
#pragma once

#include "ast.h"

namespace tsql
{

// Puts an element at the end of a list linked by `next`.
template <typename T>
class Appender
{
public:
    explicit Appender(T *&first) : m_end(&first) {}
    void operator()(T *element)
    {
        while (*m_end)
            m_end = &(*m_end)->next;
        *m_end = element;
    }

private:
    T **m_end;
};

class Parser
{
public:
    Parser(std::string_view text, std::pmr::memory_resource &memory, Batch &batch)
        : m_text(text), m_memory(memory), m_batch(batch)
    {
        Advance();
    }

    void ParseBatch();

private:
    // Counts how deep the rules call each other, so that no text can use up the stack.
    class Deeper
    {
    public:
        explicit Deeper(Parser &parser);
        ~Deeper() { --m_parser.m_depth; }
        Deeper(const Deeper &) = delete;
        Deeper &operator=(const Deeper &) = delete;

    private:
        Parser &m_parser;
    };

    // Tokens
    void Advance();
    Token Take();
    Token Peek() const; // the token behind the current one
    bool Is(Word word) const { return m_token.word == word; }
    bool IsName(std::string_view name) const;
    bool Accept(Word word);
    bool AcceptName(std::string_view name);
    Token Expect(Word word);
    Token ExpectName();
    [[noreturn]] void SyntaxError(const Token &token) const;
    [[noreturn]] void SyntaxError() const { SyntaxError(m_token); }
    std::string LineOf(const Token &token) const;

    template <typename T>
    T *New()
    {
        return new (m_memory.allocate(sizeof(T), alignof(T))) T();
    }
    Expr *NewExpr(ExprKind kind, const Token &token);

    // Statements
    Statement *ParseStatement();
    Statement *NewStatement(StatementKind kind);
    Statement *ParseInsert();
    Statement *ParseUpdate();
    Statement *ParseDelete();
    Statement *ParseIf();
    Statement *ParseBegin();
    Statement *ParseDeclare();
    Statement *ParseSet();
    Statement *ParseCreate();
    Statement *ParseCreateTable();
    Statement *ParseDrop();
    void ParseColumnOptions(Statement &statement, ColumnDefinition &column);
    void ParseKey(Statement &statement, const Token &name, const Token *column);
    void SkipTransactionName();
    Token ParseTableName();
    Item *ParseColumnNames();
    Statement *ParseStatementList(Word end);

    // SELECT
    Select *ParseSelect();
    Select *ParseQuery();
    Item *ParseItem();
    Item *ParseOrderBy();
    Source *ParseFrom();
    Source *ParseJoins();
    Source *ParseSource();
    void ParseAlias(Token &alias);

    // Expressions. Condition and Value check which of the two was read.
    Expr *Condition();
    Expr *Value();
    Expr *Checked(Expr *expr) const;
    Expr *ValueList();
    Expr *ParseChain(Word word, ExprKind kind, Expr *(Parser::*parse)());
    Expr *ParseOr();
    Expr *ParseAnd();
    Expr *ParseNot();
    Expr *ParsePredicate();
    Expr *ParseSum();
    Expr *ParseProduct();
    Expr *ParseUnary();
    Expr *ParsePrimary();
    Expr *ParseNamed();
    Expr *ParseCall(const Token &name);
    Expr *ParseCast();
    Expr *ParseConvert();
    Expr *ParseCase();
    Expr *ParseVariable();
    Expr *Join(ExprKind kind, const Token &token, Expr *left, Expr *right) const;
    ValueType ParseType(int defaultSize);
    int FindVariable(const Token &name) const;

    std::string_view m_text;
    std::pmr::memory_resource &m_memory;
    Batch &m_batch;
    Token m_token; // the current one
    std::size_t m_at = 0;
    std::string_view m_last; // the token before, for errors at the end of the text
    int m_depth = 0;
    Select *m_select = nullptr; // the one being read, told of aggregates
};

} // namespace tsql
