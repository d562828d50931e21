// Connecting: both forms of connection, databases and servers that are not there, users, time-outs.
#include "client.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

namespace driver_tests
{
namespace
{

constexpr const char *kRefused = "08001 (0)"; // the general failure, behind each reason

class ConnectTest : public testing::Test
{
protected:
    ConnectTest()
    {
        static const support::TestFolder odbc; // what follows in this process finds "SQL Server" there, too
        const std::string driver = std::string("Driver=") + std::getenv("KVEMBEDDED_DRIVER") + "\n";
        support::WriteFile(odbc.Path("odbcinst.ini"), "[SQL Server]\n" + driver + "[Folder Driver]\n" + driver +
                                                          "Folder=" + folder.Path() + "\nOnlyServer=alpha\n");
        support::WriteFile(odbc.Path("odbc.ini"),
                           "[source]\nDriver=SQL Server\nServer=somewhere\nDatabase=" + folder.Path("site.db") + "\n");
        setenv("ODBCSYSINI", odbc.Path().c_str(), 1);
        setenv("ODBCINI", odbc.Path("odbc.ini").c_str(), 1);
        Expect({}, "Driver={SQL Server};Create=yes;Database=" + folder.Path("site.db") + ";");
    }

    // What the component sends.
    static std::string Text(const std::string &database, const std::string &server = "any",
                            const std::string &driver = "SQL Server", const std::string &login = "UID=sa;PWD=;")
    {
        return login + "Database=" + database + ";Server=" + server + ";Driver={" + driver +
               "};DSN='';APP=KVHEADERS.DLL;";
    }
    // No states: the connection is made and works.
    static void Expect(const Lines &states, const std::string &text)
    {
        Client client(text);
        EXPECT_EQ(client.refused, states) << text;
        EXPECT_EQ(states.empty() ? client.Query("SELECT 1 + 1") : Lines{"2"}, Lines{"2"}) << text;
    }

    support::TestFolder folder;
};

TEST_F(ConnectTest, NamesOfDatabasesServersAndDataSources)
{
    Expect({}, Text("site", "alpha", "Folder Driver"));
    Expect({}, Text("site.db", "ALPHA", "Folder Driver"));
    Expect({}, Text(folder.Path("site.db")));
    Expect({}, "DSN=source;UID=sa;PWD=;APP=KVHEADERS.DLL;");
    Expect({"08001 (17)", kRefused}, Text("site", "gamma", "Folder Driver"));
    Expect({"42000 (4060)", kRefused}, Text(folder.Path("no.db")));
    EXPECT_FALSE(std::filesystem::exists(folder.Path("no.db")));
}

TEST_F(ConnectTest, SilentServerEndsAtTheLoginTimeout)
{
    const auto start = std::chrono::steady_clock::now();
    const Client client("SilentServer=mute;" + Text(folder.Path("site.db"), "mute"), 1);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(client.refused, (Lines{"HYT00 (0)", kRefused}));
    EXPECT_GE(took, std::chrono::milliseconds(990));
    EXPECT_LT(took, std::chrono::seconds(5));
}

TEST_F(ConnectTest, PasswordGivenAtCreationIsKept)
{
    const std::string file = folder.Path("locked.db");
    Expect({}, "Driver={SQL Server};Create=yes;Database=" + file + ";UID=o'brien;PWD={p;'w}}d};");
    for (const std::string login : {"UID=o'brien;PWD={p;'w}}d};", "UID=O'Brien;PWD={p;'w}}d};"})
        Expect({}, Text(file, "any", "SQL Server", login));
    for (const std::string login : {"UID=o'brien;PWD=wrong;", "UID=o'brien;PWD=;", "UID=sa;PWD={p;'w}}d};", ""})
        Expect({"28000 (18456)", kRefused}, Text(file, "any", "SQL Server", login));
    Expect({}, Text(folder.Path("site.db"), "any", "SQL Server", "UID=anna;PWD=secret;")); // has no users
}

} // namespace
} // namespace driver_tests
