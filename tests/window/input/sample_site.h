// The sample site, with settings of its first two headings that tell accounts and report types apart, and a user who is
// at the editor with real keys and clicks.
#pragma once

#include "runtime/handler.h"
#include "support/test_folder.h"
#include "window/editor_host.h"
#include "window_driver/host_thread.h"
#include "window_driver/real_input.h"
#include "window_driver/watcher.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>

namespace input_tests
{

using window_driver::RealInput;
using window_driver::Until;

using Lines = std::vector<std::string>;

class Editor : public testing::Test
{
protected:
    Editor()
    {
        site.Run(support::ReadFile(support::SourcePath("embedded/database/sample.sql")));
        // ABDOMEN and ABDOMEN AND PELVIS, for the first account: Impression; Physician's Choice, but Indented List for
        // chest X-rays.
        site.Run("DELETE FROM Report_header_settings WHERE heading_id = 86 OR heading_id = 87\n"
                 "INSERT INTO Report_header_settings VALUES (86, 101, 0, 16, 0)\n"
                 "INSERT INTO Report_header_settings VALUES (87, 101, 0, 17, 0)\n"
                 "INSERT INTO Report_header_settings VALUES (87, 101, 10, 18, 0)\n");
    }
    ~Editor() override { Close(); }

    // Opens the editor for partition 3, in the one thread that is the host's in all tests; returns when it has the
    // keyboard.
    const RealInput &Open()
    {
        static const window_driver::HostThread host;
        std::promise<HWND> shown;
        m_closed.emplace();
        host.Begin(
            [this, &shown]
            {
                {
                    window_tests::EditorHost editorHost(site);
                    const window_driver::Watcher watcher({[](HWND) { return 0; },
                                                          [&](HWND editor)
                                                          {
                                                              m_user.emplace(editor, m_folder.DriverPath());
                                                              shown.set_value(editor);
                                                          }});
                    EXPECT_EQ(editorHost.config->ShowForm(), 0);
                }
                m_closed->set_value();
            });
        shown.get_future().wait();
        m_user->TakeKeyboard();
        return *m_user;
    }
    // Takes the window away without a question if it is still open.
    void Close()
    {
        if (!m_closed)
            return;
        m_user->InWindow([this] { DestroyWindow(m_user->Form()); });
        m_closed->get_future().wait();
        m_closed.reset();
        // Out of the way of other programs' windows.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    }

    // The one row of a query.
    void ExpectStored(const std::string &row, const std::string &sql) { EXPECT_EQ(site.Query(sql), Lines{row}); }

    // While the editor works at something, or has keys or clicks to work at.
    bool Busy() const
    {
        bool busy = true;
        m_user->InWindow([&] { busy = runtime::HandlerRunning() || HIWORD(GetQueueStatus(QS_INPUT)) != 0; });
        return busy;
    }

    support::TestDatabase site;

private:
    support::TestFolder m_folder;
    std::optional<RealInput> m_user;
    std::optional<std::promise<void>> m_closed; // while the editor is open
};

} // namespace input_tests

// What the user is to see, sooner or later.
#define SEES(expected, look) EXPECT_EQ(window_driver::Until(expected, [&] { return look; }), expected)
// What an act brings about.
#define THEN(act, expected, look)                                                                                      \
    act;                                                                                                               \
    SEES(expected, look)
