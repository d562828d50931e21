// Cuts a line of a scenario into its words: see words.h.
#include "script/words.h"

#include "script/failure.h"

namespace scenario
{

namespace
{

constexpr std::string_view kBlanks = " \t\r";

char Unescaped(char letter)
{
    switch (letter)
    {
    case '"':
    case '\\':
        return letter;
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case 'n':
        return '\n';
    default:
        throw Refusal(std::string("unknown escape \\") + letter);
    }
}

// Takes a quoted word off the text, which starts at its opening quote; returns the place behind its closing quote.
std::size_t TakeQuoted(std::string_view text, std::size_t at, Word &word)
{
    word.quoted = true;
    for (++at; at < text.size(); ++at)
    {
        if (text[at] == '"')
            return at + 1;
        if (text[at] == '\\')
        {
            if (++at == text.size())
                break;
            word.text += Unescaped(text[at]);
        }
        else
            word.text += text[at];
    }
    throw Refusal("a quote is not closed");
}

} // namespace

Line SplitLine(std::string_view text)
{
    Line line;
    std::size_t at = text.find_first_not_of(kBlanks);
    const std::size_t start = at;
    std::size_t end = at;
    while (at < text.size() && text[at] != '#')
    {
        Word word;
        if (text[at] == '"')
            at = TakeQuoted(text, at, word);
        else
        {
            const std::size_t behind = std::min(text.find_first_of(" \t\r\"#", at), text.size());
            word.text = text.substr(at, behind - at);
            at = behind;
        }
        if (at < text.size() && kBlanks.find(text[at]) == std::string_view::npos && text[at] != '#')
            throw Refusal("a blank is missing between two words");
        line.words.push_back(std::move(word));
        end = at;
        at = std::min(text.find_first_not_of(kBlanks, at), text.size());
    }
    if (!line.words.empty())
        line.echo = text.substr(start, end - start);
    return line;
}

} // namespace scenario
