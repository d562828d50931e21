// What all handles have in common: see handles.h.
#include "handles.h"

#include "runtime/text.h"

namespace driver
{

DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text)
{
    return {std::string(state), native, std::string("[KVHEADERS][Embedded Driver][SQL Server]").append(text)};
}

std::string ToUtf8(const SQLWCHAR *text, SQLLEN length)
{
    if (text == nullptr)
        return {};
    const auto *const units = reinterpret_cast<const char16_t *>(text);
    return runtime::FromUtf16(length == SQL_NTS ? std::u16string_view(units)
                                                : std::u16string_view(units, static_cast<size_t>(length)));
}

SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity)
{
    const std::u16string wide = runtime::ToUtf16(text);
    if (CopyUnits<char16_t>(wide, out, 2 * capacity) < wide.size() && out != nullptr)
        handle.Warn("01004", "String data, right truncation");
    return static_cast<SQLLEN>(wide.size());
}

} // namespace driver
