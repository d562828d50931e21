// The answers that a scenario has ready for the message boxes to come.
#pragma once

#include "script/script.h"

#include <deque>
#include <optional>
#include <string>

namespace scenario
{

class Answers
{
public:
    void Add(const Command &command);

    // The next one; nothing when none is left.
    std::optional<std::string> Take();

    bool Empty() const { return m_waiting.empty(); }
    // Those left over, as words, and the line of the first of them.
    std::string Words() const;
    int Line() const { return m_waiting.front().line; }

private:
    struct Waiting
    {
        std::string word;
        int line;
    };
    std::deque<Waiting> m_waiting;
};

} // namespace scenario
