// What makes a scenario fail: a command that could not be carried out.
#pragma once

#include <stdexcept>
#include <string>

namespace scenario
{

// The reason, without file and line: those are added where the command is known.
struct Refusal : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// The whole message: FILE:LINE: REASON.
struct Failure : std::runtime_error
{
    Failure(const std::string &file, int line, const std::string &reason)
        : std::runtime_error(file + ":" + std::to_string(line) + ": " + reason)
    {
    }
};

} // namespace scenario
