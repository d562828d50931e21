// Finds the windows of a host and reads them off, from any thread. Texts are UTF-8.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace window_driver
{

// Whose windows are looked at: those of a process, or of one thread when that is not 0.
struct Owner
{
    DWORD process = GetCurrentProcessId();
    DWORD thread = 0;
};

std::string ClassOf(HWND window);
std::string TextOf(HWND window);
bool IsTopmost(HWND window);

// A visible top-level window that is accepted; null when there is none.
HWND FindShown(const Owner &owner, const std::function<bool(HWND)> &accept);
// The editor that is open, and a message box that is.
HWND FindEditor(const Owner &owner = {});
HWND FindMessageBox(const Owner &owner = {});

std::string BoxText(HWND box);
// Posts the press of a button: IDOK, IDYES, IDNO.
void AnswerBox(HWND box, int button);

// Waits until it holds; false when it does not within that time.
bool WaitUntil(const std::function<bool()> &holds, DWORD milliseconds = 5000);
// Until a window has been destroyed or hidden.
bool WaitUntilGone(HWND window, DWORD milliseconds = 5000);

} // namespace window_driver
