// Texts of native windows.
#pragma once

#include "platform/windows/wide.h"

#include <windows.h>

#include <string>

namespace scenario
{

inline std::string TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const auto length = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return platform::FromWide({text.data(), static_cast<std::size_t>(length)});
}

inline std::wstring ClassOf(HWND window)
{
    wchar_t name[64];
    return {name, static_cast<std::size_t>(GetClassNameW(window, name, 64))};
}

} // namespace scenario
