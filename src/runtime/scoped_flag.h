// A flag that is set for the length of a block.
#pragma once

#include <utility>

namespace runtime
{

// Sets the flag, and gives it the value it had before when the block ends, also by an error.
class ScopedFlag
{
public:
    explicit ScopedFlag(bool &flag) noexcept : m_flag(flag), m_before(std::exchange(flag, true)) {}
    ~ScopedFlag() { m_flag = m_before; }
    ScopedFlag(const ScopedFlag &) = delete;
    ScopedFlag &operator=(const ScopedFlag &) = delete;

private:
    bool &m_flag;
    bool m_before;
};

} // namespace runtime
