// The one guard around everything the driver exports: no exception leaves, no handle is believed, records are kept.
#pragma once

#include "handles.h"
#include "tsql/session.h"

#include <new>
#include <type_traits>

namespace driver
{

// Turns the exception being handled into records. To be called inside a catch block.
inline std::vector<DiagnosticRecord> RecordsOfCurrentException()
{
    try
    {
        throw;
    }
    catch (const DriverError &error)
    {
        return error.Records();
    }
    catch (const tsql::SqlError &error)
    {
        return {MakeRecord(error.State(), error.Number(), error.what())};
    }
    catch (const std::bad_alloc &)
    {
        return {MakeRecord("HY001", 0, "Memory allocation error")};
    }
    catch (const std::exception &error)
    {
        return {MakeRecord("HY000", 0, error.what())};
    }
    catch (...)
    {
        return {MakeRecord("HY000", 0, "General error")};
    }
}

// Runs `body(object)` for the object behind the handle, under its lock, with empty records. A body without a return
// code succeeds; records that a successful body left make the call SQL_SUCCESS_WITH_INFO; an exception makes it
// SQL_ERROR with the exception's records first.
template <class T, class Body>
SQLRETURN Guarded(SQLHANDLE handle, Body &&body) noexcept
{
    try
    {
        const std::shared_ptr<Handle> found = FindHandle(handle);
        T *object = dynamic_cast<T *>(found.get());
        if (object == nullptr)
            return SQL_INVALID_HANDLE;
        const std::lock_guard hold(*found->Lock());
        Diagnostics &diagnostics = object->Diag();
        diagnostics.Clear();
        SQLRETURN code = SQL_ERROR;
        try
        {
            if constexpr (std::is_void_v<decltype(body(*object))>)
            {
                body(*object);
                code = SQL_SUCCESS;
            }
            else
                code = body(*object);
            if (code == SQL_SUCCESS && !diagnostics.Records().empty())
                code = SQL_SUCCESS_WITH_INFO;
        }
        catch (...)
        {
            const std::vector<DiagnosticRecord> notes = diagnostics.Records();
            diagnostics.Clear();
            for (DiagnosticRecord &record : RecordsOfCurrentException())
                diagnostics.Add(std::move(record));
            for (const DiagnosticRecord &note : notes)
                diagnostics.Add(note);
        }
        diagnostics.SetReturnCode(code);
        return code;
    }
    catch (...)
    {
        return SQL_ERROR;
    }
}

} // namespace driver
