// Cuts the text of a batch into tokens; tokens are views into that text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tsql
{

enum class TokenKind : std::uint8_t
{
    End,
    Name,       // a plain name that is not a reserved word
    QuotedName, // [x] or "x", with its quotes
    Keyword,
    Variable, // @x
    Global,   // @@x
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

// Words the dialect uses, in the order of the alphabet, then the operators. Reserved: a word of the language that has
// no part in the dialect.
// clang-format off
enum class Word : std::uint8_t
{
    All, And, As, Asc, Begin, Between, By, Case, Clustered, Commit, Constraint, Create, Cross, Declare, Default, Delete,
    Desc, Distinct, Drop, Else, End, Escape, Exists, From, Full, Group, Having, If, In, Index, Inner, Insert, Into, Is,
    Join, Key, Left, Like, Nonclustered, Not, Null, Off, On, Or, Order, Outer, Primary, Print, Right, Rollback, Select,
    Set, Table, Then, Top, Tran, Transaction, Union, Unique, Update, Values, When, Where, With,
    LeftParenthesis, RightParenthesis, Comma, Semicolon, Dot, Equal, NotEqual, Less, LessOrEqual, Greater,
    GreaterOrEqual, Plus, Minus, Star, Slash, Percent, Ampersand, Bar, Caret, Tilde,
    None, Reserved
};
// clang-format on

struct Token
{
    TokenKind kind = TokenKind::End;
    Word word = Word::None;
    std::string_view text;
    // What the first reading of a batch notes: at the first word of a statement the token behind it, at IF the one
    // where the ELSE part begins, at SELECT and UPDATE the one behind the list, at an item of ORDER BY the number of
    // its tokens; and whether a SELECT has aggregates.
    std::uint32_t end = 0;
    std::uint32_t other = 0;
    bool aggregates = false;

    bool IsConstant() const { return kind >= TokenKind::Integer && kind <= TokenKind::NationalText; }
    bool IsName() const { return kind == TokenKind::Name || kind == TokenKind::QuotedName; }
};

// The token at or behind position `at` of `text`, blanks and comments skipped; `at` goes behind it. Allocates nothing.
Token NextToken(std::string_view text, std::size_t &at);

// What a name or text token stands for: without quotes, doubled quotes made single.
std::string Unquoted(const Token &token);

} // namespace tsql
