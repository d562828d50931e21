// An ODBC program in small, for tests of the driver through the driver manager.
#pragma once

#include "support/test_folder.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace driver_tests
{

using Lines = std::vector<std::string>;

// The records of a handle, "STATE (native) text" each, in the driver's order; or without their texts.
Lines Records(SQLSMALLINT kind, SQLHANDLE handle, bool withText = true);
inline Lines States(SQLSMALLINT kind, SQLHANDLE handle)
{
    return Records(kind, handle, false);
}

// One letter a return code: S success, I success with info, E error, N no data, ? another.
char Letter(SQLRETURN code);

// Says what came instead when the code is none of the allowed ones, with the handle's records.
testing::AssertionResult Allowed(const char *codes, SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle);

#define CHECK_STMT(codes, call, statement) EXPECT_TRUE(Allowed(codes, call, SQL_HANDLE_STMT, statement)) << #call

// Adds a section to odbcinst.ini (or odbc.ini) of this process, with the driver under test and lines "Name=value". The
// driver manager reads each name once a process: it must be one that was not used before.
void AddDriver(const std::string &name, const Lines &attributes);
void AddDataSource(const std::string &name, const Lines &attributes);

// A connection, made by Connect; disconnected at the end.
class Link
{
public:
    Link();
    ~Link();
    Link(const Link &) = delete;
    Link &operator=(const Link &) = delete;

    SQLRETURN Connect(const std::string &text);
    Lines Failure() const { return States(SQL_HANDLE_DBC, dbc); }
    SQLHSTMT NewStatement();
    bool IsDead() const { return Tells(SQL_ATTR_CONNECTION_DEAD); }
    bool Tells(SQLINTEGER attribute) const; // of a connection, whose value is not 0

    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;

private:
    bool m_connected = false;
};

// Connects, which must succeed, and gives a statement.
SQLHSTMT Open(Link &link, const std::string &text);

SQLRETURN Exec(SQLHSTMT statement, const std::string &sql);
// The rows that are left: values read as wide text in one piece, separated by " | "; "NULL" for NULL.
Lines ReadRows(SQLHSTMT statement);
Lines Query(SQLHSTMT statement, const std::string &sql);

// A fresh database file with a connection and one statement.
class DriverTest : public testing::Test
{
protected:
    DriverTest();
    ~DriverTest() override;
    // The connect string of the fixture's database.
    std::string ConnectText(const std::string &more = {}) const;
    void Run(const std::string &sql); // a statement that must succeed
    void ExpectStates(const Lines &states) const { EXPECT_EQ(States(SQL_HANDLE_STMT, statement), states); }

    support::TestFolder folder;
    Link link;
    SQLHSTMT statement = nullptr;
};

} // namespace driver_tests
