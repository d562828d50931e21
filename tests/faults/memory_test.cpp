// Every allocation of a day fails, natively: the component's own, since the driver has an operator new of its own.
#include "day.h"

#include <cstdlib>
#include <new>

namespace
{

// Allocations that are still let through before one fails.
long s_left = -1;
bool s_acting = false;
bool s_fired = false;

void *Allocate(std::size_t size)
{
    if (s_acting && s_left >= 0 && s_left-- == 0)
    {
        s_fired = true;
        throw std::bad_alloc();
    }
    if (void *const memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

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
    std::free(memory);
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace faults
{

namespace
{

class FailingAllocation final : public Fault
{
public:
    explicit FailingAllocation(int place)
    {
        s_left = place - 1;
        s_fired = false;
    }
    ~FailingAllocation() override { s_left = -1; }
    void Acting(bool acting) override
    {
        s_acting = acting;
        if (s_fired)
            s_left = -1;
    }
    bool Fired(const support::TestDatabase &) const override { return s_fired; }
    bool MayBeSilent() const override { return true; }
};

TEST(Allocations, FailOneByOneAndNothingIsLost)
{
    CountDown(67, [](int place) { return std::make_unique<FailingAllocation>(place); });
}

} // namespace

} // namespace faults
