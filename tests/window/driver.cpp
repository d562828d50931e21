// A user at the window of a test form.
#include "window/driver.h"

#include "window/binding.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <chrono>
#include <thread>

namespace window_tests
{

namespace
{

const UINT kRun = RegisterWindowMessageW(L"KVHEADERS.Tests.Run");

} // namespace

Driver::Driver(TestForm &form)
    : m_form(static_cast<HWND>(form.View().Handle())), m_thread(GetWindowThreadProcessId(m_form, nullptr))
{
    for (const auto &control : form.Controls().All())
        if (const auto *const binding = dynamic_cast<const window::Binding *>(control->GetObserver()))
            m_windows[control->Name()] = binding->Window();
    SetWindowSubclass(m_form, &Procedure, 0, 0);
}

LRESULT CALLBACK Driver::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    if (message == kRun)
    {
        (*reinterpret_cast<const std::function<void()> *>(lParam))();
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

HWND Driver::Of(const std::string &control) const
{
    return m_windows.at(control);
}

std::string Driver::Focused() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    if (!GetGUIThreadInfo(m_thread, &info) || !info.hwndFocus)
        return "";
    for (const auto &[name, window] : m_windows)
        if (window == info.hwndFocus)
            return name;
    return info.hwndFocus == m_form ? "(form)" : "(edit)";
}

LRESULT Driver::Send(const std::string &control, UINT message, WPARAM wParam, LPARAM lParam) const
{
    return SendMessageW(Of(control), message, wParam, lParam);
}

void Driver::Key(WORD key, const std::vector<WORD> &held) const
{
    std::vector<INPUT> inputs;
    const auto add = [&](WORD code, DWORD flags)
    {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (const WORD modifier : held)
        add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    for (const WORD modifier : held)
        add(modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    Settle();
}

void Driver::Focus(const std::string &control) const
{
    const HWND window = Of(control);
    InWindow([window] { SetFocus(window); });
}

void Driver::ClickAt(HWND window, int x, int y) const
{
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    Settle();
}

void Driver::ClickRow(const std::string &list, int row) const
{
    RECT place{};
    const HWND window = Of(list);
    InWindow(
        [&]
        {
            SendMessageW(window, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
            place.left = LVIR_LABEL;
            SendMessageW(window, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
        });
    ClickAt(window, place.left + 8, (place.top + place.bottom) / 2);
}

void Driver::InWindow(const std::function<void()> &act) const
{
    SendMessageW(m_form, kRun, 0, reinterpret_cast<LPARAM>(&act));
}

void Driver::Settle() const
{
    // Keys and posted messages are looked for in turns: idle twice is idle.
    for (int i = 0; i < 3; ++i)
    {
        DWORD_PTR result = 0;
        SendMessageTimeoutW(m_form, WM_NULL, 0, 0, SMTO_NORMAL, 2000, &result);
        std::this_thread::sleep_for(std::chrono::milliseconds(15));
    }
}

bool Driver::Wait(const std::function<bool()> &what)
{
    for (int i = 0; i < 500; ++i)
    {
        if (what())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

HWND Driver::MessageBox(const std::wstring &title)
{
    HWND box = nullptr;
    Wait(
        [&]
        {
            box = FindWindowW(L"#32770", title.c_str());
            return box && IsWindowVisible(box);
        });
    return box;
}

std::wstring Driver::BoxText(HWND box)
{
    return TextOf(GetDlgItem(box, 0xFFFF));
}

void Driver::Answer(HWND box, WPARAM button)
{
    SendMessageW(box, WM_COMMAND, button, 0);
    Wait([box] { return !IsWindow(box); });
}

std::vector<COLORREF> Drawn(int size, COLORREF ground, const std::function<void(HDC)> &draw)
{
    const HDC screen = GetDC(nullptr), device = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
    const HGDIOBJ before = SelectObject(device, bitmap);
    PatBlt(device, 0, 0, size, size, ground == 0 ? BLACKNESS : WHITENESS);
    draw(device);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            pixels.push_back(GetPixel(device, x, y));
    SelectObject(device, before);
    DeleteObject(bitmap);
    DeleteDC(device);
    ReleaseDC(nullptr, screen);
    return pixels;
}

std::wstring TextOf(HWND window)
{
    wchar_t text[512];
    const LRESULT length = SendMessageW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    return {text, static_cast<std::size_t>(length)};
}

void Play(TestForm &form, const std::function<void(Driver &)> &person)
{
    // Out of the way: an open list follows the mouse that lies over it.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    form.Load();
    Driver driver(form);
    std::thread thread(
        [&]
        {
            const HWND window = driver.Form();
            EXPECT_TRUE(Driver::Wait([window] { return IsWindowVisible(window) != FALSE; }));
            driver.Settle();
            person(driver);
            form.stays = false;
            PostMessageW(window, WM_CLOSE, 0, 0);
        });
    form.Run();
    thread.join();
}

} // namespace window_tests
