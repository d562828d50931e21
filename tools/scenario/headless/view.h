// The window of the headless stage: nothing to see, and a user who goes by the script.
#pragma once

#include "editor/form_view.h"
#include "play/stage.h"

namespace scenario
{

class HeadlessView final : public editor::FormView
{
public:
    // `current` points to the view that is open, for as long as it is.
    HeadlessView(editor::StagedForm &form, Audience &audience, HeadlessView *&current)
        : m_form(form), m_audience(audience), m_current(current)
    {
    }
    ~HeadlessView() override { Destroy(); }

    editor::StagedForm &Form() { return m_form; }

    void Create() override { m_current = this; }
    void ClientSizeChanged() override {}
    void Show() override {}
    void RunModal() override
    {
        m_audience.PlayWhile([this] { return !m_ended; });
    }
    void EndModal() override { m_ended = true; }
    void Destroy() override
    {
        if (m_current == this)
            m_current = nullptr;
    }
    void BringToFront() override {}
    // No window, and none of the system's functions ever gets it; but there is something to be put on top.
    platform::WindowHandle Handle() const override { return const_cast<HeadlessView *>(this); }
    host::Rectangle Bounds() const override { return {}; }

private:
    editor::StagedForm &m_form;
    Audience &m_audience;
    HeadlessView *&m_current;
    bool m_ended = false;
};

} // namespace scenario
