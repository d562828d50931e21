// A user before the screen: answers the message boxes of a process with OK, closes the editor when it opens, and
// remembers what they have seen.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace com_test
{

class Person
{
public:
    // `process` is the identifier of the process whose windows are looked after, from now until this object is gone.
    // An editor is looked at for so many milliseconds before it is closed.
    explicit Person(DWORD process, DWORD looksFor = 0);
    ~Person();

    // "title: text" of each box and "window: caption" of each editor, in order. The user leaves.
    std::vector<std::string> Leave();

private:
    void Run(DWORD process, DWORD looksFor);

    std::atomic<bool> m_leaves = false;
    std::vector<std::string> m_seen;
    std::thread m_thread;
};

} // namespace com_test
