// The trap of a routine that carries on after an error and reports the last one at its end.
#pragma once

#include "runtime/error.h"
#include "runtime/handler.h"

#include <optional>
#include <string>
#include <utility>

namespace runtime
{

// Each step of the routine runs inside Try; a step that fails is left at its error, and the error stays pending until
// another one replaces it. A trap belongs to its routine: it neither sees nor clears the trap of a caller.
class ErrorTrap
{
public:
    // Runs a step. True when it came to its end, false when it raised an error, which is then pending. What cancels the
    // whole handler (HandlerCancelled) passes.
    template <class Step>
    bool Try(Step &&step)
    {
        try
        {
            std::forward<Step>(step)();
            return true;
        }
        catch (const HandlerCancelled &)
        {
            throw;
        }
        catch (...)
        {
            m_last = CurrentError();
            return false;
        }
    }

    bool Pending() const noexcept { return m_last.has_value(); }
    // The pending error's number, 0 without one.
    std::int32_t Number() const noexcept { return m_last ? m_last->Number() : 0; }
    // The pending error's description, empty without one.
    std::string Description() const { return m_last ? m_last->Description() : std::string(); }

private:
    std::optional<Error> m_last;
};

} // namespace runtime
