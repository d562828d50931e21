// The handler that runs. There is one thread with windows.
#include "runtime/handler.h"

namespace runtime
{

namespace
{

int s_running = 0;
bool s_cancelled = false;

} // namespace

HandlerScope::HandlerScope() noexcept
{
    ++s_running;
}

HandlerScope::~HandlerScope()
{
    if (--s_running == 0)
        s_cancelled = false;
}

bool HandlerRunning() noexcept
{
    return s_running > 0;
}

void CancelHandler() noexcept
{
    s_cancelled = s_running > 0;
}

void ThrowIfCancelled()
{
    if (s_cancelled)
        throw HandlerCancelled();
}

} // namespace runtime
