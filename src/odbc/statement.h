// The one statement handle of a connection: its executions, its results, and the loss of the connection under it.
#pragma once

#include "odbc/handles.h"
#include "runtime/error.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace odbc
{

// Asks the driver whether a connection is dead. Drivers answer the standard attribute from what their calls have met; a
// driver that knows attribute 1244 looks at the socket.
bool IsConnectionDead(SQLHANDLE connection) noexcept;

// A reader of an older execution is closed.
struct Statement
{
    explicit Statement(SQLHANDLE connection) : handle(connection), connection(connection) {}

    StatementHandle handle;
    SQLHANDLE connection;
    std::uint64_t execution = 0;
    bool executed = false; // and not closed since
    bool bound = false;    // to the arrays of a reader
    bool lost = false;     // a call has met the loss of the connection

    // The error of the call that has just failed. Notes in `lost` what it says of the connection: some drivers tell its
    // loss by a state of class 08, some by a mere warning and the connection's attribute.
    runtime::Error Failure();

    // As odbc::Check, with Failure as the error.
    SQLRETURN Check(SQLRETURN code);

    // Goes through all results of a batch, of which `code` is what its execution, or the last SQLMoreResults, gave.
    // Statements after a failed one still run, and closing would cancel them. `result` is called while the handle
    // is on a result, with the call's code; `failed` for each statement that failed.
    void Drain(SQLRETURN code, const std::function<void(SQLRETURN)> &result,
               const std::function<void(const runtime::Error &)> &failed);
    // The same when only the first error is wanted; nothing when all succeeded.
    std::optional<runtime::Error> Drain(SQLRETURN code);

    // Drops the rows and results that were not read. Asks the driver for nothing when there is nothing to drop.
    void CloseCursor() noexcept;
};

} // namespace odbc
