// Texts for the wide ODBC functions.
#pragma once

#include "odbc/handles.h"
#include "runtime/text.h"

#include <string>
#include <string_view>

namespace odbc
{

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "ODBC is spoken in UTF-16");

// A text as an argument of a wide function: its units, terminated, and their number.
class WideText
{
public:
    explicit WideText(std::string_view text) : m_units(runtime::ToUtf16(text)) {}

    // The functions take a pointer that is not const, and do not write through it.
    SQLWCHAR *data() noexcept { return reinterpret_cast<SQLWCHAR *>(m_units.data()); }
    SQLINTEGER length() const noexcept { return static_cast<SQLINTEGER>(m_units.size()); }

private:
    std::u16string m_units;
};

inline std::string FromWide(const SQLWCHAR *units, std::size_t length)
{
    return runtime::FromUtf16({reinterpret_cast<const char16_t *>(units), length});
}

} // namespace odbc
