// Child processes of a test and programs that it runs, on Linux.
#pragma once

#include <cstdio>
#include <functional>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

namespace support
{

// Runs the body in a child process; what it returns is the child's exit status.
inline pid_t StartProcess(const std::function<int()> &body)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(body());
    return child;
}

inline int ExitStatus(int status)
{
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

inline int WaitFor(pid_t child)
{
    int status = 0;
    waitpid(child, &status, 0);
    return ExitStatus(status);
}

struct Outcome
{
    int status = -1;
    std::string text; // standard output and error, as they come
};

inline Outcome RunShell(const std::string &command)
{
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    Outcome outcome;
    char buffer[4096];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        outcome.text.append(buffer, got);
    outcome.status = ExitStatus(pclose(pipe));
    return outcome;
}

} // namespace support
