// What all handles have in common: their diagnostic records, and the one guard around everything the driver exports,
// which no exception leaves. The driver trusts its driver manager: a handle is one that the driver gave out and that
// has not been freed, and no two calls on one connection run at a time.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#pragma GCC visibility push(default) // what the shared library exports: the entry points, and nothing else
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
#pragma GCC visibility pop

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

// A failure with its records.
struct DriverError : std::exception
{
    DriverError(std::string_view state, std::string_view text) : records{MakeRecord(state, 0, text)} {}
    explicit DriverError(Records all) : records(std::move(all)) {}

    Records records;
};

class Handle
{
public:
    Handle() = default;
    virtual ~Handle() = default;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    // A record that makes a successful call SQL_SUCCESS_WITH_INFO.
    void Warn(std::string_view state, std::string_view text) { records.push_back(MakeRecord(state, 0, text)); }
    // Adds the records of the exception that is being handled, in front of warnings.
    void RecordException();

    // Around each call of an ODBC function: what the fault list orders for it, and the loss of a connection. Both throw
    // DriverError when the call is to fail. NoteFailure is told of every exception that was recorded.
    virtual void BeforeCall(std::string_view /*function*/) {}
    virtual void AfterCall() {}
    virtual void NoteFailure(const Records & /*thrown*/) {}

    Records records; // of the last call
};

// Runs `body(object)` for the function of this name (__func__), with empty records at the start. A body without a
// return code succeeds, records that a successful body left make the call SQL_SUCCESS_WITH_INFO, an exception is
// SQL_ERROR.
template <class T, class Body>
SQLRETURN Guarded(std::string_view function, SQLHANDLE handle, Body &&body) noexcept
{
    T *const object = dynamic_cast<T *>(static_cast<Handle *>(handle));
    if (object == nullptr)
        return SQL_INVALID_HANDLE;
    object->records.clear();
    try
    {
        object->BeforeCall(function.substr(0, function.find_last_not_of('W') + 1)); // a wide form goes by the same name
        SQLRETURN code = SQL_SUCCESS;
        if constexpr (std::is_void_v<decltype(body(*object))>)
            body(*object);
        else
            code = body(*object);
        object->AfterCall();
        return code == SQL_SUCCESS && !object->records.empty() ? SQL_SUCCESS_WITH_INFO : code;
    }
    catch (...)
    {
        object->RecordException();
        return SQL_ERROR;
    }
}

// Takes `length` units, or up to the terminator when it is SQL_NTS. NULL gives the empty text.
std::string ToUtf8(const SQLWCHAR *text, SQLLEN length);

// Writes what fits of the text and a terminator into a client's buffer, which need not be aligned and may be NULL.
// Returns the units of the text that fitted.
template <class Unit>
size_t CopyUnits(std::basic_string_view<Unit> text, void *out, SQLLEN octets)
{
    const size_t room = out != nullptr && octets > 0 ? static_cast<size_t>(octets) / sizeof(Unit) : 0;
    const size_t count = std::min(text.size(), std::max<size_t>(room, 1) - 1);
    if (room > 0)
    {
        std::memcpy(out, text.data(), count * sizeof(Unit));
        std::memset(static_cast<char *>(out) + count * sizeof(Unit), 0, sizeof(Unit));
    }
    return count;
}

// Writes text and terminator into a client's buffer of `capacity` units, which may be NULL, and warns of a text that
// was cut (01004). Returns the units of the whole text.
SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity);

// Writes a number where the client asked for it; `out` may be NULL.
template <class T, class From>
void Give(T *out, From value)
{
    if (out != nullptr)
        *out = static_cast<T>(value);
}

} // namespace driver
