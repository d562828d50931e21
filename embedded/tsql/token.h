// Cuts the text of a batch into tokens; tokens are views into that text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tsql
{

enum class TokenKind : std::uint8_t
{
    End,
    Name,       // a plain name that is not a reserved word
    QuotedName, // [x] or "x", with its quotes
    Keyword,    // a reserved word that this dialect uses
    Reserved,   // any other reserved word of the language
    Variable,   // @x
    Integer,
    Decimal, // digits with a point
    Float,   // digits with an exponent
    Text,    // 'x', with its quotes
    NationalText,
    Operator,
    Bad,            // a character the language has no use for
    Unclosed,       // a text or quoted name that does not end
    UnclosedComment // a comment that does not end
};

struct Token
{
    TokenKind kind = TokenKind::End;
    std::string_view text;

    bool Is(std::string_view word) const; // a keyword or an operator, in capitals
    bool IsName() const { return kind == TokenKind::Name || kind == TokenKind::QuotedName; }
    bool IsText() const { return kind == TokenKind::Text || kind == TokenKind::NationalText; }
};

// All tokens of the text, up to one from Bad on where no token can be read, and one of kind End behind them.
std::vector<Token> Tokens(std::string_view text);

// What a name or text token stands for: without quotes, doubled quotes made single.
std::string Unquoted(const Token &token);

// ASCII letters in either case are equal. For words, not for names that people have given.
bool SameWord(std::string_view left, std::string_view right);

} // namespace tsql
