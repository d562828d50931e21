// An ODBC program in small, for tests of the driver through the driver manager.
#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace driver_tests
{

// The records of a handle, "STATE (native) text" each, in the driver's order.
std::vector<std::string> Records(SQLSMALLINT kind, SQLHANDLE handle);
// Only the states and native errors: "42S02 (208)".
std::vector<std::string> States(SQLSMALLINT kind, SQLHANDLE handle);

// One letter a return code: S success, I success with info, E error, N no data, H invalid handle, ? another.
char Letter(SQLRETURN code);

// Says what came instead when the code is none of the allowed ones, with the handle's records.
testing::AssertionResult Allowed(const char *codes, SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle);

#define CHECK_STMT(codes, call, statement) EXPECT_TRUE(Allowed(codes, call, SQL_HANDLE_STMT, statement)) << #call

// A folder for the files of a test, and what ODBC knows: the driver under the name "SQL Server", and what a test adds.
// The driver manager reads each name once a process and keeps the place of its files, so these are the process's own
// and every name is used once (FreshName).
class OdbcSettings
{
public:
    OdbcSettings();
    ~OdbcSettings();
    OdbcSettings(const OdbcSettings &) = delete;
    OdbcSettings &operator=(const OdbcSettings &) = delete;

    // A driver of this name with attributes "Name=value".
    void AddDriver(const std::string &name, const std::vector<std::string> &attributes);
    void AddDataSource(const std::string &name, const std::string &driver, const std::vector<std::string> &attributes);

    std::string Path(const std::string &file) const { return m_folder + "/" + file; }

private:
    std::string m_folder;
};

// A name that no test of this process has had before.
std::string FreshName(const std::string &start);

// A connection, made by Connect; disconnected at the end.
class Link
{
public:
    Link();
    ~Link();
    Link(const Link &) = delete;
    Link &operator=(const Link &) = delete;

    SQLRETURN Connect(const std::string &text);
    std::vector<std::string> Failure() const { return States(SQL_HANDLE_DBC, dbc); }
    SQLHSTMT NewStatement();
    bool IsDead() const;

    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;

private:
    bool m_connected = false;
};

std::u16string Wide(std::string_view text);
std::string Narrow(std::u16string_view text);

SQLRETURN Exec(SQLHSTMT statement, const std::string &sql);
// Every column read as wide text in one piece; "NULL" for NULL. The statement stands in front of a row.
std::vector<std::string> ReadRow(SQLHSTMT statement);
std::vector<std::vector<std::string>> ReadRows(SQLHSTMT statement);
// All values of all rows, separated by " | ".
std::vector<std::string> Query(SQLHSTMT statement, const std::string &sql);

// A fresh database file with a connection and one statement.
class DriverTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;
    // The connect string of the fixture's database.
    std::string ConnectText(const std::string &more = {}) const;
    void Run(const std::string &sql); // must succeed

    OdbcSettings settings;
    Link link;
    SQLHSTMT statement = nullptr;
};

} // namespace driver_tests
