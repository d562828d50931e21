// Runs other programs, with a user before the screen.
#include "programs.h"

#include "component.h"
#include "user.h"

#include "support/test_folder.h"

namespace com_test
{

ProgramRun RunProgram(const std::wstring &commandLine)
{
    const support::TestFolder folder;
    const std::string output = folder.Path("output.txt");
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const HANDLE file = CreateFileW(Wide(output).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = file;
    start.hStdError = file;
    PROCESS_INFORMATION process = {};
    std::wstring line = commandLine;
    ProgramRun run;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
    {
        User user(process.dwProcessId);
        if (WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0)
            GetExitCodeProcess(process.hProcess, &run.code);
        else
            TerminateProcess(process.hProcess, 1);
        run.seen = user.Leave();
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(file);
    run.output = support::ReadFile(output);
    std::erase(run.output, '\r');
    return run;
}

ProgramRun RunByCscript(const std::string &name, const std::string &source)
{
    const support::TestFolder folder;
    const std::string script = folder.Path(name);
    support::WriteFile(script, source);
    return RunProgram(L"cscript.exe //nologo \"" + Wide(script) + L"\"");
}

std::string ReadScript(const std::string &name)
{
    const std::string text = support::ReadFile(support::SourcePath("tests/com/scripts/" + name));
    EXPECT_FALSE(text.empty()) << name;
    return text;
}

ProgramRun RunScript(const std::string &name)
{
    return RunByCscript(name, (name.ends_with(".vbs") ? ReadScript("checks.vbs") : "") + ReadScript(name));
}

} // namespace com_test
