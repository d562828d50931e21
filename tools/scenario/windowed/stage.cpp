// The window stage: the real component in a host's thread, and a user whose acts are window messages to its controls.
#include "play/stage.h"

#include "script/failure.h"
#include "windowed/box.h"
#include "windowed/component.h"
#include "windowed/controls.h"
#include "windowed/host_thread.h"
#include "windowed/machine_registry.h"
#include "windowed/text.h"

#include <commctrl.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace scenario
{

namespace
{

using namespace std::chrono_literals;

constexpr wchar_t kForm[] = L"KVHEADERS.Form";
constexpr auto kPatience = 120s;

LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
{
    return SendMessageW(window, message, wParam, lParam);
}

void Press(HWND window, WPARAM key)
{
    Send(window, WM_KEYDOWN, key, 1);
    Send(window, WM_KEYUP, key, 1);
}

// In the middle of a place, as the mouse does it.
void ClickIn(HWND window, const RECT &place)
{
    const LPARAM at = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    Send(window, WM_LBUTTONDOWN, MK_LBUTTON, at);
    Send(window, WM_LBUTTONUP, 0, at);
}

class WindowStage final : public Stage
{
public:
    explicit WindowStage(Audience &audience) : m_audience(audience)
    {
        if (GetModuleHandleW(L"KVHEADERS.dll"))
            throw Refusal("the component is still loaded from the play before");
        m_host.Run([this] { m_component.emplace(); });
        WatchOpenedFiles([this](const std::string &path) { Opened(path); });
    }
    ~WindowStage() override;

    void SetProperty(const std::string &name, const PropertyValue &value) override
    {
        m_host.Run([&] { m_component->Set(name, value); });
    }
    void SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value) override
    {
        m_registry.Set(key, name, value);
    }
    void Show() override;
    bool WindowIsOpen() override { return Form() != nullptr; }

    void ShowTab(int tab) override;
    void Choose(const std::string &combo, int position) override;
    void Pick(const std::string &list, int position) override;
    void ClickColumn(const std::string &list, int column) override;
    void Rename(const std::string &list, const std::string &text) override;
    void EscapeEdit(const std::string &list) override;
    void Toggle(const std::string &box) override
    {
        const HWND control = Named().Reachable(box, WC_BUTTONW, "check box");
        Act([=] { Send(control, BM_CLICK); });
    }
    void Click(const std::string &button) override
    {
        const HWND control = Named().Reachable(button, WC_BUTTONW, "button");
        Act([=] { Send(control, BM_CLICK); });
    }
    void Close() override
    {
        const HWND form = Form();
        Act([=] { Send(form, WM_SYSCOMMAND, SC_CLOSE); });
    }

    ControlState Read(const std::string &name) override
    {
        // In the window's own thread, where each of the many questions is a call and no exchange between threads.
        const Controls &controls = Named();
        ControlState state;
        m_host.Run([&] { state = controls.Read(name); });
        return state;
    }

private:
    HWND Form() const
    {
        return m_host.FindWindow([](HWND window) { return ClassOf(window) == kForm; });
    }
    // Those of the open window. It has the same ones for as long as it is open.
    const Controls &Named()
    {
        const HWND form = Form();
        if (!m_controls || m_controls->Form() != form)
            m_host.Run([this, form] { m_controls.emplace(form); });
        return *m_controls;
    }

    // Does what a user does, and sees to the rest.
    void Act(const std::function<void()> &act);
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
    HostThread m_host;
    std::optional<Component> m_component;
    MachineRegistry m_registry;
    std::optional<Controls> m_controls;

    bool m_showing = false; // ShowForm has been called, and its return not been told
    std::atomic<bool> m_returned = false;
    int m_value = 0;
    std::exception_ptr m_problem; // of ShowForm

    // A report that the component has asked to open: the host's thread waits until it has been looked at.
    std::atomic<const std::string *> m_opened = nullptr;
};

WindowStage::~WindowStage()
{
    // Taken away by its host, the window asks nothing.
    try
    {
        if (const HWND form = Form())
            m_host.Run([form] { DestroyWindow(form); });
        WaitUntil([this] { return !m_showing || m_returned; });
        m_host.Run([this] { m_component.reset(); });
    }
    catch (const std::exception &)
    {
        // It hangs: the process ends without it.
        std::fflush(stdout);
        TerminateProcess(GetCurrentProcess(), 1);
    }
    CloseHandle(m_happened);
}

void WindowStage::Show()
{
    m_controls.reset();
    m_returned = false;
    m_showing = true;
    m_host.Begin(
        [this]
        {
            try
            {
                m_value = m_component->ShowForm();
            }
            catch (...)
            {
                m_problem = std::current_exception();
            }
            m_returned = true;
            SetEvent(m_happened);
        });
    WaitUntil([this] { return m_returned || Form() != nullptr; });
    Settle();
    NoticeReturn();
}

void WindowStage::NoticeReturn()
{
    if (!m_showing)
        return;
    // A window that has disappeared takes ShowForm along.
    if (!Form())
        WaitUntil([this] { return m_returned.load(); });
    if (!m_returned)
        return;
    m_showing = false;
    if (m_problem)
        std::rethrow_exception(m_problem);
    m_audience.ShowFormReturned(m_value);
}

void WindowStage::Act(const std::function<void()> &act)
{
    std::exception_ptr problem;
    std::atomic<bool> done = false;
    {
        const std::jthread hand(
            [&]
            {
                try
                {
                    act();
                }
                catch (...)
                {
                    problem = std::current_exception();
                }
                done = true;
                SetEvent(m_happened);
            });
        WaitUntil([&] { return done.load(); });
    }
    if (problem)
        std::rethrow_exception(problem);
    Settle();
    NoticeReturn();
}

void WindowStage::WaitUntil(const std::function<bool()> &done)
{
    auto until = std::chrono::steady_clock::now() + kPatience;
    while (!done())
    {
        if (LookAfter())
            until = std::chrono::steady_clock::now() + kPatience;
        else if (std::chrono::steady_clock::now() > until)
            throw Refusal("the component does not come back");
        else
            WaitForSingleObject(m_happened, 5); // not for ever: nobody tells of a message box
    }
}

void WindowStage::Settle()
{
    // What a posted message brings about may post another.
    for (int round = 0; round < 3; ++round)
    {
        std::atomic<bool> reached = false;
        m_host.Begin(
            [this, &reached]
            {
                reached = true;
                SetEvent(m_happened);
            });
        WaitUntil([&] { return reached.load(); });
        if (LookAfter())
            round = -1;
    }
}

bool WindowStage::LookAfter()
{
    if (const std::string *const path = m_opened)
    {
        m_audience.ReportOpened(*path);
        m_opened = nullptr;
        return true;
    }
    const HWND box = m_host.FindWindow(&IsMessageBox);
    if (!box)
        return false;
    AnswerBox(box, m_audience.AnswerBox(ReadBox(box)));
    const auto until = std::chrono::steady_clock::now() + kPatience;
    while (IsWindow(box) && IsWindowVisible(box))
    {
        if (std::chrono::steady_clock::now() > until)
            throw Refusal("a message box does not close");
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

void WindowStage::Opened(const std::string &path)
{
    m_opened = &path;
    while (m_opened)
        Sleep(1);
}

void WindowStage::ShowTab(int tab)
{
    const HWND tabs = Named().Reachable("SSTab1", WC_TABCONTROLW, "tab control");
    RECT place{};
    if (!Send(tabs, TCM_GETITEMRECT, static_cast<WPARAM>(tab), reinterpret_cast<LPARAM>(&place)))
        throw Refusal("there is no tab " + std::to_string(tab));
    Act([=] { ClickIn(tabs, place); });
}

void WindowStage::Choose(const std::string &name, int position)
{
    const HWND combo = Named().Reachable(name, WC_COMBOBOXW, "drop-down list");
    AsOne(
        [=]
        {
            SetFocus(combo);
            Send(combo, CB_SHOWDROPDOWN, TRUE);
            Send(combo, CB_SETCURSEL, static_cast<WPARAM>(position));
            Press(combo, VK_RETURN);
        });
}

void WindowStage::Pick(const std::string &name, int position)
{
    const HWND list = Named().Reachable(name, WC_LISTVIEWW, "list");
    Send(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(position), FALSE);
    // On the label a second click would open it for editing: where there is another column, that is clicked.
    const HWND header = reinterpret_cast<HWND>(Send(list, LVM_GETHEADER));
    RECT place{};
    place.left = LVIR_LABEL;
    if (Send(header, HDM_GETITEMCOUNT) > 1)
    {
        place.top = 1; // the column
        Send(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&place));
    }
    else
        Send(list, LVM_GETITEMRECT, static_cast<WPARAM>(position), reinterpret_cast<LPARAM>(&place));
    Act([=] { ClickIn(list, place); });
}

void WindowStage::ClickColumn(const std::string &name, int column)
{
    const HWND list = Named().Reachable(name, WC_LISTVIEWW, "list");
    const HWND header = reinterpret_cast<HWND>(Send(list, LVM_GETHEADER));
    RECT place{};
    if (!IsWindowVisible(header) ||
        !Send(header, HDM_GETITEMRECT, static_cast<WPARAM>(column - 1), reinterpret_cast<LPARAM>(&place)))
        throw Refusal(name + " has no column header " + std::to_string(column));
    Act([=] { ClickIn(header, place); });
}

HWND EditOf(HWND list)
{
    return reinterpret_cast<HWND>(Send(list, LVM_GETEDITCONTROL));
}

void WindowStage::Rename(const std::string &name, const std::string &text)
{
    const HWND list = Named().Reachable(name, WC_LISTVIEWW, "list");
    if (Send(list, LVM_GETITEMCOUNT) == 0)
        throw Refusal(name + " has no item to rename");
    if (!EditOf(list))
        AsOne(
            [=]
            {
                SetFocus(list);
                Press(list, VK_F2);
            });
    const HWND field = EditOf(list);
    if (!field)
        return; // refused
    const std::wstring typed = platform::ToWide(text);
    Act(
        [&]
        {
            Send(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(typed.c_str()));
            Send(field, WM_KEYDOWN, VK_RETURN, 1);
        });
}

void WindowStage::EscapeEdit(const std::string &name)
{
    const HWND field = EditOf(Named().Reachable(name, WC_LISTVIEWW, "list"));
    if (!field)
        throw Refusal(name + " has no label edit open");
    Act([=] { Send(field, WM_KEYDOWN, VK_ESCAPE, 1); });
}

} // namespace

std::unique_ptr<Stage> MakeStage(Audience &audience)
{
    return std::make_unique<WindowStage>(audience);
}

} // namespace scenario
