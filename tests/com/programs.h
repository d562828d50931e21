// Runs other programs, with a user before the screen.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace com_test
{

struct ProgramRun
{
    std::string output; // without carriage returns
    DWORD code = ~0u;
    std::vector<std::string> seen; // by the user
};

// Runs a command line and waits for its end, a minute at most.
ProgramRun RunProgram(const std::wstring &commandLine);

// Runs a script by the system's cscript. `name` is the name of its file.
ProgramRun RunByCscript(const std::string &name, const std::string &source);

} // namespace com_test
