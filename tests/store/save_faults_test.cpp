// The save pass when statements fail: each one once, all from one on, and a connection that is cut, at every place.
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "records.h"

#include "host/modMain.h"
#include "runtime/handler.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

using namespace store;
using records::State;
using support::ErrorBox;
using support::Lines;

namespace
{

constexpr const char *kRows =
    "INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (10, 'Old', 3) "
    "INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES (11, 'Gone', 3) "
    "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (20, 'Old', 3) "
    "INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (21, 'Gone', 3) "
    "INSERT INTO Report_header_settings VALUES (20, 7, 0, 10, 0) "
    "INSERT INTO Report_header_settings VALUES (20, 8, 4, 10, 0) "
    "INSERT INTO Report_header_settings VALUES (21, 8, 4, 10, 0)";

void LoadSession()
{
    records::Start();
    model::clsPartition &three = records::Partition(3);
    records::Format(three, 10, "Renamed", State::Changed);
    records::Format(three, 11, "Gone", State::Removed);
    records::Format(three, 12, "O'Brien", State::New);
    records::Heading(three, 20, "Renamed", State::Changed);
    records::Heading(three, 21, "Gone", State::Removed);
    records::Heading(three, 22, "New", State::New);
    records::Setting(20, 7, 0, 12, 0, State::Changed);
    records::Setting(20, 8, 4, 10, 0, State::Removed);
    records::Setting(22, -1, 0, 12, 3, State::New);
    records::Setting(0, -1, 0, 12, 3, State::New);
}

// The tagging options of the one partition come first and report for themselves.
constexpr std::size_t kOptions = 2;

Lines TablesOf(support::TestDatabase &database)
{
    Lines all;
    for (const char *query :
         {"SELECT * FROM Report_header_formats ORDER BY format_id", "SELECT * FROM Report_headers ORDER BY heading_id",
          "SELECT * FROM Report_header_settings ORDER BY heading_id, hosp_acct_id, report_type_nbr",
          "SELECT * FROM System_user_cfg ORDER BY key_name"})
    {
        all.push_back(query);
        for (const std::string &row : database.Query(query))
            all.push_back(row);
    }
    return all;
}

bool IsLogRow(const std::string &statement)
{
    return statement.find("INSERT INTO System_log") != std::string::npos;
}

Lines WithoutLogRows(const Lines &statements)
{
    Lines kept;
    for (const std::string &statement : statements)
        if (!IsLogRow(statement))
            kept.push_back(statement);
    return kept;
}

std::string Described(std::size_t k)
{
    return "Error encountered while accessing data: HY000: failure " + std::to_string(k);
}

class SaveFaults : public support::DatabaseTest
{
protected:
    // Takes down the statements of a save that succeeds, before the first test.
    static void SetUpTestSuite();
    static const Lines &Sent() { return s_sent; }

    void Begin()
    {
        Run(kRows);
        LoadSession();
    }

    // What the tables hold when all statements but some have run.
    template <class Fails>
    static Lines TablesWithout(Fails &&fails)
    {
        support::TestDatabase database;
        database.Run(kRows);
        for (std::size_t k = 0; k < Sent().size(); ++k)
            if (!fails(k))
                database.Run(Sent()[k]);
        return TablesOf(database);
    }

private:
    static Lines s_sent;
};

Lines SaveFaults::s_sent;

void SaveFaults::SetUpTestSuite()
{
    struct Undisturbed final : SaveFaults
    {
        void TestBody() override
        {
            SetUp();
            Begin();
            SaveAll();
            s_sent = Log();
        }
    };
    if (s_sent.empty())
        Undisturbed().TestBody();
}

// One test for each statement: k runs through more places than any session here has.
class SaveFaultsAt : public SaveFaults, public testing::WithParamInterface<std::size_t>
{
protected:
    std::size_t K() const { return GetParam(); }
};

TEST_F(SaveFaults, TheSessionHasAsManyStatementsAsAreTested)
{
    EXPECT_EQ(14u, Sent().size());
}

TEST_P(SaveFaultsAt, OneStatementThatFailsIsLeftOutAndReported)
{
    Begin();
    Fail(1, Sent()[K()], "failure " + std::to_string(K()));
    desktop.WillAnswerOk();
    SaveAll();
    EXPECT_EQ(Sent(), WithoutLogRows(Log()));
    EXPECT_EQ(Lines{ErrorBox(Described(K()))}, desktop.boxes);
    EXPECT_EQ(Lines{(K() < kOptions ? "21009 | " : "21010 | ") + Described(K())}, Events());
    // an option logs at once, everything else behind the last statement
    const Lines log = Log();
    ASSERT_EQ(Sent().size() + 1, log.size());
    EXPECT_TRUE(IsLogRow(log[K() < kOptions ? K() + 1 : Sent().size()]));
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return k == K(); }), TablesOf(database));
}

TEST_P(SaveFaultsAt, AllStatementsFromOneOnFail)
{
    Begin();
    Lines boxes;
    Lines events;
    for (std::size_t k = K(); k < Sent().size(); ++k)
    {
        Fail(1, Sent()[k], "failure " + std::to_string(k));
        if (k < kOptions)
        {
            boxes.push_back(ErrorBox(Described(k)));
            events.push_back("21009 | " + Described(k));
        }
    }
    boxes.push_back(ErrorBox(Described(Sent().size() - 1)));
    events.push_back("21010 | " + Described(Sent().size() - 1));
    desktop.WillAnswerOk(boxes.size());
    SaveAll();
    EXPECT_EQ(Sent(), WithoutLogRows(Log()));
    EXPECT_EQ(boxes, desktop.boxes);
    EXPECT_EQ(events, Events());
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return k >= K(); }), TablesOf(database));
}

TEST_P(SaveFaultsAt, TheLogRowFailsAsWell)
{
    Begin();
    Fail(1, Sent()[K()], "failure " + std::to_string(K()));
    Fail(2, "INSERT INTO System_log", "no log", "42000");
    desktop.WillAnswerOk(3);
    SaveAll();
    const std::string logging = "Error encountered while logging: 42000: no log";
    EXPECT_EQ((Lines{ErrorBox(Described(K())), ErrorBox(logging), ErrorBox(logging)}), desktop.boxes);
    EXPECT_EQ(Lines{"21008 | " + logging}, Events());
    EXPECT_EQ(Sent(), WithoutLogRows(Log()));
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return k == K(); }), TablesOf(database));
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, SaveFaultsAt, testing::Range<std::size_t>(0, 14));

// The place of the statement that meets the loss, and the only record that the driver gives of it.
class SaveLossAt : public SaveFaults, public testing::WithParamInterface<std::tuple<std::size_t, const char *>>
{
protected:
    std::size_t K() const { return std::get<0>(GetParam()); }
    std::string State() const { return std::get<1>(GetParam()); }
    std::string Told() const
    {
        return "Error encountered while accessing data: " + State() + ": Communication link failure";
    }
    std::string Code(std::size_t k) const { return k < kOptions ? "21009 | " : "21010 | "; }

    // Only the first statement is sent once more, which nobody hears of.
    void ExpectLossOnceAt(std::size_t times)
    {
        Lines sent = Sent();
        if (K() == 0)
            sent.insert(sent.begin(), times, Sent()[0]);
        EXPECT_EQ(sent, WithoutLogRows(Log()));
        EXPECT_EQ(K() == 0 ? Lines{} : Lines{ErrorBox(Told())}, desktop.boxes);
        EXPECT_EQ(K() == 0 ? Lines{} : Lines{Code(K()) + Told()}, Events());
    }
};

TEST_P(SaveLossAt, TheConnectionIsMadeAnew)
{
    Begin();
    database.Cut(Sent()[K()], State());
    desktop.WillAnswerOk(K() == 0 ? 0 : 1);
    EXPECT_TRUE(SaveAll());
    ExpectLossOnceAt(1);
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return K() > 0 && k == K(); }), TablesOf(database));
}

TEST_P(SaveLossAt, TheAnswerIsLostBehindTheEffect)
{
    Begin();
    database.CutAfter(Sent()[K()], State());
    desktop.WillAnswerOk(K() == 0 ? 0 : 1);
    EXPECT_TRUE(SaveAll());
    ExpectLossOnceAt(1);
    if (K() == 0)
        Run("DELETE FROM System_user_cfg WHERE key_name = 'TagKnownHeadings'"); // the first statement has run twice
    const Lines all = TablesWithout([&](std::size_t k) { return K() == 0 && k == 0; });
    EXPECT_EQ(all, TablesOf(database));
}

// Every statement from there on fails, and so does the log, until the server is back.
TEST_P(SaveLossAt, TheServerStaysAwayForALongTime)
{
    Begin();
    database.Cut(Sent()[K()], State());
    database.RefuseConnects();
    if (K() == 0)
    {
        desktop.WillAnswerOk();
        EXPECT_FALSE(SaveAll());
        EXPECT_EQ(Lines{support::Box(4096, "KVHEADERS",
                                     "08001: SQL Server does not exist or access denied.\r\n-2147467259\r\n"
                                     "SQL Timeout, Please try again.")},
                  desktop.boxes);
        EXPECT_EQ(TablesWithout([](std::size_t) { return true; }), TablesOf(database));
        database.AllowConnects();
        EXPECT_TRUE(SaveAll()) << "the second Save writes what the first one has kept";
        EXPECT_EQ(TablesWithout([](std::size_t) { return false; }), TablesOf(database));
        EXPECT_EQ(1u, desktop.boxes.size());
        return;
    }
    desktop.whileBoxIsOpen = [&](const std::string &box)
    {
        if (box.find("while logging") != std::string::npos)
            database.AllowConnects();
    };
    desktop.WillAnswerOk(2);
    EXPECT_TRUE(SaveAll());
    ASSERT_EQ(2u, desktop.boxes.size());
    const std::string lastError = K() < kOptions || K() + 1 == Sent().size() ? State() : "08S01";
    EXPECT_EQ(ErrorBox("Error encountered while accessing data: " + lastError + ": Communication link failure"),
              desktop.boxes[0]);
    const std::string logging = "Error encountered while logging: 08S01: Communication link failure";
    EXPECT_EQ(ErrorBox(logging), desktop.boxes[1]);
    EXPECT_EQ(Lines{"21008 | " + logging}, Events());
    // behind an option the log has connected anew for the rest of the save
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return K() < kOptions ? k == K() : k >= K(); }), TablesOf(database));
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, SaveLossAt,
                         testing::Combine(testing::Range<std::size_t>(0, 14),
                                          testing::Values("08S01", "HY000", "01000")));

// The host takes the window away while a box of the save is open: nothing is said or sent any more.
TEST_F(SaveFaults, TheWindowIsTakenAwayMeanwhile)
{
    const runtime::HandlerScope handler;
    Begin();
    Fail(1, Sent()[1], "refused");
    desktop.whileBoxIsOpen = [&](const std::string &)
    {
        runtime::CancelHandler();
        host::Disconnect();
    };
    desktop.WillAnswerOk();
    EXPECT_THROW(SaveAll(), runtime::HandlerCancelled);
    EXPECT_EQ(1u, desktop.boxes.size());
    EXPECT_EQ((Lines{Sent()[0], Sent()[1]}), Log());
}

} // namespace
