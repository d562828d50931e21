// This program as a process.
#pragma once

#include <string>
#include <vector>

namespace scenario
{

// Whether this process can play another scenario. The component keeps its settings for as long as it is loaded: it can
// where the component is unloaded with its stage.
bool PlaysAgain();

// Runs this program once more, with these arguments and the same output, and gives its exit status; 1 when it could not
// be started or came to a bad end.
int RunItself(const std::vector<std::string> &arguments);

// Standard output and error keep line breaks as they are written.
void LeaveLineEnds();

} // namespace scenario
