// Finds the windows of a host and reads them off: see windows.h.
#include "window_driver/windows.h"

#include "platform/windows/wide.h"

namespace window_driver
{

namespace
{

constexpr int kBoxText = 0xFFFF;

struct Search
{
    DWORD process;
    const std::function<bool(HWND)> &accept;
    HWND found = nullptr;
};

BOOL CALLBACK Visit(HWND window, LPARAM parameter)
{
    auto &search = *reinterpret_cast<Search *>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window) || !search.accept(window))
        return TRUE;
    search.found = window;
    return FALSE;
}

} // namespace

std::string ClassOf(HWND window)
{
    wchar_t name[64];
    return platform::FromWide({name, static_cast<std::size_t>(GetClassNameW(window, name, 64))});
}

std::string TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    const auto length = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return platform::FromWide({text.data(), static_cast<std::size_t>(length)});
}

bool IsTopmost(HWND window)
{
    return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

HWND FindShown(const Owner &owner, const std::function<bool(HWND)> &accept)
{
    Search search{owner.process, accept};
    if (owner.thread != 0)
        EnumThreadWindows(owner.thread, &Visit, reinterpret_cast<LPARAM>(&search));
    else
        EnumWindows(&Visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND FindEditor(const Owner &owner)
{
    return FindShown(owner, [](HWND window) { return ClassOf(window) == "KVHEADERS.Form"; });
}

HWND FindMessageBox(const Owner &owner)
{
    return FindShown(owner, [](HWND window)
                     { return ClassOf(window) == "#32770" && GetDlgItem(window, kBoxText) != nullptr; });
}

std::string BoxText(HWND box)
{
    return TextOf(GetDlgItem(box, kBoxText));
}

void AnswerBox(HWND box, int button)
{
    // The one button of a box with OK alone has the number of OK or of Cancel.
    if (button == IDOK && !GetDlgItem(box, IDOK))
        button = IDCANCEL;
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

bool WaitUntil(const std::function<bool()> &holds, DWORD milliseconds)
{
    for (const DWORD start = GetTickCount(); !holds(); Sleep(5))
        if (GetTickCount() - start > milliseconds)
            return false;
    return true;
}

bool WaitUntilGone(HWND window, DWORD milliseconds)
{
    return WaitUntil([window] { return !IsWindow(window) || !IsWindowVisible(window); }, milliseconds);
}

} // namespace window_driver
