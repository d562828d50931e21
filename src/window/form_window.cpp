// A form as a real window.
#include "window/form_window.h"

#include "platform/windows/message_filter.h"
#include "platform/windows/module.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"
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
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

} // namespace

FormWindow::FormWindow(editor::StagedForm &form)
    : m_form(form), m_formClass(kFormClass, &Procedure), m_containerClass(kContainerClass, &ContainerProcedure),
      m_keyboard(m_bindings, [this] { m_form.CloseByPerson(); })
{
    m_surroundings.giveFocus = [this](HWND control) { m_keyboard.GiveFocus(control); };
    m_surroundings.gotFocus = [this](HWND control) { m_keyboard.GotFocus(control); };
}

FormWindow::~FormWindow()
{
    Destroy();
}

void FormWindow::Create()
{
    const platform::ThemedControls themed;
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    CreateFrame();
    CreateControls();
    ClientSizeChanged();
}

void FormWindow::CreateFrame()
{
    m_window = CreateWindowExW(kExtendedStyle, kFormClass, platform::ToWide(m_form.Caption()).c_str(), kStyle,
                               CW_USEDEFAULT, 0, 0, 0, nullptr, nullptr, platform::ThisModule(), this);
    if (!m_window)
        runtime::Raise(runtime::kOutOfMemory);
    m_keyboard.SetForm(m_window);
}

void FormWindow::CreateControls()
{
    m_toolTips.Create(m_window);
    for (const auto &control : m_form.Controls().All())
    {
        m_bindings.push_back(MakeBinding(*control, m_surroundings));
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
    RECT frame{0, 0, m_surroundings.scale.X(m_form.ClientWidth()), m_surroundings.scale.Y(m_form.ClientHeight())};
    AdjustWindowRectEx(&frame, kStyle, FALSE, kExtendedStyle);
    SetWindowPos(m_window, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (!IsWindowVisible(m_window))
        Centre();
}

// In the middle of the part of the screen that is free, never with the caption outside.
void FormWindow::Centre()
{
    RECT screen, frame;
    if (!SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0) || !GetWindowRect(m_window, &frame))
        return;
    const LONG left = (screen.left + screen.right - (frame.right - frame.left)) / 2;
    const LONG top = (screen.top + screen.bottom - (frame.bottom - frame.top)) / 2;
    SetWindowPos(m_window, nullptr, std::max(left, screen.left), std::max(top, screen.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::Show()
{
    if (!m_window || m_ended)
        return;
    m_disabled.emplace(m_window);
    // What a handler lets through, the loop below would have seen.
    m_filterBefore = platform::SetMessageFilter([this](const MSG &message) { return m_keyboard.Translate(message); });
    m_filters = true;
    ShowWindow(m_window, SW_SHOW);
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
            // The host's own loop is to see that it is told to quit.
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
    GiveBackHost();
}

void FormWindow::EndModal()
{
    m_ended = true;
    GiveBackHost();
    // The loop may be waiting for a message that nobody sends.
    PostThreadMessageW(m_thread, WM_NULL, 0, 0);
}

// The host's windows answer again before this one disappears: so one of them comes to the front, and no stranger.
void FormWindow::GiveBackHost()
{
    const HWND before = m_disabled ? m_disabled->WasActive() : nullptr;
    m_disabled.reset();
    if (!m_window || !IsWindowVisible(m_window))
        return;
    const bool active = GetActiveWindow() == m_window;
    ShowWindow(m_window, SW_HIDE);
    if (active && before && IsWindow(before) && IsWindowVisible(before))
        SetActiveWindow(before);
}

void FormWindow::Destroy()
{
    if (std::exchange(m_filters, false))
        platform::SetMessageFilter(std::move(m_filterBefore));
    m_destroying = true;
    m_ended = true;
    m_disabled.reset();
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

host::Place FormWindow::Bounds() const
{
    RECT frame{};
    if (m_window)
        GetWindowRect(m_window, &frame);
    const Scale &scale = m_surroundings.scale;
    return {scale.TwipsX(frame.left), scale.TwipsY(frame.top), scale.TwipsX(frame.right - frame.left),
            scale.TwipsY(frame.bottom - frame.top)};
}

void FormWindow::HostDestroyed()
{
    Guarded([&] { m_form.HostDestroyed(); });
    m_ended = true;
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
            m_form.CloseByPerson();
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
        for (const auto &binding : m_bindings)
            if (binding->Window())
                SendMessageW(binding->Window(), message, wParam, lParam);
        return std::nullopt;
    case WM_DESTROY:
        if (!m_destroying)
            HostDestroyed();
        return 0;
    default:
        return HandleAsContainer(message, wParam, lParam);
    }
}

} // namespace window
