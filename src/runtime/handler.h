// One handler at a time: whether a handler of the component's window runs, and the end of one whose window is gone.
#pragma once

namespace runtime
{

// Thrown in the middle of a handler whose window is gone, from where it has let messages through. It is no error:
// traps let it pass, and the handler ends without a word.
struct HandlerCancelled
{
};

// A handler runs while one of these lives: an act at the window, or the opening of it. They nest.
class HandlerScope
{
public:
    HandlerScope() noexcept;
    ~HandlerScope();
    HandlerScope(const HandlerScope &) = delete;
    HandlerScope &operator=(const HandlerScope &) = delete;
};

// True while a handler runs. It can let messages through, but nothing can wait for it: it continues only after the
// message.
bool HandlerRunning() noexcept;

// The window of the handler that runs is gone. Does nothing while none runs.
void CancelHandler() noexcept;

// Throws HandlerCancelled from the cancelling on, until the outermost handler has ended.
void ThrowIfCancelled();

} // namespace runtime
