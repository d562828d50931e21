// Hosts that open the editor on a site of the embedded database.
#include "component.h"
#include "programs.h"
#include "user.h"

#include "support/test_database.h"

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
INSERT INTO Report_header_formats VALUES (3, 'Other system', 0, 0, 0, 0, 0, 0, 1, 9)
INSERT INTO Report_header_formats VALUES (4, NULL, 0, 0, 0, 0, 0, 0, 0, 9)
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
        Set("SERVER", database.ServerName());
        Set("DATABASE", database.DatabaseName());
        Set("INI", ini);
        Set("PARTITION", "3");
    }
    ~Site() override
    {
        for (const std::string &name : m_set)
            SetEnvironmentVariableA(name.c_str(), nullptr);
    }

    void Set(const std::string &name, const std::string &value)
    {
        m_set.push_back("KVHEADERS_" + name);
        SetEnvironmentVariableW(Wide(m_set.back()).c_str(), Wide(value).c_str());
    }

    // The same for a host in this process.
    void SetUpHost(_clsConfig &config)
    {
        com_test::SetUpHost(config, database);
        EXPECT_EQ(config.put_Zentra_INIFile(Text(Wide(database.Folder().Path("ZENTRA.INI"))).get()), S_OK);
    }

    support::TestDatabase database;

private:
    std::vector<std::string> m_set;
};

const std::string kExampleOutput = "KVHEADERS " + kVersion + "\nShowForm returned 0\n";
const std::string kEditor = "window: Speech Recognition Headings Editor";
const std::vector<std::string> kOnce = {kEditor};

TEST_F(Site, OpensForAScript)
{
    const Registered registered;
    const ProgramRun run = RunScript("site.vbs");
    EXPECT_EQ(run.output, kEnd);
    EXPECT_EQ(run.code, 0u);
    EXPECT_EQ(run.seen, std::vector<std::string>(2, kEditor));
    EXPECT_FALSE(database.Log().empty());
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
    std::string ini;
    for (const char letter : database.Folder().Path("ZENTRA.INI"))
        ini += language == "js" && letter == '\\' ? "\\\\" : std::string(1, letter);
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

TEST_F(Site, OpensForTheExamplesAndTheDocumentedScripts)
{
    const Registered registered;
    const std::pair<ProgramRun, std::string> runs[] = {
        {RunProgram(L"\"" + ComponentFile(L"host_example.exe") + L"\""), kExampleOutput},
        {RunByCscript("host.vbs", support::ReadFile(support::SourcePath("examples/host.vbs"))), kExampleOutput},
        {RunByCscript("host.vbs", DocumentedHost("vbscript", database)), "closed\n"},
        {RunByCscript("host.js", DocumentedHost("js", database)), "closed\n"},
    };
    for (const auto &[run, output] : runs)
    {
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(run.code, 0u);
        EXPECT_EQ(run.seen, kOnce);
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
        config.Reset();
        if (round == 0)
            continue; // a host that does not ask
        const std::size_t before = database.Logged("disconnect").size();
        EXPECT_EQ(component.CanUnload(), S_OK);
        EXPECT_EQ(database.Logged("disconnect").size(), before + 1);
    }
    EXPECT_EQ(GetModuleHandleW(L"KVHEADERS.dll"), nullptr);
}

} // namespace

} // namespace com_test
