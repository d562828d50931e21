// A form for the tests of the window: the editor's controls with data made by hand, and without its rules.
#pragma once

#include "editor/editor_controls.h"
#include "editor/form_view.h"

#include <memory>
#include <string>

namespace window_tests
{

class TestForm final : public editor::StagedForm
{
public:
    TestForm();

    const std::string &Caption() const override { return m_caption; }
    int ClientWidth() const override { return m_clientWidth; }
    int ClientHeight() const override { return m_clientHeight; }
    editor::controls::ControlSet &Controls() override { return m_controls.All(); }
    bool CloseByUser() override;
    bool HasUnsavedEdits() const override { return false; }
    void HostDestroyed() override;

    template <class T>
    T &Get(const std::string &name)
    {
        return m_controls.All().Get<T>(name);
    }

    // Makes the window, opens the strip and fills everything, as the editor's start-up does.
    void Load();
    // Shows the window and returns when it has been closed.
    void Run();
    void Unload();

    editor::FormView &View() { return *m_view; }

    bool stays = false; // the next closes are refused
    int closes = 0;
    int destroyed = 0;

private:
    void OpenStrip();
    void FillLists();

    editor::EditorControls m_controls;
    std::unique_ptr<editor::FormView> m_view;
    std::string m_caption;
    int m_clientWidth;
    int m_clientHeight;
    bool m_loaded = false;
};

} // namespace window_tests
