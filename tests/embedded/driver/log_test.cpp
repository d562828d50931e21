// The statement log and the fault list, as tests of the component use them.
#include "client.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace driver_tests
{
namespace
{

using Lines = std::vector<std::string>;

class LogTest : public DriverTest
{
protected:
    void SetUp() override
    {
        DriverTest::SetUp();
        Run("CREATE TABLE t (id int NOT NULL PRIMARY KEY)");
        Run("INSERT INTO t VALUES (1) INSERT INTO t VALUES (2) INSERT INTO t VALUES (3)");
        m_component = std::make_unique<Link>();
        ASSERT_TRUE(Allowed("SI",
                            m_component->Connect(ConnectText("StatementLog=" + settings.Path("log") + ";FaultList=" +
                                                             settings.Path("faults") + ";APP=KVHEADERS.DLL;")),
                            SQL_HANDLE_DBC, m_component->dbc));
        component = m_component->NewStatement();
    }

    // The log's lines without their ID.
    Lines Log() const
    {
        std::ifstream in(settings.Path("log"));
        Lines lines;
        for (std::string line; std::getline(in, line);)
        {
            const size_t id = line.find('\t');
            lines.push_back(line.substr(0, id) + line.substr(line.find('\t', id + 1)));
        }
        return lines;
    }

    void Order(const std::string &lines) const { std::ofstream(settings.Path("faults")) << lines; }
    std::string Ordered() const
    {
        std::stringstream text;
        text << std::ifstream(settings.Path("faults")).rdbuf();
        return text.str();
    }

    std::unique_ptr<Link> m_component;
    SQLHSTMT component = nullptr;
};

TEST_F(LogTest, StatementsAreLoggedAsTheyArriveAndErrorsBehindThem)
{
    Exec(component, "SELECT id\r\nFROM t\t-- \"quoted\" \\ \u00e9");
    SQLFreeStmt(component, SQL_CLOSE);
    Exec(component, "SELECT 1 FROM missing");
    EXPECT_EQ(Log(), (Lines{"connect\tKVHEADERS.DLL\t " + settings.Path("test.db"),
                            "statement\tKVHEADERS.DLL\tSELECT id\\r\\nFROM t\\t-- \\\"quoted\\\" \\\\ \u00e9",
                            "statement\tKVHEADERS.DLL\tSELECT 1 FROM missing",
                            "error\tKVHEADERS.DLL\t42S02: [KVHEADERS][Embedded Driver][SQL Server]Invalid object name "
                            "'missing'."}));
}

TEST_F(LogTest, LateErrorsAreLoggedWhenTheyShow)
{
    Exec(component, "UPDATE t SET id = id INSERT INTO t VALUES (1)");
    EXPECT_EQ(Log().size(), 2u);
    CHECK_STMT("E", SQLMoreResults(component), component);
    EXPECT_EQ(Log().back().substr(0, 27), "error\tKVHEADERS.DLL\t23000: ");
}

TEST_F(LogTest, ConnectionsAreToldApartByApplication)
{
    Link other;
    ASSERT_TRUE(Allowed("SI", other.Connect(ConnectText("StatementLog=" + settings.Path("log") + ";APP=player;")),
                        SQL_HANDLE_DBC, other.dbc));
    Exec(other.NewStatement(), "SELECT 1");
    EXPECT_EQ(Log().back(), "statement\tplayer\tSELECT 1");
}

TEST_F(LogTest, EnvironmentVariableSwitchesTheLogOn)
{
    setenv("KVEMBEDDED_LOG", settings.Path("other.log").c_str(), 1);
    Link other;
    EXPECT_TRUE(Allowed("SI", other.Connect(ConnectText()), SQL_HANDLE_DBC, other.dbc));
    unsetenv("KVEMBEDDED_LOG");
    Exec(other.NewStatement(), "SELECT 5");
    std::stringstream text;
    text << std::ifstream(settings.Path("other.log")).rdbuf();
    EXPECT_NE(text.str().find("\tSELECT 5\n"), std::string::npos);
}

TEST_F(LogTest, FaultBeforeKeepsTheStatementFromTheDatabase)
{
    Order("2\tbefore\tDELETE FROM t\t40001\t1205\tTransaction was \\\"chosen\\\"\n");
    CHECK_STMT("S", Exec(component, "UPDATE t SET id = id WHERE id = 1"), component);
    for (int i = 0; i < 2; ++i)
    {
        CHECK_STMT("E", Exec(component, "DELETE FROM t WHERE id = 1"), component);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, component), Lines{"40001 (1205) Transaction was \"chosen\""});
    }
    EXPECT_EQ(Query(component, "SELECT COUNT(*) FROM t"), Lines{"3"});
    CHECK_STMT("S", Exec(component, "DELETE FROM t WHERE id = 1"), component) << "the count is used up";
    EXPECT_EQ(Ordered(), "0\tbefore\tDELETE FROM t\t40001\t1205\tTransaction was \\\"chosen\\\"\n");
    EXPECT_EQ(Log().at(2), "statement\tKVHEADERS.DLL\tDELETE FROM t WHERE id = 1");
    EXPECT_EQ(Log().at(3), "error\tKVHEADERS.DLL\t40001: Transaction was \\\"chosen\\\"");
}

TEST_F(LogTest, FaultAfterLetsTheStatementTakeEffect)
{
    Order("1\tafter\tDELETE\tHY000\t0\tlost\n");
    CHECK_STMT("E", Exec(component, "DELETE FROM t WHERE id = 1 DELETE FROM t WHERE id = 2"), component);
    EXPECT_EQ(Query(component, "SELECT id FROM t"), Lines{"3"});
}

TEST_F(LogTest, OthersAreNotMeant)
{
    Order("1\tbefore\tSELECT\tHY000\t0\tfailed\n");
    Link other;
    ASSERT_TRUE(Allowed("SI", other.Connect(ConnectText("FaultList=" + settings.Path("faults") + ";APP=player;")),
                        SQL_HANDLE_DBC, other.dbc));
    EXPECT_EQ(Query(other.NewStatement(), "SELECT 1"), Lines{"1"});
    Link meant;
    ASSERT_TRUE(Allowed("SI",
                        meant.Connect(ConnectText("FaultList=" + settings.Path("faults") + ";FaultApplication=*;")),
                        SQL_HANDLE_DBC, meant.dbc));
    const SQLHSTMT theirs = meant.NewStatement();
    CHECK_STMT("E", Exec(theirs, "SELECT 1"), theirs);
}

TEST_F(LogTest, LinesMayBeAddedWhileClientsRun)
{
    EXPECT_EQ(Query(component, "SELECT 1"), Lines{"1"}) << "no list at all";
    Order("# a comment\n\n1\tbefore\tabsent\tHY000\t0\tx\n");
    EXPECT_EQ(Query(component, "SELECT 1"), Lines{"1"});
    std::ofstream(settings.Path("faults"), std::ios::app) << "1\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n";
    CHECK_STMT("E", Exec(component, "SELECT 1\r\n"), component);
    EXPECT_EQ(Ordered(), "# a comment\n\n1\tbefore\tabsent\tHY000\t0\tx\n0\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n");
}

TEST_F(LogTest, FaultAtARowComesBehindTheRowsBeforeIt)
{
    Order("1\trow:3\tFROM t\tHY000\t0\tthird\n");
    CHECK_STMT("S", Exec(component, "SELECT id FROM t ORDER BY id"), component);
    CHECK_STMT("S", SQLFetch(component), component);
    CHECK_STMT("S", SQLFetch(component), component);
    CHECK_STMT("E", SQLFetch(component), component);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, component), Lines{"HY000 (0) third"});
    EXPECT_EQ(Log().back(), "error\tKVHEADERS.DLL\tHY000: third");
    SQLFreeStmt(component, SQL_CLOSE);
    EXPECT_EQ(Query(component, "SELECT id FROM t ORDER BY id"), (Lines{"1", "2", "3"}));
}

TEST_F(LogTest, CutBeforeLosesTheStatementAndTheConnection)
{
    Order("1\tcut-before\tDELETE\t\t\t\n");
    CHECK_STMT("E", Exec(component, "DELETE FROM t"), component);
    EXPECT_EQ(States(SQL_HANDLE_STMT, component), Lines{"08S01 (0)"});
    EXPECT_TRUE(m_component->IsDead());
    CHECK_STMT("E", Exec(component, "SELECT 1"), component);
    EXPECT_EQ(States(SQL_HANDLE_STMT, component), Lines{"08S01 (0)"});
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"3"});
    SQLFreeHandle(SQL_HANDLE_STMT, component);
    EXPECT_EQ(SQLDisconnect(m_component->dbc), SQL_SUCCESS) << "a dead connection closes";
    ASSERT_TRUE(Allowed("SI", m_component->Connect(ConnectText()), SQL_HANDLE_DBC, m_component->dbc));
    EXPECT_FALSE(m_component->IsDead());
}

TEST_F(LogTest, CutAfterKeepsTheEffect)
{
    Order("1\tcut-after\tDELETE\t01000\t0\tbroken pipe\n");
    CHECK_STMT("E", Exec(component, "DELETE FROM t"), component);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, component), Lines{"01000 (0) broken pipe"});
    EXPECT_TRUE(m_component->IsDead());
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{"0"});
}

TEST_F(LogTest, CutInTheMiddleOfTheRows)
{
    Order("1\tcut-row:2\tSELECT\t\t\t\n");
    CHECK_STMT("S", Exec(component, "SELECT id FROM t"), component);
    CHECK_STMT("S", SQLFetch(component), component);
    CHECK_STMT("E", SQLFetch(component), component);
    EXPECT_TRUE(m_component->IsDead());
}

TEST_F(LogTest, CountsAreSharedBetweenProcesses)
{
    // eight processes with fifty statements each meet a hundred ordered failures
    Order("100\tbefore\tSELECT\tHY000\t0\tordered\n");
    const std::string text = ConnectText("FaultList=" + settings.Path("faults") + ";FaultApplication=*;");
    std::vector<pid_t> children;
    for (int process = 0; process < 8; ++process)
    {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            int failed = 0;
            Link client;
            client.Connect(text);
            const SQLHSTMT theirs = client.NewStatement();
            for (int i = 0; i < 50; ++i)
            {
                failed += Exec(theirs, "SELECT 1") == SQL_ERROR ? 1 : 0;
                SQLFreeStmt(theirs, SQL_CLOSE);
            }
            _exit(failed);
        }
        children.push_back(child);
    }
    int failed = 0;
    for (const pid_t child : children)
    {
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFEXITED(status));
        failed += WEXITSTATUS(status);
    }
    EXPECT_EQ(failed, 100);
}

} // namespace
} // namespace driver_tests
