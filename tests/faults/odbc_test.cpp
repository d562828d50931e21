// Every ODBC call of a day fails once, or from then on, in each way that a call can fail.
#include "day.h"
#include "host/modMain.h"

#include <iterator>
#include <string>

namespace faults
{

namespace
{

using CallFault = support::TestDatabase::CallFault;

class FailingCall final : public Fault
{
public:
    FailingCall(const char *function, int place, CallFault fault, int count)
        : m_function(function), m_place(place), m_fault(fault), m_count(count)
    {
    }
    void Order(support::TestDatabase &database) override
    {
        database.FailCall(m_function, m_place, m_fault, m_count,
                          m_fault == CallFault::Cut || m_fault == CallFault::CutAfter ? "08S01" : "HY000");
    }
    std::size_t MostFailures() const override { return static_cast<std::size_t>(m_count); }
    // Later results of a batch are looked at for their errors alone.
    bool MustBeTold() const override { return m_function == "SQLMoreResults"; }
    bool Fired(const support::TestDatabase &database) const override { return m_fired || database.FaultFired(); }
    std::size_t LeavesOpen() const override { return m_count > 1 ? 1 : 0; }
    void Repair(support::TestDatabase &database) override
    {
        m_fired = Fired(database);
        database.ClearFaults();
    }

private:
    std::string m_function;
    int m_place;
    CallFault m_fault;
    int m_count;
    bool m_fired = false;
};

struct Mode
{
    const char *name;
    const char *function; // empty: any
    CallFault fault;
    int count;
    int stride;
};

void PrintTo(const Mode &mode, std::ostream *out)
{
    *out << mode.name;
}

constexpr int kForGood = support::TestDatabase::kForGood;

class OdbcCalls : public testing::TestWithParam<Mode>
{
};

TEST_P(OdbcCalls, FailAtEveryPlaceAndNothingIsLost)
{
    const Mode &mode = GetParam();
    CountDown(mode.stride,
              [&](int place) { return std::make_unique<FailingCall>(mode.function, place, mode.fault, mode.count); });
}

INSTANTIATE_TEST_SUITE_P(EveryWay, OdbcCalls,
                         testing::Values(Mode{"Once", "", CallFault::Error, 1, 41},
                                         Mode{"ForGood", "", CallFault::Error, kForGood, 47},
                                         Mode{"CutOnce", "", CallFault::Cut, 1, 43},
                                         Mode{"CutForGood", "", CallFault::Cut, kForGood, 53},
                                         Mode{"NoAnswer", "", CallFault::NoAnswer, 1, 45},
                                         Mode{"CutAfterTheEffect", "", CallFault::CutAfter, 1, 51},
                                         Mode{"RowsEndEarly", "SQLFetch", CallFault::EndOfRows, 1, 3},
                                         Mode{"LaterResults", "SQLMoreResults", CallFault::Error, 1, 5}),
                         [](const auto &info) { return std::string(info.param.name); });

// One of the first rows of a query fails, in one block with those in front of it.
class FailingRow final : public Fault
{
public:
    explicit FailingRow(int place) : m_place(static_cast<std::size_t>(place - 1)) {}
    void Order(support::TestDatabase &database) override
    {
        if (Fired(database))
            database.FailAtRow(static_cast<int>(m_place % kRows) + 1, 1, kQueries[m_place / kRows], "a row");
    }
    bool Fired(const support::TestDatabase &) const override { return m_place / kRows < std::size(kQueries); }
    void Repair(support::TestDatabase &database) override { database.ClearFaults(); }
    std::size_t MostFailures() const override { return 1; }

private:
    static constexpr std::size_t kRows = 3;
    static constexpr const char *kQueries[] = {"SELECT partition_id, partition_name, lineage FROM",
                                               "From system_user_cfg",
                                               "SELECT format_id",
                                               "SELECT heading_id, heading",
                                               "SELECT heading_id, hosp_acct_id",
                                               "FROM account_info",
                                               "FROM reports_cfg",
                                               "SELECT format_name",
                                               "SELECT heading, ",
                                               "SELECT DISTINCT"};
    std::size_t m_place;
};

TEST(Rows, FailAtEveryQueryAndNothingIsLost)
{
    CountDown(4, [](int place) { return std::make_unique<FailingRow>(place); });
}

// The server is restarted in front of an act of the user.
class Restart final : public Fault
{
public:
    Restart(int place, bool driverAsks) : m_place(place), m_driverAsks(driverAsks) {}
    void Order(support::TestDatabase &database) override { m_database = &database; }
    void Acting(bool acting) override
    {
        if (!acting || --m_place != 0)
            return;
        if (m_driverAsks)
            m_database->CutIdle();
        else
            m_database->Cut("");
    }
    bool Fired(const support::TestDatabase &) const override { return m_place <= 0; }
    bool MustBeSilent() const override { return true; }
    std::size_t MostFailures() const override { return m_driverAsks ? 0 : 1; }

private:
    int m_place;
    bool m_driverAsks;
    support::TestDatabase *m_database = nullptr;
};

TEST(Restarts, BetweenTwoActsCostNothing)
{
    CountDown(7, [](int place) { return std::make_unique<Restart>(place, true); });
}

TEST(Restarts, ThatTheNextStatementMeetsCostNothing)
{
    CountDown(7, [](int place) { return std::make_unique<Restart>(place, false); });
}

class NewConnection : public support::DatabaseTest
{
    void SetUp() override {}
};

// A connection whose statement handle could not be made stayed open to the end of the process.
TEST_F(NewConnection, IsClosedWhenItsStatementCannotBeMade)
{
    database.FailCall("SQLAllocHandle", 1, CallFault::Error);
    desktop.WillAnswerOk();
    EXPECT_FALSE(host::Connect());
    EXPECT_TRUE(database.FaultFired());
    EXPECT_EQ(1u, database.Logged("connect").size());
    EXPECT_EQ(1u, database.Logged("disconnect").size());
}

} // namespace

} // namespace faults
