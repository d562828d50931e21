// The desktop of a system without windows: boxes go to standard error and are answered with the cautious answer.
#include "platform/desktop.h"

#include "runtime/error.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace platform
{

namespace
{

class PosixDesktop final : public Desktop
{
public:
    Answer ShowMessage(const std::string &text, int flags, const std::string &title) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
        return (flags & 4) != 0 ? Answer::No : Answer::Ok;
    }
    void OpenFile(WindowHandle, const std::string &, const std::string &) override
    {
        runtime::Raise(runtime::kFileNotFound);
    }
    void DoEvents() override {}
    void Sleep(int milliseconds) override { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }
    void WaitCursor(bool) override {}
    double TwipsPerPixelX() override { return 15; }
    double TwipsPerPixelY() override { return 15; }
    void SetWindowPos(WindowHandle, int, int, int, int, int) override {}
    std::string NowText() override
    {
        const std::time_t now = std::time(nullptr);
        std::tm parts{};
        localtime_r(&now, &parts);
        char text[64];
        std::strftime(text, sizeof text, "%m/%d/%Y %I:%M:%S %p", &parts);
        return text;
    }
};

} // namespace

Desktop &SystemDesktop()
{
    static PosixDesktop desktop;
    return desktop;
}

} // namespace platform
