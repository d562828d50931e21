// UTF-16 as the Windows API takes it.
#pragma once

#include "runtime/text.h"

#include <string>
#include <string_view>

namespace platform
{

inline std::wstring ToWide(std::string_view text)
{
    const std::u16string units = runtime::ToUtf16(text);
    return std::wstring(units.begin(), units.end());
}

inline std::string FromWide(std::wstring_view text)
{
    return runtime::FromUtf16({reinterpret_cast<const char16_t *>(text.data()), text.size()});
}

} // namespace platform
