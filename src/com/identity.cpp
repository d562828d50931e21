// Which object shows which record.
#include "com/identity.h"

#include <mutex>
#include <unordered_map>

namespace com
{

namespace
{
// A host that does not marshal may let go of an object in another thread.
std::mutex mutex;
std::unordered_map<const void *, void *> objects;
} // namespace

void RememberObject(const void *record, void *object)
{
    const std::lock_guard lock(mutex);
    objects.emplace(record, object);
}

void ForgetObject(const void *record) noexcept
{
    const std::lock_guard lock(mutex);
    objects.erase(record);
}

void *FindObject(const void *record)
{
    const std::lock_guard lock(mutex);
    const auto found = objects.find(record);
    return found == objects.end() ? nullptr : found->second;
}

} // namespace com
