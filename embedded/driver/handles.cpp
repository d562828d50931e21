// The handles that callers hold: see handles.h.
#include "handles.h"

#include <cstdint>
#include <unordered_map>

namespace driver
{
namespace
{

struct Table
{
    std::mutex lock;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Handle>> objects;
    std::uintptr_t last = 0x1000; // numbers are never used again, so that a freed handle is known as such
};

// Never destroyed: a host may still free handles while the process ends.
Table &TheTable()
{
    static Table *const table = new Table;
    return *table;
}

} // namespace

SQLHANDLE RegisterHandle(std::shared_ptr<Handle> object)
{
    Table &table = TheTable();
    const std::lock_guard hold(table.lock);
    table.last += 8;
    table.objects.emplace(table.last, std::move(object));
    return reinterpret_cast<SQLHANDLE>(table.last);
}

std::shared_ptr<Handle> FindHandle(SQLHANDLE handle)
{
    Table &table = TheTable();
    const std::lock_guard hold(table.lock);
    const auto found = table.objects.find(reinterpret_cast<std::uintptr_t>(handle));
    return found == table.objects.end() ? nullptr : found->second;
}

void RemoveHandle(SQLHANDLE handle)
{
    Table &table = TheTable();
    std::shared_ptr<Handle> last; // destroyed after the lock is given back
    const std::lock_guard hold(table.lock);
    if (const auto found = table.objects.find(reinterpret_cast<std::uintptr_t>(handle)); found != table.objects.end())
    {
        last = std::move(found->second);
        table.objects.erase(found);
    }
}

void RemoveHandlesUnder(const Handle &owner)
{
    Table &table = TheTable();
    std::vector<std::shared_ptr<Handle>> dropped;
    const std::lock_guard hold(table.lock);
    for (auto entry = table.objects.begin(); entry != table.objects.end();)
    {
        if (entry->second.get() != &owner && entry->second->Lock() == owner.Lock())
        {
            dropped.push_back(std::move(entry->second));
            entry = table.objects.erase(entry);
        }
        else
            ++entry;
    }
}

} // namespace driver
