// Going through a batch: its tokens, its syntax as a whole, and the statements that steer.
#include "translator.h"

#include "errors.h"
#include "text.h"

#include <charconv>
#include <utility>

namespace tsql
{
namespace
{

constexpr int maxNesting = 100;

} // namespace

// No text may use up the stack.
Translator::Kept<int> Translator::Deeper()
{
    if (m_depth >= maxNesting)
        Raise(191);
    return {m_depth, m_depth++};
}

Translator::Kept<Translator::Scope *> Translator::Entered(Scope *scope)
{
    return {m_scope, std::exchange(m_scope, scope)};
}

void Translator::Drop()
{
    m_tokens.assign(1, {});
    m_at = 0;
}

void Translator::Check(std::string_view batch)
{
    m_text = batch;
    m_tokens.clear();
    std::size_t at = 0;
    do
        m_tokens.push_back(NextToken(m_text, at));
    while (m_tokens.back().kind != TokenKind::End && m_tokens.back().kind < TokenKind::Bad);
    m_tokens.back().end = static_cast<std::uint32_t>(m_tokens.size() - 1);
    m_session.variables.clear();
    m_visible = 0;
    m_select = m_tokens.size() - 1;
    m_at = 0;
    m_depth = 0;
    m_scope = nullptr;
    m_checking = true;
    try
    {
        Inspect();
        CheckList(Word::None);
        if (Current().kind != TokenKind::End)
            SyntaxError();
    }
    catch (...)
    {
        Drop();
        throw;
    }
    m_checking = false;
    m_at = 0;
}

Translation Translator::Next()
{
    // Blocks only matter as the branch of an IF, which is left out by its end.
    while (Is(Word::Semicolon) || Is(Word::End) || Is(Word::Else) || AtBlock())
        m_at = Is(Word::Else) ? Current().end : m_at + 1;
    m_statement = m_at;
    m_depth = 0;
    m_ids = 0;
    m_scope = nullptr;
    if (Current().kind == TokenKind::End)
        return {.action = Action::End};
    m_catalog.Refresh();
    return Statement();
}

void Translator::Skip(bool branch)
{
    m_at = branch ? m_tokens[m_statement].other : m_tokens[m_statement].end;
}

// Refuses a token that is none.
void Translator::Inspect() const
{
    const Token &token = Current();
    if (token.kind == TokenKind::Bad)
        SyntaxError();
    if (token.kind == TokenKind::Unclosed)
        Raise(105, {LineOf(m_at), token.text.substr(1)});
    if (token.kind == TokenKind::UnclosedComment)
        Raise(113, {LineOf(m_at)});
    if (token.IsName() && token.text.size() > 128 && (token.text.size() > 512 || Length(token.text) > 130))
        Raise(103, {token.text.substr(0, Prefix(token.text, 128))});
}

const Token &Translator::Take()
{
    const Token &token = m_tokens[m_at++];
    if (m_checking)
        Inspect();
    return token;
}

bool Translator::Accept(Word word)
{
    if (!Is(word))
        return false;
    Take();
    return true;
}

const Token &Translator::Expect(Word word)
{
    if (!Is(word))
        SyntaxError();
    return Take();
}

std::string Translator::TakeName()
{
    if (!IsName())
        SyntaxError();
    return Unquoted(Take());
}

std::string Translator::LineOf(std::size_t at) const
{
    const char *end = m_tokens[at].kind == TokenKind::End ? m_text.data() + m_text.size() : m_tokens[at].text.data();
    return std::to_string(std::count(m_text.data(), end, '\n') + 1);
}

// At the end of the text the server names the last token it has read.
void Translator::SyntaxError(std::size_t at, int number) const
{
    const bool end = m_tokens[at].kind == TokenKind::End && at > 0;
    Raise(number, {LineOf(at), m_tokens[end ? at - 1 : at].text});
}

bool Translator::AtBlock() const
{
    if (!Is(Word::Begin))
        return false;
    const Word next = m_tokens[m_at + 1].word;
    return next != Word::Tran && next != Word::Transaction;
}

// Statements up to the word `end` or the end of the text.
void Translator::CheckList(Word end)
{
    for (;;)
    {
        while (Accept(Word::Semicolon))
            ;
        if (Current().kind == TokenKind::End || (end != Word::None && Is(end)))
            return;
        CheckStatement();
    }
}

void Translator::CheckStatement()
{
    const auto deeper = Deeper();
    const std::size_t start = m_at;
    const auto here = [&] { return static_cast<std::uint32_t>(m_at); };
    if (AtBlock())
    {
        Take();
        const std::size_t first = m_at;
        CheckList(Word::End);
        if (m_at == first)
            SyntaxError();
        Expect(Word::End);
    }
    else
        Statement();
    if (m_tokens[start].word == Word::If)
    {
        CheckStatement();
        m_tokens[start].other = here();
        // A semicolon may stand before ELSE.
        if (Is(Word::Semicolon) && m_tokens[m_at + 1].word == Word::Else)
            Take();
        const std::size_t otherwise = m_at;
        if (Accept(Word::Else))
        {
            m_tokens[start].other = here();
            CheckStatement();
            m_tokens[otherwise].end = here();
        }
    }
    m_tokens[start].end = here();
}

Translation Translator::Statement()
{
    switch (Current().word)
    {
    case Word::Select:
        return SelectStatement();
    case Word::Insert:
        return Insert();
    case Word::Update:
        return Update();
    case Word::Delete:
        return Delete();
    case Word::Declare:
        return Declare();
    case Word::Set:
        return Set();
    case Word::Create:
        Take();
        return Accept(Word::Table) ? CreateTable() : CreateIndex();
    case Word::Drop:
        Take();
        return Accept(Word::Table) ? DropTables() : DropIndex();
    case Word::If:
        Take();
        return {.action = Action::Branch, .sql = "SELECT 1 WHERE " + Condition()};
    case Word::Print:
        Take();
        return SelectValue(Action::Print, {Type::NVarChar, 0, 0});
    case Word::Begin:
        Take();
        SkipTransactionName();
        return {.action = Action::Begin};
    case Word::Commit:
    case Word::Rollback:
    {
        const bool commit = Take().word == Word::Commit;
        SkipTransactionName();
        return {.action = commit ? Action::Commit : Action::Rollback};
    }
    default:
        SyntaxError();
    }
}

// TRAN[SACTION] [name], or WORK; the name means nothing, as on the server.
void Translator::SkipTransactionName()
{
    const bool work = IsName() && Compare(Current().text, "WORK") == 0;
    if (work || ((Accept(Word::Tran) || Accept(Word::Transaction)) && IsName()))
        Take();
}

// SELECT of one value.
Translation Translator::SelectValue(Action action, const ValueType &type)
{
    return {.action = action, .sql = "SELECT " + Sql(Converted(ReadValue(), type, Conversion::Cast))};
}

// Declares for the whole batch from here on, when it is checked; when it runs, the values given at once are set.
Translation Translator::Declare()
{
    Take();
    Translation out;
    do
    {
        if (Current().kind != TokenKind::Variable)
            SyntaxError();
        const Token &name = Take();
        Accept(Word::As);
        const ValueType type = TypeName(1);
        if (m_checking)
        {
            for (const Variable &variable : m_session.variables)
                if (Compare(variable.name, name.text) == 0)
                    Raise(134, {name.text});
            m_session.variables.push_back({name.text, type, {}});
        }
        if (!Accept(Word::Equal))
            continue;
        out.action = Action::Set;
        out.sql += (out.sql.empty() ? "SELECT " : ", ") + Sql(Converted(ReadValue(), type, Conversion::Cast));
        if (!m_checking)
            out.variables.push_back(FindVariable(name));
    } while (Accept(Word::Comma));
    m_visible = m_session.variables.size();
    return out;
}

int Translator::FindVariable(const Token &name) const
{
    for (std::size_t i = 0; i < m_visible; ++i)
        if (Compare(m_session.variables[i].name, name.text) == 0)
            return static_cast<int>(i);
    Raise(137, {name.text});
}

Translation Translator::Set()
{
    Take();
    if (Current().kind == TokenKind::Variable)
    {
        const int variable = FindVariable(Current());
        Take();
        Expect(Word::Equal);
        Translation out = SelectValue(Action::Set, m_session.variables[variable].type);
        out.variables.push_back(variable);
        return out;
    }
    // NOCOUNT does what it says; those that name how this dialect works anyway may be switched on.
    constexpr std::string_view options[] = {"NOCOUNT",          "ANSI_NULLS", "ANSI_PADDING",
                                            "ANSI_WARNINGS",    "ARITHABORT", "CONCAT_NULL_YIELDS_NULL",
                                            "QUOTED_IDENTIFIER"};
    const auto option = std::find_if(std::begin(options), std::end(options),
                                     [&](std::string_view name) { return Compare(name, Current().text) == 0; });
    if (Current().kind != TokenKind::Name || option == std::end(options))
        SyntaxError();
    Take();
    const bool noCount = option == options;
    const bool on = Is(Word::On);
    if (!on && (!Is(Word::Off) || !noCount))
        SyntaxError();
    Take();
    return {.action = noCount ? Action::NoCount : Action::Nothing, .on = on};
}

// [[database.]owner.]table: there is one database and one owner, only the last part counts.
std::string Translator::TableName()
{
    std::string name = TakeName();
    while (Accept(Word::Dot))
        if (!Is(Word::Dot)) // db..table
            name = TakeName();
    return name;
}

ValueType Translator::TypeName(int defaultSize)
{
    const std::string name = TakeName();
    int size = -1;
    int scale = -1;
    const auto number = [&]
    {
        if (Current().kind != TokenKind::Integer)
            SyntaxError();
        const std::string_view digits = Take().text;
        int value = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        return read.ec == std::errc() ? value : INT32_MAX;
    };
    if (Accept(Word::LeftParenthesis))
    {
        if (IsName() && Compare(Current().text, "max") == 0)
        {
            Take();
            size = 0;
        }
        else if ((size = number()) == 0)
            size = INT32_MAX; // a length of 0 is out of range as well
        if (Accept(Word::Comma))
            scale = number();
        Expect(Word::RightParenthesis);
    }
    return MakeType(name, size, scale, defaultSize);
}

} // namespace tsql
