// Connecting: the exact connect strings, the failure texts, and a real connection made, reused and given up.
#include "host/clsConfig.h"
#include "host/connect_texts.h"
#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "runtime/handler.h"
#include "support/database_fixture.h"
#include "support/registry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace
{

constexpr std::int32_t kGeneral = -2147467259;

// The host's settings as they were before the test.
class ConnectTexts : public testing::Test
{
protected:
    ConnectTexts()
    {
        host::gSqlUserName = "dictate";
        host::gPassword = "p;w";
        host::gSqlDbName = "Corvane";
        host::gSqlServerName = "SRV1";
    }
    ~ConnectTexts() override
    {
        host::gSqlUserName.clear();
        host::gPassword.clear();
        host::gSqlDbName.clear();
        host::gSqlServerName.clear();
    }
};

TEST_F(ConnectTexts, DriverForm)
{
    EXPECT_EQ(host::DriverConnectString(), "UID=dictate;PWD=p;w;Database=Corvane;Server=SRV1;Driver={SQL "
                                           "Server};DSN='';APP=KVHEADERS.DLL;");
}

TEST_F(ConnectTexts, DataSourceForm)
{
    EXPECT_EQ(host::DataSourceConnectString(), "UID=dictate;PWD=p;w;APP=KVHEADERS.DLL;");
}

TEST_F(ConnectTexts, GeneralFailure)
{
    EXPECT_EQ(host::ConnectFailureText({kGeneral, "HYT00: Login timeout expired"}),
              "HYT00: Login timeout expired\r\n-2147467259\r\nSQL Timeout, Please try again.");
}

TEST_F(ConnectTexts, AnyOtherFailure)
{
    EXPECT_EQ(host::ConnectFailureText({40002, "28000: Login failed for user 'x'."}),
              "Err.Description= 28000: Login failed for user 'x'.\r\nErr.Number 40002\r\nADO connection String ");
}

class Connecting : public support::DatabaseTest
{
protected:
    void SetUp() override {}

    void TryToConnect() { m_connected = host::Connect(); }

    // Asks for a server while there is but the one named "embedded".
    void OnlyServer(const std::string &wanted)
    {
        host::gSqlServerName = wanted;
        host::gSqlDbName += ";OnlyServer=embedded";
    }

    // One box without a title of its own, system-modal.
    void ExpectFailure(const std::string &text)
    {
        EXPECT_FALSE(m_connected);
        EXPECT_FALSE(host::gConnected);
        EXPECT_EQ(desktop.boxes, support::Lines{support::Box(4096, "KVHEADERS", text)});
    }

    bool m_connected = false;
};

TEST_F(Connecting, AnEmptyUserIsSa)
{
    host::gSqlUserName.clear();
    TryToConnect();
    EXPECT_TRUE(m_connected);
    EXPECT_EQ(host::gSqlUserName, "sa");
}

TEST_F(Connecting, AUserOfBlanksIsNotEmptyAndStaysAsItIs)
{
    host::gSqlUserName = "  ";
    TryToConnect();
    EXPECT_EQ(host::gSqlUserName, "  ");
    EXPECT_EQ(host::DriverConnectString().find("UID=  ;PWD="), 0u);
}

TEST_F(Connecting, ThePasswordIsTrimmedAndStaysTrimmed)
{
    const auto config = runtime::MakeRef<host::clsConfig>();
    config->SetPassword("  secret  ");
    TryToConnect();
    EXPECT_EQ(config->Password(), "secret");
    host::gConfig = nullptr;
}

TEST_F(Connecting, ASecondConnectDoesNothing)
{
    TryToConnect();
    ASSERT_TRUE(m_connected);
    const auto *const first = host::gConnection.get();
    host::gSqlServerName = "elsewhere";
    EXPECT_TRUE(host::Connect());
    EXPECT_EQ(host::gConnection.get(), first);
}

TEST_F(Connecting, AfterDisconnectANewEnvironmentAndConnectionAreMade)
{
    TryToConnect();
    const auto environment = host::gEnvironment;
    const auto connection = host::gConnection;
    host::Disconnect();
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(host::gConnection, connection) << "the objects are not released";
    EXPECT_TRUE(host::Connect());
    EXPECT_NE(host::gEnvironment, environment);
    EXPECT_NE(host::gConnection, connection);
}

TEST_F(Connecting, DisconnectIgnoresErrors)
{
    host::gConnection.reset();
    host::gEnvironment.reset();
    host::gConnected = true;
    host::Disconnect();
    EXPECT_FALSE(host::gConnected);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Connecting, MessagesAreLetThroughFirst)
{
    TryToConnect();
    EXPECT_EQ(desktop.eventRounds, 1);
    EXPECT_EQ(desktop.waitCursors, 0) << "the wait cursor is taken back";
}

TEST_F(Connecting, AServerThatIsNotThereIsAGeneralFailure)
{
    OnlyServer("nowhere");
    desktop.WillAnswerOk();
    TryToConnect();
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_FALSE(m_connected);
    EXPECT_NE(desktop.boxes[0].find("\\r\\n-2147467259\\r\\nSQL Timeout, Please try again."), std::string::npos)
        << desktop.boxes[0];
    EXPECT_EQ(desktop.boxes[0].find("box 4096 \"KVHEADERS\" \"08"), 0u) << desktop.boxes[0];
}

TEST_F(Connecting, AServerThatNeverAnswersIsGivenUpAfterTheLoginTimeout)
{
    host::gSqlServerName = "tarpit";
    host::gSqlDbName += ";SilentServer=tarpit";
    host::gSqlTimeout = 1;
    desktop.WillAnswerOk();
    const auto start = std::chrono::steady_clock::now();
    TryToConnect();
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(900));
    EXPECT_LT(waited, std::chrono::seconds(10));
    ExpectFailure("HYT00: Login timeout expired\r\n-2147467259\r\nSQL Timeout, Please try again.");
}

TEST_F(Connecting, AWrongPasswordIsTold)
{
    // A database made with a password keeps the user that made it.
    host::gSqlDbName = database.Folder().DriverPath("locked.db") + ";Create=yes";
    host::gPassword = "right";
    TryToConnect();
    ASSERT_TRUE(m_connected);
    host::Disconnect();

    host::gPassword = "wrong";
    desktop.WillAnswerOk();
    TryToConnect();
    ExpectFailure("Err.Description= 28000: Login failed for user 'sa'.\r\nErr.Number 40002\r\nADO connection String ");
}

TEST_F(Connecting, ANegativeLoginTimeoutIsRefused)
{
    host::gSqlTimeout = -1;
    desktop.WillAnswerOk();
    TryToConnect();
    ExpectFailure("Err.Description= Invalid property value\r\nErr.Number 380\r\nADO connection String ");
}

TEST_F(Connecting, AnUnregisteredDataSourceUsesTheDriverForm)
{
    host::gSQLDSN = "KvTestNotRegistered";
    TryToConnect();
    EXPECT_TRUE(m_connected);
}

// It stands in odbc.ini without a database. Nothing of the connect string is quoted, so that the password can bring
// one.
TEST_F(Connecting, ADataSourceOfTheUserAloneLogsIn)
{
    support::TestRegistry registry;
    registry.Set(platform::RegistryRoot::CurrentUser, "SOFTWARE\\ODBC\\ODBC.INI\\KvTestUser", "DATABASE", "x");
    // Where Wine 10's driver manager finds the driver; earlier ones ask unixODBC.
    registry.Set(platform::RegistryRoot::CurrentUser, "SOFTWARE\\ODBC\\ODBC.INI\\ODBC Data Sources", "KvTestUser",
                 "SQL Server");
    host::gSQLDSN = "KvTestUser";
    host::gPassword = ";Database=" + database.DatabaseName();
    host::gSqlDbName = "nowhere"; // where the driver form would look
    TryToConnect();
    ASSERT_TRUE(m_connected);
    host::Execute("SELECT 1");
    EXPECT_EQ(database.Log(), support::Lines{"SELECT 1"});
}

TEST_F(Connecting, ShowFormTellsOfAConnectionThatCannotBeMadeAndReturns)
{
    const auto config = runtime::MakeRef<host::clsConfig>();
    OnlyServer("nowhere");
    config->SetZentra_INIFile(database.Folder().Path("none.ini"));
    host::gNetworkRootDir = "unread";
    desktop.WillAnswerOk(2);
    desktop.whileBoxIsOpen = [&](const std::string &)
    {
        EXPECT_FALSE(desktop.hostAnswers);
        EXPECT_GT(desktop.waitCursors, 0);
        EXPECT_EQ(config->ShowForm(), 0) << "a call from within returns at once";
        EXPECT_FALSE(desktop.hostAnswers);
    };
    EXPECT_EQ(config->ShowForm(), 0);
    EXPECT_TRUE(desktop.hostAnswers);
    EXPECT_EQ(desktop.waitCursors, 0);
    ASSERT_EQ(desktop.boxes.size(), 2u);
    EXPECT_EQ(desktop.boxes[1],
              support::Box(0, "Connection Error", "Connection to the Corvane database cannot be established."));
    EXPECT_EQ(host::gNetworkRootDir, "unread") << "the INI file was not read";
    // Without another box where the host has destroyed a window meanwhile.
    desktop.WillAnswerOk();
    desktop.whileBoxIsOpen = [](const std::string &) { runtime::CancelHandler(); };
    EXPECT_EQ(config->ShowForm(), 0);
    EXPECT_EQ(desktop.boxes.size(), 3u);
    host::gConfig = nullptr;
}

} // namespace
