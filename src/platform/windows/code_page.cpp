// The system's ANSI code page.
#include "platform/code_page.h"

#include "platform/windows/wide.h"

#include <windows.h>

namespace platform
{

std::string FromAnsi(std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), size);
    return FromWide({wide.data(), static_cast<std::size_t>(length)});
}

std::string ToAnsi(std::string_view text)
{
    const std::wstring wide = ToWide(text);
    const int size = static_cast<int>(wide.size());
    // No code page takes more than four bytes for a UTF-16 unit.
    std::string bytes(wide.size() * 4, '\0');
    const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), size, bytes.data(),
                                           static_cast<int>(bytes.size()), "?", nullptr);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

} // namespace platform
