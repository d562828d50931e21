// Sort keys: the weights of all characters, then what tells marked letters from plain ones.
#include "runtime/collation.h"

#include "runtime/text.h"

#include <array>

namespace runtime
{

namespace
{

// The base letters of U+00C0 to U+017F; '*' for the two signs among them.
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

// The order of the characters: punctuation, digits, Latin letters, all others. A weight is one byte for ASCII and for
// Latin letters; other punctuation follows that of ASCII with a byte of its own, all others are represented by their
// UTF-8.
struct Weights
{
    std::array<char, 128> ascii{};
    char otherPunctuation = 0;

    constexpr Weights()
    {
        const auto isDigit = [](int c) { return c >= '0' && c <= '9'; };
        const auto isLetter = [](int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
        char next = 1; // 0 ends the weights of a text
        for (int c = 0; c < 128; ++c)
            if (!isDigit(c) && !isLetter(c))
                ascii[c] = next++;
        otherPunctuation = next++;
        for (int c = '0'; c <= '9'; ++c)
            ascii[c] = next++;
        for (int c = 'A'; c <= 'Z'; ++c)
            ascii[c] = ascii[c - 'A' + 'a'] = next++;
    }
};
constexpr Weights kWeights;

void AppendWeight(std::string &to, char32_t code, char32_t base)
{
    if (base != 0)
        to += kWeights.ascii[base];
    else if (code < kFirstMarked)
        to.append({kWeights.otherPunctuation, static_cast<char>(code)});
    else
        AppendCharacter(to, UpperCase(code));
}

} // namespace

void AppendSortKey(std::string &to, std::string_view text)
{
    text = TrimRight(text);
    bool marked = false;
    for (std::string_view rest = text; !rest.empty();)
    {
        const auto byte = static_cast<unsigned char>(rest.front());
        const Character character = byte < 0x80 ? Character{byte, 1} : FirstCharacter(rest);
        if (byte < 0x80)
            to += kWeights.ascii[byte];
        else
        {
            const char32_t base = BaseLetter(character.code);
            marked = marked || base != 0;
            AppendWeight(to, character.code, base);
        }
        rest.remove_prefix(character.length);
    }
    if (!marked)
        return;
    to += '\0';
    to += UpperCase(text);
}

} // namespace runtime
