// The scripts of the folder scripts/ against the registered component, by the system's script host. That late calls
// leave nothing behind is looked at wherever this program makes them itself.
#include "component.h"
#include "programs.h"

namespace com_test
{

namespace
{

TEST(Scripts, FulfilTheirChecks)
{
    const Registered registered;
    for (const char *const name : {"objects.vbs", "show_form.vbs", "objects.js"})
    {
        SCOPED_TRACE(name);
        const ProgramRun run = RunScript(name);
        EXPECT_EQ(run.output, kEnd);
        EXPECT_EQ(run.code, 0u);
        // Two boxes for each of the two calls without a database.
        ASSERT_EQ(run.seen.size(), name == std::string("show_form.vbs") ? 4u : 0u);
        for (std::size_t i = 0; i < run.seen.size(); i += 2)
        {
            EXPECT_EQ(run.seen[i].rfind("KVHEADERS: ", 0), 0u) << run.seen[i];
            EXPECT_EQ(run.seen[i + 1], "Connection Error: Connection to the Corvane database cannot be established.");
        }
    }
}

// The checks themselves notice what is wrong.
TEST(ScriptChecks, Notice)
{
    const ProgramRun run = RunByCscript("checks.vbs", ReadScript("checks.vbs") + R"(
On Error Resume Next
Equal "as it is to be", 1, 1
Equal "value", 1, 2
Equal "type", CLng(1), 1
Equal "never reached", NoSuchFunction(1), 1
Err.Clear
Err.Raise 5
Works "works"
Fails "fails", 5, "x"
Finish 8
)");
    EXPECT_EQ(run.output.substr(0, run.output.find("FAILED works")),
              "FAILED value: 1 instead of 2\nFAILED type: a Long instead of a Integer\n");
    EXPECT_EQ(run.output.substr(run.output.find("FAILED fails")),
              "FAILED fails (number): 0 instead of 5\nFAILED fails (text):  instead of x\n"
              "FAILED fails (source):  instead of KVHEADERS\n"
              "FAILED 7 checks instead of 8\nend of the script, 7 failed\n");
    EXPECT_EQ(run.code, 7u);
}

} // namespace

} // namespace com_test
