// Answers the message boxes of a process with OK, as a person would, and keeps what they said.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace com_test
{

class BoxAnswerer
{
public:
    // `process` is the identifier of the process whose boxes are answered, from now until this object is gone.
    explicit BoxAnswerer(DWORD process);
    ~BoxAnswerer();

    // "title: text" of each box, in order. Ends the answering.
    std::vector<std::string> Finish();

private:
    void Run(DWORD process);

    std::atomic<bool> m_ends = false;
    std::vector<std::string> m_boxes;
    std::thread m_thread;
};

} // namespace com_test
