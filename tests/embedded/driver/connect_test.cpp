// Connecting: both forms of connection, databases and servers that are not there, users, time-outs, dead connections.
#include "client.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

namespace driver_tests
{
namespace
{

using States = std::vector<std::string>;

class ConnectTest : public testing::Test
{
protected:
    ConnectTest()
    {
        Link maker;
        EXPECT_TRUE(Allowed("SI",
                            maker.Connect("Driver={SQL Server};Create=yes;Database=" + settings.Path("site.db") + ";"),
                            SQL_HANDLE_DBC, maker.dbc));
    }

    OdbcSettings settings;
    Link link;
};

// What the component sends.
std::string DriverForm(const std::string &database, const std::string &server, const std::string &driver,
                       const std::string &user = "sa", const std::string &password = "")
{
    return "UID=" + user + ";PWD=" + password + ";Database=" + database + ";Server=" + server + ";Driver={" + driver +
           "};DSN='';APP=KVHEADERS.DLL;";
}

TEST_F(ConnectTest, DriverFormFindsTheNameInTheDriversFolder)
{
    const std::string driver = FreshName("Folder Driver ");
    settings.AddDriver(driver, {"Folder=" + settings.Path("")});
    EXPECT_TRUE(Allowed("SI", link.Connect(DriverForm("site", "any", driver)), SQL_HANDLE_DBC, link.dbc));
    EXPECT_EQ(Query(link.NewStatement(), "SELECT 1 + 1"), States{"2"});
}

TEST_F(ConnectTest, DriverFormTakesAPath)
{
    EXPECT_TRUE(Allowed("SI", link.Connect(DriverForm(settings.Path("site.db"), "any", "SQL Server")), SQL_HANDLE_DBC,
                        link.dbc));
}

TEST_F(ConnectTest, DataSourceFormTakesTheAttributesOfTheDataSource)
{
    const std::string name = FreshName("source");
    settings.AddDataSource(name, "SQL Server", {"Server=somewhere", "Database=" + settings.Path("site.db")});
    EXPECT_TRUE(
        Allowed("SI", link.Connect("DSN=" + name + ";UID=sa;PWD=;APP=KVHEADERS.DLL;"), SQL_HANDLE_DBC, link.dbc));
}

TEST_F(ConnectTest, ConnectByDataSourceAndUser)
{
    const std::string name = FreshName("source");
    settings.AddDataSource(name, "SQL Server", {"Database=" + settings.Path("site.db")});
    std::u16string source = Wide(name);
    std::u16string user = Wide("sa");
    std::u16string password;
    const auto wide = [](std::u16string &text) { return reinterpret_cast<SQLWCHAR *>(text.data()); };
    EXPECT_TRUE(Allowed("SI",
                        SQLConnectW(link.dbc, wide(source), SQL_NTS, wide(user), SQL_NTS, wide(password), SQL_NTS),
                        SQL_HANDLE_DBC, link.dbc));
    SQLDisconnect(link.dbc);
}

TEST_F(ConnectTest, UnknownDataSourceIsTheDriverManagersError)
{
    EXPECT_TRUE(Allowed("E", link.Connect("DSN=nobody;UID=sa;PWD=;"), SQL_HANDLE_DBC, link.dbc));
    EXPECT_EQ(link.Failure().at(0).substr(0, 5), "IM002");
}

TEST_F(ConnectTest, UnknownDatabase)
{
    EXPECT_TRUE(
        Allowed("E", link.Connect(DriverForm(settings.Path("no.db"), "any", "SQL Server")), SQL_HANDLE_DBC, link.dbc));
    EXPECT_EQ(link.Failure(), (States{"42000 (4060)", "08001 (0)"}));
    EXPECT_FALSE(std::filesystem::exists(settings.Path("no.db")));
}

TEST_F(ConnectTest, OnlyConfiguredServersExist)
{
    const std::string driver = FreshName("Servers Driver ");
    settings.AddDriver(driver, {"Folder=" + settings.Path(""), "Servers=alpha, Beta"});
    EXPECT_TRUE(Allowed("E", link.Connect(DriverForm("site", "gamma", driver)), SQL_HANDLE_DBC, link.dbc));
    EXPECT_EQ(link.Failure(), (States{"08001 (17)", "08001 (0)"}));
    Link other;
    EXPECT_TRUE(Allowed("SI", other.Connect(DriverForm("site", "BETA", driver)), SQL_HANDLE_DBC, other.dbc));
}

TEST_F(ConnectTest, SilentServerEndsAtTheLoginTimeout)
{
    const std::string driver = FreshName("Silent Driver ");
    settings.AddDriver(driver, {"Folder=" + settings.Path(""), "SilentServers=mute"});
    SQLSetConnectAttrW(link.dbc, SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(SQLULEN{1}), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(Allowed("E", link.Connect(DriverForm("site", "mute", driver)), SQL_HANDLE_DBC, link.dbc));
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(link.Failure(), (States{"HYT00 (0)", "08001 (0)"}));
    EXPECT_GE(took, std::chrono::milliseconds(990));
    EXPECT_LT(took, std::chrono::seconds(5));
}

TEST_F(ConnectTest, PasswordGivenAtCreationIsKept)
{
    const std::string file = settings.Path("locked.db");
    {
        Link maker;
        ASSERT_TRUE(Allowed("SI",
                            maker.Connect("Driver={SQL Server};Create=yes;Database=" + file + ";UID=sa;PWD={p;w}}d};"),
                            SQL_HANDLE_DBC, maker.dbc));
    }
    struct Case
    {
        const char *user;
        const char *password;
        bool mayLogIn;
    };
    for (const Case &each : {Case{"sa", "{p;w}}d}", true}, Case{"SA", "{p;w}}d}", true}, Case{"sa", "wrong", false},
                             Case{"sa", "", false}, Case{"o'brien", "x", false}, Case{"", "", false}})
    {
        Link client;
        const SQLRETURN code = client.Connect(DriverForm(file, "any", "SQL Server", each.user, each.password));
        EXPECT_EQ(SQL_SUCCEEDED(code), each.mayLogIn) << each.user << " " << each.password;
        if (each.mayLogIn)
            continue;
        EXPECT_EQ(client.Failure(), (States{"28000 (18456)", "08001 (0)"}));
    }
}

TEST_F(ConnectTest, DatabaseWithoutUsersTakesEverybody)
{
    EXPECT_TRUE(Allowed("SI", link.Connect(DriverForm(settings.Path("site.db"), "any", "SQL Server", "anna", "secret")),
                        SQL_HANDLE_DBC, link.dbc));
}

TEST_F(ConnectTest, EnvironmentVariableOverridesTheDatabase)
{
    setenv("KVEMBEDDED_DATABASE", settings.Path("site.db").c_str(), 1);
    EXPECT_TRUE(Allowed("SI", link.Connect(DriverForm("ignored", "any", "SQL Server")), SQL_HANDLE_DBC, link.dbc));
    unsetenv("KVEMBEDDED_DATABASE");
}

TEST_F(ConnectTest, LiveConnectionIsNotDeadAndDisconnects)
{
    ASSERT_TRUE(Allowed("SI", link.Connect(DriverForm(settings.Path("site.db"), "any", "SQL Server")), SQL_HANDLE_DBC,
                        link.dbc));
    EXPECT_FALSE(link.IsDead());
}

TEST_F(ConnectTest, WhatTheDriverTellsAboutItself)
{
    ASSERT_TRUE(Allowed("SI", link.Connect(DriverForm(settings.Path("site.db"), "here", "SQL Server")), SQL_HANDLE_DBC,
                        link.dbc));
    const auto text = [&](SQLUSMALLINT what)
    {
        SQLWCHAR value[256] = {};
        SQLSMALLINT length = 0;
        EXPECT_TRUE(Allowed("S", SQLGetInfoW(link.dbc, what, value, sizeof value, &length), SQL_HANDLE_DBC, link.dbc));
        return Narrow({reinterpret_cast<char16_t *>(value), static_cast<size_t>(length) / 2});
    };
    EXPECT_EQ(text(SQL_DRIVER_NAME), "libkvembedded.so");
    EXPECT_EQ(text(SQL_SERVER_NAME), "here");
    EXPECT_EQ(text(SQL_DATABASE_NAME), settings.Path("site.db"));
    SQLUSMALLINT active = 0;
    EXPECT_EQ(SQLGetInfoW(link.dbc, SQL_MAX_CONCURRENT_ACTIVITIES, &active, sizeof active, nullptr), SQL_SUCCESS);
    EXPECT_EQ(active, 1);
}

} // namespace
} // namespace driver_tests
