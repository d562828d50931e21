// A fresh embedded database for a test, with its statement log and its list of ordered failures.
#include "support/test_database.h"

#include "driver/escape.h"
#include "odbc/rdoEnvironment.h"
#include "odbc/rdoResultset.h"
#include "runtime/convert.h"
#include "runtime/error.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#ifdef __SANITIZE_ADDRESS__
// The driver manager loses the DSN='' pair of each connect string of the driver form: 39 bytes that are not ours.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libodbc.so\n";
}
#endif

namespace support
{

namespace
{

constexpr std::string_view kRefusal = "\tcall-before\tSQLDriverConnect\t08001\t";
constexpr char kBrokenLink[] = "Communication link failure";

// A name that is not the component's: the driver orders no failure for these statements, and the log leaves them out.
std::shared_ptr<odbc::rdoConnection> ConnectForTests(const std::string &file)
{
    odbc::rdoEnvironment environment;
    return environment.OpenConnection("", odbc::kNeverPrompt, false,
                                      "UID=sa;PWD=;Database=" + file + ";Create=yes;Server=embedded;" +
                                          "Driver={SQL Server};APP=tests;");
}

void RunBatches(odbc::rdoConnection &connection, std::string_view sql)
{
    std::istringstream lines{std::string(sql)};
    std::string batch;
    const auto send = [&]
    {
        if (batch.find_first_not_of(" \t\r\n") != std::string::npos)
            connection.Execute(batch);
        batch.clear();
    };
    for (std::string line; std::getline(lines, line);)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line == "GO")
            send();
        else
            batch += line + "\n";
    }
    send();
}

std::int64_t Columns(odbc::rdoResultset &rows)
{
    std::int64_t count = 0;
    try
    {
        for (;; ++count)
            rows.rdoColumns(static_cast<int>(count));
    }
    catch (const runtime::Error &)
    {
        return count; // there is no asking for the number
    }
}

// A database with all tables and no rows: made once, then copied byte by byte. Its connection stays open, so that the
// driver is loaded once for all tests of a program: each time anew takes longer, and the leak sanitizer loses count of
// thread storage when it happens often.
class EmptyDatabase
{
public:
    EmptyDatabase() : m_connection(ConnectForTests(m_folder.DriverPath("empty.db")))
    {
        {
            const auto maker = ConnectForTests(m_folder.DriverPath("made.db"));
            RunBatches(*maker, ReadFile(SourcePath("embedded/database/tables.sql")));
        }
        m_bytes = ReadFile(m_folder.Path("made.db"));
    }

    static const std::string &Bytes()
    {
        static const EmptyDatabase database;
        return database.m_bytes;
    }

private:
    TestFolder m_folder;
    std::shared_ptr<odbc::rdoConnection> m_connection;
    std::string m_bytes;
};

} // namespace

TestDatabase::TestDatabase()
{
    WriteFile(m_folder.Path("test.db"), EmptyDatabase::Bytes());
    ClearLog();
    ClearFaults();
    m_connection = ConnectForTests(m_folder.DriverPath("test.db"));
}

TestDatabase::~TestDatabase() = default;

std::string TestDatabase::DatabaseName() const
{
    // The host's text goes into the connect string as it stands, so that it can carry the driver's own keywords along.
    return m_folder.DriverPath("test.db") + ";StatementLog=" + m_folder.DriverPath("log") +
           ";FaultList=" + m_folder.DriverPath("faults");
}

void TestDatabase::Run(std::string_view sql)
{
    RunBatches(*m_connection, sql);
}

std::vector<std::string> TestDatabase::Query(const std::string &sql)
{
    std::vector<std::string> lines;
    const auto rows = m_connection->OpenResultset(sql);
    const std::int64_t columns = rows->AtEnd() ? 0 : Columns(*rows);
    for (; !rows->AtEnd(); rows->MoveNext())
    {
        std::string line;
        for (int column = 0; column < columns; ++column)
        {
            const runtime::Value value = rows->rdoColumns(column).Value();
            line += (column ? " | " : "") + (runtime::IsNull(value) ? "NULL" : runtime::ToText(value));
        }
        lines.push_back(line);
    }
    rows->Close();
    return lines;
}

// Lines of the log are KIND, ID, APP and a text, separated by tabs.
std::vector<std::string> TestDatabase::Logged(std::string_view kind) const
{
    std::vector<std::string> texts;
    std::istringstream log(ReadFile(m_folder.Path("log")));
    for (std::string line; std::getline(log, line);)
    {
        const auto id = line.find('\t');
        const auto application = line.find('\t', id + 1);
        const auto text = line.find('\t', application + 1);
        if (text != std::string::npos && line.compare(0, id, kind) == 0)
            texts.push_back(driver::Unescape(std::string_view(line).substr(text + 1)));
    }
    return texts;
}

std::vector<std::string> TestDatabase::Log() const
{
    return Logged("statement");
}

std::vector<std::string> TestDatabase::LoggedErrors() const
{
    return Logged("error");
}

void TestDatabase::ClearLog()
{
    WriteFile(m_folder.Path("log"), "");
}

// The driver writes into the list while the component runs: lines are only added.
void TestDatabase::Order(const std::string &count, const std::string &when, const std::string &text,
                         const std::string &state, const std::string &message)
{
    std::ofstream list(m_folder.Path("faults"), std::ios::binary | std::ios::app);
    list << count << "\t" << when << "\t" << driver::Escape(text) << "\t" << state << "\t0\t" << driver::Escape(message)
         << "\n";
    m_ordered.push_back(std::atoi(count.c_str() + count.find('+') + 1));
}

void TestDatabase::Order(int count, const std::string &when, const std::string &text, const std::string &state,
                         const std::string &message)
{
    Order(std::to_string(count), when, text, state, message);
}

void TestDatabase::Fail(int count, const std::string &text, const std::string &message, const std::string &state)
{
    Order(count, "before", text, state, message);
}

void TestDatabase::FailAfter(int count, const std::string &text, const std::string &message, const std::string &state)
{
    Order(count, "after", text, state, message);
}

void TestDatabase::FailAtRow(int row, int count, const std::string &text, const std::string &message,
                             const std::string &state)
{
    Order(count, "row:" + std::to_string(row), text, state, message);
}

void TestDatabase::CutAtRow(int row, const std::string &text, const std::string &state)
{
    Order(1, "cut-row:" + std::to_string(row), text, state, kBrokenLink);
}

void TestDatabase::Cut(const std::string &text, const std::string &state)
{
    Order(1, "cut-before", text, state, kBrokenLink);
}

void TestDatabase::CutAfter(const std::string &text, const std::string &state)
{
    Order(1, "cut-after", text, state, kBrokenLink);
}

void TestDatabase::CutIdle(const std::string &state)
{
    Order(kForGood, "idle:" + std::to_string(++m_cuts), "", state, kBrokenLink);
}

void TestDatabase::RefuseConnects(int count)
{
    Order(count, "call-before", "SQLDriverConnect", "08001", "SQL Server does not exist or access denied.");
}

void TestDatabase::AllowConnects()
{
    m_fired = FaultFired();
    std::fstream list(m_folder.Path("faults"), std::ios::binary | std::ios::in | std::ios::out);
    std::string line;
    for (int &ordered : m_ordered)
    {
        const auto start = list.tellg();
        std::getline(list, line);
        const auto end = list.tellg();
        const auto tab = line.find('\t');
        if (line.compare(tab, kRefusal.size(), kRefusal) != 0)
            continue;
        list.seekp(start);
        list << std::string(tab, '0');
        list.seekg(end);
        ordered = 0;
    }
}

void TestDatabase::Delay(const std::string &text, int milliseconds, int count)
{
    Order(count, "delay:" + std::to_string(milliseconds), text, "", "");
}

void TestDatabase::FailCall(const std::string &function, int n, CallFault fault, int count, const std::string &state)
{
    // in the order of CallFault
    static constexpr const char *whens[] = {"call-before", "cut-call-before", "call-after", "cut-call-after",
                                            "call-end"};
    Order(std::to_string(n - 1) + "+" + std::to_string(count), whens[static_cast<int>(fault)], function, state,
          "ordered for " + (function.empty() ? "a call" : function));
}

bool TestDatabase::FaultFired() const
{
    std::istringstream list(ReadFile(m_folder.Path("faults")));
    std::string line;
    for (const int ordered : m_ordered)
    {
        std::getline(list, line);
        const auto plus = line.substr(0, line.find('\t')).find('+');
        if (std::atoi(line.c_str() + (plus == std::string::npos ? 0 : plus + 1)) < ordered)
            return true;
    }
    return m_fired;
}

void TestDatabase::ClearFaults()
{
    WriteFile(m_folder.Path("faults"), "");
    m_ordered.clear();
    m_fired = false;
}

} // namespace support
