// A form as a real window.
#include "window/form_window.h"

#include "platform/desktop.h"
#include "platform/windows/dpi.h"
#include "platform/windows/host_windows.h"
#include "platform/windows/module.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"
#include "runtime/handler.h"
#include "window/guard.h"
#include "window/make_binding.h"

#include <commctrl.h>

#include <algorithm>
#include <climits>
#include <utility>

namespace window
{

namespace
{

constexpr const wchar_t *kFormClass = L"KVHEADERS.Form";
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_CONTROLPARENT;

// What the system shows beside a log-off that is waiting.
constexpr const wchar_t *kUnsaved = L"Headings or formats have been changed and not saved.";

} // namespace

FormWindow::FormWindow(editor::StagedForm &form)
    : m_form(form), m_formClass(kFormClass, &Procedure), m_containerClass(kContainerClass, &ContainerProcedure),
      m_keyboard(m_bindings, m_context, [this] { m_form.CloseByUser(); })
{
    m_context.giveFocus = [this](HWND control) { m_keyboard.GiveFocus(control); };
    m_context.leave = [this] { return m_form.Controls().LeaveByUser(); };
    m_context.gotFocus = [this](HWND control) { m_keyboard.GotFocus(control); };
}

FormWindow::~FormWindow()
{
    Destroy();
}

void FormWindow::Create()
{
    const platform::SystemDpiAwareness awareness;
    const platform::ThemedControls themed;
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    CreateFrame(platform::TheHostWindows().Owner());
    CreateControls();
    ClientSizeChanged();
}

// On the owner's monitor from the start.
void FormWindow::CreateFrame(HWND owner)
{
    RECT bounds{};
    if (owner)
        GetWindowRect(owner, &bounds);
    m_window = CreateWindowExW(kExtendedStyle, kFormClass, platform::ToWide(m_form.Caption()).c_str(), kStyle,
                               bounds.left, bounds.top, 0, 0, owner, nullptr, platform::ThisModule(), this);
    if (!m_window)
        runtime::Raise(runtime::kOutOfMemory);
    SetIcons(owner);
    m_keyboard.SetForm(m_window);
}

void FormWindow::SetIcons(HWND owner)
{
    m_smallIcon = MakeCaptionIcon(owner, ICON_SMALL);
    m_largeIcon = MakeCaptionIcon(owner, ICON_BIG);
    SendMessageW(m_window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(m_smallIcon.get()));
    SendMessageW(m_window, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(m_largeIcon.get()));
}

void FormWindow::CreateControls()
{
    m_toolTips.Create(m_window);
    for (const auto &control : m_form.Controls().All())
    {
        m_bindings.push_back(MakeBinding(*control, m_context));
        m_bindings.back()->Create(SiteOf(*control));
        m_toolTips.Add(m_bindings.back()->Window(), control->ToolTip());
    }
}

Site FormWindow::SiteOf(const editor::controls::Control &control) const
{
    for (const auto &binding : m_bindings)
        if (&binding->Owner() == control.Container())
            return binding->SiteFor(control.Page());
    return {m_window, {0, 0}};
}

void FormWindow::ClientSizeChanged()
{
    if (!m_window)
        return;
    const platform::SystemDpiAwareness awareness;
    RECT frame{0, 0, m_context.scale.X(m_form.ClientWidth()), m_context.scale.Y(m_form.ClientHeight())};
    AdjustWindowRectEx(&frame, kStyle, FALSE, kExtendedStyle);
    SetWindowPos(m_window, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (!IsWindowVisible(m_window))
        Centre();
}

// In the middle of the free part of the monitor that its owner is on, never with the caption outside.
void FormWindow::Centre()
{
    const HWND owner = GetWindow(m_window, GW_OWNER);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    RECT frame;
    if (!GetMonitorInfoW(MonitorFromWindow(owner ? owner : m_window, MONITOR_DEFAULTTOPRIMARY), &monitor) ||
        !GetWindowRect(m_window, &frame))
        return;
    const RECT &screen = monitor.rcWork;
    const LONG left = (screen.left + screen.right - (frame.right - frame.left)) / 2;
    const LONG top = (screen.top + screen.bottom - (frame.bottom - frame.top)) / 2;
    SetWindowPos(m_window, nullptr, std::max(left, screen.left), std::max(top, screen.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::Show()
{
    if (!m_window || m_ended)
        return;
    const platform::SystemDpiAwareness awareness;
    // Not by ShowWindow: the first call of that in a process shows a window as whoever started the process wanted its
    // first one, hidden or minimised.
    SetWindowPos(m_window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_SHOWWINDOW);
    UpdateWindow(m_window);
    SetForegroundWindow(m_window);
}

void FormWindow::RunModal()
{
    while (!m_ended)
    {
        MSG message;
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0)
        {
            HostDestroyed();
            // The host's own loop must see the request to quit.
            if (got == 0)
                PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        if (!m_keyboard.Translate(message))
        {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        m_keyboard.KeepUsable();
    }
    Hide();
}

void FormWindow::EndModal()
{
    m_ended = true;
    Hide();
    // The loop may be waiting for a message that never arrives.
    PostThreadMessageW(m_thread, WM_NULL, 0, 0);
}

// The host's windows are enabled before this one disappears, so that one of them comes to the front and no other
// program's.
void FormWindow::Hide()
{
    platform::CurrentDesktop().EnableHost();
    if (m_window)
        ShowWindow(m_window, SW_HIDE);
}

void FormWindow::Destroy()
{
    m_destroying = true;
    m_ended = true;
    m_keyboard.SetForm(nullptr);
    for (const auto &binding : m_bindings)
        binding->Detach();
    m_toolTips.Destroy();
    if (const HWND window = std::exchange(m_window, nullptr))
        DestroyWindow(window);
}

void FormWindow::BringToFront()
{
    if (m_window && !m_ended)
        SetForegroundWindow(GetLastActivePopup(m_window));
}

host::Rectangle FormWindow::Bounds() const
{
    const platform::SystemDpiAwareness awareness;
    RECT frame{};
    if (m_window)
        GetWindowRect(m_window, &frame);
    const Scale &scale = m_context.scale;
    return {scale.TwipsX(frame.left), scale.TwipsY(frame.top), scale.TwipsX(frame.right - frame.left),
            scale.TwipsY(frame.bottom - frame.top)};
}

void FormWindow::HostDestroyed()
{
    Guarded([&] { m_form.HostDestroyed(); });
    m_ended = true;
}

// The session is about to end: with unsaved edits it waits for the answer to the question asked at closing. A label
// that is being edited may become an edit.
bool FormWindow::SessionMayEnd()
{
    const bool editing = std::any_of(m_bindings.begin(), m_bindings.end(), [](const auto &b) { return b->Editing(); });
    if (!editing && !m_form.HasUnsavedEdits())
        return true;
    ShutdownBlockReasonCreate(m_window, kUnsaved);
    // In the middle of a handler, or while a box is open, nothing more can be asked.
    if (runtime::HandlerRunning() || !IsWindowEnabled(m_window))
        return false;
    return m_form.CloseByUser();
}

// Controls that keep colours and metrics of the system are notified by their window.
void FormWindow::RefreshColours(UINT message, WPARAM wParam, LPARAM lParam)
{
    for (const auto &binding : m_bindings)
        if (binding->Window())
            SendMessageW(binding->Window(), message, wParam, lParam);
    RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW *>(lParam)->lpCreateParams));
    auto *const self = reinterpret_cast<FormWindow *>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_NCDESTROY)
    {
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->m_window = nullptr;
        self->m_keyboard.SetForm(nullptr);
    }
    else if (self)
    {
        const std::optional<LRESULT> result =
            Guarded(std::optional<LRESULT>(), [&] { return self->OnMessage(message, wParam, lParam); });
        if (result)
            return *result;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

std::optional<LRESULT> FormWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CLOSE:
        // While a box is open over the window, the box is to be answered.
        if (m_window && IsWindowEnabled(m_window))
            m_form.CloseByUser();
        return 0;
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE)
            m_keyboard.Save();
        else if (HIWORD(wParam) == 0)
            m_keyboard.Restore();
        return 0;
    case WM_SETFOCUS:
        m_keyboard.Restore();
        return 0;
    case WM_GETMINMAXINFO:
    {
        // Whole also on a screen that is too small for it: it can be moved, what was cut off could not be reached.
        POINT &most = reinterpret_cast<MINMAXINFO *>(lParam)->ptMaxTrackSize;
        most.x = std::max<LONG>(most.x, SHRT_MAX);
        most.y = std::max<LONG>(most.y, SHRT_MAX);
        return 0;
    }
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
        RefreshColours(message, wParam, lParam);
        return std::nullopt;
    case WM_THEMECHANGED: // which the controls get as well
        RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
        return std::nullopt;
    case WM_QUERYENDSESSION:
        return SessionMayEnd() ? TRUE : FALSE;
    case WM_ENDSESSION:
        ShutdownBlockReasonDestroy(m_window);
        if (wParam)
            HostDestroyed();
        return 0;
    case WM_DESTROY:
        if (!m_destroying)
            HostDestroyed();
        return 0;
    default:
        return HandleAsContainer(message, wParam, lParam);
    }
}

} // namespace window
