// What all controls of the window have in common. A control knows no window handle: the program acts on it through its
// properties, a user through the functions that say so, and an Observer shows it.
#pragma once

#include "editor/controls/observer.h"

#include <functional>
#include <string>
#include <utility>

namespace editor::controls
{

enum class Kind
{
    Label,
    ComboBox,
    TabControl,
    Button,
    CheckBox,
    ListView,
    Frame,
    Panel,
};

// Bounds in the container, in twips.
struct Rectangle
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const Rectangle &, const Rectangle &) = default;
};

class ControlSet;
class TabControl;

// Events are std::function fields of the kinds of control. An event that program code brings about runs in that code:
// an error leaves the property that was set. An event of a user's act ends with an error of its handler, silently.
// Acts run one at a time (ControlSet::Act).
class Control
{
public:
    explicit Control(std::string name) : m_name(std::move(name)) {}
    virtual ~Control() = default;
    Control(const Control &) = delete;
    Control &operator=(const Control &) = delete;

    virtual Kind GetKind() const = 0;

    // The name, followed by the index for an element of a control array: "SSCheck1(0)".
    const std::string &Name() const { return m_name; }

    // "&" marks the letter after it as the access key.
    const std::string &Caption() const { return m_caption; }
    void SetCaption(const std::string &caption);

    const std::string &ToolTip() const { return m_toolTip; }
    void SetToolTip(const std::string &toolTip) { m_toolTip = toolTip; }

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);

    bool Visible() const { return m_visible; }
    void SetVisible(bool visible);

    // Whether the Tab key stops here.
    bool TabStop() const { return m_tabStop; }
    void SetTabStop(bool tabStop);

    const Rectangle &Bounds() const { return m_bounds; }
    void SetBounds(const Rectangle &bounds);

    // The control around this one; null directly on the window.
    Control *Container() const { return m_container; }
    // The page of a tab control that this control is on, from 0; meaningless elsewhere.
    int Page() const { return m_page; }
    void SetContainer(Control *container, int page = 0);

    // True when a user can see it: visible, in visible containers, on the page that is shown, of an open window.
    bool Shown() const;
    // True when a user can act on it: shown, and enabled with all its containers.
    bool Reachable() const;

    // Gives it the keyboard; a label edit that is open elsewhere ends as by leaving. Nothing happens when the control
    // is not reachable.
    void SetFocus();

    // The observer; null for none. It must outlive its being set.
    void SetObserver(Observer *observer) { m_observer = observer; }
    Observer *GetObserver() const { return m_observer; }

    // The user has turned to something else. False: a name that was being typed has been refused, and what they
    // turned to must not be carried out.
    virtual bool Leave() { return true; }

protected:
    void Notify(Property property, int position = 0) const
    {
        if (m_observer)
            m_observer->Changed(property, position);
    }

    // A user's act on this control: an open label edit elsewhere ends first, and the act follows unless the new name
    // was refused. ControlSet::Act says when it runs. False: the control cannot be reached.
    bool ByUser(std::function<void()> act);
    // The same without ending a label edit.
    void Act(std::function<void()> act);

private:
    friend class ControlSet;

    std::string m_name;
    std::string m_caption;
    std::string m_toolTip;
    bool m_enabled = true;
    bool m_visible = true;
    bool m_tabStop = true;
    Rectangle m_bounds;
    Control *m_container = nullptr;
    int m_page = 0;
    ControlSet *m_set = nullptr;
    Observer *m_observer = nullptr;
};

} // namespace editor::controls
