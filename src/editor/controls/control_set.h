// The controls of one window.
#pragma once

#include "editor/controls/control.h"
#include "runtime/error.h"

#include <deque>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace editor::controls
{

// Runs an act. An error ends it and is not shown.
void RunAct(const std::function<void()> &act) noexcept;

class ControlSet
{
public:
    template <class T>
    T &Add(std::unique_ptr<T> control)
    {
        T &added = *control;
        static_cast<Control &>(added).m_set = this;
        m_controls.push_back(std::move(control));
        return added;
    }

    // The control of a name (case counts), or null.
    Control *Find(std::string_view name) const;

    // The control of a name and kind. Error 5 when there is none.
    template <class T>
    T &Get(std::string_view name) const
    {
        if (T *const found = dynamic_cast<T *>(Find(name)))
            return *found;
        runtime::Raise(runtime::kInvalidProcedureCall);
    }

    const std::vector<std::unique_ptr<Control>> &All() const { return m_controls; }

    // While a set is closed no user can act on its controls. Open from the start.
    bool Open() const { return m_open; }
    void SetOpen(bool open) { m_open = open; }

    // The user turns to `to` (null: to the window itself): a label edit that is open in another control ends. False:
    // the name that was typed there was refused, and what they turned to is not to be carried out.
    bool Leave(const Control *to);

    // The same by the mouse or a key, before the system moves the keyboard focus.
    bool LeaveByUser();

    // Runs an act of a user, or of a program that clicks in a user's place. Acts never run inside one another: one
    // that comes while the handler of another lets messages through waits, and follows when that is done.
    void Act(std::function<void()> act);

private:
    std::vector<std::unique_ptr<Control>> m_controls;
    bool m_open = true;
    bool m_acting = false;
    std::deque<std::function<void()>> m_acts;
};

} // namespace editor::controls
