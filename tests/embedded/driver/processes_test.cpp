// Several processes on one file, a process that dies in the middle, a file that cannot be written any more, and
// programs that this project did not write.
#include "client.h"
#include "support/processes.h"

#include "tsql/session.h"

#include <csignal>
#include <fstream>

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>

namespace driver_tests
{
namespace
{

bool IsWhole(const std::string &file)
{
    return tsql::Session::Open(file, false, 1000)->Internal("PRAGMA integrity_check") == Lines{"ok"};
}

class ProcessesTest : public DriverTest
{
protected:
    ProcessesTest()
    {
        database.Run("CREATE TABLE writes (process int NOT NULL, number int NOT NULL, PRIMARY KEY (process, number))\n"
                     "GO\nCREATE TABLE counter (n int NOT NULL)\nGO\nINSERT INTO counter VALUES (0)");
        client->Query("SELECT 1"); // the driver is loaded, whatever becomes of the view of its folder
    }

    // The number of statements that failed, of `count` inserts and as many increments of one row.
    int WriteMany(int process, int count) const
    {
        Client own(ConnectText());
        int failed = own.made == "S" ? 0 : 200;
        for (int i = 0; i < count; ++i)
            for (const std::string &sql :
                 {"INSERT INTO writes VALUES (" + std::to_string(process) + ", " + std::to_string(i) + ")",
                  std::string("UPDATE counter SET n = n + 1")})
                failed += SQL_SUCCEEDED(own.Exec(sql)) ? 0 : 1;
        return std::min(failed, 255);
    }

    std::string Text(const std::string &file) const { return "Driver={SQL Server};Create=yes;Database=" + file + ";"; }
    const std::string m_insert = "INSERT INTO big VALUES ('" + std::string(8000, 'x') + "')";
};

TEST_F(ProcessesTest, EightWriteAndShareTheFailuresThatAreOrdered)
{
    database.Fail(100, "INSERT INTO writes", "ordered");
    std::vector<pid_t> children;
    for (int process = 0; process < 8; ++process)
        children.push_back(support::StartProcess([&] { return WriteMany(process, 250); }));
    int failed = 0;
    for (const pid_t child : children)
        failed += support::WaitFor(child);
    EXPECT_EQ(failed, 100);
    EXPECT_EQ(database.Query("SELECT COUNT(*), (SELECT n FROM counter) FROM writes"), Lines{"1900 | 2000"})
        << "no increment is lost";
}

TEST_F(ProcessesTest, KilledProcessLeavesTheFileWhole)
{
    for (int round = 0; round < 5; ++round)
    {
        const pid_t child = support::StartProcess([&] { return WriteMany(round, 1000000); });
        usleep(static_cast<useconds_t>(60000 + 17000 * round));
        kill(child, SIGKILL);
        EXPECT_EQ(support::WaitFor(child), -SIGKILL);
    }
    EXPECT_TRUE(IsWhole(database.Folder().Path("test.db")));
    // each increment follows its insert; the last of each killed process may be missing
    const int missing = std::stoi(database.Query("SELECT (SELECT COUNT(*) FROM writes) - n FROM counter").at(0));
    EXPECT_GE(missing, 0);
    EXPECT_LE(missing, 5);
    database.Run("INSERT INTO writes VALUES (99, 1)");
}

// A file system of half a megabyte for this process alone. False where the system lets nobody have one.
bool MountSmallDisk(const std::string &folder)
{
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        return false;
    if (user != 0) // files need owners
    {
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1\n";
        std::ofstream("/proc/self/setgroups") << "deny\n";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1\n";
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 && mkdir(folder.c_str(), 0700) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=512k") == 0;
}

TEST_F(ProcessesTest, FullDiskIsAClearErrorAndTheFileStaysWhole)
{
    constexpr int NoSmallDisk = 77;
    const std::string disk = database.Folder().Path("disk");
    const auto fill = [&]
    {
        if (!MountSmallDisk(disk))
            return NoSmallDisk;
        Client own(Text(disk + "/full.db"));
        own.Exec("CREATE TABLE big (s varchar(8000))");
        int written = 0;
        while (written < 1000 && SQL_SUCCEEDED(own.Exec(m_insert)))
            ++written;
        if (written < 5 || written == 1000)
            return 2;
        if (own.Records(false) != Lines{"HY000 (1105)"})
            return 3;
        if (own.Query("SELECT COUNT(*) FROM big") != Lines{std::to_string(written)})
            return 4;
        return IsWhole(disk + "/full.db") ? 0 : 5;
    };
    const int status = support::WaitFor(support::StartProcess(fill));
    if (status == NoSmallDisk)
        GTEST_SKIP() << "this user may not mount a small disk";
    EXPECT_EQ(status, 0);
}

TEST_F(ProcessesTest, DamagedFileIsAClearError)
{
    const std::string file = database.Folder().Path("damaged.db");
    {
        Client maker(Text(file));
        maker.Exec("CREATE TABLE big (s varchar(8000))");
        for (int i = 0; i < 10; ++i)
            maker.Exec(m_insert);
    }
    const auto damage = [&](std::streamoff from)
    {
        std::fstream bytes(file, std::ios::binary | std::ios::in | std::ios::out);
        bytes.seekp(from) << std::string(30000, '\x55');
    };
    damage(16384); // behind the table's description
    EXPECT_EQ(Client(Text(file)).Play("exec SELECT s FROM big WHERE s = ''\nfetch"), "S E[HY000 (823)]");
    damage(0);
    EXPECT_EQ(Client(Text(file)).refused, (Lines{"42000 (4060)", "08001 (0)"}));
}

TEST_F(ProcessesTest, ReadOnlyFileCanBeReadAndSaysWhyItIsNotWritten)
{
    for (const char *const ending : {"", "-wal", "-shm"})
        chmod((database.Folder().Path("test.db") + ending).c_str(), 0444);
    const auto write = [&]
    {
        // rights to files mean nothing to root with the capabilities that a root has
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct none[2]{};
        if (syscall(SYS_capset, &header, none) != 0)
            return 1;
        Client own(ConnectText());
        if (own.Query("SELECT COUNT(*) FROM t") != Lines{"3"})
            return 2;
        return own.Play("exec INSERT INTO t (id) VALUES (4)") == "E[25000 (3906)]" ? 0 : 3;
    };
    EXPECT_EQ(support::WaitFor(support::StartProcess(write)), 0);
}

// isql and iusql, and Python's pyodbc. Each plays a script of tests/embedded/clients, whose output must be the approved
// one beside it. They are Debian's, and so is the interpreter that pyodbc is made for: another python3 may come first
// in the path.
TEST(Clients, SeeWhatIsApproved)
{
    for (const std::string program : {"sh isql_client.sh", "/usr/bin/python3 pyodbc_client.py"})
    {
        const support::TestFolder folder;
        const std::string scripts = support::SourcePath("tests/embedded/clients");
        const auto played = support::RunShell("cd " + scripts + " && " + program + " " + folder.Path("client.db"));
        EXPECT_EQ(played.status, 0);
        EXPECT_EQ(played.text, support::ReadFile(scripts + "/" + program.substr(program.find(' ') + 1) + ".expected"));
    }
}

} // namespace
} // namespace driver_tests
