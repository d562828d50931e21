// What all bindings do.
#include "window/binding.h"

#include "platform/windows/module.h"
#include "platform/windows/wide.h"
#include "runtime/error.h"
#include "window/access_key.h"
#include "window/control_id.h"
#include "window/guard.h"

#include <unordered_map>

namespace window
{

using editor::controls::Property;

namespace
{

// The bindings of the windows that there are. Windows and bindings live in one thread.
std::unordered_map<HWND, Binding *> &Bindings()
{
    static std::unordered_map<HWND, Binding *> bindings;
    return bindings;
}

bool IsPress(UINT message)
{
    return message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDOWN;
}

} // namespace

Binding::Binding(editor::controls::Control &control, const BindingContext &context)
    : m_owner(control), m_context(context), m_entry(editor::LayoutOf(control.Name()))
{
}

Binding::~Binding()
{
    Detach();
}

void Binding::Create(const Site &site)
{
    m_site = site;
    const Make make = Describe();
    DWORD style = WS_CHILD | WS_CLIPSIBLINGS | make.style;
    if (m_owner.Visible())
        style |= WS_VISIBLE;
    if (!m_owner.Enabled())
        style |= WS_DISABLED;
    if (m_owner.TabStop())
        style |= WS_TABSTOP;
    const RECT bounds = PixelBounds();
    m_window =
        CreateWindowExW(make.extendedStyle, make.className, platform::ToWide(m_owner.Caption()).c_str(), style,
                        bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, site.window,
                        reinterpret_cast<HMENU>(ControlId(m_entry)), platform::ThisModule(), nullptr);
    if (!m_window)
        runtime::Raise(runtime::kOutOfMemory);
    Bindings()[m_window] = this;
    m_originalProcedure = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(m_window, GWLP_WNDPROC, OwnProcedure()));
    Send(WM_SETFONT, reinterpret_cast<WPARAM>(m_context.fonts.Get(m_entry.bold)), FALSE);
    Fill();
    Move(bounds);
    m_owner.SetObserver(this);
}

void Binding::Detach() noexcept
{
    if (m_owner.GetObserver() == this)
        m_owner.SetObserver(nullptr);
    if (!m_window)
        return;
    Bindings().erase(m_window);
    m_accessibleName.Clear();
    // Where another procedure has been installed over this one, this one stays and passes everything on.
    if (GetWindowLongPtrW(m_window, GWLP_WNDPROC) == OwnProcedure())
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_originalProcedure));
    m_window = nullptr;
}

Binding *Binding::Of(HWND window) noexcept
{
    const auto found = Bindings().find(window);
    return found == Bindings().end() ? nullptr : found->second;
}

LONG_PTR Binding::OwnProcedure()
{
    return reinterpret_cast<LONG_PTR>(&Procedure);
}

Site Binding::SiteFor(int) const
{
    return {m_window, {0, 0}};
}

RECT Binding::PixelBounds() const
{
    RECT bounds = m_context.scale.Rectangle(m_owner.Bounds());
    OffsetRect(&bounds, -m_site.origin.x, -m_site.origin.y);
    return bounds;
}

std::wstring Binding::LabelText() const
{
    wchar_t text[64] = L"";
    if (const HWND label = GetWindow(m_window, GW_HWNDPREV))
        GetWindowTextW(label, text, 64);
    std::wstring name = text;
    if (name.ends_with(L':'))
        name.pop_back();
    return name;
}

bool Binding::ClickByAccessKey(wchar_t letter)
{
    if (AccessKey(m_owner.Caption()) != letter || !m_owner.Reachable())
        return false;
    if (m_context.leave())
    {
        m_context.giveFocus(m_window);
        Send(BM_CLICK);
    }
    return true;
}

void Binding::Move(const RECT &bounds)
{
    SetWindowPos(m_window, nullptr, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void Binding::Changed(Property property, int position)
{
    if (m_window)
        Guarded([&] { OnChanged(property, position); });
}

void Binding::OnChanged(Property property, int)
{
    switch (property)
    {
    case Property::Caption:
        SetWindowTextW(m_window, platform::ToWide(m_owner.Caption()).c_str());
        break;
    case Property::Enabled:
        EnableWindow(m_window, m_owner.Enabled());
        break;
    case Property::Visible:
        ShowWindow(m_window, m_owner.Visible() ? SW_SHOWNA : SW_HIDE);
        break;
    case Property::TabStop:
        SetStyle(WS_TABSTOP, m_owner.TabStop());
        break;
    case Property::Bounds:
        Move(PixelBounds());
        break;
    case Property::Focus:
        m_context.giveFocus(m_window);
        break;
    default:
        break;
    }
}

void Binding::SetStyle(DWORD style, bool on) const
{
    const auto now = static_cast<DWORD>(GetWindowLongW(m_window, GWL_STYLE));
    SetWindowLongW(m_window, GWL_STYLE, static_cast<LONG>(on ? now | style : now & ~style));
}

// A procedure of the plain kind: the system's subclassing functions ask for their data at every message, which under
// Wine takes longer than most messages do.
LRESULT CALLBACK Binding::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Binding *const self = Of(window);
    if (!self)
        return CallWindowProcW(reinterpret_cast<WNDPROC>(GetClassLongPtrW(window, GCLP_WNDPROC)), window, message,
                               wParam, lParam);
    const WNDPROC original = self->m_originalProcedure;
    if (message == WM_NCDESTROY)
    {
        Bindings().erase(window);
        self->m_window = nullptr;
    }
    else if (IsPress(message) && !Guarded(true, [&] { return self->m_context.leave(); }))
    {
        return 0;
    }
    else
    {
        if (message == WM_GETOBJECT)
            Guarded([&] { self->m_accessibleName.Set(window, self->AccessibleName()); });
        if (message == WM_SETFOCUS)
            Guarded([&] { self->m_context.gotFocus(window); });
        const std::optional<LRESULT> result =
            Guarded(std::optional<LRESULT>(), [&] { return self->OnMessage(message, wParam, lParam); });
        if (result)
            return *result;
    }
    return CallWindowProcW(original, window, message, wParam, lParam);
}

std::optional<LRESULT> Reflect(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND)
    {
        Binding *const binding = Binding::Of(reinterpret_cast<HWND>(lParam));
        if (!binding)
            return std::nullopt;
        binding->OnCommand(HIWORD(wParam));
        return 0;
    }
    if (message == WM_NOTIFY)
    {
        auto &header = *reinterpret_cast<NMHDR *>(lParam);
        Binding *const binding = Binding::Of(header.hwndFrom);
        if (!binding)
            return std::nullopt;
        return binding->OnNotify(header);
    }
    return std::nullopt;
}

} // namespace window
