// The plays of the scenarios, compared with their approved transcripts, and the report on them.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace acceptance
{

// How the scenario player has ended, and what it has printed.
struct Play
{
    int status = 0; // its exit status
    std::string transcript;
    std::string problem; // of standard error
    std::chrono::milliseconds took{};
};

struct Verdict
{
    std::string scenario;
    std::string difference; // what is wrong, line by line; empty: passed
    std::chrono::milliseconds took{};

    bool Passed() const { return difference.empty(); }
};

// Compares a play with the approved transcript, which has the statements too: those are passed over, since a data
// source does not tell them.
Verdict Judge(const std::string &scenario, const Play &play, std::string_view approved);

// One line of the table, without a line end.
std::string TableLine(const Verdict &verdict);

// "N scenarios, N passed, N failed"
std::string Totals(const std::vector<Verdict> &verdicts);

// The whole report: facts of machine and component (name and value), the table, the differences, the totals.
std::string Report(const std::vector<std::pair<std::string, std::string>> &facts, const std::vector<Verdict> &verdicts);

} // namespace acceptance
