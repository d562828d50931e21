// Texts: blanks, upper case beyond ASCII, counting in characters, UTF-16.
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace
{

using namespace runtime;

TEST(Text, TrimTakesBlanksOnly)
{
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim("    "), "");
    EXPECT_EQ(Trim("\t a\r\n "), "\t a\r\n");
    EXPECT_EQ(TrimRight("  a  "), "  a");
}

TEST(Text, UpperCaseKnowsLettersBeyondAscii)
{
    EXPECT_EQ(UpperCase("aZ09_"), "AZ09_");
    EXPECT_EQ(UpperCase("äöüéñçœ"), "ÄÖÜÉÑÇŒ");
    EXPECT_EQ(UpperCase("ÿ"), "Ÿ");
    EXPECT_EQ(UpperCase("ß÷"), "ß÷");
    EXPECT_EQ(UpperCase("žšłőăą"), "ŽŠŁŐĂĄ");
    EXPECT_EQ(UpperCase("αβγάώςόύӏ"), "ΑΒΓΆΏΣΌΎӀ");
    EXPECT_EQ(UpperCase("жёќ"), "ЖЁЌ");
    EXPECT_EQ(UpperCase("ĸı"), "ĸı");
    EXPECT_EQ(UpperCase("日本😀"), "日本😀");
}

TEST(Text, UpperCaseLeavesUpperCaseAlone)
{
    for (const char *text : {"ÄÖÜÉÑ", "ŽŠŁ", "ΑΒΓΆ", "ЖЁЌ", "ǅ"})
        EXPECT_EQ(UpperCase(UpperCase(text)), UpperCase(text)) << text;
}

TEST(Text, EqualNoCaseComparesUpperCase)
{
    EXPECT_TRUE(EqualNoCase("frmHeadings", "FRMHEADINGS"));
    EXPECT_TRUE(EqualNoCase("été", "ÉTÉ"));
    EXPECT_FALSE(EqualNoCase("a", "a "));
    EXPECT_FALSE(EqualNoCase("a", "ab"));
    EXPECT_FALSE(EqualNoCase("\xFF", "\xFE"));
    EXPECT_TRUE(EqualNoCase("\xFF", "\xFF"));
}

TEST(Text, LeftNeverSplitsACharacter)
{
    EXPECT_EQ(Left("abc", 2), "ab");
    EXPECT_EQ(Left("abc", 5), "abc");
    EXPECT_EQ(Left("äöü", 2), "äö");
    EXPECT_EQ(Left("😀😀", 1), "😀");
    EXPECT_EQ(Without("Key12", 3), "12");
    EXPECT_EQ(Without("äö", 1), "ö");
    EXPECT_EQ(Without("a", 3), "");
    EXPECT_EQ(Length("aä😀"), 3u);
    EXPECT_EQ(Length("\xFF\xFE"), 2u);
}

TEST(Text, Utf16BothWays)
{
    EXPECT_EQ(ToUtf16("aä😀"), u"aä😀");
    EXPECT_EQ(FromUtf16(u"aä😀"), "aä😀");
    EXPECT_EQ(ToUtf16("a\xFFz"), u"a\uFFFDz");
    const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00};
    EXPECT_EQ(FromUtf16({lone, 4}), "a\xEF\xBF\xBD"
                                    "b\xEF\xBF\xBD");
}

TEST(Text, BrokenUtf8IsNeverRead)
{
    // Overlong, surrogate, beyond U+10FFFF, cut short: each byte counts as a broken character of its own.
    for (const char *text : {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xF8", "\x80"})
    {
        EXPECT_EQ(FirstCharacter(text).code, 0xFFFDu);
        EXPECT_EQ(FirstCharacter(text).length, 1u);
    }
    EXPECT_EQ(FirstCharacter("€").code, 0x20ACu);
}

} // namespace
