// Connecting: both forms of connection, databases and servers that are not there, users, time-outs.
#include "client.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

namespace driver_tests
{
namespace
{

class ConnectTest : public testing::Test
{
protected:
    ConnectTest() { ExpectConnected("Driver={SQL Server};Create=yes;Database=" + folder.Path("site.db") + ";"); }

    // What the component sends.
    static std::string Text(const std::string &database, const std::string &server, const std::string &driver,
                            const std::string &user = "sa", const std::string &password = "")
    {
        return "UID=" + user + ";PWD=" + password + ";Database=" + database + ";Server=" + server + ";Driver={" +
               driver + "};DSN='';APP=KVHEADERS.DLL;";
    }
    static void ExpectConnected(const std::string &text)
    {
        Link client;
        EXPECT_EQ(Query(Open(client, text), "SELECT 1 + 1"), Lines{"2"});
        EXPECT_FALSE(client.IsDead());
    }
    static void ExpectRefused(const std::string &text, const Lines &states)
    {
        Link client;
        EXPECT_EQ(client.Connect(text), SQL_ERROR) << text;
        EXPECT_EQ(client.Failure(), states) << text;
    }

    support::TestFolder folder;
};

TEST_F(ConnectTest, NamesOfDatabasesServersAndDataSources)
{
    const std::string driver = "Folder Driver";
    AddDriver(driver, {"Folder=" + folder.Path(), "Servers=alpha, Beta"});
    AddDataSource("source", {"Server=somewhere", "Database=" + folder.Path("site.db")});
    ExpectConnected(Text("site", "alpha", driver));
    ExpectConnected(Text("site.db", "BETA", driver));
    ExpectConnected(Text(folder.Path("site.db"), "any", "SQL Server"));
    ExpectConnected("DSN=source;UID=sa;PWD=;APP=KVHEADERS.DLL;");
    ExpectRefused(Text("site", "gamma", driver), {"08001 (17)", "08001 (0)"});
    ExpectRefused(Text(folder.Path("no.db"), "any", "SQL Server"), {"42000 (4060)", "08001 (0)"});
    EXPECT_FALSE(std::filesystem::exists(folder.Path("no.db")));
    setenv("KVEMBEDDED_DATABASE", folder.Path("site.db").c_str(), 1);
    ExpectConnected(Text("ignored", "any", "SQL Server"));
    unsetenv("KVEMBEDDED_DATABASE");
}

TEST_F(ConnectTest, SilentServerEndsAtTheLoginTimeout)
{
    Link link;
    SQLSetConnectAttrW(link.dbc, SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(SQLULEN{1}), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(link.Connect("SilentServers=mute;" + Text(folder.Path("site.db"), "mute", "SQL Server")), SQL_ERROR);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(link.Failure(), (Lines{"HYT00 (0)", "08001 (0)"}));
    EXPECT_GE(took, std::chrono::milliseconds(990));
    EXPECT_LT(took, std::chrono::seconds(5));
}

TEST_F(ConnectTest, PasswordGivenAtCreationIsKept)
{
    const std::string file = folder.Path("locked.db");
    ExpectConnected("Driver={SQL Server};Create=yes;Database=" + file + ";UID=sa;PWD={p;w}}d};");
    for (const char *const user : {"sa", "SA"})
        ExpectConnected(Text(file, "any", "SQL Server", user, "{p;w}}d}"));
    for (const auto &[user, password] :
         std::vector<std::pair<std::string, std::string>>{{"sa", "wrong"}, {"sa", ""}, {"o'brien", "x"}, {"", ""}})
        ExpectRefused(Text(file, "any", "SQL Server", user, password), {"28000 (18456)", "08001 (0)"});
    ExpectConnected(Text(folder.Path("site.db"), "any", "SQL Server", "anna", "secret")); // has no users
}

} // namespace
} // namespace driver_tests
