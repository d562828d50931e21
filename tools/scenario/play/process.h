// This program as a process.
#pragma once

#include "play/stage.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace scenario
{

// The stage that this program has; there is one a process.
std::unique_ptr<Stage> MakeStage(Audience &audience);

// Plays one of several scenarios, and gives what `play` gives: its exit status. The component keeps its settings for as
// long as it is loaded: where it is part of this program the program is run once more, with these arguments and the
// same output (1 when that came to a bad end); where it is unloaded with its stage, `play` is called here.
int PlayApart(const std::vector<std::string> &arguments, const std::function<int()> &play);

// Standard output and error keep line breaks as they are written.
void LeaveLineEnds();

} // namespace scenario
