// The statement log, and failures that are ordered as tests of the component order them.
#include "client.h"
#include "support/processes.h"

#include <chrono>
#include <fstream>
#include <functional>

namespace driver_tests
{
namespace
{

using support::TestDatabase;
using Fault = TestDatabase::CallFault;

class FaultsTest : public DriverTest
{
protected:
    // A line of the list as it stands in the file.
    void Order(const std::string &line)
    {
        std::ofstream(database.Folder().Path("faults"), std::ios::app) << line << "\n";
    }
    std::string Read(const std::string &name) { return support::ReadFile(database.Folder().Path(name)); }
};

TEST_F(FaultsTest, StatementsAreLoggedAsTheyArriveAndErrorsBehindThem)
{
    Exec(statement, "SELECT id\r\nFROM t\t-- \"quoted\" \\ \u00e9");
    SQLFreeStmt(statement, SQL_CLOSE);
    Exec(statement, "SELECT 1 FROM missing");
    Exec(statement, "UPDATE t SET id = id INSERT INTO t (id) VALUES (1)");
    EXPECT_EQ(database.LoggedErrors().size(), 1u);
    CHECK_STMT("E", SQLMoreResults(statement), statement);
    EXPECT_NE(Read("log").find("\tKVHEADERS.DLL\tSELECT id\\r\\nFROM t\\t-- \\\"quoted\\\" \\\\ \u00e9\n"),
              std::string::npos);
    EXPECT_EQ(database.Log().at(2), "UPDATE t SET id = id INSERT INTO t (id) VALUES (1)");
    EXPECT_EQ(database.Logged("connect"), Lines{"embedded " + database.Folder().Path("test.db")});
    const Lines errors = database.LoggedErrors();
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0], "42S02: [KVHEADERS][Embedded Driver][SQL Server]Invalid object name 'missing'.");
    EXPECT_EQ(errors[1].substr(0, 7), "23000: ") << "when it shows";
}

TEST_F(FaultsTest, OnlyTheComponentIsMeantButTheEnvironmentLogsEverybody)
{
    setenv("KVEMBEDDED_LOG", database.Folder().Path("other.log").c_str(), 1);
    Order("1\tbefore\tSELECT\tHY000\t0\tfailed");
    Link other;
    EXPECT_EQ(Query(Open(other, ConnectText("APP=player;")), "SELECT 5"), Lines{"5"});
    unsetenv("KVEMBEDDED_LOG");
    EXPECT_NE(Read("other.log").find("\tplayer\tSELECT 5\n"), std::string::npos);
    CHECK_STMT("E", Exec(statement, "SELECT 1"), statement);
}

TEST_F(FaultsTest, LinesMayBeAddedWhileClientsRunAndKeepTheirPlaces)
{
    Order("# a comment\n\n100\tbefore\tSELECT 2\tHY000\t5\tx");
    EXPECT_EQ(Query(statement, "SELECT 1"), Lines{"1"});
    CHECK_STMT("E", Exec(statement, "SELECT 2"), statement);
    EXPECT_EQ(Records(SQL_HANDLE_STMT, statement), Lines{"HY000 (5) x"});
    Order("1+1\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded");
    EXPECT_EQ(Query(statement, "SELECT 1\r\n"), Lines{"1"});
    CHECK_STMT("E", Exec(statement, "SELECT 1\r\n"), statement);
    EXPECT_EQ(Read("faults"), "# a comment\n\n099\tbefore\tSELECT 2\tHY000\t5\tx\n"
                              "0+0\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n");
    Order("1\tnever\tSELECT\tHY000\t0\tx");
    CHECK_STMT("E", Exec(statement, "SELECT 1"), statement) << "a line that makes no sense";
}

TEST_F(FaultsTest, CountsAreSharedBetweenProcesses)
{
    // eight processes with fifty statements each meet a hundred ordered failures
    database.Fail(100, "SELECT", "ordered");
    std::vector<pid_t> children;
    for (int process = 0; process < 8; ++process)
        children.push_back(support::StartProcess(
            [&]
            {
                int failed = 0;
                Link client;
                const SQLHSTMT theirs = Open(client, ConnectText());
                for (int i = 0; i < 50; ++i, SQLFreeStmt(theirs, SQL_CLOSE))
                    failed += Exec(theirs, "SELECT 1") == SQL_ERROR ? 1 : 0;
                return failed;
            }));
    int failed = 0;
    for (const pid_t child : children)
        failed += support::WaitFor(child);
    EXPECT_EQ(failed, 100);
}

TEST_F(FaultsTest, OfAStatement)
{
    struct Case
    {
        const char *name;
        std::function<void(TestDatabase &)> order;
        const char *record;
        bool isDead;
        const char *rows; // that are left after the DELETE
    };
    const char *const broken = "(0) Communication link failure";
    const Case cases[] = {
        {"fails", [](auto &d) { d.Fail(1, "DELETE", "m", "40001"); }, "40001 (0) m", false, "3"},
        {"took effect", [](auto &d) { d.FailAfter(1, "DELETE", "m"); }, "HY000 (0) m", false, "2"},
        {"cut", [](auto &d) { d.Cut("DELETE"); }, "08S01 ", true, "3"},
        {"cut, told as a general error", [](auto &d) { d.Cut("DELETE", "HY000"); }, "HY000 ", true, "3"},
        {"cut, told as a warning alone", [](auto &d) { d.Cut("DELETE", "01000"); }, "01000 ", true, "3"},
        {"took effect and cut", [](auto &d) { d.CutAfter("DELETE", "01000"); }, "01000 ", true, "2"},
    };
    for (const Case &each : cases)
    {
        SCOPED_TRACE(each.name);
        database.Run("DELETE FROM t\nGO\nINSERT INTO t (id) VALUES (1), (2), (3)");
        database.ClearFaults();
        Reconnect();
        each.order(database);
        CHECK_STMT("S", Exec(statement, "UPDATE t SET id = id"), statement);
        EXPECT_FALSE(database.FaultFired());
        EXPECT_FALSE(link->IsDead());
        CHECK_STMT("E", Exec(statement, "DELETE FROM t WHERE id = 1"), statement);
        const std::string record(each.record);
        EXPECT_EQ(Records(SQL_HANDLE_STMT, statement), Lines{each.isDead ? record + broken : record});
        EXPECT_TRUE(database.FaultFired());
        EXPECT_EQ(link->IsDead(), each.isDead);
        EXPECT_EQ(Count(), each.rows);
        CHECK_STMT(each.isDead ? "E" : "S", Exec(statement, "UPDATE t SET id = id"), statement);
    }
}

TEST_F(FaultsTest, AnIdleConnectionIsCut)
{
    for (const char *const state : {"08S01", "HY000", "01000"})
    {
        Reconnect();
        database.CutIdle(state);
        EXPECT_FALSE(link->IsDead()) << "no call has met it";
        EXPECT_TRUE(link->Tells(1244));
        Link later;
        EXPECT_EQ(Query(Open(later, ConnectText()), "SELECT id FROM t WHERE id = 1"), Lines{"1"});

        const std::string script = "exec DELETE FROM t\nexec SELECT 1\nattribute\nclose\nexec SELECT 1\nalloc";
        EXPECT_EQ(Play(script),
                  "E[" + std::string(state) + " (0)] E[08S01 (0)] E[08S01 (0)] E[24000 (0)] E[08S01 (0)] E[08S01 (0)]");
        EXPECT_TRUE(link->IsDead());
        EXPECT_EQ(Count(), "3");
    }
}

TEST_F(FaultsTest, ConnectionsAreRefused)
{
    Link other;
    database.RefuseConnects();
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(other.Connect(ConnectText()), SQL_ERROR);
        EXPECT_EQ(other.Failure(), Lines{"08001 (0)"});
    }
    EXPECT_EQ(Query(statement, "SELECT 1"), Lines{"1"}) << "the one that is there stays";
    database.AllowConnects();
    EXPECT_TRUE(database.FaultFired());
    Open(other, ConnectText());
    database.RefuseConnects(1);
    Link another;
    EXPECT_EQ(another.Connect(ConnectText()), SQL_ERROR);
    Open(another, ConnectText());
}

TEST_F(FaultsTest, AStatementWaitsAndMayFailThen)
{
    database.Delay("SELECT", 100, 1);
    database.Fail(1, "SELECT id", "m");
    const auto start = std::chrono::steady_clock::now();
    CHECK_STMT("E", Exec(statement, "SELECT id FROM t"), statement);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
    EXPECT_EQ(Query(statement, "SELECT id FROM t WHERE id = 1"), Lines{"1"});
}

TEST_F(FaultsTest, OfTheNthCallOfAFunction)
{
    struct Case
    {
        const char *function;
        int n;
        Fault fault;
        const char *codes; // null: no connection
        const char *rows;
    };
    const char *const script = "alloc\nexec INSERT INTO t (id) VALUES (4) SELECT id FROM t ORDER BY id\nmore\ncols\n"
                               "describe 1\nattribute\nfetch\nget 1\nfetch\nget 1\nfetch\nget 1\nbind 1\nfree";
    const Case cases[] = {
        {"SQLFetch", 9, Fault::Error, "SSSSSSSSSSSSSS", "4"},
        {"SQLDriverConnect", 1, Fault::Error, nullptr, "3"},
        {"SQLDriverConnect", 1, Fault::NoAnswer, nullptr, "3"},
        {"SQLAllocHandle", 1, Fault::Error, "E", "3"},
        {"SQLExecDirect", 1, Fault::Error, "SENEESEEEEEESS", "3"},
        {"SQLExecDirect", 1, Fault::NoAnswer, "SENEESEEEEEESS", "4"},
        {"SQLMoreResults", 1, Fault::Error, "SSESESEEEEEESS", "4"},
        {"SQLNumResultCols", 1, Fault::Error, "SSSESSSSSSSSSS", "4"},
        {"SQLDescribeCol", 1, Fault::Error, "SSSSESSSSSSSSS", "4"},
        {"SQLSetStmtAttr", 1, Fault::Cut, "SSSSSEEEEEEEES", "4"},
        {"SQLFetch", 2, Fault::Error, "SSSSSSSSENSSSS", "4"},
        {"SQLFetch", 2, Fault::NoAnswer, "SSSSSSSSESSSSS", "4"},
        {"SQLFetch", 2, Fault::EndOfRows, "SSSSSSSSEENESS", "4"},
        {"SQLFetch", 2, Fault::CutAfter, "SSSSSSSSEEEEES", "4"},
        {"SQLGetData", 3, Fault::Error, "SSSSSSSSSSSESS", "4"},
        {"SQLBindCol", 1, Fault::Error, "SSSSSSSSSSSSES", "4"},
        {"SQLFreeHandle", 1, Fault::Error, "SSSSSSSSSSSSSE", "4"},
        {"", 3, Fault::Error, "SENEESEEEEEESS", "3"},
    };
    for (const Case &each : cases)
    {
        SCOPED_TRACE(std::string(each.function) + " " + std::to_string(each.n));
        database.ClearFaults();
        database.Run("DELETE FROM t WHERE id = 4");
        database.FailCall(each.function, each.n, each.fault);
        Link other;
        SQLHSTMT theirs = nullptr;
        const bool isConnected = SQL_SUCCEEDED(other.Connect(ConnectText()));
        EXPECT_EQ(isConnected, each.codes != nullptr);
        EXPECT_EQ(isConnected ? driver_tests::Play(other, theirs, script, true) : "", isConnected ? each.codes : "");
        EXPECT_EQ(Count(), each.rows);
        EXPECT_EQ(database.FaultFired(), each.n < 9);
    }
}

} // namespace
} // namespace driver_tests
