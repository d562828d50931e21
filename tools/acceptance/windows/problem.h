// What keeps the acceptance from being begun.
#pragma once

#include <stdexcept>

namespace acceptance
{

struct Problem : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

} // namespace acceptance
