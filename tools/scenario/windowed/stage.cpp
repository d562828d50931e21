// The window stage: see stage.h.
#include "windowed/stage.h"

#include "script/failure.h"
#include "windowed/box.h"
#include "windowed/controls.h"

#include <commctrl.h>

#include <thread>

namespace scenario
{

namespace
{

using window_driver::Driver;
using window_driver::SendClick;
using window_driver::SendKey;

constexpr DWORD kPatience = 120000; // milliseconds

} // namespace

WindowStage::WindowStage(Audience &audience) : m_audience(audience)
{
    if (GetModuleHandleW(L"KVHEADERS.dll"))
        throw Refusal("the component is still loaded from the play before");
    m_host.Run([this] { m_component.emplace(); });
    WatchOpenedFiles([this](const std::string &path) { Opened(path); });
}

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

void WindowStage::SetProperty(const std::string &name, const PropertyValue &value)
{
    m_host.Run([&] { m_component->Set(name, value); });
}

void WindowStage::SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value)
{
    m_registry.Set(key, name, value);
}

ControlState WindowStage::Read(const std::string &name)
{
    // In the window's own thread, where each of the many questions is a call and no exchange between threads.
    const Driver &user = User();
    ControlState state;
    m_host.Run([&] { state = scenario::Read(user, name); });
    return state;
}

const Driver &WindowStage::User()
{
    const HWND form = Form();
    if (!m_driver || m_driver->Form() != form)
        m_host.Run([this, form] { m_driver.emplace(form); });
    return *m_driver;
}

HWND WindowStage::Reachable(const std::string &name, const char *className, const char *kind)
{
    return scenario::Reachable(User(), name, className, kind);
}

void WindowStage::Show()
{
    m_driver.reset();
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
    DWORD started = GetTickCount();
    while (!done())
    {
        if (LookAfter())
            started = GetTickCount();
        else if (GetTickCount() - started > kPatience)
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
    const HWND box = window_driver::FindMessageBox(m_owner);
    if (!box)
        return false;
    AnswerBox(box, m_audience.AnswerBox(ReadBox(box)));
    if (!window_driver::WaitUntilGone(box, kPatience))
        throw Refusal("a message box does not close");
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
    const HWND tabs = Reachable("SSTab1", WC_TABCONTROLA, "tab control");
    const RECT place = User().PlaceOfTab(tab);
    if (IsRectEmpty(&place))
        throw Refusal("there is no tab " + std::to_string(tab));
    Act([=] { SendClick(tabs, window_driver::MiddleOf(place)); });
}

void WindowStage::Choose(const std::string &name, int position)
{
    const HWND combo = Reachable(name, WC_COMBOBOXA, "drop-down list");
    AsOne(
        [=]
        {
            SetFocus(combo);
            SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
            SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(position), 0);
            SendKey(combo, VK_RETURN);
        });
}

void WindowStage::Pick(const std::string &name, int position)
{
    const HWND list = Reachable(name, WC_LISTVIEWA, "list");
    // On the label a second click would open it for editing: where there is another column, that is clicked.
    const int columns = static_cast<int>(SendMessageW(User().HeaderOf(name), HDM_GETITEMCOUNT, 0, 0));
    const RECT place = User().PlaceOfRow(name, position, columns > 1 ? 1 : 0);
    Act([=] { SendClick(list, window_driver::MiddleOf(place)); });
}

void WindowStage::ClickColumn(const std::string &name, int column)
{
    Reachable(name, WC_LISTVIEWA, "list");
    const HWND header = User().HeaderOf(name);
    const RECT place = User().PlaceOfHeader(name, column - 1);
    if (IsRectEmpty(&place))
        throw Refusal(name + " has no column header " + std::to_string(column));
    Act([=] { SendClick(header, window_driver::MiddleOf(place)); });
}

void WindowStage::Rename(const std::string &name, const std::string &text)
{
    const HWND list = Reachable(name, WC_LISTVIEWA, "list");
    if (SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) == 0)
        throw Refusal(name + " has no item to rename");
    if (!User().LabelField(name))
        AsOne(
            [=]
            {
                SetFocus(list);
                SendKey(list, VK_F2);
            });
    const HWND field = User().LabelField(name);
    if (!field)
        return; // refused
    Act([&] { window_driver::SendLabel(field, text); });
}

void WindowStage::Toggle(const std::string &box)
{
    const HWND control = Reachable(box, WC_BUTTONA, "check box");
    Act([=] { SendMessageW(control, BM_CLICK, 0, 0); });
}

void WindowStage::Click(const std::string &button)
{
    const HWND control = Reachable(button, WC_BUTTONA, "button");
    Act([=] { SendMessageW(control, BM_CLICK, 0, 0); });
}

void WindowStage::Close()
{
    const HWND form = Form();
    Act([=] { SendMessageW(form, WM_SYSCOMMAND, SC_CLOSE, 0); });
}

void WindowStage::EscapeEdit(const std::string &name)
{
    Reachable(name, WC_LISTVIEWA, "list");
    const HWND field = User().LabelField(name);
    if (!field)
        throw Refusal(name + " has no label edit open");
    Act([=] { SendMessageW(field, WM_KEYDOWN, VK_ESCAPE, 1); });
}

} // namespace scenario
