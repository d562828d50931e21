// Entry points: reading the records of a handle. They leave the records as they are, so the guard is not theirs.
#include "handles.h"
#include "text.h"

using namespace driver;

namespace
{

template <class Body>
SQLRETURN WithRecords(SQLHANDLE handle, Body &&body) noexcept
{
    try
    {
        const std::shared_ptr<Handle> object = FindHandle(handle);
        if (object == nullptr)
            return SQL_INVALID_HANDLE;
        const std::lock_guard hold(*object->Lock());
        return body(object->Diag());
    }
    catch (...)
    {
        return SQL_ERROR;
    }
}

bool IsOfOdbc(const std::string &state)
{
    return state.compare(0, 2, "IM") != 0;
}

SQLRETURN GiveText(std::string_view text, SQLPOINTER out, SQLSMALLINT octets, SQLSMALLINT *length)
{
    const std::u16string wide = ToUtf16(text);
    if (length != nullptr)
        *length = static_cast<SQLSMALLINT>(wide.size() * sizeof(SQLWCHAR));
    const bool cut = CopyOut(wide, static_cast<SQLWCHAR *>(out), octets / static_cast<SQLSMALLINT>(sizeof(SQLWCHAR)));
    return cut ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
}

template <class T>
SQLRETURN GiveNumber(SQLPOINTER out, T value)
{
    if (out != nullptr)
        *static_cast<T *>(out) = value;
    return SQL_SUCCESS;
}

SQLRETURN RecordField(const DiagnosticRecord &record, SQLSMALLINT field, SQLPOINTER out, SQLSMALLINT octets,
                      SQLSMALLINT *length)
{
    switch (field)
    {
    case SQL_DIAG_SQLSTATE:
        return GiveText(record.state, out, octets, length);
    case SQL_DIAG_NATIVE:
        return GiveNumber<SQLINTEGER>(out, record.native);
    case SQL_DIAG_MESSAGE_TEXT:
        return GiveText(record.text, out, octets, length);
    case SQL_DIAG_CLASS_ORIGIN:
    case SQL_DIAG_SUBCLASS_ORIGIN:
        return GiveText(IsOfOdbc(record.state) ? "ISO 9075" : "ODBC 3.0", out, octets, length);
    case SQL_DIAG_CONNECTION_NAME:
    case SQL_DIAG_SERVER_NAME:
        return GiveText("", out, octets, length);
    case SQL_DIAG_ROW_NUMBER:
        return GiveNumber<SQLLEN>(out, SQL_ROW_NUMBER_UNKNOWN);
    case SQL_DIAG_COLUMN_NUMBER:
        return GiveNumber<SQLINTEGER>(out, SQL_COLUMN_NUMBER_UNKNOWN);
    default:
        return SQL_ERROR;
    }
}

} // namespace

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR *state, SQLINTEGER *native,
                                 SQLWCHAR *text, SQLSMALLINT capacity, SQLSMALLINT *length)
{
    return WithRecords(handle,
                       [&](Diagnostics &diagnostics) -> SQLRETURN
                       {
                           if (number <= 0 || capacity < 0)
                               return SQL_ERROR;
                           if (static_cast<size_t>(number) > diagnostics.Records().size())
                               return SQL_NO_DATA;
                           const DiagnosticRecord &record = diagnostics.Records()[number - 1];
                           CopyOut(ToUtf16(record.state), state, SQL_SQLSTATE_SIZE + 1);
                           if (native != nullptr)
                               *native = record.native;
                           const std::u16string wide = ToUtf16(record.text);
                           if (length != nullptr)
                               *length = static_cast<SQLSMALLINT>(wide.size());
                           return CopyOut(wide, text, capacity) ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
                       });
}

SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field, SQLPOINTER out,
                                   SQLSMALLINT octets, SQLSMALLINT *length)
{
    return WithRecords(handle,
                       [&](Diagnostics &diagnostics) -> SQLRETURN
                       {
                           switch (field)
                           {
                           case SQL_DIAG_NUMBER:
                               return GiveNumber<SQLINTEGER>(out,
                                                             static_cast<SQLINTEGER>(diagnostics.Records().size()));
                           case SQL_DIAG_RETURNCODE:
                               return GiveNumber<SQLRETURN>(out, diagnostics.ReturnCode());
                           case SQL_DIAG_DYNAMIC_FUNCTION:
                               return GiveText("", out, octets, length);
                           case SQL_DIAG_DYNAMIC_FUNCTION_CODE:
                               return GiveNumber<SQLINTEGER>(out, SQL_DIAG_UNKNOWN_STATEMENT);
                           case SQL_DIAG_ROW_COUNT:
                           case SQL_DIAG_CURSOR_ROW_COUNT:
                               return GiveNumber<SQLLEN>(out, -1);
                           default:
                               break;
                           }
                           if (number <= 0)
                               return SQL_ERROR;
                           if (static_cast<size_t>(number) > diagnostics.Records().size())
                               return SQL_NO_DATA;
                           return RecordField(diagnostics.Records()[number - 1], field, out, octets, length);
                       });
}
