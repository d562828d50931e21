// Comparing plays with approved transcripts: see verdict.h.
#include "acceptance/verdict.h"

#include <algorithm>
#include <cstdio>

namespace acceptance
{

namespace
{

using Lines = std::vector<std::string_view>;

Lines Split(std::string_view text)
{
    Lines lines;
    while (!text.empty())
    {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.push_back(line);
    }
    return lines;
}

bool IsStatement(std::string_view line)
{
    return line.starts_with("sql ") || line.starts_with("sql! ") || line.starts_with("  error ");
}

// Some lines from a place on, each behind its heading.
std::string Excerpt(const char *heading, const Lines &lines, std::size_t from)
{
    constexpr std::size_t kMost = 6;
    std::string text;
    for (std::size_t i = from; i < std::min(from + kMost, lines.size()); ++i)
        text.append("    ").append(heading).append(lines[i]).append("\n");
    return text.empty() ? std::string("    ") + heading + "(its end)\n" : text;
}

} // namespace

Verdict Judge(const std::string &scenario, const Play &play, std::string_view approved)
{
    Verdict verdict{scenario, "", play.took};
    if (play.status != 0)
        verdict.difference = "  not played to its end (exit status " + std::to_string(play.status) + "):\n";
    for (const std::string_view line : Split(play.problem))
        verdict.difference.append("    ").append(line).append("\n");
    Lines expected = Split(approved);
    std::erase_if(expected, IsStatement);
    const Lines played = Split(play.transcript);
    const auto [one, other] = std::ranges::mismatch(expected, played);
    if (one == expected.end() && other == played.end())
        return verdict;
    const auto at = static_cast<std::size_t>(one - expected.begin());
    const std::string echo = at == 0 ? "" : " behind \"" + std::string(expected[at - 1]) + "\"";
    verdict.difference += "  differs from line " + std::to_string(at + 1) + " on" + echo + ":\n" +
                          Excerpt("approved  ", expected, at) + Excerpt("played    ", played, at);
    return verdict;
}

std::string TableLine(const Verdict &verdict)
{
    char line[256];
    std::snprintf(line, sizeof line, "%-52s %-6s %7.1f s", verdict.scenario.c_str(),
                  verdict.Passed() ? "passed" : "FAILED", static_cast<double>(verdict.took.count()) / 1000);
    return line;
}

std::string Totals(const std::vector<Verdict> &verdicts)
{
    const auto passed = static_cast<std::size_t>(std::ranges::count_if(verdicts, &Verdict::Passed));
    return std::to_string(verdicts.size()) + " scenarios, " + std::to_string(passed) + " passed, " +
           std::to_string(verdicts.size() - passed) + " failed";
}

std::string Report(const std::vector<std::pair<std::string, std::string>> &facts, const std::vector<Verdict> &verdicts)
{
    std::string text = "KVHEADERS: acceptance\n\n";
    for (const auto &[name, value] : facts)
        text += name + std::string(name.size() < 14 ? 14 - name.size() : 1, ' ') + value + "\n";
    text += "\n";
    for (const Verdict &verdict : verdicts)
        text += TableLine(verdict) + "\n";
    for (const Verdict &verdict : verdicts)
        if (!verdict.Passed())
            text += "\n" + verdict.scenario + "\n" + verdict.difference;
    return text + "\n" + Totals(verdicts) + "\n";
}

} // namespace acceptance
