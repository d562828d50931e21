// The window stage: the real component in a host's thread, and a user whose acts are window messages to its controls.
#pragma once

#include "play/machine_registry.h"
#include "play/stage.h"
#include "window_driver/driver.h"
#include "window_driver/host_thread.h"
#include "windowed/component.h"

#include <atomic>
#include <exception>
#include <optional>

namespace scenario
{

// There is one a process at a time: it loads the component, which is unloaded at its end.
class WindowStage final : public Stage
{
public:
    explicit WindowStage(Audience &audience);
    ~WindowStage() override;

    void SetProperty(const std::string &name, const PropertyValue &value) override;
    void SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value) override;
    void Show() override;
    bool WindowIsOpen() override { return Form() != nullptr; }

    void ShowTab(int tab) override;
    void Choose(const std::string &combo, int position) override;
    void Pick(const std::string &list, int position) override;
    void ClickColumn(const std::string &list, int column) override;
    void Rename(const std::string &list, const std::string &text) override;
    void EscapeEdit(const std::string &list) override;
    void Toggle(const std::string &box) override;
    void Click(const std::string &button) override;
    void Close() override;

    ControlState Read(const std::string &name) override;

    // The user at the open window.
    const window_driver::Driver &User();

    // Does what a user does, in a thread of its own, and sees to the rest: the message boxes that come up, and reports.
    // Returns when all that it brings about has happened.
    void Act(const std::function<void()> &act);

private:
    HWND Form() const { return window_driver::FindEditor(m_owner); }
    HWND Reachable(const std::string &name, const char *className, const char *kind);

    // The same for several messages of which the window is to get no other between: they are sent from its own thread.
    void AsOne(const std::function<void()> &act)
    {
        Act([this, &act] { m_host.Run(act); });
    }
    // Looks after message boxes and reports until it holds.
    void WaitUntil(const std::function<bool()> &done);
    // Lets the window deal with what waits for it.
    void Settle();
    // True when there was something to look after.
    bool LookAfter();
    void Opened(const std::string &path);
    // Tells when ShowForm has returned.
    void NoticeReturn();

    Audience &m_audience;
    const HANDLE m_happened = CreateEventW(nullptr, FALSE, FALSE, nullptr); // something that is waited for
    window_driver::HostThread m_host;
    const window_driver::Owner m_owner{GetCurrentProcessId(), m_host.Id()};
    std::optional<Component> m_component;
    MachineRegistry m_registry;
    std::optional<window_driver::Driver> m_driver;

    bool m_showing = false; // ShowForm has been called, and its return not been told
    std::atomic<bool> m_returned = false;
    int m_value = 0;
    std::exception_ptr m_problem; // of ShowForm

    // A report that the component has asked to open: the host's thread waits until it has been looked at.
    std::atomic<const std::string *> m_opened = nullptr;
};

} // namespace scenario
