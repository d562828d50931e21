// Sort keys: the weights of all characters, then what tells marked letters from plain ones.
#include "runtime/collation.h"

#include "runtime/text.h"

namespace runtime
{

namespace
{

// The base letters of U+00C0 to U+017F; '*' for the two signs that stand among them.
constexpr std::string_view kBaseLetters = "AAAAAAACEEEEIIIIDNOOOOO*OUUUUYTS"
                                          "AAAAAAACEEEEIIIIDNOOOOO*OUUUUYTY"
                                          "AAAAAACCCCCCCCDDDDEEEEEEEEEEGGGG"
                                          "GGGGHHHHIIIIIIIIIIIIJJKKKLLLLLLL"
                                          "LLLNNNNNNNNNOOOOOOOORRRRRRSSSSSS"
                                          "SSTTTTTTUUUUUUUUUUUUWWYYYZZZZZZS";
constexpr char32_t kFirstMarked = 0xC0;

// The base letter of a Latin letter with a mark, 0 for any other character.
char32_t BaseLetter(char32_t code)
{
    const std::size_t place = code - kFirstMarked;
    if (code < kFirstMarked || place >= kBaseLetters.size() || kBaseLetters[place] == '*')
        return 0;
    return static_cast<unsigned char>(kBaseLetters[place]);
}

// Where a character in upper case stands: punctuation, digits, Latin letters, all others.
char32_t Weight(char32_t upper, char32_t base)
{
    constexpr char32_t kDigits = 0x100;
    constexpr char32_t kLetters = 0x200;
    constexpr char32_t kOthers = 0x1000;
    if (base != 0)
        return kLetters + base;
    if (upper >= '0' && upper <= '9')
        return kDigits + upper;
    if (upper >= 'A' && upper <= 'Z')
        return kLetters + upper;
    return upper < kFirstMarked ? upper : kOthers + upper;
}

} // namespace

void AppendSortKey(std::string &to, std::string_view text)
{
    text = TrimRight(text);
    bool marked = false;
    for (std::string_view rest = text; !rest.empty();)
    {
        const Character character = FirstCharacter(rest);
        const char32_t base = BaseLetter(character.code);
        marked = marked || base != 0;
        AppendCharacter(to, Weight(UpperCase(character.code), base));
        rest.remove_prefix(character.length);
    }
    if (!marked)
        return;
    to += '\0'; // before every weight
    to += UpperCase(text);
}

} // namespace runtime
