// The statement log, and failures that are ordered as tests of the component order them.
#include "client.h"

#include <chrono>
#include <cstdlib>

namespace driver_tests
{
namespace
{

using Fault = support::TestDatabase::CallFault;

class FaultsTest : public DriverTest
{
protected:
    std::string Read(const std::string &name) { return support::ReadFile(database.Folder().Path(name)); }
};

TEST_F(FaultsTest, StatementsAreLoggedAsTheyArriveAndErrorsWhenTheyShow)
{
    const std::string batch = "UPDATE t SET name = 1 INSERT INTO t (id) VALUES (1)";
    client->Exec("SELECT id\r\nFROM t\t-- \"quoted\" \\ \u00e9");
    EXPECT_EQ(Play("close\nexec SELECT 1 FROM missing\nexec " + batch), "S E[42S02 (208)] S");
    EXPECT_EQ(database.LoggedErrors(),
              Lines{"42S02: [KVHEADERS][Embedded Driver][SQL Server]Invalid object name 'missing'."});
    EXPECT_EQ(Play("more"), "E[23000 (2627)]");
    EXPECT_EQ(database.LoggedErrors().at(1).substr(0, 7), "23000: ");
    EXPECT_NE(Read("log").find("\tKVHEADERS.DLL\tSELECT id\\r\\nFROM t\\t-- \\\"quoted\\\" \\\\ \u00e9\n"),
              std::string::npos);
    EXPECT_EQ(database.Log().at(2), batch);
    EXPECT_EQ(database.Logged("connect"), Lines{"embedded " + database.Folder().Path("test.db")});
}

TEST_F(FaultsTest, OnlyTheComponentIsMeantButTheEnvironmentLogsEverybody)
{
    setenv("KVEMBEDDED_LOG", database.Folder().Path("other.log").c_str(), 1);
    Order("1\tbefore\tSELECT\tHY000\t0\tfailed");
    EXPECT_EQ(Client(ConnectText("APP=player;")).Query("SELECT 5"), Lines{"5"});
    unsetenv("KVEMBEDDED_LOG");
    EXPECT_NE(Read("other.log").find("\tplayer\tSELECT 5\n"), std::string::npos);
    EXPECT_EQ(Play("exec SELECT 1"), "E[HY000 (0)]");
}

TEST_F(FaultsTest, LinesMayBeAddedWhileClientsRunAndKeepTheirPlaces)
{
    const std::string twoLines = "SELECT 1\r\n";
    Order("# a comment\n\n100\tbefore\tSELECT 2\tHY000\t5\tx");
    EXPECT_EQ(client->Query("SELECT 1"), Lines{"1"});
    EXPECT_EQ(client->Exec("SELECT 2"), SQL_ERROR);
    EXPECT_EQ(client->Records(), Lines{"HY000 (5) x"});
    Order("1+1\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded");
    EXPECT_EQ(client->Query(twoLines), Lines{"1"});
    EXPECT_EQ(client->Exec(twoLines), SQL_ERROR);
    EXPECT_EQ(Read("faults"), "# a comment\n\n099\tbefore\tSELECT 2\tHY000\t5\tx\n"
                              "0+0\tbefore\tSELECT 1\\r\\n\tHY000\t0\tadded\n");
    Order("1\tnever\tSELECT\tHY000\t0\tx");
    EXPECT_EQ(Play("exec SELECT 1"), "E[HY000 (0)]") << "a line that makes no sense";
}

// A row that cannot be made is marked and ends the result. The rows before it are given with it; a lost connection says
// nothing of their number.
TEST_F(FaultsTest, OfAStatement)
{
    const std::string change = "exec UPDATE t SET name = 1\nexec DELETE t WHERE id = 1\nexec UPDATE t SET name = 1";
    const std::string end = " FROM t ORDER BY id\nblock\nattribute\nbind 1 bigint\nfetch\nfetch";
    const std::string read = "exec SELECT id" + end, convert = "exec SELECT CONVERT(int, name)" + end;
    const struct
    {
        std::string when, state, script, played, rows;
    } cases[] = {
        {"before\tDELETE", "40001", change, "S E[40001 (7)] S", "4"},
        {"after\tDELETE", "HY000", change, "S E[HY000 (7)] S", "3"},
        {"cut-before\tDELETE", "08S01", change, "S E[08S01 (7)] E[08S01 (0)]", "4"},
        {"cut-before\tDELETE", "HY000", change, "S E[HY000 (7)] E[08S01 (0)]", "4"},
        {"cut-before\tDELETE", "01000", change, "S E[01000 (7)] E[08S01 (0)]", "4"},
        {"cut-after\tDELETE", "01000", change, "S E[01000 (7)] E[08S01 (0)]", "3"},
        {"row:3\tSELECT", "HY000", read, "S S S S I[HY000 (7)]=3:(1)(2)!- N=0:----", "4"},
        {"row:1\tSELECT", "HY000", read, "S S S S E[HY000 (7)]=1:!--- N=0:----", "4"},
        {"cut-row:3\tSELECT", "HY000", read, "S S S S E[HY000 (7)]=99:(1)(2)!- E[08S01 (0)]=99:(1)(2)!-", "4"},
        {"before\tnothing", "22018", convert, "S S S S I[22018 (245)]=3:(10)(20)!- N=0:----", "4"},
    };
    for (const auto &[when, state, script, played, rows] : cases)
    {
        SCOPED_TRACE(when + " " + state);
        database.Run("DELETE FROM t\nGO\nINSERT INTO t VALUES (1, '10'), (2, '20'), (3, 'bad'), (4, '40')");
        database.ClearFaults();
        database.ClearLog();
        Reconnect();
        Order("1\t" + when + "\t" + state + "\t7\tm");
        EXPECT_EQ(Play(script), played);
        EXPECT_EQ(client->IsDead(), when.starts_with("cut"));
        EXPECT_TRUE(database.LoggedErrors().at(0).starts_with(state + (script == convert ? ": [" : ": m")));
        EXPECT_EQ(Count(), rows);
    }
}

TEST_F(FaultsTest, AnIdleConnectionIsCut)
{
    for (const std::string state : {"08S01", "HY000", "01000"})
    {
        Reconnect();
        database.CutIdle(state);
        EXPECT_FALSE(client->IsDead()) << "no call has met it";
        EXPECT_TRUE(client->Tells(1244));
        EXPECT_EQ(Client(ConnectText()).Query("SELECT id FROM t WHERE id = 1"), Lines{"1"});
        EXPECT_EQ(Play("exec DELETE FROM t\nexec SELECT 1\nattribute\nclose\nexec SELECT 1"),
                  "E[" + state + " (0)] E[08S01 (0)] E[08S01 (0)] E[24000 (0)] E[08S01 (0)]");
        EXPECT_TRUE(client->IsDead());
        EXPECT_EQ(Count(), "3");
    }
}

TEST_F(FaultsTest, ConnectionsAreRefused)
{
    database.RefuseConnects();
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Client(ConnectText()).refused, Lines{"08001 (0)"});
    EXPECT_EQ(client->Query("SELECT 1"), Lines{"1"}) << "the one that is there stays";
    database.AllowConnects();
    EXPECT_TRUE(database.FaultFired());
    EXPECT_EQ(Client(ConnectText()).made, "S");
    database.RefuseConnects(1);
    EXPECT_EQ(Client(ConnectText()).made, "");
    EXPECT_EQ(Client(ConnectText()).made, "S");
}

TEST_F(FaultsTest, AStatementWaitsAndMayFailThen)
{
    database.Delay("SELECT", 100, 1);
    database.Fail(1, "SELECT id", "m");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Play("exec SELECT id FROM t"), "E[HY000 (0)]");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(100));
    EXPECT_EQ(client->Query("SELECT id FROM t WHERE id = 1"), Lines{"1"});
}

TEST_F(FaultsTest, OfTheNthCallOfAFunction)
{
    struct Case
    {
        const char *function;
        int n;
        Fault fault;
        const char *codes; // empty: no connection
        const char *rows;
    };
    const char *const script = "exec INSERT INTO t (id) VALUES (4) SELECT id AS i FROM t ORDER BY id\nmore\ncols\n"
                               "column 1\nattribute\nfetch\nget 1\nfetch\nget 1\nfetch\nget 1\nbind 1\nfree";
    const Case cases[] = {
        {"SQLFetch", 9, Fault::Error, "SSSSSSSSSSSSSS", "4"},
        {"SQLDriverConnect", 1, Fault::Error, "", "3"},
        {"SQLDriverConnect", 1, Fault::NoAnswer, "", "3"},
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
        Client other(ConnectText());
        EXPECT_EQ(other.made + other.Play(script, true), each.codes);
        EXPECT_EQ(Count(), each.rows);
        EXPECT_EQ(database.FaultFired(), each.n < 9);
    }
}

} // namespace
} // namespace driver_tests
