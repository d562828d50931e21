// The answers that a scenario has ready: see answers.h.
#include "play/answers.h"

namespace scenario
{

void Answers::Add(const Command &command)
{
    for (const Word &word : command.arguments)
        m_waiting.push_back({word.text, command.line});
}

std::optional<std::string> Answers::Take()
{
    if (m_waiting.empty())
        return std::nullopt;
    std::string word = std::move(m_waiting.front().word);
    m_waiting.pop_front();
    return word;
}

std::string Answers::Words() const
{
    std::string words;
    for (const Waiting &waiting : m_waiting)
        words += (words.empty() ? "" : " ") + waiting.word;
    return words;
}

} // namespace scenario
