// Who sees the messages of the thread's queue before the windows do.
#pragma once

#include <windows.h>

#include <functional>

namespace platform
{

// True when the message is done with.
using MessageFilter = std::function<bool(const MSG &)>;

// What Desktop::DoEvents asks about each message: the keys of a form as a whole work there as they do in its own loop.
// One at a time, from one thread; an empty one ends it. Returns the one before, which may be put back.
MessageFilter SetMessageFilter(MessageFilter filter);

// Asks it.
bool Filtered(const MSG &message);

} // namespace platform
