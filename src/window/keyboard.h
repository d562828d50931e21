// The keyboard in a form: who has it, and the keys that act on the form as a whole.
#pragma once

#include "window/binding.h"

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

namespace window
{

// Tab and Shift+Tab walk the tab stops that can be reached, in the table's order; Enter presses the button that has the
// keyboard, and nothing else; Escape closes the form; Ctrl+Tab and Ctrl+PageDown turn to the next page, with Shift and
// with PageUp back; Alt and a letter go to the first control that can be reached and
// has the letter as its access key.
class Keyboard
{
public:
    using Bindings = std::vector<std::unique_ptr<Binding>>;

    // `bindings` may still grow. `escape` is what Escape does.
    Keyboard(const Bindings &bindings, const BindingContext &context, std::function<void()> escape)
        : m_bindings(bindings), m_context(context), m_escape(std::move(escape))
    {
    }

    // Null ends it.
    void SetForm(HWND form) { m_form = form; }

    // True when the message of the thread's queue was a key for the form, and is done.
    bool Translate(const MSG &message);

    // Gives a control the keyboard, or notes it for when the form becomes active.
    void GiveFocus(HWND control);
    // A control has received the keyboard focus, in whatever way: stepping continues from there.
    void GotFocus(HWND control) { m_saved = control; }
    // The form becomes active, or inactive.
    void Restore();
    void Save();
    // When the control that has the keyboard has gone away or been disabled, the next one gets it. To be called after
    // each message.
    void KeepUsable();

private:
    bool OnKey(WPARAM key);
    bool OnAccessKey(wchar_t letter);
    bool TurnPage(bool forward);
    void Step(const Binding *from, bool backwards);
    std::vector<Binding *> Stops() const;
    Binding *Focused() const;
    bool Usable(HWND control) const;

    const Bindings &m_bindings;
    const BindingContext &m_context;
    std::function<void()> m_escape;
    HWND m_form = nullptr;
    HWND m_saved = nullptr; // the control that had the keyboard last, or is to get it
};

} // namespace window
