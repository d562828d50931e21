// The Windows desktop.
#include "platform/desktop.h"

#include "platform/code_page.h"
#include "platform/windows/dpi.h"
#include "platform/windows/host_windows.h"
#include "platform/windows/module.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"

#include <windows.h>

#include <shellapi.h>

namespace platform
{

namespace
{

std::wstring DateOrTimeText(int(WINAPI *format)(LCID, DWORD, const SYSTEMTIME *, const wchar_t *, wchar_t *, int),
                            const SYSTEMTIME &moment, DWORD flags)
{
    wchar_t text[128];
    const int length = format(LOCALE_USER_DEFAULT, flags, &moment, nullptr, text, 128);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length) - 1) : std::wstring();
}

double TwipsPerPixel(int axis)
{
    const HDC screen = GetDC(nullptr);
    const int dotsPerInch = screen ? GetDeviceCaps(screen, axis) : 0;
    if (screen)
        ReleaseDC(nullptr, screen);
    return dotsPerInch > 0 ? 1440.0 / dotsPerInch : 15.0;
}

BOOL CALLBACK TakeUsable(HWND window, LPARAM found)
{
    if (!IsWindowVisible(window) || !IsWindowEnabled(window))
        return TRUE;
    *reinterpret_cast<HWND *>(found) = window;
    return FALSE;
}

// The window that a message box is to hold up: the active one; while the program is in the background the one of this
// thread that a user could use, which is the editor; before the editor is shown the host's.
HWND OwnerOfBox()
{
    HWND owner = GetActiveWindow();
    if (!owner || !IsWindowVisible(owner))
    {
        owner = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), TakeUsable, reinterpret_cast<LPARAM>(&owner));
    }
    return owner ? owner : TheHostWindows().Owner();
}

// A message box enables its owner again just before it disappears, so that the owner becomes active and no window of
// another program; but only an owner that it has disabled itself. So one of the host's windows is left to the box for
// as long as the box is open.
class LentToBox
{
public:
    explicit LentToBox(HWND owner) : m_owner(TheHostWindows().Holds(owner) ? owner : nullptr)
    {
        if (m_owner)
            EnableWindow(m_owner, TRUE);
    }
    ~LentToBox()
    {
        if (m_owner && TheHostWindows().Holds(m_owner) && IsWindow(m_owner))
            EnableWindow(m_owner, FALSE);
    }
    LentToBox(const LentToBox &) = delete;
    LentToBox &operator=(const LentToBox &) = delete;

private:
    HWND m_owner;
};

class WindowsDesktop final : public Desktop
{
public:
    Answer ShowMessage(const std::string &text, int flags, const std::string &title) override
    {
        // A user answers under an arrow, also while something loads.
        const HCURSOR cursor = SetCursor(LoadCursor(nullptr, IDC_ARROW));
        // It looks like the component's windows, whatever the host's look like.
        const ThemedControls themed;
        const HWND owner = OwnerOfBox();
        const LentToBox lent(owner);
        const int answer = MessageBoxW(owner, ToWide(text).c_str(), ToWide(title).c_str(),
                                       static_cast<UINT>(flags) | MB_SETFOREGROUND);
        SetCursor(cursor);
        return static_cast<Answer>(answer);
    }

    void OpenFile(WindowHandle owner, const std::string &path, const std::string &workingDirectory) override
    {
        const auto result =
            reinterpret_cast<INT_PTR>(ShellExecuteA(static_cast<HWND>(owner), "Open", ToAnsi(path).c_str(), nullptr,
                                                    ToAnsi(workingDirectory).c_str(), SW_SHOWNORMAL));
        // Up to 32 it is an error code.
        if (result > 32)
            return;
        switch (result)
        {
        case 0:
        case SE_ERR_OOM:
            runtime::Raise(runtime::kOutOfMemory);
        case SE_ERR_FNF:
            runtime::Raise(runtime::kFileNotFound);
        case SE_ERR_PNF:
            runtime::Raise(runtime::kPathNotFound);
        case SE_ERR_ACCESSDENIED:
            runtime::Raise(runtime::kPermissionDenied);
        default:
            throw runtime::Error(runtime::kInvalidProcedureCall,
                                 "No program could be started for " + path + " (" + std::to_string(result) + ")");
        }
    }

    void DisableHost() override { TheHostWindows().Disable(); }
    void EnableHost() override { TheHostWindows().Enable(); }

    void DoEvents() override
    {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE))
        {
            if (message.message == WM_QUIT)
            {
                // The host is ending: its own loop is to see this.
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    void Sleep(int milliseconds) override { ::Sleep(static_cast<DWORD>(milliseconds)); }

    void WaitCursor(bool on) override
    {
        if (on && m_waits++ == 0)
            m_cursorBefore = SetCursor(LoadCursor(nullptr, IDC_WAIT));
        else if (!on && --m_waits == 0)
            SetCursor(m_cursorBefore);
    }

    double TwipsPerPixelX() override { return TwipsPerPixel(LOGPIXELSX); }
    double TwipsPerPixelY() override { return TwipsPerPixel(LOGPIXELSY); }

    void SetWindowPos(WindowHandle window, int insertAfter, int left, int top, int width, int height) override
    {
        const SystemDpiAwareness awareness;
        if (!::SetWindowPos(static_cast<HWND>(window), reinterpret_cast<HWND>(static_cast<INT_PTR>(insertAfter)), left,
                            top, width, height, 0))
            runtime::Raise(runtime::kInvalidProcedureCall);
    }

    std::string NowText() override
    {
        SYSTEMTIME now;
        GetLocalTime(&now);
        return FromWide(DateOrTimeText(GetDateFormatW, now, DATE_SHORTDATE) + L" " +
                        DateOrTimeText(GetTimeFormatW, now, 0));
    }

private:
    int m_waits = 0;
    HCURSOR m_cursorBefore = nullptr;
};

} // namespace

Desktop &SystemDesktop()
{
    static WindowsDesktop desktop;
    return desktop;
}

} // namespace platform
