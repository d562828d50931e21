// The commands of a script that mean the same in every play.
#pragma once

#include "play/source.h"
#include "play/stage.h"
#include "script/script.h"

namespace scenario
{

// Carries out what a host or a user does, a statement of others, or an order of failures. Commands that cannot be
// carried out, and those of the play itself (data, query, site, registry, answer, dump), are a Refusal.
void CarryOut(const Command &command, Stage &stage, Source &source);

} // namespace scenario
