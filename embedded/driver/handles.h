// The handles that callers hold, what they are told in, and the one guard around everything the driver exports: no
// handle is believed before it is looked up, no exception leaves, records are kept.
#pragma once

#include "odbc.h"
#include "runtime/text.h"

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace driver
{

struct DiagnosticRecord
{
    std::string state; // SQLSTATE, five characters
    int native = 0;    // the server's error number, 0 when the driver itself complains
    std::string text;  // UTF-8, complete with its prefix
};
using Records = std::vector<DiagnosticRecord>;

// A record whose text has the prefix that all messages have, in the manner "[vendor][driver][server]".
DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text);

// "STATE: text" of the first record whose state is not a warning, else of the first one; as a client would show it.
std::string Describe(const Records &records);

// A failure with its records, the first being the telling one in most cases.
class DriverError : public std::runtime_error
{
public:
    DriverError(std::string_view state, std::string_view text) : DriverError(Records{MakeRecord(state, 0, text)}) {}
    explicit DriverError(Records records) : std::runtime_error(Describe(records)), m_records(std::move(records)) {}

    const Records &GetRecords() const noexcept { return m_records; }

private:
    Records m_records;
};

// Turns the exception being handled into records. To be called inside a catch block.
Records RecordsOfCurrentException();

// What every handle has: the records of its last call and the lock under which its calls run.
class Handle
{
public:
    // A connection and its statements share one lock.
    explicit Handle(std::shared_ptr<std::recursive_mutex> sharedLock = std::make_shared<std::recursive_mutex>())
        : lock(std::move(sharedLock))
    {
    }
    virtual ~Handle() = default;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    // A record that makes a successful call SQL_SUCCESS_WITH_INFO.
    void Warn(std::string_view state, std::string_view text) { records.push_back(MakeRecord(state, 0, text)); }

    // Around each call of an ODBC function: what the fault list orders for it, and the loss of a connection. Both throw
    // DriverError when the call is to fail. NoteFailure is told of every call that has failed.
    virtual void BeforeCall(std::string_view /*function*/) {}
    virtual void AfterCall() {}
    virtual void NoteFailure(const Records & /*thrown*/) {}

    const std::shared_ptr<std::recursive_mutex> lock;
    Records records;
};

// Handles are numbers that are never given out twice, so that a freed one is known as such.
SQLHANDLE RegisterHandle(std::shared_ptr<Handle> object);
// Null for a handle that was never given out or is freed.
std::shared_ptr<Handle> FindHandle(SQLHANDLE handle);
void RemoveHandle(SQLHANDLE handle);
// Removes every handle other than `owner` whose calls run under the owner's lock: what lives on a connection.
void RemoveHandlesUnder(const Handle &owner);

// Runs `body(object)` for the object behind the handle, under its lock. An exception is SQL_ERROR.
template <class T, class Body>
SQLRETURN WithHandle(SQLHANDLE handle, Body &&body) noexcept
{
    try
    {
        const std::shared_ptr<Handle> found = FindHandle(handle);
        T *const object = dynamic_cast<T *>(found.get());
        if (object == nullptr)
            return SQL_INVALID_HANDLE;
        const std::lock_guard hold(*object->lock);
        return body(*object);
    }
    catch (...)
    {
        return SQL_ERROR;
    }
}

// The same for the function of this name (__func__), with empty records at the start. A body without a return code
// succeeds; records that a successful body left make the call SQL_SUCCESS_WITH_INFO; those of an exception stand before
// the ones that were there.
template <class T, class Body>
SQLRETURN Guarded(std::string_view function, SQLHANDLE handle, Body &&body) noexcept
{
    if (function.back() == 'W') // the wide form of a function goes by its name
        function.remove_suffix(1);
    const auto recorded = [&](T &object) -> SQLRETURN
    {
        object.records.clear();
        try
        {
            object.BeforeCall(function);
            SQLRETURN code = SQL_SUCCESS;
            if constexpr (std::is_void_v<decltype(body(object))>)
                body(object);
            else
                code = body(object);
            object.AfterCall();
            return code == SQL_SUCCESS && !object.records.empty() ? SQL_SUCCESS_WITH_INFO : code;
        }
        catch (...)
        {
            const Records thrown = RecordsOfCurrentException();
            object.NoteFailure(thrown);
            object.records.insert(object.records.begin(), thrown.begin(), thrown.end());
            return SQL_ERROR;
        }
    };
    return WithHandle<T>(handle, recorded);
}

// --- texts and numbers of the callers

// Takes `length` units, or up to the terminator when it is SQL_NTS. NULL gives the empty text. Throws DriverError HY090
// for any other negative length.
std::string ToUtf8(const SQLWCHAR *text, SQLLEN length);

// Writes text and terminator into a client's buffer of `capacity` units, cutting what does not fit; `out` may be NULL.
// Gives the units of the whole text and warns of one that was cut (01004).
SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity);

// Writes a number where the client asked for it; `out` may be NULL.
template <class T, class From>
void Give(T *out, From value)
{
    if (out != nullptr)
        *out = static_cast<T>(value);
}

// A text and its length, both counted in octets.
template <class Length>
void GiveOctets(Handle &handle, std::string_view text, SQLPOINTER out, Length capacity, Length *length)
{
    Give(length, 2 * CopyOut(handle, text, out, capacity / 2));
}

} // namespace driver
