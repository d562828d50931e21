// The save pass when statements fail: each one once, all from one on, and a connection that is cut, at every place.
#include "host/modMain.h"
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "records.h"

#include "host/modGlobalVariables.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

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

    Lines Events() { return Query("SELECT error_code, msg1 FROM System_log"); }

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

// With the connection gone every later statement fails as well, and no row of the log can be written, which is let be:
// the save comes to its end.
TEST_P(SaveFaultsAt, TheConnectionIsCut)
{
    Begin();
    database.Cut(Sent()[K()]);
    // each option reports for itself, everything else once at the end
    const std::size_t boxes = (K() < kOptions ? kOptions - K() : 0) + 1;
    desktop.WillAnswerOk(boxes);
    SaveAll();
    ASSERT_EQ(boxes, desktop.boxes.size());
    for (const std::string &box : desktop.boxes)
        EXPECT_EQ(0u, box.find("box 48 \"Error\" \"Error encountered while accessing data: 08S01: ")) << box;
    EXPECT_EQ(Lines{}, Events());
    EXPECT_EQ(TablesWithout([&](std::size_t k) { return k >= K(); }), TablesOf(database));
    host::Disconnect();
    EXPECT_TRUE(host::Connect()) << "the next time connects anew";
}

INSTANTIATE_TEST_SUITE_P(EveryPlace, SaveFaultsAt, testing::Range<std::size_t>(0, 14));

} // namespace
