// The number of the error that an action raises.
#pragma once

#include "runtime/error_trap.h"

#include <cstdint>
#include <utility>

namespace support
{

// 0 when it raises none.
template <class Action>
std::int32_t NumberOf(Action &&action)
{
    runtime::ErrorTrap trap;
    trap.Try(std::forward<Action>(action));
    return trap.Number();
}

} // namespace support
