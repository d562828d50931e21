// One-line types for handles of the system.
#pragma once

#include <utility>

namespace platform
{

// Owns a handle; `Close` is called once, when the handle is not `Invalid`.
template <class Handle, auto Close, Handle Invalid = Handle{}>
class UniqueHandle
{
public:
    UniqueHandle() = default;
    explicit UniqueHandle(Handle handle) : m_handle(handle) {}
    UniqueHandle(UniqueHandle &&other) noexcept : m_handle(std::exchange(other.m_handle, Invalid)) {}
    UniqueHandle &operator=(UniqueHandle other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~UniqueHandle()
    {
        if (m_handle != Invalid)
            Close(m_handle);
    }

    Handle get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != Invalid; }

private:
    Handle m_handle = Invalid;
};

} // namespace platform
