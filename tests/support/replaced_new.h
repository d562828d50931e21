// The operators new and delete by two functions of the file that includes this, once a program or library: Allocate,
// which throws std::bad_alloc, and Free.
#pragma once

#include <cstddef>
#include <new>

void *operator new(std::size_t size)
{
    return Allocate(size);
}
void *operator new[](std::size_t size)
{
    return Allocate(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    try
    {
        return Allocate(size);
    }
    catch (const std::bad_alloc &)
    {
        return nullptr;
    }
}
void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    Free(memory);
}
void operator delete(void *memory) noexcept
{
    Free(memory);
}
void operator delete[](void *memory) noexcept
{
    Free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    Free(memory);
}
void operator delete[](void *memory, std::size_t) noexcept
{
    Free(memory);
}
