// Cuts the text of a batch into tokens; tokens are views into that text.
#include "token.h"

#include <algorithm>

namespace tsql
{
namespace
{

// clang-format off
// Both in the order of the alphabet.
constexpr std::string_view keywords[] = {
    "ALL", "AND", "AS", "ASC", "BEGIN", "BETWEEN", "BY", "CASE", "CLUSTERED", "COMMIT", "CREATE", "CROSS",
    "DECLARE", "DELETE", "DESC", "DISTINCT", "DROP", "ELSE", "END", "EXISTS", "FROM", "FULL", "GROUP",
    "HAVING", "IF", "IN", "INDEX", "INNER", "INSERT", "INTO", "IS", "JOIN", "KEY", "LEFT", "LIKE", "NONCLUSTERED", "NOT",
    "NULL", "OFF", "ON", "OR", "ORDER", "OUTER", "PRIMARY", "PRINT", "RIGHT", "ROLLBACK", "SELECT", "SET", "TABLE",
    "THEN", "TOP", "TRAN", "TRANSACTION", "UNION", "UNIQUE", "UPDATE", "VALUES", "WHEN", "WHERE"};
constexpr std::string_view reserved[] = {
    "ADD", "ALTER", "ANY", "AUTHORIZATION", "BACKUP", "BREAK", "BROWSE", "BULK", "CASCADE", "CHECK", "CHECKPOINT",
    "CLOSE", "COLLATE", "COLUMN", "COMPUTE", "CONSTRAINT", "CONTAINS", "CONTINUE", "CURRENT", "CURSOR",
    "DATABASE", "DBCC", "DEALLOCATE", "DEFAULT", "DENY", "DISK", "DISTRIBUTED", "DOUBLE", "DUMP", "ERRLVL", "ESCAPE", "EXCEPT",
    "EXEC", "EXECUTE", "EXIT", "FETCH", "FILE", "FILLFACTOR", "FOR", "FOREIGN", "FREETEXT", "FUNCTION", "GOTO", "GRANT",
    "HOLDLOCK", "IDENTITY", "IDENTITYCOL", "IDENTITY_INSERT", "INTERSECT", "KILL", "LINENO", "LOAD", "MERGE",
    "NATIONAL", "NOCHECK", "OF", "OFFSETS", "OPEN", "OPTION", "OVER", "PERCENT", "PIVOT", "PLAN", "PROC",
    "PROCEDURE", "PUBLIC", "RAISERROR", "READ", "READTEXT", "RECONFIGURE", "REFERENCES", "REPLICATION", "RESTORE",
    "RESTRICT", "RETURN", "REVERT", "REVOKE", "ROWCOUNT", "ROWGUIDCOL", "RULE", "SAVE", "SCHEMA", "SETUSER", "SHUTDOWN",
    "SOME", "STATISTICS", "TABLESAMPLE", "TEXTSIZE", "TO", "TRIGGER", "TRUNCATE", "UNPIVOT", "UPDATETEXT", "USE",
    "USER", "VARYING", "VIEW", "WAITFOR", "WHILE", "WITH", "WRITETEXT"};
// The longer ones before those they begin with.
constexpr std::string_view operators[] = {"<=", ">=", "<>", "!=", "!<", "!>", ",", "(", ")", "=", ".", "*", "+", "-",
                                          "/", "%", ";", "<", ">"};
// clang-format on

char Capital(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
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
    while (at < text.size() && Is(text[at]))
        ++at;
    return at;
}

TokenKind KindOf(std::string_view name)
{
    char buffer[16];
    if (name.size() > sizeof buffer)
        return TokenKind::Name;
    std::transform(name.begin(), name.end(), buffer, Capital);
    const std::string_view word(buffer, name.size());
    return std::binary_search(std::begin(keywords), std::end(keywords), word)   ? TokenKind::Keyword
           : std::binary_search(std::begin(reserved), std::end(reserved), word) ? TokenKind::Reserved
                                                                                : TokenKind::Name;
}

// The place behind the comment (they nest) that begins at `at`; npos when it does not end.
std::size_t CommentEnd(std::string_view text, std::size_t at)
{
    for (int depth = 0; (at = text.find_first_of("*/", at)) != std::string_view::npos; ++at)
    {
        const std::string_view mark = text.substr(at, 2);
        const int change = mark == "/*" ? 1 : mark == "*/" ? -1 : 0;
        at += change != 0 ? 1 : 0;
        depth += change;
        if (depth == 0)
            return at + 1;
    }
    return at;
}

// Goes over blanks and comments. False when a comment does not end.
bool SkipBlanks(std::string_view text, std::size_t &at)
{
    while (at < text.size())
    {
        const std::string_view mark = text.substr(at, 2);
        std::size_t end = at + 1;
        if (mark == "--")
            end = text.find('\n', at);
        else if (mark == "/*" && (end = CommentEnd(text, at)) == std::string_view::npos)
            return false;
        else if (mark != "/*" && !IsBlank(mark[0]))
            break;
        at = std::min(end, text.size());
    }
    return true;
}

// The end of what is quoted from `start` on, behind its closing quote; npos when it does not end.
std::size_t QuotedEnd(std::string_view text, std::size_t start, char close)
{
    for (std::size_t at = start + 1;; at += 2)
    {
        at = text.find(close, at);
        if (at == std::string_view::npos || at + 1 >= text.size() || text[at + 1] != close)
            return at == std::string_view::npos ? at : at + 1;
    }
}

// The end of the number that begins at `at`. A letter may follow at once: `5ORDER` is a number and a keyword.
std::size_t NumberEnd(std::string_view text, std::size_t at, TokenKind &kind)
{
    kind = TokenKind::Integer;
    at = EndOf<IsDigit>(text, at);
    if (at < text.size() && text[at] == '.')
    {
        kind = TokenKind::Decimal;
        at = EndOf<IsDigit>(text, at + 1);
    }
    if (at >= text.size() || Capital(text[at]) != 'E')
        return at;
    const std::size_t digits = at + (at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-') ? 2 : 1);
    const std::size_t end = EndOf<IsDigit>(text, digits);
    if (end == digits)
        return at;
    kind = TokenKind::Float;
    return end;
}

// The end and the kind of the token that begins at `start`; npos when it does not end.
std::size_t TokenEnd(std::string_view text, std::size_t start, TokenKind &kind)
{
    const char c = text[start];
    const char next = start + 1 < text.size() ? text[start + 1] : '\0';
    const bool national = Capital(c) == 'N' && next == '\'';
    if (c == '\'' || national)
    {
        kind = national ? TokenKind::NationalText : TokenKind::Text;
        return QuotedEnd(text, start + (national ? 1 : 0), '\'');
    }
    kind = TokenKind::QuotedName;
    if (c == '"' || c == '[')
        return QuotedEnd(text, start, c == '[' ? ']' : c);
    std::size_t end = EndOf<IsNamePart>(text, start);
    if (IsLetter(c))
    {
        kind = KindOf(text.substr(start, end - start));
        return end;
    }
    kind = TokenKind::Variable;
    if (c == '@' && IsLetter(next))
        return end;
    kind = TokenKind::Bad;
    if (c == '0' && Capital(next) == 'X') // binary constants are not known
        return end;
    if (IsDigit(c) || (c == '.' && IsDigit(next)))
        return NumberEnd(text, start, kind);
    const auto found =
        std::find_if(std::begin(operators), std::end(operators),
                     [&](std::string_view candidate) { return text.substr(start, candidate.size()) == candidate; });
    if (found == std::end(operators))
        return std::max(end, start + 1);
    kind = TokenKind::Operator;
    return start + found->size();
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
    for (std::size_t at = 0; tokens.empty() || tokens.back().kind < TokenKind::Bad;)
    {
        const bool blanks = SkipBlanks(text, at);
        Token token{blanks ? TokenKind::End : TokenKind::UnclosedComment, text.substr(at)};
        if (blanks && at < text.size())
        {
            const std::size_t end = TokenEnd(text, at, token.kind);
            token.kind = end == std::string_view::npos ? TokenKind::Unclosed : token.kind;
            token.text = text.substr(at, end - at);
            at = std::min(end, text.size());
        }
        tokens.push_back(token);
        if (token.kind == TokenKind::End)
            return tokens;
    }
    tokens.push_back({TokenKind::End, text.substr(text.size())});
    return tokens;
}

std::string Unquoted(const Token &token)
{
    std::string_view text = token.text;
    if (!token.IsText() && token.kind != TokenKind::QuotedName)
        return std::string(text);
    text.remove_prefix(token.kind == TokenKind::NationalText ? 2 : 1);
    const char close = text.back();
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at + 1 < text.size(); ++at)
    {
        plain += text[at];
        at += text[at] == close ? 1 : 0;
    }
    return plain;
}

bool SameWord(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Capital(a) == Capital(b); });
}

} // namespace tsql
