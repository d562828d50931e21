// The headless stage: commands act on the toolkit-neutral controls of the window.
#pragma once

#include "play/stage.h"

namespace scenario
{

// There is one a process at a time.
std::unique_ptr<Stage> MakeHeadlessStage(Audience &audience);

} // namespace scenario
