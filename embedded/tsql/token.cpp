// Cuts the text of a batch into tokens; tokens are views into that text.
#include "token.h"

#include "errors.h"
#include "platform/code_page.h"
#include "runtime/text.h"

#include <algorithm>

namespace tsql
{
namespace
{

// clang-format off
// In the order of the alphabet.
constexpr std::string_view keywords[] = {
    "ADD", "ALL", "ALTER", "AND", "ANY", "AS", "ASC", "AUTHORIZATION", "BACKUP", "BEGIN", "BETWEEN", "BREAK",
    "BROWSE", "BULK", "BY", "CASCADE", "CASE", "CHECK", "CHECKPOINT", "CLOSE", "CLUSTERED", "COALESCE", "COLLATE",
    "COLUMN", "COMMIT", "COMPUTE", "CONSTRAINT", "CONTAINS", "CONTINUE", "CREATE", "CROSS", "CURRENT", "CURSOR",
    "DATABASE", "DBCC", "DEALLOCATE", "DECLARE", "DEFAULT", "DELETE", "DENY", "DESC", "DISK", "DISTINCT",
    "DISTRIBUTED", "DOUBLE", "DROP", "DUMP", "ELSE", "END", "ERRLVL", "ESCAPE", "EXCEPT", "EXEC", "EXECUTE", "EXISTS",
    "EXIT", "FETCH", "FILE", "FILLFACTOR", "FOR", "FOREIGN", "FREETEXT", "FROM", "FULL", "FUNCTION", "GOTO", "GRANT",
    "GROUP", "HAVING", "HOLDLOCK", "IDENTITY", "IDENTITYCOL", "IDENTITY_INSERT", "IF", "IN", "INDEX", "INNER",
    "INSERT", "INTERSECT", "INTO", "IS", "JOIN", "KEY", "KILL", "LEFT", "LIKE", "LINENO", "LOAD", "MERGE", "NATIONAL",
    "NOCHECK", "NONCLUSTERED", "NOT", "NULL", "NULLIF", "OF", "OFF", "OFFSETS", "ON", "OPEN", "OPTION", "OR", "ORDER",
    "OUTER", "OVER", "PERCENT", "PIVOT", "PLAN", "PRIMARY", "PRINT", "PROC", "PROCEDURE", "PUBLIC", "RAISERROR",
    "READ", "READTEXT", "RECONFIGURE", "REFERENCES", "REPLICATION", "RESTORE", "RESTRICT", "RETURN", "REVERT",
    "REVOKE", "RIGHT", "ROLLBACK", "ROWCOUNT", "ROWGUIDCOL", "RULE", "SAVE", "SCHEMA", "SELECT", "SET", "SETUSER",
    "SHUTDOWN", "SOME", "STATISTICS", "TABLE", "TABLESAMPLE", "TEXTSIZE", "THEN", "TO", "TOP", "TRAN", "TRANSACTION",
    "TRIGGER", "TRUNCATE", "UNION", "UNIQUE", "UNPIVOT", "UPDATE", "UPDATETEXT", "USE", "USER", "VALUES", "VARYING",
    "VIEW", "WAITFOR", "WHEN", "WHERE", "WHILE", "WITH", "WRITETEXT"};
// The longer ones before those they begin with.
constexpr std::string_view operators[] = {"<=", ">=", "<>", "!=", "<", ">", "=", ",", "(", ")", ".", "*", "+", "-", ";"};
// clang-format on

char Capital(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Everything beyond ASCII is a letter.
bool IsLetter(char c)
{
    return (Capital(c) >= 'A' && Capital(c) <= 'Z') || c == '_' || (c & 0x80) != 0;
}

bool IsNamePart(char c)
{
    return IsLetter(c) || IsDigit(c) || c == '#' || c == '$' || c == '@';
}

template <bool (*Is)(char)>
std::size_t EndOf(std::string_view text, std::size_t at)
{
    return static_cast<std::size_t>(std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), Is) -
                                    text.begin());
}

bool IsKeyword(std::string_view name)
{
    const auto less = [](auto one, auto other)
    { return std::ranges::lexicographical_compare(one, other, {}, Capital, Capital); };
    return std::ranges::binary_search(keywords, name, less);
}

// What begins with a quote, a bracket or N'.
Token Quoted(std::string_view text)
{
    const std::size_t open = Capital(text[0]) == 'N' ? 1 : 0;
    const char close = text[0] == '[' ? ']' : text[open];
    std::size_t end = text.find(close, open + 1);
    while (end < text.size() && text.substr(end + 1).starts_with(close))
        end = text.find(close, end + 2);
    if (end == std::string_view::npos)
        return {TokenKind::Unclosed, text};
    return {close == '\'' ? TokenKind::Text : TokenKind::Name, text.substr(0, end + 1)};
}

// A keyword may follow a number at once, `5ORDER`; what else does belongs to a number of another kind, `5e3`.
Token Number(std::string_view text)
{
    const std::size_t end = EndOf<IsDigit>(text, 0);
    const std::size_t behind = EndOf<IsNamePart>(text, text.substr(end).starts_with('.') ? end + 1 : end);
    const bool integer = behind == end || IsKeyword(text.substr(end, behind - end));
    return {integer ? TokenKind::Integer : TokenKind::Bad, text.substr(0, integer ? end : behind)};
}

// The first token of a text that does not begin with a blank.
Token First(std::string_view text)
{
    const char next = text.size() > 1 ? text[1] : '\0';
    if (text.empty())
        return {TokenKind::End, text};
    if (text[0] == '\'' || text[0] == '"' || text[0] == '[' || (Capital(text[0]) == 'N' && next == '\''))
        return Quoted(text);
    if (IsDigit(text[0]) || (text[0] == '.' && IsDigit(next)))
        return Number(text);
    const std::string_view name = text.substr(0, EndOf<IsNamePart>(text, 0));
    if (IsLetter(text[0]))
        return {IsKeyword(name) ? TokenKind::Keyword : TokenKind::Name, name};
    if (text[0] == '@' && IsLetter(next))
        return {TokenKind::Variable, name};
    const auto *const found = std::ranges::find_if(operators, [&](auto one) { return text.starts_with(one); });
    if (found == std::end(operators))
        return {TokenKind::Bad, text.substr(0, std::max<std::size_t>(name.size(), 1))};
    return {TokenKind::Operator, text.substr(0, found->size())};
}

// What a literal without N keeps of a text: Windows-1252, with a question mark for every unit outside of it.
std::string InCodePage(std::string_view text)
{
    if (std::ranges::none_of(text, [](char c) { return (c & 0x80) != 0; }))
        return std::string(text);
    std::string kept;
    for (std::size_t length = 0; !text.empty(); text.remove_prefix(length))
    {
        length = runtime::FirstCharacter(text).length;
        kept += length > 3 ? "??" : platform::FromAnsi(platform::ToAnsi(text.substr(0, length)));
    }
    return kept;
}

} // namespace

bool Token::Is(std::string_view word) const
{
    return (kind == TokenKind::Keyword || kind == TokenKind::Operator) && SameWord(text, word);
}

std::vector<Token> Tokens(std::string_view text)
{
    std::vector<Token> tokens;
    tokens.reserve(text.size() / 4 + 2);
    for (;;)
    {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
        if (text.starts_with("--"))
        {
            text.remove_prefix(std::min(text.find('\n'), text.size()));
            continue;
        }
        tokens.push_back(First(text));
        text.remove_prefix(tokens.back().text.size());
        if (tokens.back().kind >= TokenKind::Bad)
            tokens.push_back({TokenKind::End, text.substr(text.size())});
        if (tokens.back().kind == TokenKind::End)
            return tokens;
    }
}

std::string Unquoted(const Token &token)
{
    const char close = token.text.back();
    if (close != '\'' && close != '"' && close != ']')
        return std::string(token.text);
    const std::size_t first = token.IsNational() ? 2 : 1;
    std::string plain(token.text.substr(first, token.text.size() - first - 1));
    for (std::size_t at = 0; (at = plain.find(close, at)) != std::string::npos; ++at)
        plain.erase(at, 1);
    return token.IsText() && !token.IsNational() ? InCodePage(plain) : plain;
}

bool SameWord(std::string_view left, std::string_view right)
{
    return std::ranges::equal(left, right, {}, Capital, Capital);
}

// At the end of the text the server names the last token that it has read.
void RefuseToken(const std::vector<Token> &tokens, std::size_t at)
{
    const Token &token = tokens[at];
    if (token.kind == TokenKind::Unclosed)
        Raise(105, {token.text.substr(1)});
    if (token.kind == TokenKind::End || token.Is(")") || token.Is("=") ||
        (token.Is("FROM") && at > 0 && tokens[at - 1].Is("SELECT")))
        Raise(102, {tokens[token.kind == TokenKind::End && at > 0 ? at - 1 : at].text});
    const char *const batch = tokens[0].text.data(); // what stands before the first token does not count
    const std::string line = std::to_string(std::count(batch, token.text.data(), '\n') + 1);
    Unsupported("Line " + line + ": '" + std::string(token.text) + "'");
}

} // namespace tsql
