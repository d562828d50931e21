// Cuts a line of a scenario into its words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace scenario
{

struct Word
{
    std::string text;
    bool quoted = false;
    friend bool operator==(const Word &, const Word &) = default;
};

struct Line
{
    std::vector<Word> words;
    std::string echo; // from the first word to the last, as written
};

// Words are separated by blanks (and tabs); "#" outside quotes starts a comment. Inside quotes \" \\ \t \r \n mean what
// they mean in C. Refusal for quotes that are not closed, for another escape, and for a quote in or right behind a
// word.
Line SplitLine(std::string_view text);

} // namespace scenario
