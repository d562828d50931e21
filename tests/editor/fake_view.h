// A stage without a window, for tests that show the editor: what happens while it is open is a function.
#pragma once

#include "editor/form_view.h"

#include <functional>
#include <string>
#include <vector>

class FakeView final : public editor::FormView
{
public:
    // What was asked of the view, in order.
    using Calls = std::vector<std::string>;

    FakeView(Calls &calls, std::function<void()> whileOpen) : m_calls(calls), m_whileOpen(std::move(whileOpen)) {}

    void Create() override { m_calls.push_back("create"); }
    void ClientSizeChanged() override { m_calls.push_back("resize"); }
    void Show() override { m_calls.push_back("show"); }
    void RunModal() override
    {
        m_calls.push_back("run");
        if (m_whileOpen)
            m_whileOpen();
    }
    void EndModal() override { m_calls.push_back("end"); }
    void Destroy() override { m_calls.push_back("destroy"); }
    void BringToFront() override { m_calls.push_back("front"); }
    platform::WindowHandle Handle() const override { return const_cast<FakeView *>(this); }
    host::Rectangle Bounds() const override { return {1500, 3000, 10800, 6600}; }

private:
    Calls &m_calls;
    std::function<void()> m_whileOpen;
};
