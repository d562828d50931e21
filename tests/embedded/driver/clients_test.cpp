// Clients that this project did not write: isql and iusql, Python's pyodbc. Each plays a script of
// tests/embedded/clients, whose output must be the approved one beside it. The clients are Debian's, and so is the
// interpreter that pyodbc is made for: another python3 may come first in the path.
#include "client.h"
#include "support/processes.h"

namespace driver_tests
{
namespace
{

void Play(const std::string &program, const std::string &script)
{
    const support::TestFolder folder;
    const Link link; // whose program has the driver registered
    const std::string file = support::SourcePath("tests/embedded/clients/" + script);
    const support::Outcome played = support::RunShell(program + " " + file + " " + folder.Path("client.db"));
    EXPECT_EQ(played.status, 0);
    EXPECT_EQ(played.text, support::ReadFile(file + ".expected"));
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
