// Cuts the text of a batch into tokens; tokens are views into that text.
#include "token.h"

#include <algorithm>
#include <array>

namespace tsql
{
namespace
{

enum CharacterClass : std::uint8_t
{
    ClassBad,
    ClassBlank,
    ClassLetter, // also everything beyond ASCII
    ClassNational,
    ClassDigit,
    ClassDot,
    ClassQuote,
    ClassBracket,
    ClassAt,
    ClassMinus,
    ClassSlash,
    ClassCompare, // < > !
    ClassSingle   // an operator of one character
};

constexpr auto classes = []
{
    std::array<CharacterClass, 256> table{};
    for (char c : {' ', '\t', '\n', '\r', '\v', '\f'})
        table[c] = ClassBlank;
    for (int c = 'a'; c <= 'z'; ++c)
        table[c] = table[c - 'a' + 'A'] = ClassLetter;
    for (int c = 128; c < 256; ++c)
        table[c] = ClassLetter;
    for (int c = '0'; c <= '9'; ++c)
        table[c] = ClassDigit;
    for (char c : {'(', ')', ',', ';', '=', '+', '*', '%', '&', '|', '^', '~'})
        table[c] = ClassSingle;
    for (char c : {'<', '>', '!'})
        table[c] = ClassCompare;
    table['_'] = ClassLetter;
    table['n'] = table['N'] = ClassNational;
    table['.'] = ClassDot;
    table['\''] = table['"'] = ClassQuote;
    table['['] = ClassBracket;
    table['@'] = ClassAt;
    table['-'] = ClassMinus;
    table['/'] = ClassSlash;
    return table;
}();

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
// clang-format on
static_assert(std::size(words) == static_cast<std::size_t>(Word::LeftParenthesis));

Word WordOf(std::string_view name)
{
    char buffer[16];
    if (name.size() > sizeof buffer)
        return Word::None;
    std::transform(name.begin(), name.end(), buffer, [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    const std::string_view upper(buffer, name.size());
    const auto found = std::lower_bound(std::begin(words), std::end(words), upper);
    if (found != std::end(words) && *found == upper)
        return static_cast<Word>(found - words);
    return std::binary_search(std::begin(reserved), std::end(reserved), upper) ? Word::Reserved : Word::None;
}

// Goes over blanks and comments (which nest). False when a comment does not end.
bool SkipBlanks(std::string_view text, std::size_t &at)
{
    while (at < text.size())
    {
        const std::string_view pair = text.substr(at, 2);
        if (classes[static_cast<unsigned char>(text[at])] == ClassBlank)
            ++at;
        else if (pair == "--")
            at = std::min(text.find('\n', at), text.size());
        else if (pair == "/*")
        {
            std::size_t inside = at + 2;
            for (int depth = 1; depth > 0;)
            {
                inside = text.find_first_of("*/", inside);
                if (inside == std::string_view::npos)
                    return false;
                const std::string_view mark = text.substr(inside, 2);
                depth += mark == "/*" ? 1 : mark == "*/" ? -1 : 0;
                inside += mark == "/*" || mark == "*/" ? 2 : 1;
            }
            at = inside;
        }
        else
            return true;
    }
    return true;
}

// The end of what is quoted from `start` on, behind its closing quote; npos when it does not end.
std::size_t QuotedEnd(std::string_view text, std::size_t start, char close)
{
    for (std::size_t at = start + 1;; at += 2)
    {
        at = text.find(close, at);
        if (at == std::string_view::npos)
            return at;
        if (at + 1 >= text.size() || text[at + 1] != close)
            return at + 1;
    }
}

Word SingleOperator(char c)
{
    constexpr std::string_view characters = "(),;=+*%&|^~";
    constexpr Word meanings[] = {Word::LeftParenthesis,
                                 Word::RightParenthesis,
                                 Word::Comma,
                                 Word::Semicolon,
                                 Word::Equal,
                                 Word::Plus,
                                 Word::Star,
                                 Word::Percent,
                                 Word::Ampersand,
                                 Word::Bar,
                                 Word::Caret,
                                 Word::Tilde};
    return meanings[characters.find(c)];
}

} // namespace

Token NextToken(std::string_view text, std::size_t &at)
{
    if (!SkipBlanks(text, at))
    {
        Token token{TokenKind::UnclosedComment, Word::None, text.substr(at)};
        at = text.size();
        return token;
    }
    if (at >= text.size())
        return {};
    const std::size_t start = at;
    const auto classAt = [&](std::size_t place)
    { return place < text.size() ? classes[static_cast<unsigned char>(text[place])] : ClassBad; };
    const auto characterAt = [&](std::size_t place) { return place < text.size() ? text[place] : '\0'; };
    const auto finish = [&](TokenKind kind, std::size_t end, Word word = Word::None)
    {
        at = end;
        return Token{kind, word, text.substr(start, end - start)};
    };
    const auto quoted = [&](TokenKind kind, std::size_t open, char close)
    {
        const std::size_t end = QuotedEnd(text, open, close);
        return end == std::string_view::npos ? finish(TokenKind::Unclosed, text.size()) : finish(kind, end);
    };
    const auto nameEnd = [&](std::size_t place)
    {
        while (classAt(place) == ClassLetter || classAt(place) == ClassNational || classAt(place) == ClassDigit ||
               characterAt(place) == '#' || characterAt(place) == '$' || characterAt(place) == '@')
            ++place;
        return place;
    };
    const auto digitsEnd = [&](std::size_t place)
    {
        while (classAt(place) == ClassDigit)
            ++place;
        return place;
    };

    switch (classAt(start))
    {
    case ClassNational:
        if (characterAt(start + 1) == '\'')
            return quoted(TokenKind::NationalText, start + 1, '\'');
        [[fallthrough]];
    case ClassLetter:
    {
        const std::size_t end = nameEnd(start);
        const Word word = WordOf(text.substr(start, end - start));
        return finish(word == Word::None ? TokenKind::Name : TokenKind::Keyword, end, word);
    }
    case ClassDot:
        if (classAt(start + 1) != ClassDigit)
            return finish(TokenKind::Operator, start + 1, Word::Dot);
        [[fallthrough]];
    case ClassDigit:
    {
        // A letter may follow at once: `5ORDER` is a number and a keyword. Binary constants (0x..) are not known.
        std::size_t end = digitsEnd(start);
        if (end == start + 1 && text[start] == '0' && (characterAt(end) == 'x' || characterAt(end) == 'X'))
            return finish(TokenKind::Bad, nameEnd(end));
        TokenKind kind = TokenKind::Integer;
        if (characterAt(end) == '.')
        {
            kind = TokenKind::Decimal;
            end = digitsEnd(end + 1);
        }
        if (characterAt(end) == 'e' || characterAt(end) == 'E')
        {
            const bool sign = characterAt(end + 1) == '+' || characterAt(end + 1) == '-';
            const std::size_t exponent = end + (sign ? 2 : 1);
            if (classAt(exponent) == ClassDigit)
                return finish(TokenKind::Float, digitsEnd(exponent));
        }
        return finish(kind, end);
    }
    case ClassQuote:
        return quoted(text[start] == '"' ? TokenKind::QuotedName : TokenKind::Text, start, text[start]);
    case ClassBracket:
        return quoted(TokenKind::QuotedName, start, ']');
    case ClassAt:
    {
        const bool global = characterAt(start + 1) == '@';
        const std::size_t name = start + (global ? 2 : 1);
        const std::size_t end = nameEnd(name);
        return finish(end == name ? TokenKind::Bad : global ? TokenKind::Global : TokenKind::Variable, end);
    }
    case ClassMinus:
        return finish(TokenKind::Operator, start + 1, Word::Minus);
    case ClassSlash:
        return finish(TokenKind::Operator, start + 1, Word::Slash);
    case ClassCompare:
    {
        const char first = text[start];
        const char second = characterAt(start + 1);
        if (first == '!')
        {
            const Word word = second == '='   ? Word::NotEqual
                              : second == '<' ? Word::GreaterOrEqual
                              : second == '>' ? Word::LessOrEqual
                                              : Word::None;
            return word == Word::None ? finish(TokenKind::Bad, start + 1)
                                      : finish(TokenKind::Operator, start + 2, word);
        }
        if (second == '=')
            return finish(TokenKind::Operator, start + 2, first == '<' ? Word::LessOrEqual : Word::GreaterOrEqual);
        if (first == '<' && second == '>')
            return finish(TokenKind::Operator, start + 2, Word::NotEqual);
        return finish(TokenKind::Operator, start + 1, first == '<' ? Word::Less : Word::Greater);
    }
    case ClassSingle:
        return finish(TokenKind::Operator, start + 1, SingleOperator(text[start]));
    default:
        return finish(TokenKind::Bad, std::max(nameEnd(start), start + 1));
    }
}

std::string Unquoted(const Token &token)
{
    std::string_view text = token.text;
    if (token.kind == TokenKind::NationalText)
        text.remove_prefix(1);
    else if (token.kind != TokenKind::Text && token.kind != TokenKind::QuotedName)
        return std::string(text);
    const char close = text.back();
    text = text.substr(1, text.size() - 2);
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        plain += text[at];
        if (text[at] == close)
            ++at;
    }
    return plain;
}

} // namespace tsql
