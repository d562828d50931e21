// The scenario player as a process.
#pragma once

#include "acceptance/verdict.h"

#include <string>
#include <vector>

namespace acceptance
{

// Runs a program with these arguments in the current folder, and keeps its output. After ten minutes it is ended.
// Ctrl+C does not reach it. Problem when it cannot be started.
Play RunPlayer(const std::wstring &program, const std::vector<std::string> &arguments);

} // namespace acceptance
