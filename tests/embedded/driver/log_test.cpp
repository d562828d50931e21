// The files of the statement log and the fault list: their form, and how several clients share them.
#include "client.h"
#include "support/processes.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace driver_tests
{
namespace
{

class LogTest : public DriverTest
{
protected:
    LogTest()
    {
        Run("CREATE TABLE t (id int NOT NULL PRIMARY KEY)");
        Run("INSERT INTO t VALUES (1), (2), (3)");
        component = Connect(m_component, "APP=KVHEADERS.DLL;");
    }

    SQLHSTMT Connect(Link &other, const std::string &more) const
    {
        return Open(other, ConnectText("StatementLog=" + folder.Path("log") + ";FaultList=" + folder.Path("faults") +
                                       ";" + more));
    }

    std::string Read(const std::string &name) const { return support::ReadFile(folder.Path(name)); }
    // The log's lines without their ID.
    Lines Log() const
    {
        std::istringstream in(Read("log"));
        Lines lines;
        for (std::string line; std::getline(in, line);)
        {
            const size_t id = line.find('\t');
            lines.push_back(line.substr(0, id) + line.substr(line.find('\t', id + 1)));
        }
        return lines;
    }
    void Order(const std::string &lines) const { std::ofstream(folder.Path("faults"), std::ios::app) << lines; }

    Link m_component;
    SQLHSTMT component = nullptr;
};

TEST_F(LogTest, StatementsAreLoggedAsTheyArriveAndErrorsBehindThem)
{
    Exec(component, "SELECT id\r\nFROM t\t-- \"quoted\" \\ \u00e9");
    SQLFreeStmt(component, SQL_CLOSE);
    Exec(component, "SELECT 1 FROM missing");
    Exec(component, "UPDATE t SET id = id INSERT INTO t VALUES (1)");
    CHECK_STMT("E", SQLMoreResults(component), component);
    Lines log = Log();
    EXPECT_EQ(log.back().substr(0, 27), "error\tKVHEADERS.DLL\t23000: ") << "when it shows";
    log.pop_back();
    EXPECT_EQ(log, (Lines{"connect\tKVHEADERS.DLL\t " + folder.Path("test.db"),
                          "statement\tKVHEADERS.DLL\tSELECT id\\r\\nFROM t\\t-- \\\"quoted\\\" \\\\ \u00e9",
                          "statement\tKVHEADERS.DLL\tSELECT 1 FROM missing",
                          "error\tKVHEADERS.DLL\t42S02: [KVHEADERS][Embedded Driver][SQL Server]Invalid object name "
                          "'missing'.",
                          "statement\tKVHEADERS.DLL\tUPDATE t SET id = id INSERT INTO t VALUES (1)"}));
}

TEST_F(LogTest, EnvironmentVariableSwitchesTheLogOn)
{
    setenv("KVEMBEDDED_LOG", folder.Path("other.log").c_str(), 1);
    Link other;
    Exec(Connect(other, "APP=player;"), "SELECT 5");
    unsetenv("KVEMBEDDED_LOG");
    EXPECT_NE(Read("other.log").find("\tplayer\tSELECT 5\n"), std::string::npos);
}

TEST_F(LogTest, LinesMayBeAddedWhileClientsRunAndKeepTheirPlaces)
{
    EXPECT_EQ(Query(component, "SELECT 1"), Lines{"1"}) << "no list at all";
    Order("# a comment\n\n100\tbefore\tSELECT 2\tHY000\t5\tx\n");
    EXPECT_EQ(Query(component, "SELECT 1"), Lines{"1"});
    CHECK_STMT("E", Exec(component, "SELECT 2"), component);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, component), Lines{"HY000 (5) x"});
    Order("1+1\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n");
    CHECK_STMT("S", Exec(component, "SELECT 1\r\n"), component);
    SQLFreeStmt(component, SQL_CLOSE);
    CHECK_STMT("E", Exec(component, "SELECT 1\r\n"), component);
    EXPECT_EQ(Read("faults"), "# a comment\n\n099\tbefore\tSELECT 2\tHY000\t5\tx\n"
                              "0+0\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n");
    Order("1\tnever\tSELECT\tHY000\t0\tx\n");
    CHECK_STMT("E", Exec(component, "SELECT 1"), component) << "a line that makes no sense";
}

TEST_F(LogTest, OthersAreNotMeant)
{
    Order("1\tbefore\tSELECT\tHY000\t0\tfailed\n");
    Link other;
    EXPECT_EQ(Query(Connect(other, "APP=player;"), "SELECT 1"), Lines{"1"});
    Link meant;
    const SQLHSTMT theirs = Connect(meant, "FaultApplication=*;");
    CHECK_STMT("E", Exec(theirs, "SELECT 1"), theirs);
}

TEST_F(LogTest, FaultAtARowComesBehindTheRowsBeforeIt)
{
    Order("1\trow:3\tFROM t\tHY000\t0\tthird\n1\tcut-row:2\tFROM t\t\t\t\n");
    for (const bool isCut : {false, true})
    {
        CHECK_STMT("S", Exec(component, "SELECT id FROM t ORDER BY id"), component);
        for (int row = isCut ? 2 : 1; row < 3; ++row)
            CHECK_STMT("S", SQLFetch(component), component);
        CHECK_STMT("E", SQLFetch(component), component);
        const std::string state = isCut ? "08S01" : "HY000";
        EXPECT_EQ(States(SQL_HANDLE_STMT, component), Lines{state + " (0)"});
        EXPECT_EQ(Log().back().substr(0, 25), "error\tKVHEADERS.DLL\t" + state);
        EXPECT_EQ(m_component.IsDead(), isCut);
        SQLFreeStmt(component, SQL_CLOSE);
    }
}

TEST_F(LogTest, CountsAreSharedBetweenProcesses)
{
    // eight processes with fifty statements each meet a hundred ordered failures
    Order("100\tbefore\tSELECT\tHY000\t0\tordered\n");
    std::vector<pid_t> children;
    for (int process = 0; process < 8; ++process)
        children.push_back(support::StartProcess(
            [&]
            {
                int failed = 0;
                Link client;
                const SQLHSTMT theirs = Connect(client, "FaultApplication=*;");
                for (int i = 0; i < 50; ++i)
                {
                    failed += Exec(theirs, "SELECT 1") == SQL_ERROR ? 1 : 0;
                    SQLFreeStmt(theirs, SQL_CLOSE);
                }
                return failed;
            }));
    int failed = 0;
    for (const pid_t child : children)
        failed += support::WaitFor(child);
    EXPECT_EQ(failed, 100);
}

} // namespace
} // namespace driver_tests
