// Texts at the boundary: see text.h.
#include "text.h"

#include <algorithm>
#include <cstring>

namespace driver
{

std::string ToUtf8(const SQLWCHAR *text, SQLLEN length)
{
    if (length < 0 && length != SQL_NTS)
        throw DriverError("HY090", "Invalid string or buffer length");
    if (text == nullptr)
        return {};
    const auto *const units = reinterpret_cast<const char16_t *>(text);
    return runtime::FromUtf16(length == SQL_NTS ? std::u16string_view(units)
                                                : std::u16string_view(units, static_cast<size_t>(length)));
}

SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity)
{
    const std::u16string wide = runtime::ToUtf16(text);
    if (out != nullptr)
    {
        const size_t room = capacity > 0 ? static_cast<size_t>(capacity) : 0;
        const size_t count = room > 0 ? std::min(wide.size(), room - 1) : 0;
        std::memcpy(out, wide.c_str(), count * sizeof(SQLWCHAR)); // which need not be aligned
        if (room > 0)
            std::memset(static_cast<SQLWCHAR *>(out) + count, 0, sizeof(SQLWCHAR));
        if (count < wide.size())
            handle.Warn("01004", "String data, right truncation");
    }
    return static_cast<SQLLEN>(wide.size());
}

std::vector<std::string> SplitList(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty())
    {
        const size_t end = std::min(text.find(separator), text.size());
        if (const std::string_view part = Trim(text.substr(0, end)); !part.empty())
            parts.emplace_back(part);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string Quoted(std::string_view text)
{
    std::string out = "'";
    for (const char c : text)
        out.append(c == '\'' ? 2 : 1, c);
    return out + "'";
}

} // namespace driver
