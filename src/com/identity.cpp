// Which object shows which record.
#include "com/identity.h"

#include <mutex>
#include <unordered_map>

namespace com
{

namespace
{
// Several apartments may call at the same time; each record belongs to one of them.
std::mutex mutex;
std::unordered_map<const void *, void *> faces;
} // namespace

void RememberFace(const void *record, void *face)
{
    const std::lock_guard lock(mutex);
    faces.emplace(record, face);
}

void ForgetFace(const void *record) noexcept
{
    const std::lock_guard lock(mutex);
    faces.erase(record);
}

void *FindFace(const void *record)
{
    const std::lock_guard lock(mutex);
    const auto found = faces.find(record);
    return found == faces.end() ? nullptr : found->second;
}

} // namespace com
