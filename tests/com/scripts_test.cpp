// The scripts of the folder scripts/ against the registered component: once by the system's cscript, once inside this
// program, which then looks whether everything has been released.
#include "borrowed_classes.h"
#include "component.h"
#include "programs.h"
#include "script_host.h"
#include "user.h"

#include <algorithm>
#include <memory>

namespace com_test
{

namespace
{

// What ShowForm says when there is no database.
void ExpectConnectionMessages(const std::vector<std::string> &boxes)
{
    ASSERT_EQ(boxes.size(), 4u) << "two for each of two calls";
    for (std::size_t i = 0; i < boxes.size(); i += 2)
    {
        EXPECT_EQ(boxes[i].rfind("KVHEADERS: ", 0), 0u) << boxes[i];
        EXPECT_EQ(boxes[i + 1], "Connection Error: Connection to the Corvane database cannot be established.");
    }
}

class Scripts : public testing::TestWithParam<const char *>
{
protected:
    static void SetUpTestSuite() { s_registered = std::make_unique<Registered>(); }
    static void TearDownTestSuite() { s_registered.reset(); }

    static void ExpectBoxes(const std::string &name, const std::vector<std::string> &boxes)
    {
        if (name == "show_form.vbs")
            ExpectConnectionMessages(boxes);
        else
            EXPECT_EQ(boxes, std::vector<std::string>());
    }

private:
    inline static std::unique_ptr<Registered> s_registered;
};

TEST_P(Scripts, ByCscript)
{
    const ProgramRun run = RunByCscript(GetParam(), SourceOf(GetParam()));
    EXPECT_EQ(run.output, kEnd);
    EXPECT_EQ(run.code, 0u);
    ExpectBoxes(GetParam(), run.seen);
}

TEST_P(Scripts, InThisProcessLeavingNothingBehind)
{
    const std::string name = GetParam();
    const Component component;
    const BorrowedClasses classes(component);
    User user;
    EXPECT_EQ(RunScriptHere(IsVbScript(name) ? L"VBScript" : L"JScript", Wide(SourceOf(name))), kEnd);
    ExpectBoxes(name, user.Leave());
    EXPECT_GT(classes.Created(), 0);
    EXPECT_EQ(component.CanUnload(), S_OK) << "something was not released";
}

INSTANTIATE_TEST_SUITE_P(Com, Scripts,
                         testing::Values("config.vbs", "formats.vbs", "headings.vbs", "settings.vbs", "partitions.vbs",
                                         "collection.vbs", "show_form.vbs", "objects.js"),
                         [](const testing::TestParamInfo<const char *> &info)
                         {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

// The checks themselves notice what is wrong.
TEST(ScriptChecks, Notice)
{
    const auto outcome = [](const std::string &script)
    { return RunScriptHere(L"VBScript", Wide(ReadScript("checks.vbs") + "\nOn Error Resume Next\n" + script)); };
    EXPECT_EQ(outcome("Equal \"a\", 1, 1\nFinish 1\n"), kEnd);
    EXPECT_EQ(outcome("Equal \"a\", 1, 2\nFinish 1\n"), "FAILED a: 1 instead of 2\nend of the script, 1 failed\n");
    EXPECT_EQ(outcome("Equal \"a\", CLng(1), 1\nFinish 1\n"),
              "FAILED a: a Long instead of a Integer\nend of the script, 1 failed\n");
    EXPECT_EQ(outcome("Equal \"a\", NoSuchFunction(1), 1\nFinish 1\n"),
              "FAILED 0 checks instead of 1\nend of the script, 1 failed\n");
    EXPECT_EQ(outcome("Err.Raise 5\nWorks \"a\"\nFinish 1\n").rfind("FAILED a", 0), 0u);
    EXPECT_EQ(outcome("Fails \"a\", 5, \"x\"\nFinish 3\n").rfind("FAILED a (number): 0 instead of 5\n", 0), 0u);
}

} // namespace

} // namespace com_test
