// A test form on the screen in a thread of its own, and the test as its user.
#pragma once

#include "window/test_form.h"
#include "window_driver/driver.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace window_tests
{

using window_driver::Driver;
using window_driver::TextOf;
using window_driver::WaitUntil;

using Log = std::vector<std::string>;

class OpenForm
{
public:
    OpenForm() = default;
    ~OpenForm() { Close(); }
    OpenForm(const OpenForm &) = delete;
    OpenForm &operator=(const OpenForm &) = delete;

    // Loads the form, shows it, and returns when a user can act.
    const Driver &Open()
    {
        // Out of the way: an open list follows the mouse that lies over it.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        std::promise<void> loaded;
        m_thread = std::thread(
            [&]
            {
                form.Load();
                m_driver.emplace(static_cast<HWND>(form.View().Handle()));
                loaded.set_value();
                form.Run();
            });
        loaded.get_future().wait();
        EXPECT_TRUE(WaitUntil([this] { return m_driver->Open(); }));
        m_driver->Settle();
        return *m_driver;
    }

    // Closes what is still open, and returns when the window is gone.
    void Close()
    {
        if (!m_thread.joinable())
            return;
        form.stays = false;
        PostMessageW(m_driver->Form(), WM_CLOSE, 0, 0);
        m_thread.join();
    }

    // By the program.
    void ShowTab(int tab)
    {
        m_driver->InWindow([&] { form.Get<editor::controls::TabControl>("SSTab1").SetTab(tab); });
    }

    TestForm form;

private:
    std::optional<Driver> m_driver;
    std::thread m_thread;
};

class FormTest : public testing::Test, protected OpenForm
{
};

} // namespace window_tests
