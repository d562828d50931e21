// The handles that callers hold: numbers that are looked up here before anything is believed of them.
#pragma once

#include "diagnostics.h"

#include <memory>
#include <mutex>

namespace driver
{

// What every handle has: the records of its last call and the lock under which its calls run.
class Handle
{
public:
    explicit Handle(std::shared_ptr<std::recursive_mutex> lock) : m_lock(std::move(lock)) {}
    virtual ~Handle() = default;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    Diagnostics &Diag() { return m_diagnostics; }
    // A connection and its statements share one lock.
    const std::shared_ptr<std::recursive_mutex> &Lock() const { return m_lock; }

private:
    std::shared_ptr<std::recursive_mutex> m_lock;
    Diagnostics m_diagnostics;
};

SQLHANDLE RegisterHandle(std::shared_ptr<Handle> object);

// Null for a handle that was never given out or is freed.
std::shared_ptr<Handle> FindHandle(SQLHANDLE handle);

void RemoveHandle(SQLHANDLE handle);

// Removes every handle other than `owner` whose calls run under the owner's lock: what lives on a connection.
void RemoveHandlesUnder(const Handle &owner);

} // namespace driver
