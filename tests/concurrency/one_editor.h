// One editor of several that work on the same database at once: a process of its own.
#pragma once

#include <string>
#include <vector>

namespace concurrency
{

// What editor N works on: partition 10 + N and account 100 + N are its own, and formats and headings from N * 1000 on.
constexpr int Partition(int editor)
{
    return 10 + editor;
}
constexpr int Account(int editor)
{
    return 100 + editor;
}
constexpr int Record(int editor, int round)
{
    return editor * 1000 + round;
}

// A name with which an editor leaves a record in a round.
std::string Named(const std::string &what, int editor, int round);

enum class Work
{
    Edit, // round i renames format and heading i, toggles a box of the format and chooses it for the heading
    Add,  // each round adds a format and a heading
};

struct Orders
{
    std::string database; // as a host names it
    int editor = 1;
    int rounds = 1; // each opens the window, works and saves
    Work work = Work::Edit;
};

// What happened in a round: the numbers that were handed out, 0 when none were asked for, and the boxes that came up.
struct Round
{
    int format = 0;
    int heading = 0;
    std::vector<std::string> boxes;
};

std::vector<Round> WorkAsOrdered(const Orders &orders);

// A file from the process that works to the one that has started it.
void WriteRounds(const std::string &path, const std::vector<Round> &rounds);
std::vector<Round> ReadRounds(const std::string &path);

} // namespace concurrency
