// The sample site, with settings of its first two headings that tell accounts and report types apart, and a user who is
// at the editor with real keys and clicks.
#pragma once

#include "runtime/handler.h"
#include "support/test_folder.h"
#include "window/editor_host.h"
#include "window_driver/real_input.h"
#include "window_driver/watcher.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

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

    // Opens the editor in a thread of its own, for partition 3; returns when it has the keyboard.
    const RealInput &Open()
    {
        std::promise<HWND> shown;
        m_host = std::thread(
            [this, &shown]
            {
                window_tests::EditorHost host(site);
                const window_driver::Watcher watcher({[](HWND) { return 0; },
                                                      [&](HWND editor)
                                                      {
                                                          m_user.emplace(editor, m_folder.DriverPath());
                                                          shown.set_value(editor);
                                                      }});
                EXPECT_EQ(host.config->ShowForm(), 0);
            });
        shown.get_future().wait();
        m_user->TakeKeyboard();
        return *m_user;
    }
    // Takes the window away without a question if it is still open.
    void Close()
    {
        if (!m_host.joinable())
            return;
        m_user->InWindow([this] { DestroyWindow(m_user->Form()); });
        m_host.join();
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
    std::thread m_host;
};

} // namespace input_tests

// What the user is to see, sooner or later.
#define SEES(expected, look) EXPECT_EQ(window_driver::Until(expected, [&] { return look; }), expected)
// What an act brings about.
#define THEN(act, expected, look)                                                                                      \
    act;                                                                                                               \
    SEES(expected, look)
