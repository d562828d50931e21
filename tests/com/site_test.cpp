// Hosts of every kind: scripts, the examples, one without registration, one that calls twice; the editor is opened on a
// site of the embedded database.
#include "component.h"
#include "programs.h"
#include "user.h"

#include "support/test_database.h"
#include "window_driver/watcher.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace com_test
{

namespace
{

constexpr char kSite[] = R"(
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (3, 'Lakeside', '/', NULL)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (-1, 'All', '0', 0)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, 'Group', '0', 3)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (102, 'Closed', '1', 3)
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (2, 'Letter', 101, '0')
INSERT INTO Report_header_formats VALUES (1, 'O''Neill', 0, 2, NULL, 1, 0, -1, 0, 3)
INSERT INTO Report_header_formats VALUES (2, 'System', 1, 0, 1, 0, 1, 0, 1, 3)
INSERT INTO Report_headers VALUES (0, 'Any', 3)
INSERT INTO Report_headers VALUES (7, 'PLAN', 3)
INSERT INTO Report_headers VALUES (8, 'ELSEWHERE', 9)
INSERT INTO Report_header_settings VALUES (7, -1, 0, 1, 3)
INSERT INTO Report_header_settings VALUES (7, 101, 2, 2, 0)
INSERT INTO Report_header_settings VALUES (7, 102, 2, 2, 0)
)";

// A small site, and the environment in which hosts look for it.
class Site : public testing::Test
{
protected:
    Site()
    {
        database.Run(kSite);
        const std::string ini = database.Folder().Path("ZENTRA.INI");
        support::WriteFile(ini, "[System]\r\nNetworkRootDir=" + database.Folder().Path() +
                                    "\r\n[EditDesktop]\r\nTagKnownHeadings=Yes\r\n");
        for (const auto &[name, value] : {std::pair("KVHEADERS_SERVER", database.ServerName()),
                                          {"KVHEADERS_DATABASE", database.DatabaseName()},
                                          {"KVHEADERS_INI", ini},
                                          {"KVHEADERS_PARTITION", std::string("3")}})
            SetEnvironmentVariableW(Wide(name).c_str(), Wide(value).c_str());
    }

    // The same for a host in this process.
    void SetUpHost(_clsConfig &config)
    {
        com_test::SetUpHost(config, database);
        EXPECT_EQ(config.put_Zentra_INIFile(Text(Wide(database.Folder().Path("ZENTRA.INI"))).get()), S_OK);
    }

    support::TestDatabase database;
};

const std::string kExampleOutput = "KVHEADERS " + kVersion + "\nShowForm returned 0\n";
const std::string kEditor = "window: Speech Recognition Headings Editor";
const std::vector<std::string> kOnce = {kEditor};

TEST(Scripts, FulfilTheirChecks)
{
    const Registered registered;
    for (const char *const name : {"objects.vbs", "objects.js"})
    {
        SCOPED_TRACE(name);
        const ProgramRun run = RunScript(name);
        EXPECT_EQ(run.output, kEnd);
        EXPECT_EQ(run.code, 0u);
        EXPECT_EQ(run.seen, std::vector<std::string>());
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

// A folder with the example, the component and their manifests, and nothing in the registry.
TEST_F(Site, OpensForAHostWithoutRegistration)
{
    CLSID id;
    ASSERT_NE(CLSIDFromProgID(L"KVHEADERS.clsConfig", &id), S_OK) << "something is registered";
    const support::TestFolder folder;
    for (const auto &[from, to] :
         {std::pair(L"host_example.exe", "host.exe"), std::pair(L"host.exe.manifest", "host.exe.manifest"),
          std::pair(L"KVHEADERS.dll", "KVHEADERS.dll"), std::pair(L"KVHEADERS.X.manifest", "KVHEADERS.X.manifest")})
        ASSERT_TRUE(CopyFileW(ComponentFile(from).c_str(), Wide(folder.Path(to)).c_str(), TRUE)) << to;
    const ProgramRun run = RunProgram(L"\"" + Wide(folder.Path("host.exe")) + L"\"");
    EXPECT_EQ(run.output, kExampleOutput);
    EXPECT_EQ(run.seen, kOnce);
    DeleteFileW(Wide(folder.Path("host.exe.manifest")).c_str());
    EXPECT_NE(RunProgram(L"\"" + Wide(folder.Path("host.exe")) + L"\"").code, 0u) << "it is the manifest that does it";
}

// The text of the first block of that language in docs/for-hosts.md, with this site's values in place of the examples'.
std::string DocumentedHost(const std::string &language, support::TestDatabase &database)
{
    std::string text = support::ReadFile(support::SourcePath("docs/for-hosts.md"));
    text.erase(0, text.find("```" + language + "\n") + language.size() + 4);
    text.erase(text.find("```"));
    std::string ini = database.Folder().Path("ZENTRA.INI");
    std::replace(ini.begin(), ini.end(), '\\', '/'); // needs no other form in JScript
    const std::string exampleIni = language == "js" ? "C:\\\\SITE\\\\ZENTRA.INI" : "C:\\SITE\\ZENTRA.INI";
    for (const auto &[example, value] :
         {std::pair<std::string, std::string>("\"SERVER\"", "\"" + database.ServerName() + "\""),
          {"\"DATABASE\"", "\"" + database.DatabaseName() + "\""},
          {exampleIni, ini}})
    {
        const auto at = text.find(example);
        EXPECT_NE(at, std::string::npos) << example << " in the host for " << language;
        if (at != std::string::npos)
            text.replace(at, example.size(), value);
    }
    return text;
}

TEST_F(Site, OpensForAScriptTheExamplesAndTheDocumentedScripts)
{
    const Registered registered;
    const std::pair<ProgramRun, std::string> runs[] = {
        {RunScript("site.vbs"), kEnd}, // opens it twice
        {RunProgram(L"\"" + ComponentFile(L"host_example.exe") + L"\""), kExampleOutput},
        {RunByCscript("host.vbs", support::ReadFile(support::SourcePath("examples/host.vbs"))), kExampleOutput},
        {RunByCscript("host.vbs", DocumentedHost("vbscript", database)), "closed\n"},
        {RunByCscript("host.js", DocumentedHost("js", database)), "closed\n"},
    };
    for (const auto &[run, output] : runs)
    {
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(run.code, 0u);
        EXPECT_EQ(run.seen, std::vector<std::string>(output == kEnd ? 2 : 1, kEditor));
    }
}

// A host's timer can fire while the editor is open, and call again.
TEST_F(Site, IsOpenOnceWhenTheHostCallsAgainMeanwhile)
{
    const Component component;
    const auto config = component.Create<_clsConfig, clsConfig>();
    SetUpHost(*config.Get());
    std::vector<HRESULT> results;
    const window_driver::Watcher timer({{},
                                        [&](HWND editor)
                                        {
                                            unsigned char result = 9;
                                            LONG partition = 0;
                                            PostMessageW(editor, WM_CLOSE, 0, 0); // during the second call
                                            results.push_back(config->ShowForm(&result));
                                            results.push_back(result);
                                            results.push_back(config->put_PartitionID(9));
                                            results.push_back(config->get_PartitionID(&partition));
                                            results.push_back(partition);
                                            results.push_back(config->get_PartitionID(nullptr));
                                        }});
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(results, std::vector<HRESULT>({S_OK, 0, S_OK, S_OK, 9, E_POINTER})) << "of one editor";
    EXPECT_EQ(component.CanUnload(), S_FALSE);
}

// The connection is left open by an editor that is closed without edits: the component goes with it, and comes back. A
// host that asks first gets the connection closed then, since no ODBC may be called while the DLL goes.
TEST_F(Site, OpensAgainAfterTheComponentWasUnloaded)
{
    for (int round = 0; round < 2; ++round)
    {
        const Component component;
        auto config = component.Create<_clsConfig, clsConfig>();
        ASSERT_NE(config.Get(), nullptr);
        SetUpHost(*config.Get());
        User user;
        unsigned char result = 9;
        EXPECT_EQ(config->ShowForm(&result), S_OK);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(user.Leave(), kOnce);
        SHORT id = 5;
        EXPECT_EQ(config->get_User_ID(&id), S_OK);
        EXPECT_EQ(id, 0) << "a component loaded anew starts anew";
        EXPECT_EQ(config->put_User_ID(77), S_OK);
        config.Reset();
        if (round == 0)
            continue; // a host that does not ask
        const std::size_t before = database.Logged("disconnect").size();
        EXPECT_EQ(component.CanUnload(), S_OK);
        EXPECT_EQ(database.Logged("disconnect").size(), before + 1);
    }
    EXPECT_EQ(GetModuleHandleW(L"KVHEADERS.dll"), nullptr);
}

// Only a button of the themed controls knows the size that would suit it.
bool Themed(HWND button)
{
    SIZE size{};
    return SendMessageW(button, BCM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&size)) != 0;
}

// What the component shows looks alike in every host: also its message boxes, in a host without themed controls.
TEST_F(ComponentTest, ItsMessageBoxesHaveThemedButtons)
{
    const auto config = component.Create<_clsConfig, clsConfig>();
    EXPECT_EQ(config->put_SqlServerName(Text(L"embedded").get()), S_OK);
    EXPECT_EQ(config->put_SqlDbName(Text(L"/no/such/file").get()), S_OK);
    // What the driver says, and what that means.
    std::vector<std::pair<std::string, bool>> themed;
    window_driver::Watcher watcher(GetCurrentProcessId(),
                                   {[&](HWND box)
                                    {
                                        themed.emplace_back(window_driver::TextOf(box),
                                                            Themed(FindWindowExW(box, nullptr, L"Button", nullptr)));
                                        return IDOK;
                                    },
                                    {}});
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    watcher.End();
    EXPECT_EQ(themed, (std::vector<std::pair<std::string, bool>>{{"KVHEADERS", true}, {"Connection Error", true}}));

    const HWND button = CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_FALSE(Themed(button)) << "the host's own windows stay as they are";
    DestroyWindow(button);
}

} // namespace

} // namespace com_test
