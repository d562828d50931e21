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
    void ClearLog();

    // The next `count` statements of the component that contain `text` fail without reaching the database. The error's
    // description is "STATE: MESSAGE".
    void Fail(int count, const std::string &text, const std::string &message, const std::string &state = "HY000");
    // The same, but the fetch of row `row` (from 1) fails.
    void FailAtRow(int row, int count, const std::string &text, const std::string &message,
                   const std::string &state = "HY000");
    // The connection is cut when the next statement that contains `text` arrives.
    void Cut(const std::string &text);
    // Takes back what was ordered and has not happened.
    void ClearFaults();

    TestFolder &Folder() { return m_folder; }

private:
    void Order(int count, const std::string &when, const std::string &text, const std::string &state,
               const std::string &message);
    std::vector<std::string> Logged(std::string_view kind) const;

    TestFolder m_folder;
    std::shared_ptr<odbc::rdoConnection> m_connection;
};

} // namespace support
