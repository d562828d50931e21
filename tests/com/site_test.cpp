// Hosts that open the editor on a site of the embedded database.
#include "borrowed_classes.h"
#include "component.h"
#include "person.h"
#include "programs.h"
#include "script_host.h"
#include "script_source.h"

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

    support::TestDatabase database;

private:
    std::vector<std::string> m_set;
};

const std::string kEditor = "window: Speech Recognition Headings Editor";
const std::vector<std::string> kOnce = {kEditor};
const std::vector<std::string> kTwice = {kEditor, kEditor};

TEST_F(Site, OpensForAScript)
{
    const Registered registered;
    const ProgramRun run = RunByCscript("site.vbs", SourceOf("site.vbs"));
    EXPECT_EQ(run.output, kEnd);
    EXPECT_EQ(run.code, 0u);
    EXPECT_EQ(run.seen, kTwice);
    EXPECT_FALSE(database.Log().empty());
}

TEST_F(Site, OpensInThisProcessAndLeavesNothingBehind)
{
    const Registered registered;
    const Component component;
    const BorrowedClasses classes(component);
    Person person(GetCurrentProcessId());
    EXPECT_EQ(RunScriptHere(L"VBScript", Wide(SourceOf("site.vbs"))), kEnd);
    EXPECT_EQ(person.Leave(), kTwice);
    EXPECT_EQ(component.CanUnload(), S_OK);
}

TEST_F(Site, OpensForTheExampleInVbScript)
{
    const Registered registered;
    const ProgramRun run = RunByCscript("host.vbs", support::ReadFile(support::SourcePath("examples/host.vbs")));
    EXPECT_EQ(run.output, "KVHEADERS 1.0.0\nShowForm returned 0\n");
    EXPECT_EQ(run.code, 0u);
    EXPECT_EQ(run.seen, kOnce);
}

TEST_F(Site, OpensForTheExampleInCpp)
{
    const Registered registered;
    const std::wstring folder = ComponentFile().substr(0, ComponentFile().find_last_of(L'\\') + 1);
    const ProgramRun run = RunProgram(L"\"" + folder + L"host_example.exe\"");
    EXPECT_EQ(run.output, "KVHEADERS 1.0.0\nShowForm returned 0\n");
    EXPECT_EQ(run.code, 0u);
    EXPECT_EQ(run.seen, kOnce);
}

// A host's timer can fire while the editor is open, and call again.
_clsConfig *configOfTheTimer = nullptr;
std::vector<HRESULT> resultsOfTheTimer;

void CALLBACK CallAgain(HWND, UINT, UINT_PTR timer, DWORD)
{
    if (!IsWindowVisible(FindWindowW(L"KVHEADERS.Form", nullptr)))
        return; // not open yet
    KillTimer(nullptr, timer);
    unsigned char result = 9;
    resultsOfTheTimer.push_back(configOfTheTimer->ShowForm(&result));
    resultsOfTheTimer.push_back(result);
}

TEST_F(Site, IsOpenOnceWhenTheHostCallsAgainMeanwhile)
{
    const Component component;
    const auto config = component.Create<_clsConfig, clsConfig>();
    EXPECT_EQ(config->put_SqlServerName(Text(Wide(database.ServerName())).get()), S_OK);
    EXPECT_EQ(config->put_SqlDbName(Text(Wide(database.DatabaseName())).get()), S_OK);
    EXPECT_EQ(config->put_PartitionID(3), S_OK);
    EXPECT_EQ(config->put_Zentra_INIFile(Text(Wide(database.Folder().Path("ZENTRA.INI"))).get()), S_OK);
    configOfTheTimer = config.Get();
    resultsOfTheTimer.clear();
    SetTimer(nullptr, 0, 10, CallAgain);
    Person person(GetCurrentProcessId(), 1000);
    unsigned char result = 9;
    EXPECT_EQ(config->ShowForm(&result), S_OK);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(resultsOfTheTimer, std::vector<HRESULT>({S_OK, 0}));
    EXPECT_EQ(person.Leave(), kOnce);
    EXPECT_EQ(component.CanUnload(), S_FALSE);
}

// The connection is left open by an editor that is closed without edits: the component goes with it, and comes back.
TEST_F(Site, OpensAgainAfterTheComponentWasUnloaded)
{
    for (int round = 0; round < 2; ++round)
    {
        const Component component;
        const auto config = component.Create<_clsConfig, clsConfig>();
        ASSERT_NE(config.Get(), nullptr);
        EXPECT_EQ(config->put_SqlServerName(Text(Wide(database.ServerName())).get()), S_OK);
        EXPECT_EQ(config->put_SqlDbName(Text(Wide(database.DatabaseName())).get()), S_OK);
        EXPECT_EQ(config->put_PartitionID(3), S_OK);
        EXPECT_EQ(config->put_Zentra_INIFile(Text(Wide(database.Folder().Path("ZENTRA.INI"))).get()), S_OK);
        Person person(GetCurrentProcessId());
        unsigned char result = 9;
        EXPECT_EQ(config->ShowForm(&result), S_OK);
        EXPECT_EQ(result, 0);
        EXPECT_EQ(person.Leave(), kOnce);
    }
    EXPECT_EQ(GetModuleHandleW(L"KVHEADERS.dll"), nullptr);
}

} // namespace

} // namespace com_test
