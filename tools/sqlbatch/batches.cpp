// Cuts a T-SQL script into its batches: see batches.h.
#include "batches.h"

namespace sqlbatch
{
namespace
{

constexpr std::string_view Blanks = " \t\r\n";

bool IsBlank(std::string_view text)
{
    return text.find_first_not_of(Blanks) == std::string_view::npos;
}

bool IsGo(std::string_view line)
{
    const size_t first = line.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return false;
    const std::string_view word = line.substr(first, line.find_last_not_of(Blanks) - first + 1);
    return word.size() == 2 && (word[0] | 0x20) == 'g' && (word[1] | 0x20) == 'o';
}

} // namespace

std::vector<Batch> SplitBatches(std::string_view script)
{
    if (script.substr(0, 3) == "\xEF\xBB\xBF")
        script.remove_prefix(3);
    std::vector<Batch> batches;
    Batch current{"", 0};
    const auto end = [&]
    {
        if (current.line != 0)
            batches.push_back(std::move(current));
        current = {"", 0};
    };
    for (int number = 1; !script.empty(); ++number)
    {
        const size_t length = std::min(script.find('\n'), script.size() - 1) + 1;
        const std::string_view line = script.substr(0, length);
        script.remove_prefix(length);
        if (IsGo(line))
        {
            end();
            continue;
        }
        if (current.line == 0 && IsBlank(line))
            continue;
        if (current.line == 0)
            current.line = number;
        current.text += line;
    }
    end();
    return batches;
}

} // namespace sqlbatch
