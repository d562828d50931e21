// A user with a real keyboard and a real mouse: see real_input.h.
#include "window_driver/real_input.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace window_driver
{

RealInput::RealInput(HWND form, std::string folder) : Driver(form), m_folder(std::move(folder)) {}

void RealInput::TakeKeyboard() const
{
    RECT client;
    GetClientRect(Form(), &client);
    ClickAt(Form(), {client.right - 5, 5});
    POINT cursor;
    if (Until("SSTab1", [this] { return Focused(); }) != "SSTab1" ||
        !Until(true, [&] { return GetCursorPos(&cursor) && WindowFromPoint(cursor) == Form(); }))
        throw std::runtime_error("the window does not get the keyboard and the mouse");
}

// Wine starts a program of the system outside, of which it knows nothing more: a file tells of its end. Before that a
// key may still be down. The handles that it gives are none: closing them would close what else has these numbers.
void RealInput::Act(const std::string &words) const
{
    const std::string status = m_folder + "/status" + std::to_string(++m_acts);
    std::string line = "sh -c \"xdotool \\\"$@\\\"; echo $? >\\\"$0\\\"\" \"" + status + "\" " + words;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA("Z:\\bin\\sh", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        throw std::runtime_error("no shell could be started for xdotool");
    const std::string told = Until("0\n",
                                   [&]
                                   {
                                       std::ifstream file("Z:" + status, std::ios::binary);
                                       return std::string{std::istreambuf_iterator<char>(file), {}};
                                   });
    if (told != "0\n")
        throw std::runtime_error("xdotool " + words + " ended with " + told);
}

void RealInput::Press(const std::string &keys) const
{
    Act("key " + keys);
}

void RealInput::Type(const std::string &text) const
{
    Act("type --delay 10 \"" + text + "\"");
}

void RealInput::ClickAt(HWND window, POINT place) const
{
    ClientToScreen(window, &place);
    Act("mousemove " + std::to_string(place.x) + " " + std::to_string(place.y) + " click 1");
}

void RealInput::ClickButtonOf(HWND box, const wchar_t *caption) const
{
    const HWND button = FindWindowExW(box, nullptr, L"Button", caption);
    if (!button)
        throw std::runtime_error("the box has no such button");
    ClickAt(button, {10, 10});
}

} // namespace window_driver
