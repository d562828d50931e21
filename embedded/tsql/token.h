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
    Name,     // x, [x] or "x"
    Keyword,  // a reserved word of the language
    Variable, // @x
    Integer,
    Text, // 'x' or N'x'
    Operator,
    Bad,     // what is not known: another character, a number with a point or an exponent
    Unclosed // a text or quoted name that does not end
};

struct Token
{
    TokenKind kind = TokenKind::End;
    std::string_view text;

    bool Is(std::string_view word) const; // a keyword or an operator, in capitals
    bool IsName() const { return kind == TokenKind::Name; }
    bool IsText() const { return kind == TokenKind::Text; }
    bool IsNational() const { return IsText() && text[0] != '\''; } // N'x'
};

// All tokens of the text, up to one from Bad on, and one of kind End behind them.
std::vector<Token> Tokens(std::string_view text);

// What a name or text token stands for: without quotes, doubled quotes made single, without N in the code page.
std::string Unquoted(const Token &token);

// ASCII letters in either case are equal. For words, not for names that people have given.
bool SameWord(std::string_view left, std::string_view right);

// Raises what is wrong with a token: what is unclosed, a syntax error, or, where a server may know what stands there,
// that it is not supported here.
[[noreturn]] void RefuseToken(const std::vector<Token> &tokens, std::size_t at);

} // namespace tsql
