// Clients that this project did not write: isql and iusql, Python's pyodbc. Each plays a script of
// tests/embedded/clients, whose output must be the approved one beside it. The clients are Debian's, and so is the
// interpreter that pyodbc is made for: another python3 may come first in the path.
#include "client.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <sys/wait.h>

namespace driver_tests
{
namespace
{

std::string Output(const std::string &command, int &status)
{
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    std::string text;
    char buffer[4096];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        text.append(buffer, got);
    const int result = pclose(pipe);
    status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
    return text;
}

void Play(const std::string &program, const std::string &script)
{
    int status = 0;
    const OdbcSettings settings;
    const char *root = std::getenv("KV_ROOT");
    const std::string file = std::string(root != nullptr ? root : ".") + "/tests/embedded/clients/" + script;
    std::string text = Output(program + " " + file + " " + settings.Path("client.db"), status);
    // the file's name differs from run to run
    for (size_t at; (at = text.find(settings.Path("client.db"))) != std::string::npos;)
        text.replace(at, settings.Path("client.db").size(), "<file>");
    EXPECT_EQ(status, 0);
    std::stringstream expected;
    expected << std::ifstream(file + ".expected").rdbuf();
    EXPECT_EQ(text, expected.str());
}

TEST(Clients, Isql)
{
    Play("sh", "isql_client.sh");
}
TEST(Clients, Pyodbc)
{
    Play("/usr/bin/python3", "pyodbc_client.py");
}

} // namespace
} // namespace driver_tests
