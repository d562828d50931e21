// Cuts the text of a batch into tokens; tokens are views into that text.
#include "token.h"

#include <algorithm>
#include <unordered_map>

namespace tsql
{
namespace
{

// clang-format off
// In the order of Word.
constexpr std::string_view words[] = {
    "ALL", "AND", "AS", "ASC", "BEGIN", "BETWEEN", "BY", "CASE", "CLUSTERED", "COMMIT", "CONSTRAINT", "CREATE",
    "CROSS", "DECLARE", "DEFAULT", "DELETE", "DESC", "DISTINCT", "DROP", "ELSE", "END", "ESCAPE", "EXISTS", "FROM",
    "FULL", "GROUP", "HAVING", "IF", "IN", "INDEX", "INNER", "INSERT", "INTO", "IS", "JOIN", "KEY", "LEFT", "LIKE",
    "NONCLUSTERED", "NOT", "NULL", "OFF", "ON", "OR", "ORDER", "OUTER", "PRIMARY", "PRINT", "RIGHT", "ROLLBACK",
    "SELECT", "SET", "TABLE", "THEN", "TOP", "TRAN", "TRANSACTION", "UNION", "UNIQUE", "UPDATE", "VALUES", "WHEN",
    "WHERE", "WITH"};
constexpr std::string_view reserved[] = {
    "ADD", "ALTER", "ANY", "AUTHORIZATION", "BACKUP", "BREAK", "BROWSE", "BULK", "CASCADE", "CHECK", "CHECKPOINT",
    "CLOSE", "COLLATE", "COLUMN", "COMPUTE", "CONTAINS", "CONTINUE", "CURRENT", "CURSOR", "DATABASE", "DBCC",
    "DEALLOCATE", "DENY", "DISK", "DISTRIBUTED", "DOUBLE", "DUMP", "ERRLVL", "EXCEPT", "EXEC", "EXECUTE", "EXIT",
    "FETCH", "FILE", "FILLFACTOR", "FOR", "FOREIGN", "FREETEXT", "FUNCTION", "GOTO", "GRANT", "HOLDLOCK",
    "IDENTITY", "IDENTITYCOL", "IDENTITY_INSERT", "INTERSECT", "KILL", "LINENO", "LOAD", "MERGE", "NATIONAL",
    "NOCHECK", "OF", "OFFSETS", "OPEN", "OPTION", "OVER", "PERCENT", "PIVOT", "PLAN", "PROC", "PROCEDURE", "PUBLIC",
    "RAISERROR", "READ", "READTEXT", "RECONFIGURE", "REFERENCES", "REPLICATION", "RESTORE", "RESTRICT", "RETURN",
    "REVERT", "REVOKE", "ROWCOUNT", "ROWGUIDCOL", "RULE", "SAVE", "SCHEMA", "SETUSER", "SHUTDOWN", "SOME",
    "STATISTICS", "TABLESAMPLE", "TEXTSIZE", "TO", "TRIGGER", "TRUNCATE", "UNPIVOT", "UPDATETEXT", "USE", "USER",
    "VARYING", "VIEW", "WAITFOR", "WHILE", "WRITETEXT"};
static_assert(std::size(words) == static_cast<std::size_t>(Word::LeftParenthesis));

struct Operator
{
    std::string_view text;
    Word word;
};
// The longer ones before those they begin with.
constexpr Operator operators[] = {
    {",", Word::Comma}, {"(", Word::LeftParenthesis}, {")", Word::RightParenthesis}, {"=", Word::Equal},
    {".", Word::Dot}, {"*", Word::Star}, {"+", Word::Plus}, {"-", Word::Minus}, {"/", Word::Slash},
    {"%", Word::Percent}, {"&", Word::Ampersand}, {"|", Word::Bar}, {"^", Word::Caret}, {"~", Word::Tilde},
    {";", Word::Semicolon}, {"<=", Word::LessOrEqual}, {">=", Word::GreaterOrEqual}, {"<>", Word::NotEqual},
    {"!=", Word::NotEqual}, {"!<", Word::GreaterOrEqual}, {"!>", Word::LessOrEqual}, {"<", Word::Less},
    {">", Word::Greater}};
// clang-format on

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
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || (c & 0x80) != 0;
}

Word WordOf(std::string_view name)
{
    static const auto known = []
    {
        std::unordered_map<std::string_view, Word> map;
        for (const std::string_view word : reserved)
            map.emplace(word, Word::Reserved);
        for (const std::string_view &word : words)
            map.emplace(word, static_cast<Word>(&word - words));
        return map;
    }();
    char buffer[16];
    if (name.size() > sizeof buffer)
        return Word::None;
    std::transform(name.begin(), name.end(), buffer, [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    const auto found = known.find(std::string_view(buffer, name.size()));
    return found == known.end() ? Word::None : found->second;
}

// The place behind the comment (they nest) that begins at `at`; npos when it does not end.
std::size_t CommentEnd(std::string_view text, std::size_t at)
{
    for (int depth = 0;; ++at)
    {
        at = text.find_first_of("*/", at);
        const std::string_view mark = text.substr(std::min(at, text.size()), 2);
        if (mark.empty())
            return std::string_view::npos;
        const int change = mark == "/*" ? 1 : mark == "*/" ? -1 : 0;
        depth += change;
        at += change != 0 ? 1 : 0;
        if (depth == 0)
            return at + 1;
    }
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

template <bool (*Is)(char)>
std::size_t EndOf(std::string_view text, std::size_t at)
{
    while (at < text.size() && Is(text[at]))
        ++at;
    return at;
}

bool IsNamePart(char c)
{
    return IsLetter(c) || IsDigit(c) || c == '#' || c == '$' || c == '@';
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
    if (at >= text.size() || (text[at] | 32) != 'e')
        return at;
    const std::size_t sign = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-') ? 1 : 0;
    const std::size_t end = EndOf<IsDigit>(text, at + 1 + sign);
    if (end == at + 1 + sign)
        return at;
    kind = TokenKind::Float;
    return end;
}

} // namespace

Token NextToken(std::string_view text, std::size_t &at)
{
    const bool open = !SkipBlanks(text, at);
    const std::size_t start = at;
    if (start >= text.size())
        return {};
    const char c = text[start];
    const char next = start + 1 < text.size() ? text[start + 1] : '\0';
    const auto token = [&](TokenKind kind, std::size_t end, Word word = Word::None)
    {
        const bool unclosed = end == std::string_view::npos;
        at = unclosed ? text.size() : end;
        return Token{unclosed && kind < TokenKind::Bad ? TokenKind::Unclosed : kind, word,
                     text.substr(start, at - start)};
    };
    if (open)
        return token(TokenKind::UnclosedComment, std::string_view::npos);
    if (c == '\'' || ((c | 32) == 'n' && next == '\''))
        return token(c == '\'' ? TokenKind::Text : TokenKind::NationalText,
                     QuotedEnd(text, start + (c == '\'' ? 0 : 1), '\''));
    if (c == '"' || c == '[')
        return token(TokenKind::QuotedName, QuotedEnd(text, start, c == '[' ? ']' : c));
    if (IsLetter(c))
    {
        const std::size_t end = EndOf<IsNamePart>(text, start);
        const Word word = WordOf(text.substr(start, end - start));
        return token(word == Word::None ? TokenKind::Name : TokenKind::Keyword, end, word);
    }
    if (c == '0' && (next | 32) == 'x') // binary constants are not known
        return token(TokenKind::Bad, EndOf<IsNamePart>(text, start));
    if (IsDigit(c) || (c == '.' && IsDigit(next)))
    {
        TokenKind kind = TokenKind::Integer;
        const std::size_t end = NumberEnd(text, start, kind);
        return token(kind, end);
    }
    if (c == '@')
    {
        const std::size_t name = start + (next == '@' ? 2 : 1);
        const std::size_t end = EndOf<IsNamePart>(text, name);
        return token(end == name ? TokenKind::Bad : next == '@' ? TokenKind::Global : TokenKind::Variable, end);
    }
    for (const Operator &candidate : operators)
        if (candidate.text[0] == c && (candidate.text.size() == 1 || candidate.text[1] == next))
            return token(TokenKind::Operator, start + candidate.text.size(), candidate.word);
    return token(TokenKind::Bad, std::max(EndOf<IsNamePart>(text, start), start + 1));
}

std::string Unquoted(const Token &token)
{
    std::string_view text = token.text;
    if (token.kind == TokenKind::NationalText)
        text.remove_prefix(1);
    else if (token.kind != TokenKind::Text && token.kind != TokenKind::QuotedName)
        return std::string(text);
    const char close = text.back();
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 1; at + 1 < text.size(); ++at)
    {
        plain += text[at];
        at += text[at] == close ? 1 : 0;
    }
    return plain;
}

} // namespace tsql
