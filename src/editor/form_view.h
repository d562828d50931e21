// The stage of a window: the interfaces between the window and whatever shows it.
#pragma once

#include "editor/controls/control_set.h"
#include "host/forms.h"
#include "platform/desktop.h"

#include <functional>
#include <memory>
#include <string>

namespace editor
{

// A window as its stage sees it.
class StagedForm
{
public:
    virtual ~StagedForm() = default;

    virtual const std::string &Caption() const = 0;

    // The client area in twips; it changes during the load (FormView::ClientSizeChanged).
    virtual int ClientWidth() const = 0;
    virtual int ClientHeight() const = 0;

    // All controls; their order, places and pictures are those of the layout table.
    virtual controls::ControlSet &Controls() = 0;

    // A user closes the window from its title bar. True when it has been unloaded, false when it stays.
    virtual bool CloseByUser() = 0;

    // True when closing would lose edits.
    virtual bool HasUnsavedEdits() const = 0;

    // The native window is or is being destroyed (by somebody else, or the modal loop was told to quit): unsaved
    // edits are lost, nothing is asked, and the modal state ends. Does nothing when the window is unloaded already.
    virtual void HostDestroyed() = 0;
};

class FormView
{
public:
    virtual ~FormView() = default;

    // Makes the native window with all its controls and observes them. Not visible yet. May raise.
    virtual void Create() = 0;

    virtual void ClientSizeChanged() = 0;

    virtual void Show() = 0;

    // Lets a user work until EndModal has been called. Also returns when its thread is told to quit. A call from
    // within another, out of a message of the host, does the same.
    virtual void RunModal() = 0;

    // The form has been unloaded, in the middle of some handler: the host answers again, the window disappears at once,
    // and RunModal returns as soon as the handler has. May come before RunModal, which then returns at once.
    virtual void EndModal() = 0;

    // Destroys the native window, if there still is one, and stops observing the controls. Raises nothing.
    virtual void Destroy() = 0;

    virtual void BringToFront() = 0;

    // Null where there is no native window.
    virtual platform::WindowHandle Handle() const = 0;

    // The bounds of the window on the screen, in twips, with its frame.
    virtual host::Rectangle Bounds() const = 0;
};

// Makes the stage of a form. There is none at the start.
using FormViewFactory = std::function<std::unique_ptr<FormView>(StagedForm &)>;
void SetFormViewFactory(FormViewFactory factory);

// A stage for the form from the factory. Error 91 without one.
std::unique_ptr<FormView> MakeFormView(StagedForm &form);

} // namespace editor
