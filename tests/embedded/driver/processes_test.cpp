// Several processes on one file, a process that dies in the middle, a file that cannot be written any more.
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

class ProcessesTest : public DriverTest
{
protected:
    ProcessesTest()
    {
        Run("CREATE TABLE t (process int NOT NULL, number int NOT NULL, PRIMARY KEY (process, number))");
        Run("CREATE TABLE counter (n int NOT NULL)");
        Run("INSERT INTO counter VALUES (0)");
    }

    // The number of statements that failed, of `count` inserts and as many increments of one row.
    int WriteMany(int process, int count) const
    {
        Link own;
        if (!SQL_SUCCEEDED(own.Connect(ConnectText())))
            return 100;
        const SQLHSTMT theirs = own.NewStatement();
        int failed = 0;
        for (int i = 0; i < count; ++i)
        {
            const std::string values = std::to_string(process) + ", " + std::to_string(i);
            failed += SQL_SUCCEEDED(Exec(theirs, "INSERT INTO t (process, number) VALUES (" + values + ")")) ? 0 : 1;
            failed += SQL_SUCCEEDED(Exec(theirs, "UPDATE counter SET n = n + 1")) ? 0 : 1;
        }
        return std::min(failed, 99);
    }

    void ExpectWholeFile() const
    {
        EXPECT_EQ(tsql::Session::Open(folder.Path("test.db"), false, 1000)->Internal("PRAGMA integrity_check"),
                  Lines{"ok"});
    }
};

TEST_F(ProcessesTest, EightWrite)
{
    // half a thousand inserts and half a thousand updates make a thousand statements each
    constexpr int Processes = 8;
    constexpr int Each = 500;
    std::vector<pid_t> children;
    for (int process = 0; process < Processes; ++process)
        children.push_back(support::StartProcess([&] { return WriteMany(process, Each); }));
    for (const pid_t child : children)
        EXPECT_EQ(support::WaitFor(child), 0);
    const std::string all = std::to_string(Processes * Each);
    EXPECT_EQ(Query(statement, "SELECT COUNT(*) FROM t"), Lines{all});
    EXPECT_EQ(Query(statement, "SELECT n FROM counter"), Lines{all}) << "no increment is lost";
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
    ExpectWholeFile();
    // each increment follows its insert; the last of each killed process may be missing
    const Lines counts = Query(statement, "SELECT (SELECT COUNT(*) FROM t) - n FROM counter");
    ASSERT_EQ(counts.size(), 1u);
    EXPECT_GE(std::stoi(counts[0]), 0);
    EXPECT_LE(std::stoi(counts[0]), 5);
    Run("INSERT INTO t VALUES (99, 1)");
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
           mount("none", folder.c_str(), "tmpfs", 0, "size=512k") == 0;
}

TEST_F(ProcessesTest, FullDiskIsAClearErrorAndTheFileStaysWhole)
{
    constexpr int NoSmallDisk = 77;
    const std::string disk = folder.Path("disk");
    const pid_t child = support::StartProcess(
        [&]
        {
            {
                Link loader; // the driver is loaded before the view of the disks changes
                loader.Connect(ConnectText());
            }
            if (!MountSmallDisk(disk))
                return NoSmallDisk;
            const std::string connect = "Driver={SQL Server};Create=yes;Database=" + disk + "/full.db;";
            int written = 0;
            {
                Link own;
                if (!SQL_SUCCEEDED(own.Connect(connect)))
                    return 1;
                const SQLHSTMT theirs = own.NewStatement();
                if (!SQL_SUCCEEDED(Exec(theirs, "CREATE TABLE t (s varchar(8000))")))
                    return 2;
                const std::string insert = "INSERT INTO t VALUES ('" + std::string(8000, 'x') + "')";
                while (written < 1000 && SQL_SUCCEEDED(Exec(theirs, insert)))
                    ++written;
                if (written < 5 || written == 1000)
                    return 3;
                if (States(SQL_HANDLE_STMT, theirs) != Lines{"HY000 (1105)"})
                    return 4;
                if (Query(theirs, "SELECT COUNT(*) FROM t") != Lines{std::to_string(written)})
                    return 5;
            }
            const auto session = tsql::Session::Open(disk + "/full.db", false, 1000);
            return session->Internal("PRAGMA integrity_check") == Lines{"ok"} ? 0 : 6;
        });
    const int status = support::WaitFor(child);
    if (status == NoSmallDisk)
        GTEST_SKIP() << "this user may not mount a small disk";
    EXPECT_EQ(status, 0);
}

TEST_F(ProcessesTest, DamagedFileIsAClearError)
{
    const std::string connect = "Driver={SQL Server};Create=yes;Database=" + folder.Path("damaged.db") + ";";
    {
        Link maker;
        maker.Connect(connect);
        const SQLHSTMT theirs = maker.NewStatement();
        Exec(theirs, "CREATE TABLE t (s varchar(8000))");
        for (int i = 0; i < 10; ++i)
            Exec(theirs, "INSERT INTO t VALUES ('" + std::string(8000, 'x') + "')");
    }
    const auto damage = [&](std::streamoff from)
    {
        std::fstream file(folder.Path("damaged.db"), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(from) << std::string(30000, '\x55');
    };
    damage(16384); // behind the table's description
    {
        Link reader;
        EXPECT_TRUE(SQL_SUCCEEDED(reader.Connect(connect)));
        const SQLHSTMT theirs = reader.NewStatement();
        SQLRETURN code = Exec(theirs, "SELECT s FROM t");
        for (int row = 0; SQL_SUCCEEDED(code) && row < 20; ++row)
            code = SQLFetch(theirs);
        CHECK_STMT("E", code, theirs);
        EXPECT_EQ(States(SQL_HANDLE_STMT, theirs), Lines{"HY000 (823)"});
    }
    damage(0);
    Link refused;
    EXPECT_EQ(refused.Connect(connect), SQL_ERROR);
    EXPECT_EQ(refused.Failure(), (Lines{"42000 (4060)", "08001 (0)"}));
}

// Rights to files mean nothing to root with the capabilities that a root has.
bool RespectRights()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2]{};
    return syscall(SYS_capset, &header, none) == 0;
}

TEST_F(ProcessesTest, ReadOnlyFileCanBeReadAndSaysWhyItIsNotWritten)
{
    Run("INSERT INTO t VALUES (1, 1)");
    for (const char *const ending : {"", "-wal", "-shm"})
        chmod((folder.Path("test.db") + ending).c_str(), 0444);
    const pid_t child = support::StartProcess(
        [&]
        {
            if (!RespectRights())
                return 1;
            Link own;
            const SQLRETURN code = own.Connect(ConnectText());
            if (!SQL_SUCCEEDED(code))
                return 2;
            const SQLHSTMT theirs = own.NewStatement();
            if (Query(theirs, "SELECT COUNT(*) FROM t") != Lines{"1"})
                return 3;
            if (Exec(theirs, "INSERT INTO t VALUES (2, 2)") != SQL_ERROR)
                return 4;
            if (States(SQL_HANDLE_STMT, theirs) != Lines{"25000 (3906)"})
                return 5;
            return 0;
        });
    EXPECT_EQ(support::WaitFor(child), 0);
}

} // namespace
} // namespace driver_tests
