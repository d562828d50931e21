// What the component needs of the desktop it runs on: message boxes, opening a file, letting messages through. The real
// one is the system's; tests and the headless stage put their own in its place.
#pragma once

#include <string>

namespace platform
{

// Message box flags, added up.
constexpr int kOkOnly = 0;
constexpr int kCritical = 16;
constexpr int kYesNoQuestion = 36;
constexpr int kExclamation = 48;
constexpr int kSystemModal = 4096;

// What a message box answers.
enum class Answer
{
    Ok = 1,
    Yes = 6,
    No = 7
};

// A native window, or null.
using WindowHandle = void *;

class Desktop
{
public:
    virtual ~Desktop() = default;

    // Shows a box and waits for the answer. `flags` are the message box flags above.
    virtual Answer ShowMessage(const std::string &text, int flags, const std::string &title) = 0;

    // Lets the system open a file with the program that belongs to it. Raises an Error when it cannot.
    virtual void OpenFile(WindowHandle owner, const std::string &path, const std::string &workingDirectory) = 0;

    // From now until EnableHost the host's windows do not answer: those of this thread that are visible and enabled
    // now, so that none of the component's is among them. Nothing happens while they are disabled already, or on a
    // desktop without windows.
    virtual void DisableHost() {}

    // Exactly those answer again, and the window that was active before is active again. Nothing happens when they do
    // already.
    virtual void EnableHost() {}

    // Lets waiting window messages be processed: those of the host, timers, painting, and what other threads send.
    // Input (mouse, keyboard, menu) stays in the queue, in its order, for when the running handler has ended.
    virtual void DoEvents() = 0;

    virtual void Sleep(int milliseconds) = 0;

    // Wait cursor on or off; calls nest.
    virtual void WaitCursor(bool on) = 0;

    // Twips per pixel in each axis: 1440 divided by the screen's resolution in dots per inch.
    virtual double TwipsPerPixelX() = 0;
    virtual double TwipsPerPixelY() = 0;

    // Puts a window above all others (`insertAfter` -1) or back among them (-2) at a place in pixels. A null window is
    // an error.
    virtual void SetWindowPos(WindowHandle window, int insertAfter, int left, int top, int width, int height) = 0;

    // Now, in the system's general date format.
    virtual std::string NowText() = 0;
};

// The desktop in use: the system's own until another is set. Setting null brings the system's back.
Desktop &CurrentDesktop();
void SetDesktop(Desktop *desktop);

// The system's own desktop.
Desktop &SystemDesktop();

// A message box on the current desktop. A box without a title of its own has the component's name. Throws
// runtime::HandlerCancelled when the window of the running handler has gone: without a box, or as soon as it is
// answered.
Answer MsgBox(const std::string &text, int flags, const std::string &title = "KVHEADERS");

// The host's windows do not answer for the length of a block, or until EnableHost is called in it.
class ModalToHost
{
public:
    ModalToHost() { CurrentDesktop().DisableHost(); }
    ~ModalToHost() { CurrentDesktop().EnableHost(); }
    ModalToHost(const ModalToHost &) = delete;
    ModalToHost &operator=(const ModalToHost &) = delete;
};
// Lets messages through on the current desktop. Throws runtime::HandlerCancelled when the window of the running handler
// is gone thereafter.
void DoEvents();

// The wait cursor for the length of a block.
class WaitCursor
{
public:
    WaitCursor() { CurrentDesktop().WaitCursor(true); }
    ~WaitCursor() { CurrentDesktop().WaitCursor(false); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace platform
