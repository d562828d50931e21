// One file: opening it, several processes on it, a killed process, a full disk, a file that may only be read.
#include "play.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using tsql::Session;
using tsqltest::Play;

class File : public testing::Test
{
protected:
    void SetUp() override
    {
        m_folder = std::filesystem::temp_directory_path() / ("tsql" + std::to_string(getpid()));
        std::filesystem::create_directories(m_folder);
        m_file = (m_folder / "database").string();
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    std::unique_ptr<Session> Open(bool create = true) const { return Session::Open(m_file, create, 60000); }

    // Runs `work` in a process of its own; it has succeeded when it returns true.
    template <typename Work>
    static pid_t Start(Work work)
    {
        const pid_t child = fork();
        if (child == 0)
        {
            bool done = false;
            try
            {
                done = work();
            }
            catch (const std::exception &error)
            {
                std::fprintf(stderr, "%s\n", error.what());
            }
            _exit(done ? 0 : 1);
        }
        return child;
    }

    static bool Succeeded(pid_t child)
    {
        int status = 0;
        return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    // `count` processes, each of which inserts `rows` rows and raises a counter as often.
    void WriteTogether(int count, int rows) const
    {
        ASSERT_EQ("#1",
                  Play(*Open(),
                       "CREATE TABLE t (process int, n int, PRIMARY KEY (process, n)) CREATE TABLE c (n int) INSERT c "
                       "VALUES (0)"));
        std::vector<pid_t> children;
        for (int process = 0; process < count; ++process)
            children.push_back(Start(
                [&]
                {
                    const auto session = Open();
                    for (int n = 0; n < rows; ++n)
                    {
                        const std::string batch = "IF NOT EXISTS (SELECT * FROM t WHERE n = -1) INSERT t VALUES (" +
                                                  std::to_string(process) + ", " + std::to_string(n) +
                                                  ") UPDATE c SET n = n + 1";
                        const std::string played = Play(*session, batch);
                        if (played != "#1 + #1")
                        {
                            std::fprintf(stderr, "%s\n", played.c_str());
                            return false;
                        }
                    }
                    return true;
                }));
        for (const pid_t child : children)
            EXPECT_TRUE(Succeeded(child));
        const std::string all = std::to_string(count * rows);
        EXPECT_EQ(all + " + " + all, Play(*Open(), "SELECT COUNT(*) FROM t SELECT n FROM c"));
    }

    std::filesystem::path m_folder;
    std::string m_file;
};

TEST_F(File, MustExistUnlessItIsToBeMade)
{
    try
    {
        Open(false);
        FAIL() << "there is no such file";
    }
    catch (const tsql::SqlError &error)
    {
        EXPECT_EQ(4060, error.Number());
        EXPECT_EQ("42000", error.State());
    }
    EXPECT_FALSE(std::filesystem::exists(m_file));
    Open(true);
    EXPECT_NO_THROW(Open(false));
}

TEST_F(File, FoldersAndOtherFilesAreRefused)
{
    EXPECT_THROW(Session::Open(m_folder.string(), true, 1000), tsql::SqlError);
    FILE *file = std::fopen(m_file.c_str(), "w");
    ASSERT_NE(nullptr, file);
    for (int i = 0; i < 1000; ++i)
        std::fputs("this is no database\n", file);
    std::fclose(file);
    try
    {
        Open();
        FAIL() << "this is no database";
    }
    catch (const tsql::SqlError &error)
    {
        EXPECT_EQ(4060, error.Number());
    }
}

TEST_F(File, KeepsTablesTypesAndValues)
{
    Play(*Open(), "CREATE TABLE t (a int NOT NULL, b varchar(10), c bit, d datetime, e decimal(5,2), PRIMARY KEY (a)) "
                  "INSERT t VALUES (1, "
                  "'Abc ', 1, '20060102', 1.5)");
    const auto session = Open(false);
    EXPECT_EQ("1|Abc |1|Jan  2 2006 12:00AM|1.50", Play(*session, "SELECT * FROM t WHERE b = 'ABC'"));
    EXPECT_EQ("!8152 22001 String or binary data would be truncated.",
              Play(*session, "UPDATE t SET b = '12345678901'"));
    EXPECT_EQ("!2627 23000 Violation of PRIMARY KEY constraint 'PK_t'. Cannot insert duplicate key in object 'dbo.t'.",
              Play(*session, "INSERT t (a) VALUES (1)"));
}

TEST_F(File, SeesTheTablesThatAnotherSessionMakes)
{
    const auto first = Open();
    const auto second = Open();
    EXPECT_EQ("!208 42S02 Invalid object name 't'.", Play(*second, "SELECT * FROM t"));
    Play(*first, "CREATE TABLE t (a int) INSERT t VALUES (1)");
    EXPECT_EQ("1", Play(*second, "SELECT * FROM t"));
    Play(*first, "DROP TABLE t CREATE TABLE t (b varchar(2)) INSERT t VALUES ('x')");
    EXPECT_EQ("x", Play(*second, "SELECT * FROM t"));
    EXPECT_EQ("!8152 22001 String or binary data would be truncated.", Play(*second, "INSERT t VALUES ('xyz')"));
}

TEST_F(File, AReaderInTheMiddleDoesNotStopAWriter)
{
    const auto reader = Open();
    const auto writer = Open();
    Play(*reader, "CREATE TABLE t (a int) INSERT t VALUES (1), (2), (3)");
    reader->Execute("SELECT a FROM t");
    tsql::Result *rows = reader->NextResult();
    ASSERT_TRUE(rows->Step());
    EXPECT_EQ("#1 + #4", Play(*writer, "INSERT t VALUES (4) UPDATE t SET a = a * 10"));
    int count = 1;
    while (rows->Step())
        ++count;
    EXPECT_EQ(3, count) << "the reader goes on with what it saw";
    EXPECT_EQ("100", Play(*reader, "SELECT SUM(a) FROM t"));
}

TEST_F(File, AWriterWaitsForAnotherAndGivesUpInTheEnd)
{
    const auto first = Open();
    Play(*first, "CREATE TABLE t (a int) BEGIN TRAN INSERT t VALUES (1)");
    const auto second = Session::Open(m_file, false, 50);
    EXPECT_EQ("!1222 42000 Lock request time out period exceeded.", Play(*second, "INSERT t VALUES (2)"));
    EXPECT_EQ("!1222 42000 Lock request time out period exceeded.", Play(*second, "BEGIN TRAN"));
    Play(*first, "COMMIT");
    EXPECT_EQ("#1", Play(*second, "INSERT t VALUES (2)"));
}

TEST_F(File, TwoProcessesWriteAThousandStatementsEach)
{
    WriteTogether(2, 1000);
}

TEST_F(File, EightProcessesWriteAThousandStatementsEach)
{
    WriteTogether(8, 1000);
}

TEST_F(File, ManyProcessesOpenANewFileAtOnce)
{
    for (int round = 0; round < 5; ++round)
    {
        std::vector<pid_t> children;
        for (int process = 0; process < 8; ++process)
            children.push_back(Start([&] { return Play(*Open(), "SELECT 1") == "1"; }));
        for (const pid_t child : children)
            EXPECT_TRUE(Succeeded(child));
        for (const char *end : {"", "-wal", "-shm"})
            std::filesystem::remove(m_file + end);
    }
}

TEST_F(File, AKilledProcessLeavesTheFileWhole)
{
    Play(*Open(), "CREATE TABLE t (a int NOT NULL PRIMARY KEY, b varchar(200)) CREATE TABLE pairs (a int)");
    for (int round = 0; round < 10; ++round)
    {
        const pid_t child = Start(
            [&]
            {
                const auto session = Open();
                for (int i = 0;; ++i)
                    Play(*session, "BEGIN TRAN INSERT t SELECT COUNT(*), '" + std::string(200, 'x') +
                                       "' FROM t INSERT pairs SELECT COUNT(*) FROM pairs COMMIT");
                return true;
            });
        usleep(20000 + round * 7000);
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it should have been working until it was killed";
        const auto session = Open(false);
        EXPECT_EQ((std::vector<std::string>{"ok"}), session->Internal("PRAGMA integrity_check"));
        EXPECT_EQ("1", Play(*session, "SELECT 1 WHERE (SELECT COUNT(*) FROM t) = (SELECT COUNT(*) FROM pairs)"))
            << "a transaction is there in whole or not at all";
    }
    EXPECT_EQ("1", Play(*Open(), "SELECT 1 WHERE (SELECT COUNT(*) FROM t) > 10"));
}

TEST_F(File, AFullDiskIsAClearError)
{
    const auto session = Open();
    Play(*session, "CREATE TABLE t (a varchar(max))");
    session->Internal("PRAGMA max_page_count = 10");
    EXPECT_EQ("!1105 HY000 Could not allocate space in the database because the disk is full.",
              Play(*session, "INSERT t VALUES ('" + std::string(100000, 'x') + "')"));
    EXPECT_EQ("0 + #1", Play(*session, "SELECT COUNT(*) FROM t INSERT t VALUES ('small')"));
    EXPECT_EQ("!1105 HY000 Could not allocate space in the database because the disk is full. + 0",
              Play(*session, "BEGIN TRAN INSERT t VALUES ('" + std::string(100000, 'x') + "') SELECT @@TRANCOUNT"))
        << "the transaction ends with it";
}

TEST_F(File, AReadOnlyFileCanBeReadAndIsAClearErrorToWriters)
{
    Play(*Open(), "CREATE TABLE t (a int) INSERT t VALUES (1)");
    const auto session = Session::Open("file:" + m_file + "?mode=ro", false, 1000);
    EXPECT_EQ("1", Play(*session, "SELECT a FROM t"));
    for (const char *batch :
         {"INSERT t VALUES (2)", "UPDATE t SET a = 2", "DELETE t", "CREATE TABLE u (a int)", "DROP TABLE t"})
        EXPECT_EQ("!3906 25000 Failed to update database because the database is read-only.", Play(*session, batch));
}

} // namespace
