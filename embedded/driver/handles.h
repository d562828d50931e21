// What all handles have in common: their diagnostic records; and the ways of texts and numbers to and from a client.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
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

// A failure with its records, the telling one first.
struct DriverError : std::exception
{
    DriverError(std::string_view state, std::string_view text) : records{MakeRecord(state, 0, text)} {}
    explicit DriverError(Records all) : records(std::move(all)) {}

    Records records;
};

struct Handle
{
    Handle() = default;
    virtual ~Handle() = default;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    // A record that makes a successful call SQL_SUCCESS_WITH_INFO.
    void Warn(std::string_view state, std::string_view text) { records.push_back(MakeRecord(state, 0, text)); }

    Records records; // of the last call
};

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
