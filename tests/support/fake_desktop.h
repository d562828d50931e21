// A desktop for tests: message boxes are answered from a script, and everything asked of it is recorded.
#pragma once

#include "platform/desktop.h"
#include "runtime/error.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace support
{

// What a box without a scripted answer raises, besides failing the test: nothing may wait for a user who is not
// there.
struct UnexpectedBox : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// The current desktop for as long as it lives. Answers that are left over at its end fail the test.
class FakeDesktop final : public platform::Desktop
{
public:
    struct OpenedFile
    {
        platform::WindowHandle owner;
        std::string path;
        std::string workingDirectory;
        std::string content; // the file's bytes at that moment
    };

    // A call of SetWindowPos.
    struct Placing
    {
        platform::WindowHandle window;
        int insertAfter;
        int left;
        int top;
        int width;
        int height;
    };

    FakeDesktop();
    ~FakeDesktop() override;
    FakeDesktop(const FakeDesktop &) = delete;
    FakeDesktop &operator=(const FakeDesktop &) = delete;

    // The answers to the boxes to come, in order.
    void WillAnswer(std::initializer_list<platform::Answer> answers);
    void WillAnswerOk(std::size_t times = 1);
    std::size_t AnswersLeft() const { return m_answers.size(); }
    void ForgetAnswers() { m_answers.clear(); }

    // What was shown, as lines: box FLAGS "title" "text" -> ANSWER, control characters escaped.
    std::vector<std::string> boxes;
    // Called with each such line while the box is open.
    std::function<void(const std::string &line)> whileBoxIsOpen;

    // Files that were opened. One that does not exist is the error 53; with `openFailure` set, that is raised for all.
    std::vector<OpenedFile> opened;
    std::optional<runtime::Error> openFailure;

    std::vector<Placing> placings;
    int waitCursors = 0; // on minus off
    bool hostAnswers = true;
    int eventRounds = 0;
    // Called whenever messages are let through.
    std::function<void()> onEvents;
    double twipsPerPixelX = 15;
    double twipsPerPixelY = 15;
    std::string now = "11/21/2003 3:58:07 PM";

    platform::Answer ShowMessage(const std::string &text, int flags, const std::string &title) override;
    void OpenFile(platform::WindowHandle owner, const std::string &path, const std::string &workingDirectory) override;
    void DisableHost() override { hostAnswers = false; }
    void EnableHost() override { hostAnswers = true; }
    void DoEvents() override
    {
        ++eventRounds;
        if (onEvents)
            onEvents();
    }
    void Sleep(int) override {}
    void WaitCursor(bool on) override { waitCursors += on ? 1 : -1; }
    double TwipsPerPixelX() override { return twipsPerPixelX; }
    double TwipsPerPixelY() override { return twipsPerPixelY; }
    void SetWindowPos(platform::WindowHandle window, int insertAfter, int left, int top, int width,
                      int height) override;
    std::string NowText() override { return now; }

private:
    std::deque<platform::Answer> m_answers;
};

// A box as FakeDesktop records it.
std::string Box(int flags, const std::string &title, const std::string &text, const std::string &answer = "OK");
// The box of a reported error.
std::string ErrorBox(const std::string &text);

} // namespace support
