// The fixture of tests that need a database: a fresh one, the component connected to it, and a desktop that answers.
#pragma once

#include "support/fake_desktop.h"
#include "support/test_database.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace support
{

// Each test starts with an empty database (all tables, no rows), the host's values as a new component has them, no
// loaded records, and the component connected; the log is empty. Everything is taken down behind the test.
class DatabaseTest : public testing::Test
{
protected:
    DatabaseTest();
    ~DatabaseTest() override;

    void SetUp() override;

    // Connects the component (again); fails the test when it cannot.
    void Connect();

    // The shortcuts of `database`.
    void Run(std::string_view sql) { database.Run(sql); }
    std::vector<std::string> Query(const std::string &sql) { return database.Query(sql); }
    std::vector<std::string> Log() const { return database.Log(); }
    // The rows of the event log.
    std::vector<std::string> Events() { return Query("SELECT error_code, msg1 FROM System_log"); }
    void Fail(int count, const std::string &text, const std::string &message, const std::string &state = "HY000")
    {
        database.Fail(count, text, message, state);
    }

    FakeDesktop desktop;
    TestDatabase database;
};

// Lines, for EXPECT_EQ with lists of strings.
using Lines = std::vector<std::string>;

} // namespace support
