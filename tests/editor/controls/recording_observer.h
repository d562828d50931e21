// An observer that records what it is told, for tests of controls.
#pragma once

#include "editor/controls/control.h"
#include "editor/controls/observer.h"
#include "runtime/error.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

class RecordingObserver final : public editor::controls::Observer
{
public:
    // With the text that a native edit of its labels holds, where one does.
    explicit RecordingObserver(editor::controls::Control &control, std::optional<std::string> text = {})
        : typed(std::move(text)), m_control(control)
    {
        control.SetObserver(this);
    }
    ~RecordingObserver() override { m_control.SetObserver(nullptr); }

    void Changed(editor::controls::Property aspect, int position) override { heard.emplace_back(aspect, position); }
    std::optional<std::string> TypedLabel() override { return typed; }

    std::vector<std::pair<editor::controls::Property, int>> heard;
    std::optional<std::string> typed;

    // How often an aspect was heard since the last Clear.
    int Count(editor::controls::Property aspect) const
    {
        int count = 0;
        for (const auto &[one, position] : heard)
            count += one == aspect;
        return count;
    }

private:
    editor::controls::Control &m_control;
};

// The number of the error that an act raises, 0 for none.
template <class Act>
int ErrorOf(Act &&act)
{
    try
    {
        act();
        return 0;
    }
    catch (const runtime::Error &error)
    {
        return error.Number();
    }
}
