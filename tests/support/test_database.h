// A fresh embedded database for a test, with its statement log and its list of ordered failures.
#pragma once

#include "odbc/rdoConnection.h"
#include "support/test_folder.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace support
{

// An empty database with all tables, in a folder of its own. The test's own statements go over a second connection and
// stand in no log.
class TestDatabase
{
public:
    TestDatabase();
    ~TestDatabase();
    TestDatabase(const TestDatabase &) = delete;
    TestDatabase &operator=(const TestDatabase &) = delete;

    // What a host sets as SqlDbName and SqlServerName to reach this database by the driver form.
    std::string DatabaseName() const;
    std::string ServerName() const { return "embedded"; }

    // Runs statements of the test's own; batches are separated by lines that hold GO alone.
    void Run(std::string_view sql);

    // The rows of a query of the test's own: values separated by " | ", NULL as NULL, a text as it is.
    std::vector<std::string> Query(const std::string &sql);

    // Statements that the component has sent since the start or the last ClearLog, whole, failed ones included.
    std::vector<std::string> Log() const;
    // The errors of those that failed, as "STATE: text", in their order.
    std::vector<std::string> LoggedErrors() const;
    // The texts of the log's lines of a kind: connect, disconnect, lost (a statement over a connection that was cut).
    std::vector<std::string> Logged(std::string_view kind) const;
    void ClearLog();

    // --- faults, for the component's connections alone; they may be ordered while it runs. An error's description is
    // "STATE: MESSAGE". A count is of failures, kForGood until ClearFaults.
    static constexpr int kForGood = 999999999;

    // The next `count` statements that contain `text` fail without reaching the database.
    void Fail(int count, const std::string &text, const std::string &message, const std::string &state = "HY000");
    // The same, but they take effect before the answer is lost.
    void FailAfter(int count, const std::string &text, const std::string &message, const std::string &state = "HY000");
    // The same, but the fetch of row `row` (from 1) fails.
    void FailAtRow(int row, int count, const std::string &text, const std::string &message,
                   const std::string &state = "HY000");
    // The same, once, with a connection that is cut at that row.
    void CutAtRow(int row, const std::string &text, const std::string &state = "08S01");
    // The connection is cut when the next statement that contains `text` arrives, or when that one has taken effect.
    // `state` is the only record of the failure (08S01, HY000, 01000); every later call of the connection fails with
    // 08S01. SQL_ATTR_CONNECTION_DEAD tells of the loss when a call has failed.
    void Cut(const std::string &text, const std::string &state = "08S01");
    void CutAfter(const std::string &text, const std::string &state = "08S01");
    // All connections that are there are cut now, while they are idle: attribute 1244 tells at once, everything else
    // when the next statement has failed. Connections made from now on are not meant.
    void CutIdle(const std::string &state = "08S01");
    // The next `count` attempts to connect fail with 08001, until AllowConnects.
    void RefuseConnects(int count = kForGood);
    void AllowConnects();
    // Statements that contain `text` wait before they run.
    void Delay(const std::string &text, int milliseconds, int count = kForGood);

    enum class CallFault
    {
        Error,    // the call does nothing and fails
        Cut,      // the same, and the connection is cut
        NoAnswer, // it takes effect and fails
        CutAfter, // it takes effect and fails, and the connection is cut
        EndOfRows // it fails, and the rows that are left are lost
    };
    // The call number `n` (from 1, counted from now) of the ODBC function `function` ("SQLFetch", without the W of a
    // wide form; empty: of any function) fails, and the ones behind it until there are `count`. Calls are those that
    // reach the driver on a connection, those of the driver manager included; the diagnostic functions do not count.
    void FailCall(const std::string &function, int n, CallFault fault, int count = 1,
                  const std::string &state = "HY000");

    // True when something that was ordered since the last ClearFaults has happened; a connection that was refused, cut
    // or delayed included.
    bool FaultFired() const;
    // Takes back what was ordered and has not happened.
    void ClearFaults();

    TestFolder &Folder() { return m_folder; }

private:
    void Order(const std::string &count, const std::string &when, const std::string &text, const std::string &state,
               const std::string &message);
    void Order(int count, const std::string &when, const std::string &text, const std::string &state,
               const std::string &message);

    TestFolder m_folder;
    std::vector<int> m_ordered; // the count of each line of the fault list, as ordered
    bool m_fired = false;       // something that is taken back had happened
    int m_cuts = 0;             // of idle connections
    std::shared_ptr<odbc::rdoConnection> m_connection;
};

} // namespace support
