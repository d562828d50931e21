// Cutting batches into tokens.
#include "tsql/token.h"

#include <gtest/gtest.h>

namespace
{

using tsql::Token;
using tsql::TokenKind;
using tsql::Word;

std::string Cut(std::string_view text)
{
    std::string out;
    std::size_t at = 0;
    for (;;)
    {
        const Token token = tsql::NextToken(text, at);
        if (token.kind == TokenKind::End)
            return out;
        constexpr const char *kinds[] = {"end",      "name",    "quoted",  "word",     "variable",
                                         "global",   "integer", "decimal", "float",    "text",
                                         "national", "op",      "bad",     "unclosed", "comment"};
        out +=
            (out.empty() ? "" : " ") + std::string(kinds[static_cast<int>(token.kind)]) + ":" + std::string(token.text);
        if (token.kind >= TokenKind::Bad)
            return out;
    }
}

struct TokenCase
{
    const char *name;
    const char *text;
    const char *tokens;
};

TEST(Token, KindsOfTokens)
{
    constexpr TokenCase cases[] = {
        {"nothing", "", ""},
        {"blanks only", " \t\r\n", ""},
        {"a number may stand directly before a keyword", "flag1 = 5ORDER BY",
         "name:flag1 op:= integer:5 word:ORDER word:BY"},
        {"a closing parenthesis before a keyword", ")ORDER", "op:) word:ORDER"},
        {"keywords in any case", "select SeLeCt", "word:select word:SeLeCt"},
        {"a word that only begins like a keyword", "SELECTED", "name:SELECTED"},
        {"decimal", "1.5 .5 1.", "decimal:1.5 decimal:.5 decimal:1."},
        {"float", "1e5 1.5E-3 2e+1", "float:1e5 float:1.5E-3 float:2e+1"},
        {"an e without digits begins a word", "5ELSE", "integer:5 word:ELSE"},
        {"binary constants are not known", "0x1F", "bad:0x1F"},
        {"text with a doubled quote", "'O''Brien'", "text:'O''Brien'"},
        {"empty text", "''", "text:''"},
        {"national text", "N'a' n'b'", "national:N'a' national:n'b'"},
        {"n as a name", "n name", "name:n name:name"},
        {"bracketed name with a doubled bracket", "[a]]b] c", "quoted:[a]]b] name:c"},
        {"quoted name", "\"select\"", "quoted:\"select\""},
        {"variables", "@a @@ROWCOUNT", "variable:@a global:@@ROWCOUNT"},
        {"an at sign alone", "@ ", "bad:@"},
        {"operators", "<= >= <> != !< !> < > = + - * / % & | ^ ~",
         "op:<= op:>= op:<> op:!= op:!< op:!> op:< op:> op:= op:+ op:- op:* op:/ op:% op:& op:| op:^ op:~"},
        {"an exclamation mark alone", "!a", "bad:!"},
        {"dotted name", "dbo.t.c", "name:dbo op:. name:t op:. name:c"},
        {"line comment", "1 -- two\n3", "integer:1 integer:3"},
        {"line comment at the end", "1 -- two", "integer:1"},
        {"block comment", "1/* two */3", "integer:1 integer:3"},
        {"block comments nest", "1 /* a /* b */ c */ 2", "integer:1 integer:2"},
        {"a comment mark inside a text", "'--' '/*'", "text:'--' text:'/*'"},
        {"letters beyond ASCII", "\xC3\xA9tat", "name:\xC3\xA9tat"},
        {"an unclosed text", "'abc", "unclosed:'abc"},
        {"an unclosed bracket", "[abc", "unclosed:[abc"},
        {"an unclosed comment", "/* abc", "comment:/* abc"},
        {"an unclosed inner comment", "/* /* */", "comment:/* /* */"},
        {"a character without a use", "?", "bad:?"},
        {"a backslash", "\\", "bad:\\"},
    };
    for (const TokenCase &one : cases)
        EXPECT_EQ(one.tokens, Cut(one.text)) << one.name;
}

TEST(Token, ReservedWordsOutsideTheDialectAreKeywordsToo)
{
    for (const char *word : {"EXCEPT", "INTERSECT", "EXEC", "WHILE", "GOTO", "REFERENCES", "WAITFOR"})
    {
        std::size_t at = 0;
        const Token token = tsql::NextToken(word, at);
        EXPECT_EQ(TokenKind::Keyword, token.kind) << word;
        EXPECT_EQ(Word::Reserved, token.word) << word;
    }
}

TEST(Token, EveryByteMovesOn)
{
    for (int c = 0; c < 256; ++c)
    {
        const std::string text(3, static_cast<char>(c));
        std::size_t at = 0;
        std::size_t before = 0;
        while (tsql::NextToken(text, at).kind != TokenKind::End)
        {
            ASSERT_GT(at, before) << c;
            before = at;
        }
        EXPECT_EQ(text.size(), at) << c;
    }
}

TEST(Token, UnquotedTakesQuotesAwayAndHalvesDoubledOnes)
{
    const auto unquoted = [](std::string_view text)
    {
        std::size_t at = 0;
        return tsql::Unquoted(tsql::NextToken(text, at));
    };
    EXPECT_EQ("O'Brien", unquoted("'O''Brien'"));
    EXPECT_EQ("a]b", unquoted("[a]]b]"));
    EXPECT_EQ("a\"b", unquoted("\"a\"\"b\""));
    EXPECT_EQ("x", unquoted("N'x'"));
    EXPECT_EQ("", unquoted("''"));
    EXPECT_EQ("name", unquoted("name"));
}

} // namespace
