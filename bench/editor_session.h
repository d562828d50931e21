// The editor on a stage without a window, on a site's database, with a clock around its first idle moment.
#pragma once

#include "editor/form_view.h"
#include "editor/frmHeadings.h"
#include "platform/desktop.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench
{

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// The seconds that an act of the component takes, or one of the bare limit. They are two so that a profiler can be
// pointed at either.
double Time(const std::function<void()> &act);
double TimeBare(const std::function<void()> &act);

// The database of a site in the folder that the environment names in KV_BENCH_SITES.
std::string SiteFile(const std::string &name);

// A desktop that shows nothing. A message box ends the program: no measure is to come upon an error.
class QuietDesktop final : public platform::Desktop
{
public:
    QuietDesktop() { platform::SetDesktop(this); }
    ~QuietDesktop() override { platform::SetDesktop(nullptr); }
    platform::Answer ShowMessage(const std::string &text, int flags, const std::string &title) override;
    void OpenFile(platform::WindowHandle, const std::string &, const std::string &) override {}
    void DoEvents() override {}
    void Sleep(int) override {}
    void WaitCursor(bool) override {}
    double TwipsPerPixelX() override { return 15; }
    double TwipsPerPixelY() override { return 15; }
    void SetWindowPos(platform::WindowHandle, int, int, int, int, int) override {}
    std::string NowText() override { return "now"; }
};

// A copy of a site's database, and the component connected to it. Behind it the process is as it was before: each
// opening that is measured is the first one of a host.
class Site
{
public:
    // 1 is the partition above all others. The log costs time: a site that is measured has none.
    explicit Site(const std::string &name, bool logged = false);
    ~Site();
    Site(const Site &) = delete;
    Site &operator=(const Site &) = delete;

    // Opens the editor and closes it when it is idle for the first time. Returns the seconds until then.
    double Open();
    // Opens the editor and acts on it when it is idle for the first time.
    void WhileOpen(const std::function<void(editor::frmHeadings &)> &act);

    // The statements that the component has sent since the last call, of a site with a log.
    std::vector<std::string> Sent();

    const std::string &File() const { return m_file; }

private:
    void Show(editor::frmHeadings &form, const std::function<void()> &whenIdle);

    std::string m_file;
    std::string m_log;
    std::size_t m_read = 0;
    QuietDesktop m_desktop;
};

} // namespace bench
