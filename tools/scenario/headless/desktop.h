// The desktop of the headless stage: the audience answers its message boxes and sees what is opened.
#pragma once

#include "platform/desktop.h"
#include "play/stage.h"

namespace scenario
{

class HeadlessDesktop final : public platform::Desktop
{
public:
    explicit HeadlessDesktop(Audience &audience) : m_audience(audience) { platform::SetDesktop(this); }
    ~HeadlessDesktop() override { platform::SetDesktop(nullptr); }

    // Whether the window was last put above all others.
    bool Topmost() const { return m_topmost; }

    platform::Answer ShowMessage(const std::string &text, int flags, const std::string &title) override;
    void OpenFile(platform::WindowHandle owner, const std::string &path, const std::string &workingDirectory) override;
    void DoEvents() override {}
    void Sleep(int) override {}
    void WaitCursor(bool) override {}
    double TwipsPerPixelX() override { return 15; }
    double TwipsPerPixelY() override { return 15; }
    void SetWindowPos(platform::WindowHandle window, int insertAfter, int left, int top, int width,
                      int height) override;
    std::string NowText() override { return "now"; }

private:
    Audience &m_audience;
    bool m_topmost = false;
};

} // namespace scenario
