// Actions on a database that comes and goes: what is sent, how often, and over which connection.
#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "runtime/error_trap.h"
#include "support/database_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using support::Lines;
using Kind = host::DatabaseAction::Kind;

const std::string kFirst = "SELECT 1";
const std::string kSecond = "SELECT 2";
const std::string kThird = "SELECT 3";

class Action : public support::DatabaseTest
{
protected:
    // The error of sending a statement, empty for none.
    static std::string Send(const std::string &sql)
    {
        runtime::ErrorTrap trap;
        trap.Try([&] { host::Execute(sql); });
        return trap.Description();
    }

    static std::string Lost(const std::string &state) { return state + ": Communication link failure"; }
};

class ActionOnALoss : public Action, public testing::WithParamInterface<const char *>
{
};

TEST_P(ActionOnALoss, SendsItsFirstStatementOnceMore)
{
    database.Cut(kFirst, GetParam());
    {
        const host::DatabaseAction action;
        EXPECT_EQ("", Send(kFirst));
        EXPECT_EQ("", Send(kSecond));
    }
    EXPECT_EQ((Lines{kFirst, kFirst, kSecond}), Log());
    EXPECT_EQ(Lines{}, desktop.boxes);
}

TEST_P(ActionOnALoss, SendsEveryOtherStatementOnceAndGoesOnOverANewConnection)
{
    database.Cut(kSecond, GetParam());
    {
        const host::DatabaseAction action;
        EXPECT_EQ("", Send(kFirst));
        EXPECT_EQ(Lost(GetParam()), Send(kSecond));
        EXPECT_EQ("", Send(kThird));
    }
    EXPECT_EQ((Lines{kFirst, kSecond, kThird}), Log());
}

TEST_P(ActionOnALoss, GivesTheStatementsErrorWhenItCannotConnect)
{
    database.Cut(kFirst, GetParam());
    database.RefuseConnects(1);
    const host::DatabaseAction action;
    EXPECT_EQ(Lost(GetParam()), Send(kFirst));
    EXPECT_EQ(Lost("08S01"), Send(kSecond)) << "an action connects anew at most once";
    EXPECT_EQ(Lines{}, desktop.boxes);
}

INSTANTIATE_TEST_SUITE_P(States, ActionOnALoss, testing::Values("08S01", "HY000", "01000"));

TEST_F(Action, AsksTheDriverBeforeItSendsAnything)
{
    const auto *const lost = host::gConnection.get();
    database.CutIdle();
    const host::DatabaseAction action;
    EXPECT_NE(lost, host::gConnection.get());
    EXPECT_EQ("", Send(kFirst));
    EXPECT_EQ(Lines{kFirst}, Log());
}

TEST_F(Action, ConnectsAnewAtMostOnce)
{
    database.Cut(kFirst);
    database.Cut(kSecond);
    {
        const host::DatabaseAction action;
        EXPECT_EQ("", Send(kFirst));
        EXPECT_EQ(Lost("08S01"), Send(kSecond));
        EXPECT_EQ(Lost("08S01"), Send(kThird));
    }
    const host::DatabaseAction next;
    EXPECT_EQ("", Send(kThird));
}

TEST_F(Action, AnErrorThatIsNoLossIsTheStatements)
{
    Fail(1, kFirst, "busy");
    const auto *const before = host::gConnection.get();
    const host::DatabaseAction action;
    EXPECT_EQ("HY000: busy", Send(kFirst));
    EXPECT_EQ(before, host::gConnection.get());
    EXPECT_EQ(Lines{kFirst}, Log());
}

TEST_F(Action, OneInsideAnotherBelongsToItButForALogEntry)
{
    const host::DatabaseAction outer;
    EXPECT_EQ("", Send(kFirst));
    {
        const host::DatabaseAction inner;
        database.Cut(kSecond);
        EXPECT_EQ(Lost("08S01"), Send(kSecond));
    }
    {
        const host::DatabaseAction entry(Kind::LogEntry);
        EXPECT_EQ("", Send(kThird)) << "the entry has connected anew, for the others as well";
    }
    EXPECT_EQ("", Send(kFirst));
}

// Its statements raise that error from then on, and are not sent, though the server may be back.
TEST_F(Action, ASaveEndsWhenItCannotConnectAtItsStart)
{
    const std::string refusal = "08001: SQL Server does not exist or access denied.";
    database.CutIdle();
    database.RefuseConnects(1);
    {
        const host::DatabaseAction save(Kind::Save);
        EXPECT_TRUE(host::SaveHasEnded());
        EXPECT_EQ(refusal, Send(kFirst));
    }
    EXPECT_FALSE(host::SaveHasEnded());
    host::Connect();
    database.Cut(kFirst);
    database.RefuseConnects(1);
    const host::DatabaseAction save(Kind::Save);
    EXPECT_FALSE(host::SaveHasEnded());
    EXPECT_EQ("08S01: Communication link failure", Send(kFirst));
    EXPECT_EQ(-2147467259, save.Ended() ? save.Ended()->Number() : 0);
    EXPECT_EQ(refusal, Send(kSecond));
    EXPECT_EQ(Lines{kFirst}, Log());
}

TEST_F(Action, OutsideAnActionAStatementIsSentOnce)
{
    database.Cut(kFirst);
    EXPECT_EQ(Lost("08S01"), Send(kFirst));
    EXPECT_EQ(Lost("08S01"), Send(kSecond));
}

TEST_F(Action, WhatTheComponentHasClosedStaysClosed)
{
    EXPECT_TRUE(host::HasConnection());
    host::Disconnect();
    EXPECT_FALSE(host::HasConnection());
    const host::DatabaseAction action;
    EXPECT_EQ("Object variable or With block variable not set", Send(kFirst));
    EXPECT_FALSE(host::HasConnection());
}

// The host may set its properties for the next opening while a window is open.
TEST_F(Action, ConnectsAnewToTheSameDatabase)
{
    host::gSqlDbName = "elsewhere";
    database.CutIdle();
    const host::DatabaseAction action;
    EXPECT_EQ("", Send(kFirst));
}

TEST_F(Action, ConnectAsksWhetherTheConnectionThatWasLeftOpenIsLost)
{
    database.CutIdle();
    EXPECT_TRUE(host::Connect());
    EXPECT_EQ("", Send(kFirst));
    EXPECT_EQ(Lines{kFirst}, Log());

    database.CutIdle();
    database.RefuseConnects();
    desktop.WillAnswerOk();
    EXPECT_FALSE(host::Connect());
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(1u, desktop.boxes.size());
    database.AllowConnects();
    EXPECT_TRUE(host::Connect());
    EXPECT_EQ("", Send(kFirst));
}

TEST_F(Action, NothingIsLeftOpenBehindARelease)
{
    host::ReleaseConnection();
    EXPECT_EQ(1u, database.Logged("disconnect").size());
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(nullptr, host::gConnection);
    EXPECT_EQ(nullptr, host::gEnvironment);
    const host::DatabaseAction action;
    EXPECT_EQ("Object variable or With block variable not set", Send(kFirst));
}

} // namespace
