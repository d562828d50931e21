// Clients that this project did not write: isql and iusql, Python's pyodbc. Each plays a script of
// tests/embedded/clients, whose output must be the approved one beside it. The clients are Debian's, and so is the
// interpreter that pyodbc is made for: another python3 may come first in the path.
#include "support/processes.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

namespace
{

TEST(Clients, SeeWhatIsApproved)
{
    for (const std::string program : {"sh isql_client.sh", "/usr/bin/python3 pyodbc_client.py"})
    {
        const support::TestFolder folder;
        const std::string scripts = support::SourcePath("tests/embedded/clients");
        const auto played = support::RunShell("cd " + scripts + " && " + program + " " + folder.Path("client.db"));
        EXPECT_EQ(played.status, 0);
        EXPECT_EQ(played.text, support::ReadFile(scripts + "/" + program.substr(program.find(' ') + 1) + ".expected"));
    }
}

} // namespace
