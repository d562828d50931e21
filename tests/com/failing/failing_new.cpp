// The operator new of KVHEADERS_failing.dll, the component whose allocations fail when a test says so.
#include <windows.h>

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace
{

std::atomic<long> left = -1; // allocations that are still let through; negative: all
std::atomic<long> live = 0;

void *Allocate(std::size_t size)
{
    if (left >= 0 && left-- == 0)
        throw std::bad_alloc();
    void *const memory = std::malloc(size > 0 ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    ++live;
    return memory;
}

void Free(void *memory)
{
    if (!memory)
        return;
    --live;
    std::memset(memory, 0xDD, _msize(memory)); // whoever still uses it shall notice
    std::free(memory);
}

} // namespace

// The allocation number `n` from now on fails (from 1), and no other. With 0 none fails any more. Gives whether the one
// that was ordered before has failed.
extern "C" __declspec(dllexport) bool FailAllocation(long n)
{
    return left.exchange(n - 1) == -1;
}

extern "C" __declspec(dllexport) long LiveAllocations()
{
    return live;
}

#include "support/replaced_new.h"
