// A user before the screen: answers the message boxes of a process with OK, closes the editor when it opens, and
// remembers what they have seen.
#pragma once

#include "window_driver/watcher.h"

#include <string>
#include <vector>

namespace com_test
{

class User
{
public:
    // `process` is the one whose windows are looked after, from now until this object is gone. An editor is looked at
    // for so many milliseconds before it is closed.
    explicit User(DWORD process = GetCurrentProcessId(), DWORD looksFor = 0)
        : m_watcher(process, {[this](HWND box)
                              {
                                  m_seen.push_back(window_driver::TextOf(box) + ": " + window_driver::BoxText(box));
                                  return IDOK;
                              },
                              [this, looksFor](HWND editor)
                              {
                                  m_seen.push_back("window: " + window_driver::TextOf(editor));
                                  Sleep(looksFor);
                                  PostMessageW(editor, WM_CLOSE, 0, 0);
                              }})
    {
    }

    // "title: text" of each box and "window: caption" of each editor, in order. The user leaves.
    std::vector<std::string> Leave()
    {
        m_watcher.End();
        return m_seen;
    }

private:
    std::vector<std::string> m_seen;
    window_driver::Watcher m_watcher;
};

} // namespace com_test
