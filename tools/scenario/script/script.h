// A scenario as it was read: its commands, checked as far as that goes without playing it.
#pragma once

#include "script/commands.h"
#include "script/words.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace scenario
{

struct Command
{
    int line = 0;
    const CommandForm *form = nullptr;
    std::vector<Word> arguments;
    std::string echo;
    // The statements that succeed and contain this are left out of the transcript: behind "without", and all of them
    // behind "quiet".
    std::optional<std::string> without;

    const std::string &Text(std::size_t place) const { return arguments[place].text; }
    // An argument that is a whole number.
    int Number(std::size_t place) const;
};

struct Script
{
    std::string file;             // as given, for messages
    std::filesystem::path folder; // what its paths are relative to
    std::vector<Command> commands;
};

// Reads a whole script. Throws Failure at the first line that is no command: unknown name, wrong number of words, a
// word that must be a number and is none, an answer that no box gives.
Script ParseScript(const std::string &file, std::string_view text);

} // namespace scenario
