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

// A script of the folder scripts/ in whole: one in VBScript has the checks in front.
ProgramRun RunScript(const std::string &name);
std::string ReadScript(const std::string &name);

// What a script says when all its checks have been reached and are fulfilled.
constexpr char kEnd[] = "end of the script, 0 failed\n";

} // namespace com_test
