// An ODBC program in small, for tests of the driver through the driver manager.
#pragma once

#include "support/test_database.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace driver_tests
{

using Lines = std::vector<std::string>;

// A connection with a statement.
class Client
{
public:
    // Connects and makes the statement; `made` and `refused` tell what came of it.
    explicit Client(const std::string &connectText, SQLULEN loginTimeout = 15);
    ~Client();
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    SQLRETURN Exec(const std::string &sql);
    // The rows of a query, which must succeed: values read as wide text in one piece, with " | " between; "NULL".
    Lines Query(const std::string &sql);
    // The records of the last call, "STATE (native) text" each, in the driver's order; or without texts.
    Lines Records(bool withText = true) const;
    // True when an attribute of the connection is not 0.
    bool Tells(SQLINTEGER attribute) const;
    bool IsDead() const { return Tells(SQL_ATTR_CONNECTION_DEAD); }

    // Makes a call a line and gives what came of each, separated by blanks: the letter of its code (S success, I
    // success with info, E error, N no data), the states and numbers of records in brackets, behind "=" what it gave;
    // or the letters alone. The calls:
    //     free, exec SQL, execute, more, close, cols, count, attribute, fetch, unbind
    //     column N                  name/type/size/digits, with place for one letter of the name
    //     get N [TYPE [CAPACITY]]   TYPE as in client.cpp, long when there is none; of texts also the length in octets
    //     bind N [TYPE [CAPACITY]]  "bound" behind a fetch gives what get would; CAPACITY 0: no place for a length
    //     block                     four rows at a time; behind "attribute" a fetch gives their number, and of each
    //                               place its value, NULL, ! for an error, - for none
    //     rows                      the rows that are left, in full
    //     other SQL                 by a second statement, whose rows it gives
    std::string Play(const std::string &script, bool lettersAlone = false);

    std::string made; // the letter of the statement's making; empty: not connected
    Lines refused;    // records of the connection when there is no statement

private:
    struct Type;
    static const Type types[];
    struct Verb
    {
        std::function<SQLRETURN()> call;
        std::function<std::string()> gives = nullptr;
    };
    std::map<std::string, Verb> Verbs(SQLUSMALLINT n, SQLLEN capacity, const std::string &rest);
    Lines Rows();
    std::string Value(size_t row) const;
    std::string Block() const;

    SQLHENV m_env = nullptr;
    SQLHDBC m_dbc = nullptr;
    SQLHSTMT m_statement = nullptr;
    std::vector<SQLWCHAR> m_buffer = std::vector<SQLWCHAR>(20000);
    const Type *m_type = nullptr; // of what is in the buffer
    SQLWCHAR m_name[2] = {};      // of a column, as are the next three
    SQLSMALLINT m_kind = 0, m_digits = 0;
    SQLULEN m_size = 0;
    SQLLEN m_lengths[4] = {};
    SQLUSMALLINT m_status[4] = {};
    SQLULEN m_fetched = 0;
    SQLULEN m_rows = 1; // of a fetch
};

// A fresh database with a table of three rows, and a client, logged and with faults.
class DriverTest : public testing::Test
{
protected:
    DriverTest();
    // The connect string of the fixture's database.
    std::string ConnectText(const std::string &more = "APP=KVHEADERS.DLL;") const;
    void Reconnect(const std::string &more = {});
    // A line of the fault list as it stands in the file.
    void Order(const std::string &line);
    std::string Play(const std::string &script) { return client->Play(script); }
    std::string Count() { return database.Query("SELECT COUNT(*) FROM t").at(0); }

    support::TestDatabase database;
    std::unique_ptr<Client> client;
};

} // namespace driver_tests
