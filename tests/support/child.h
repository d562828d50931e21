// The test program once more, as a process of its own: for tests of how a process ends, or of what it reads at its
// start. Windows alone.
#pragma once

#include <windows.h>

#include <string>

namespace support
{

// Runs the tests of this program that match the filter, disabled ones too, and waits for them, a minute at most. `show`
// is how the process is told to show its first window. Gives the exit code.
inline DWORD RunTestsInChild(const std::wstring &filter, WORD show = SW_SHOWNORMAL)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring(program) +
                        L"\" --gtest_brief=1 --gtest_output= --gtest_also_run_disabled_tests --gtest_filter=" + filter;
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = show;
    PROCESS_INFORMATION process = {};
    DWORD code = ~0u;
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
        return code;
    if (WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.hProcess, &code);
    else
        TerminateProcess(process.hProcess, 1);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return code;
}

} // namespace support
