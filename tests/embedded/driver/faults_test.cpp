// Ordered faults, as tests of the component order them.
#include "client.h"
#include "support/test_database.h"

#include <chrono>
#include <functional>

namespace driver_tests
{
namespace
{

using support::TestDatabase;
using Fault = TestDatabase::CallFault;
class FaultsTest : public testing::Test
{
protected:
    FaultsTest()
    {
        database.Run("CREATE TABLE t (id int NOT NULL PRIMARY KEY)\nGO\nINSERT INTO t VALUES (1), (2), (3)");
        Reconnect();
    }

    SQLRETURN Connect(Link &other) const
    {
        return other.Connect(
            "Driver={SQL Server};Server=embedded;APP=KVHEADERS.DLL;Database=" + database.DatabaseName() + ";");
    }
    void Reconnect()
    {
        link = std::make_unique<Link>();
        ASSERT_TRUE(Allowed("SI", Connect(*link), SQL_HANDLE_DBC, link->dbc));
        statement = link->NewStatement();
    }
    std::string Rows() { return database.Query("SELECT COUNT(*) FROM t").at(0); }

    TestDatabase database;
    std::unique_ptr<Link> link;
    SQLHSTMT statement = nullptr;
};

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
        database.Run("DELETE FROM t\nGO\nINSERT INTO t VALUES (1), (2), (3)");
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
        EXPECT_EQ(Rows(), each.rows);
        CHECK_STMT(each.isDead ? "E" : "S", Exec(statement, "UPDATE t SET id = id"), statement);
    }
}

TEST_F(FaultsTest, ForGoodMeansUntilTheyAreTakenBack)
{
    database.Fail(TestDatabase::kForGood, "UPDATE", "m");
    for (int i = 0; i < 5; ++i)
        CHECK_STMT("E", Exec(statement, "UPDATE t SET id = id"), statement);
    database.ClearFaults();
    EXPECT_FALSE(database.FaultFired());
    CHECK_STMT("S", Exec(statement, "UPDATE t SET id = id"), statement);
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
        ASSERT_TRUE(Allowed("SI", Connect(later), SQL_HANDLE_DBC, later.dbc));
        EXPECT_EQ(Query(later.NewStatement(), "SELECT id FROM t WHERE id = 1"), Lines{"1"});

        CHECK_STMT("E", Exec(statement, "DELETE FROM t"), statement);
        EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{std::string(state) + " (0)"});
        EXPECT_TRUE(link->IsDead());
        EXPECT_EQ(Rows(), "3");
        SQLHSTMT another = nullptr;
        EXPECT_EQ(SQLAllocHandle(SQL_HANDLE_STMT, link->dbc, &another), SQL_ERROR);
        CHECK_STMT("E", SQLSetStmtAttrW(statement, SQL_ATTR_ROW_ARRAY_SIZE, nullptr, 0), statement);
        CHECK_STMT("S", SQLFreeStmt(statement, SQL_CLOSE), statement);
        CHECK_STMT("E", Exec(statement, "SELECT 1"), statement);
        EXPECT_EQ(States(SQL_HANDLE_STMT, statement), Lines{"08S01 (0)"});
    }
}

TEST_F(FaultsTest, ConnectionsAreRefused)
{
    Link other;
    database.RefuseConnects();
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(Connect(other), SQL_ERROR);
        EXPECT_EQ(other.Failure(), Lines{"08001 (0)"});
    }
    CHECK_STMT("S", Exec(statement, "SELECT 1"), statement) << "the one that is there stays";
    database.AllowConnects();
    EXPECT_TRUE(database.FaultFired());
    EXPECT_TRUE(Allowed("SI", Connect(other), SQL_HANDLE_DBC, other.dbc));
    database.RefuseConnects(1);
    Link another;
    EXPECT_EQ(Connect(another), SQL_ERROR);
    EXPECT_TRUE(Allowed("SI", Connect(another), SQL_HANDLE_DBC, another.dbc));
}

TEST_F(FaultsTest, AStatementWaitsAndMayFailThen)
{
    database.Delay("SELECT", 100, 1);
    database.Fail(1, "SELECT id", "m");
    const auto start = std::chrono::steady_clock::now();
    CHECK_STMT("E", Exec(statement, "SELECT id FROM t"), statement);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(100));
    EXPECT_EQ(Query(statement, "SELECT id FROM t WHERE id = 1"), Lines{"1"});
}

// A small program that touches every function whose failure can be ordered. Gives the codes of its calls as letters.
std::string Play(Link &link, SQLRETURN connected)
{
    std::string codes(1, Letter(connected));
    if (!SQL_SUCCEEDED(connected))
        return codes;
    SQLHSTMT s = nullptr;
    const auto note = [&](SQLRETURN code) { codes += Letter(code); };
    note(SQLAllocHandle(SQL_HANDLE_STMT, link.dbc, &s));
    if (s != nullptr)
    {
        note(Exec(s, "INSERT INTO t VALUES (4) SELECT id FROM t ORDER BY id"));
        note(SQLMoreResults(s));
        SQLSMALLINT columns = 0;
        note(SQLNumResultCols(s, &columns));
        SQLSMALLINT type = 0;
        note(SQLDescribeColW(s, 1, nullptr, 0, nullptr, &type, nullptr, nullptr, nullptr));
        int value = 0;
        SQLLEN length = 0;
        note(SQLSetStmtAttrW(s, SQL_ATTR_ROW_STATUS_PTR, nullptr, 0));
        for (int i = 0; i < 3; ++i)
        {
            note(SQLFetch(s));
            note(SQLGetData(s, 1, SQL_C_LONG, &value, sizeof value, &length));
        }
        note(SQLBindCol(s, 1, SQL_C_LONG, &value, sizeof value, &length));
        note(SQLFreeHandle(SQL_HANDLE_STMT, s));
    }
    return codes;
}

TEST_F(FaultsTest, OfTheNthCallOfAFunction)
{
    struct Case
    {
        const char *function;
        int n;
        Fault fault;
        const char *codes;
        const char *rows;
    };
    //                    connect, alloc, exec, more, count, describe, attribute, (fetch, get) x 3, bind, free
    const Case cases[] = {
        {"SQLFetch", 9, Fault::Error, "SSSSSSSSSSSSSSS", "4"},
        {"SQLDriverConnect", 1, Fault::Error, "E", "3"},
        {"SQLDriverConnect", 1, Fault::NoAnswer, "E", "3"},
        {"SQLAllocHandle", 1, Fault::Error, "SE", "3"},
        {"SQLExecDirect", 1, Fault::Error, "SSENEESEEEEEESS", "3"},
        {"SQLExecDirect", 1, Fault::NoAnswer, "SSENEESEEEEEESS", "4"},
        {"SQLMoreResults", 1, Fault::Error, "SSSESESEEEEEESS", "4"},
        {"SQLNumResultCols", 1, Fault::Error, "SSSSESSSSSSSSSS", "4"},
        {"SQLDescribeCol", 1, Fault::Error, "SSSSSESSSSSSSSS", "4"},
        {"SQLSetStmtAttr", 1, Fault::Cut, "SSSSSSEEEEEEEES", "4"},
        {"SQLFetch", 2, Fault::Error, "SSSSSSSSSENSSSS", "4"},
        {"SQLFetch", 2, Fault::NoAnswer, "SSSSSSSSSESSSSS", "4"},
        {"SQLFetch", 2, Fault::EndOfRows, "SSSSSSSSSEENESS", "4"},
        {"SQLFetch", 2, Fault::CutAfter, "SSSSSSSSSEEEEES", "4"},
        {"SQLGetData", 3, Fault::Error, "SSSSSSSSSSSSESS", "4"},
        {"SQLBindCol", 1, Fault::Error, "SSSSSSSSSSSSSES", "4"},
        {"SQLFreeHandle", 1, Fault::Error, "SSSSSSSSSSSSSSE", "4"},
    };
    for (const Case &each : cases)
    {
        SCOPED_TRACE(std::string(each.function) + " " + std::to_string(each.n));
        database.ClearFaults();
        database.Run("DELETE FROM t WHERE id = 4");
        database.FailCall(each.function, each.n, each.fault);
        Link other;
        const SQLRETURN connected = Connect(other);
        EXPECT_EQ(Play(other, connected), each.codes);
        EXPECT_EQ(Rows(), each.rows);
        EXPECT_EQ(database.FaultFired(), each.n < 9);
    }
}

TEST_F(FaultsTest, EachCallFailsInItsTurn)
{
    int n = 1;
    for (database.FailCall("", n, Fault::Error); n < 200; database.FailCall("", ++n, Fault::Error))
    {
        Link other;
        const std::string codes = Play(other, Connect(other));
        if (!database.FaultFired())
        {
            EXPECT_EQ(codes.find('E'), std::string::npos);
            break;
        }
        database.ClearFaults();
        database.Run("DELETE FROM t WHERE id = 4");
    }
    EXPECT_GT(n, 15);
    EXPECT_LT(n, 100);
}

} // namespace
} // namespace driver_tests
