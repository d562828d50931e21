// This program as a process: see process.h.
#include "play/process.h"

#include "windowed/stage.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

namespace scenario
{

std::unique_ptr<Stage> MakeStage(Audience &audience)
{
    return std::make_unique<WindowStage>(audience);
}

int PlayApart(const std::vector<std::string> &, const std::function<int()> &play)
{
    return play();
}

void LeaveLineEnds()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

} // namespace scenario
