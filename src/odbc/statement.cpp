// Errors, results and closing of the statement handle.
#include "odbc/statement.h"

#include "odbc/diagnostics.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace odbc
{

bool IsConnectionDead(SQLHANDLE connection) noexcept
{
    constexpr SQLINTEGER kSocketDead = 1244;
    for (const SQLINTEGER attribute : {SQLINTEGER{SQL_ATTR_CONNECTION_DEAD}, kSocketDead})
    {
        SQLUINTEGER dead[2] = {SQL_CD_FALSE, 0}; // room for a driver that writes a longer integer
        if (SQL_SUCCEEDED(SQLGetConnectAttrW(connection, attribute, dead, SQL_IS_UINTEGER, nullptr)) &&
            dead[0] == SQL_CD_TRUE)
            return true;
    }
    return false;
}

runtime::Error Statement::Failure()
{
    const std::vector<Record> records = ReadRecords(SQL_HANDLE_STMT, handle.get());
    lost = lost || TellOfLoss(records) || IsConnectionDead(connection);
    return ToError(records);
}

SQLRETURN Statement::Check(SQLRETURN code)
{
    if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA)
        return code;
    throw Failure();
}

void Statement::Drain(SQLRETURN code, const std::function<void(SQLRETURN)> &result,
                      const std::function<void(const runtime::Error &)> &failed)
{
    // A driver that fails for good, instead of saying that there is nothing more, must not hold us.
    constexpr int kMostFailuresInARow = 100;
    for (int inARow = 0; code != SQL_NO_DATA; code = SQLMoreResults(handle.get()))
    {
        if (SQL_SUCCEEDED(code))
        {
            inARow = 0;
            result(code);
            continue;
        }
        const runtime::Error error = Failure();
        // Behind a statement that failed at once there may be no results to ask for, which is no error of its own.
        if (inARow > 0 && error.Description().starts_with("HY010"))
            return;
        failed(error);
        if (lost || ++inARow == kMostFailuresInARow)
            return;
    }
}

std::optional<runtime::Error> Statement::Drain(SQLRETURN code)
{
    std::optional<runtime::Error> first;
    Drain(
        code, [](SQLRETURN) {},
        [&](const runtime::Error &error)
        {
            if (!first)
                first = error;
        });
    return first;
}

void Statement::CloseCursor() noexcept
{
    const bool wasExecuted = std::exchange(executed, false);
    const bool wasBound = std::exchange(bound, false);
    if (HandlesAbandoned())
        return;
    if (wasExecuted)
        SQLFreeStmt(handle.get(), SQL_CLOSE);
    if (!wasBound)
        return;
    // What was raised for the rows of one execution must not reach the next one: with an array size other than 1 at
    // execution time some drivers ask the server for a cursor. The size is reset while the columns are still bound:
    // Wine 10 crashes when it is set after SQL_UNBIND.
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(SQLULEN{1}), 0);
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROW_STATUS_PTR, nullptr, 0);
    SQLSetStmtAttrW(handle.get(), SQL_ATTR_ROWS_FETCHED_PTR, nullptr, 0);
    SQLFreeStmt(handle.get(), SQL_UNBIND);
}

} // namespace odbc
