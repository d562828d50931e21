// The keyboard in a form.
#include "window/keyboard.h"

#include "runtime/text.h"
#include "window/guard.h"

#include <algorithm>

namespace window
{

namespace
{

bool Pressed(int key)
{
    return GetKeyState(key) < 0;
}

} // namespace

bool Keyboard::Translate(const MSG &message)
{
    if (!m_form || !IsWindowEnabled(m_form) || (message.hwnd != m_form && !IsChild(m_form, message.hwnd)))
        return false;
    return Guarded(false,
                   [&]
                   {
                       switch (message.message)
                       {
                       case WM_KEYDOWN:
                           return OnKey(message.wParam);
                       case WM_SYSCHAR:
                           return OnAccessKey(static_cast<wchar_t>(message.wParam));
                       default:
                           return false;
                       }
                   });
}

bool Keyboard::OnKey(WPARAM key)
{
    Binding *const focused = Focused();
    if (focused && focused->WantsKey(key))
        return false;
    switch (key)
    {
    case VK_TAB:
        if (Pressed(VK_CONTROL))
            return TurnPage(!Pressed(VK_SHIFT));
        if (m_context.leave())
            Step(focused, Pressed(VK_SHIFT));
        return true;
    case VK_NEXT:
    case VK_PRIOR:
        return Pressed(VK_CONTROL) && TurnPage(key == VK_NEXT);
    case VK_RETURN:
        if (focused)
            focused->OnEnter();
        return true;
    case VK_ESCAPE:
        m_escape();
        return true;
    default:
        return false;
    }
}

bool Keyboard::OnAccessKey(wchar_t letter)
{
    const auto upper = static_cast<wchar_t>(runtime::UpperCase(letter));
    return std::any_of(m_bindings.begin(), m_bindings.end(),
                       [upper](const auto &binding) { return binding->OnAccessKey(upper); });
}

bool Keyboard::TurnPage(bool forward)
{
    return std::any_of(m_bindings.begin(), m_bindings.end(),
                       [forward](const auto &binding) { return binding->OnTurnPage(forward); });
}

std::vector<Binding *> Keyboard::Stops() const
{
    std::vector<Binding *> stops;
    for (const auto &binding : m_bindings)
        if (binding->TabIndex() >= 0 && binding->Owner().TabStop() && Usable(binding->Window()))
            stops.push_back(binding.get());
    std::stable_sort(stops.begin(), stops.end(),
                     [](const Binding *a, const Binding *b) { return a->TabIndex() < b->TabIndex(); });
    return stops;
}

void Keyboard::Step(const Binding *from, bool backwards)
{
    const std::vector<Binding *> stops = Stops();
    if (stops.empty())
        return;
    // From a control that is no tab stop, to the next one in the order.
    const int here = from ? from->TabIndex() : -1;
    Binding *next = backwards ? stops.back() : stops.front();
    if (backwards)
    {
        for (Binding *const stop : stops)
            if (stop->TabIndex() < here)
                next = stop;
    }
    else
    {
        const auto found =
            std::find_if(stops.begin(), stops.end(), [here](const Binding *stop) { return stop->TabIndex() > here; });
        if (found != stops.end())
            next = *found;
    }
    SetFocus(next->Window());
}

Binding *Keyboard::Focused() const
{
    for (HWND window = GetFocus(); window && window != m_form; window = GetParent(window))
        if (Binding *const binding = Binding::Of(window))
            return binding;
    return nullptr;
}

bool Keyboard::Usable(HWND control) const
{
    if (!control || !m_form || !IsChild(m_form, control))
        return false;
    for (HWND window = control; window && window != m_form; window = GetParent(window))
        if (!IsWindowEnabled(window) || !(GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE))
            return false;
    return true;
}

void Keyboard::GiveFocus(HWND control)
{
    m_saved = control;
    if (m_form && GetActiveWindow() == m_form)
        SetFocus(control);
}

void Keyboard::Save()
{
    if (const Binding *const focused = Focused())
        m_saved = focused->Window();
}

void Keyboard::Restore()
{
    if (!m_form)
        return;
    if (!Usable(m_saved))
    {
        const std::vector<Binding *> stops = Stops();
        m_saved = stops.empty() ? m_form : stops.front()->Window();
    }
    SetFocus(m_saved);
}

void Keyboard::KeepUsable()
{
    if (!m_form || GetActiveWindow() != m_form || !IsWindowEnabled(m_form))
        return;
    const HWND focus = GetFocus();
    if (focus == m_form)
        return;
    if (Usable(focus))
        Save();
    else
        Step(Binding::Of(m_saved), false);
}

} // namespace window
