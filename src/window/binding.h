// What ties a control to its native window: the state of the one is shown by the other, and what a user does to the
// window becomes the control's event.
#pragma once

#include "editor/controls/control.h"
#include "editor/layout.h"
#include "window/accessible_name.h"
#include "window/fonts.h"
#include "window/scale.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

namespace window
{

// What all bindings of a window share.
struct BindingContext
{
    Scale scale = Scale::OfScreen();
    Fonts fonts{scale};
    // Gives a native control the keyboard, now or as soon as the window is active.
    std::function<void(HWND)> giveFocus;
    // A user turns to a control: a label edit that is open ends. False: its name was refused, and what they turned to
    // is not to be carried out; the keyboard stays where it is.
    std::function<bool()> leave;
    // Told of each native control that has got the keyboard.
    std::function<void(HWND)> gotFocus;
};

// Where the windows of contained controls go: their parent, and where in it the container's own place (0, 0) is.
struct Site
{
    HWND window = nullptr;
    POINT origin{0, 0};
};

class Binding : public editor::controls::Observer
{
public:
    Binding(editor::controls::Control &control, const BindingContext &context);
    ~Binding() override;
    Binding(const Binding &) = delete;
    Binding &operator=(const Binding &) = delete;

    // Makes the native window with the control's present state and observes the control. Error 7 when the system
    // refuses.
    void Create(const Site &site);
    // Forgets control and window.
    void Detach() noexcept;

    // Null before it is made and after its end.
    HWND Window() const { return m_window; }
    editor::controls::Control &Owner() const { return m_owner; }
    int TabIndex() const { return m_entry.tabIndex; }

    // The binding of a native window, or null.
    static Binding *Of(HWND window) noexcept;

    // Where the controls inside this one go.
    virtual Site SiteFor(int page) const;

    // A notification of the window to its parent.
    virtual void OnCommand(int /*code*/) {}
    virtual LRESULT OnNotify(NMHDR & /*header*/) { return 0; }

    // True while a user is typing into it what is no edit yet.
    virtual bool Editing() const { return false; }

    // True when the control has a use of its own for Tab, Enter or Escape now.
    virtual bool WantsKey(WPARAM /*key*/) const { return false; }
    // Enter while it has the keyboard.
    virtual void OnEnter() {}
    // Alt and a letter, in upper case. False: not this control's.
    virtual bool OnAccessKey(wchar_t /*letter*/) { return false; }
    // To the next page or the one before, around the ends. False: it has none.
    virtual bool OnTurnPage(bool /*forward*/) { return false; }

    void Changed(editor::controls::Property property, int position) final;

protected:
    // The native window: its class, and styles beyond the common ones.
    struct Make
    {
        const wchar_t *className;
        DWORD style = 0;
        DWORD extendedStyle = 0;
    };
    virtual Make Describe() const = 0;
    // Brings the new window to the control's state, beyond what all controls have.
    virtual void Fill() {}
    // What screen readers are to call it where the system finds no name of its own; empty where it does.
    virtual std::wstring AccessibleName() const { return {}; }
    virtual void Move(const RECT &bounds);
    virtual void OnChanged(editor::controls::Property property, int position);
    // A message to the native window. Nothing: it goes on to the system's procedure.
    virtual std::optional<LRESULT> OnMessage(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/)
    {
        return std::nullopt;
    }

    // Alt and the access key of the caption: gives the control the keyboard and clicks it, unless a label edit that
    // ends with that was refused. False: the letter is not this control's, or the control cannot be reached.
    bool ClickByAccessKey(wchar_t letter);

    // The text of the label before it, without the colon at its end.
    std::wstring LabelText() const;
    // Makes the name the native window's text too, which tools read that do not know annotations. For windows that do
    // not show their text.
    void ShowAccessibleName() const { SetWindowTextW(m_window, AccessibleName().c_str()); }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(m_window, message, wParam, lParam);
    }
    template <class T>
    LRESULT Send(UINT message, WPARAM wParam, T *lParam) const
    {
        return SendMessageW(m_window, message, wParam, reinterpret_cast<LPARAM>(lParam));
    }
    void SetStyle(DWORD style, bool on) const;
    const editor::LayoutEntry &Entry() const { return m_entry; }
    const BindingContext &Context() const { return m_context; }
    const Site &GetSite() const { return m_site; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LONG_PTR OwnProcedure();
    RECT PixelBounds() const;

    editor::controls::Control &m_owner;
    const BindingContext &m_context;
    const editor::LayoutEntry &m_entry;
    Site m_site;
    HWND m_window = nullptr;
    WNDPROC m_originalProcedure = nullptr; // the window's own procedure
    AccessibleNameOf m_accessibleName;
};

// A binding that knows the kind of its control.
template <class Kind>
class BindingOf : public Binding
{
public:
    BindingOf(Kind &control, const BindingContext &context) : Binding(control, context), m_control(control) {}

protected:
    Kind &m_control;
};

// Hands a notification of a window to its parent to the window's binding. Nothing: it is no such message, or comes from
// no such window.
std::optional<LRESULT> Reflect(UINT message, WPARAM wParam, LPARAM lParam);

} // namespace window
