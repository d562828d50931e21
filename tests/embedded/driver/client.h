// An ODBC program in small, for tests of the driver through the driver manager.
#pragma once

#include "support/test_database.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace driver_tests
{

using Lines = std::vector<std::string>;

// The records of a handle, "STATE (native) text" each, in the driver's order; or without their texts.
Lines Records(SQLSMALLINT kind, SQLHANDLE handle, bool withText = true);

// One letter a return code: S success, I success with info, E error, N no data, ? another.
char Letter(SQLRETURN code);

// Says what came instead when the code is none of the allowed ones, with the handle's records.
testing::AssertionResult Allowed(const char *codes, SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle);

#define CHECK_STMT(codes, call, statement) EXPECT_TRUE(Allowed(codes, call, SQL_HANDLE_STMT, statement)) << #call

// A connection, made by Connect; disconnected at the end.
class Link
{
public:
    Link();
    ~Link();
    Link(const Link &) = delete;
    Link &operator=(const Link &) = delete;

    SQLRETURN Connect(const std::string &text);
    Lines Failure() const { return Records(SQL_HANDLE_DBC, dbc, false); }
    SQLHSTMT NewStatement();
    bool IsDead() const { return Tells(SQL_ATTR_CONNECTION_DEAD); }
    bool Tells(SQLINTEGER attribute) const; // of a connection, whose value is not 0

    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;
};

// Connects, which must succeed, and gives a statement.
SQLHSTMT Open(Link &link, const std::string &text);

SQLRETURN Exec(SQLHSTMT statement, const std::string &sql);
// The rows that are left: values read as wide text in one piece, separated by " | "; "NULL" for NULL.
Lines ReadRows(SQLHSTMT statement);
Lines Query(SQLHSTMT statement, const std::string &sql);

// Makes a call a line and gives what came of each, separated by blanks: the letter of its code, behind "=" what it
// gave, and the records of an error in brackets; or the letters alone. The calls, of `statement` but for the last:
//     alloc, free, exec SQL, execute, more, close, cols, count, describe N, attribute, fetch, bind N, unbind
//     get N               as SQL_C_SLONG
//     rows                the rows that are left, in full
//     other SQL           by a second statement, whose rows it gives
std::string Play(Link &link, SQLHSTMT &statement, const std::string &script, bool lettersAlone = false);

// A fresh database with a table of three rows, and a connection with one statement, logged and with faults.
class DriverTest : public testing::Test
{
protected:
    DriverTest();
    ~DriverTest() override;
    // The connect string of the fixture's database.
    std::string ConnectText(const std::string &more = "APP=KVHEADERS.DLL;") const;
    void Reconnect();
    std::string Play(const std::string &script) { return driver_tests::Play(*link, statement, script); }
    std::string Count() { return database.Query("SELECT COUNT(*) FROM t").at(0); }

    support::TestDatabase database;
    std::unique_ptr<Link> link;
    SQLHSTMT statement = nullptr;
};

} // namespace driver_tests
