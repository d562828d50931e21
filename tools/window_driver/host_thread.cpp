// The host's thread: see host_thread.h.
#include "window_driver/host_thread.h"

#include "window_driver/order.h"

#include <objbase.h>

#include <memory>

namespace window_driver
{

namespace
{

constexpr wchar_t kClass[] = L"KVHEADERS.WindowDriver.Host";
constexpr UINT kRun = WM_APP;       // lParam: Order*
constexpr UINT kBegin = WM_APP + 1; // lParam: std::function<void()>*, to be deleted
constexpr UINT kEnd = WM_APP + 2;

} // namespace

HostThread::HostThread()
{
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    m_thread = std::thread([this, ready] { Loop(ready); });
    WaitForSingleObject(ready, INFINITE);
    CloseHandle(ready);
}

HostThread::~HostThread()
{
    PostMessageW(m_window, kEnd, 0, 0);
    m_thread.join();
}

void HostThread::Loop(HANDLE ready)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    WNDCLASSW definition{};
    definition.lpfnWndProc = &Procedure;
    definition.hInstance = GetModuleHandleW(nullptr);
    definition.lpszClassName = kClass;
    RegisterClassW(&definition);
    m_window = CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, definition.hInstance, nullptr);
    m_id = GetCurrentThreadId();
    SetEvent(ready);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    CoUninitialize();
}

LRESULT CALLBACK HostThread::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case kRun:
        reinterpret_cast<Order *>(lParam)->CarryOut();
        return 0;
    case kBegin:
        (*std::unique_ptr<std::function<void()>>(reinterpret_cast<std::function<void()> *>(lParam)))();
        return 0;
    case kEnd:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

void HostThread::Run(const std::function<void()> &act) const
{
    Order order(act);
    SendMessageW(m_window, kRun, 0, reinterpret_cast<LPARAM>(&order));
    order.ThrowProblem();
}

void HostThread::Begin(std::function<void()> act) const
{
    PostMessageW(m_window, kBegin, 0,
                 reinterpret_cast<LPARAM>(std::make_unique<std::function<void()>>(std::move(act)).release()));
}

} // namespace window_driver
