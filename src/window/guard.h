// The boundary between C++ and the system's callbacks.
#pragma once

#include <utility>

namespace window
{

// Runs what a window procedure or another callback of the system does; no exception leaves. Returns its result, or
// `otherwise` when it has raised something.
template <class Result, class Act>
Result Guarded(Result otherwise, Act &&act) noexcept
{
    try
    {
        return std::forward<Act>(act)();
    }
    catch (...)
    {
        return otherwise;
    }
}

// The same without a result.
template <class Act>
void Guarded(Act &&act) noexcept
{
    try
    {
        std::forward<Act>(act)();
    }
    catch (...)
    {
        // The window stays as it is.
    }
}

} // namespace window
