// This program as a process: see process.h.
#include "play/process.h"

#include "headless/stage.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
// The driver manager loses the DSN='' pair of each connect string of the driver form: 39 bytes that are not ours.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libodbc.so\n";
}
extern "C" const char *__lsan_default_options()
{
    return "print_suppressions=0";
}
#endif

namespace scenario
{

std::unique_ptr<Stage> MakeStage(Audience &audience)
{
    return MakeHeadlessStage(audience);
}

int PlayApart(const std::vector<std::string> &arguments, const std::function<int()> &)
{
    std::vector<char *> words{const_cast<char *>("scenario")};
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    pid_t child = 0;
    int status = 0;
    if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, words.data(), environ) != 0 ||
        waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return 1;
    return WEXITSTATUS(status);
}

void LeaveLineEnds() {}

} // namespace scenario
