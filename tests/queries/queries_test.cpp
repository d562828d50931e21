// Plays the query files of tests/embedded/queries through ODBC: one statement a line, and what it must give. Natively
// by the driver manager and the 64-bit driver, as a Windows program by Wine's odbc32 and the 32-bit one.
#include "driver/escape.h"
#include "odbc/wide.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace
{

// A database of its own, and the one statement on it.
class Client
{
public:
    Client()
    {
        SQLSetEnvAttr(m_environment.get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        m_connection = std::make_unique<odbc::ConnectionHandle>(m_environment.get());
        odbc::WideText text("Driver={SQL Server};Create=yes;Database=" + m_folder.DriverPath("test.db") + ";");
        odbc::Check(SQLDriverConnectW(m_connection->get(), nullptr, text.data(), SQL_NTS, nullptr, 0, nullptr,
                                      SQL_DRIVER_NOPROMPT),
                    *m_connection);
        m_statement = std::make_unique<odbc::StatementHandle>(m_connection->get());
    }
    ~Client()
    {
        m_statement.reset();
        if (m_connection)
            SQLDisconnect(m_connection->get());
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    SQLHSTMT Statement() const { return m_statement->get(); }

private:
    support::TestFolder m_folder;
    odbc::EnvironmentHandle m_environment{SQL_NULL_HANDLE};
    std::unique_ptr<odbc::ConnectionHandle> m_connection;
    std::unique_ptr<odbc::StatementHandle> m_statement;
};

// How a file is written; it runs from top to bottom on a database of its own.
//   -- text         a comment, passed over like empty lines
//   any other line  a statement or batch; \r, \n and \t in it stand for the characters, \\ and \" for these
// What it gives follows, result by result; where nothing follows, it gives the same as the next one:
//   = a | b         a row, values separated by " | ", NULL as NULL, with the same escapes
//   = none          a result without rows
//   + another       the next row belongs to another result
//   ~ N             a count of rows touched
//   ! STATE NUMBER  an error, whenever it shows
//   ok              no result at all
struct Step
{
    int line = 0;
    std::string sql;
    std::vector<std::string> expected;
};

bool IsExpectation(const std::string &line)
{
    return line == "ok" ||
           (line.size() > 1 && line[1] == ' ' && std::string("=+~!").find(line[0]) != std::string::npos);
}

std::vector<Step> ReadSteps(const std::string &file)
{
    std::vector<Step> steps;
    std::ifstream in(file);
    int number = 0;
    for (std::string line; std::getline(in, line);)
    {
        ++number;
        if (line.empty() || line.compare(0, 2, "--") == 0)
            continue;
        if (IsExpectation(line))
            steps.back().expected.push_back(line);
        else
            steps.push_back({number, driver::Unescape(line), {}});
    }
    for (std::size_t i = steps.size(); i-- > 1;)
        if (steps[i - 1].expected.empty())
            steps[i - 1].expected = steps[i].expected;
    return steps;
}

std::string ErrorLine(SQLHSTMT statement)
{
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    if (!SQL_SUCCEEDED(SQLGetDiagRecW(SQL_HANDLE_STMT, statement, 1, state, &native, nullptr, 0, nullptr)))
        return "! no record";
    return "! " + odbc::FromWide(state, 5) + " " + std::to_string(native);
}

// The row on which the statement stands; a value that cannot be read is given as its error.
std::string RowLine(SQLHSTMT statement, SQLSMALLINT columns)
{
    std::string line = "=";
    for (SQLUSMALLINT column = 1; column <= columns; ++column)
    {
        std::vector<SQLWCHAR> units(20000);
        SQLLEN octets = 0;
        const SQLRETURN code = SQLGetData(statement, column, SQL_C_WCHAR, units.data(),
                                          static_cast<SQLLEN>(units.size() * sizeof(SQLWCHAR)), &octets);
        line += column == 1 ? " " : " | ";
        if (code != SQL_SUCCESS)
            line += ErrorLine(statement);
        else if (octets == SQL_NULL_DATA)
            line += "NULL";
        else
            line += driver::Escape(odbc::FromWide(units.data(), static_cast<std::size_t>(octets) / sizeof(SQLWCHAR)));
    }
    return line;
}

// Everything the statement gives, in the form of the expectations.
std::vector<std::string> Play(SQLHSTMT statement, const std::string &sql)
{
    std::vector<std::string> got;
    bool rowsBefore = false;
    odbc::WideText text(sql);
    SQLRETURN code = SQLExecDirectW(statement, text.data(), text.length());
    for (bool first = true; first || code != SQL_NO_DATA; first = false, code = SQLMoreResults(statement))
    {
        if (code == SQL_ERROR)
        {
            got.push_back(ErrorLine(statement));
            if (first || got.size() > 50)
                break; // behind a failed first statement there is nothing to ask for
            continue;
        }
        SQLSMALLINT columns = 0;
        SQLNumResultCols(statement, &columns);
        if (columns == 0)
        {
            SQLLEN count = -1;
            SQLRowCount(statement, &count);
            if (count >= 0)
                got.push_back("~ " + std::to_string(count));
            continue;
        }
        if (std::exchange(rowsBefore, true))
            got.push_back("+ another");
        size_t rows = 0;
        for (; SQL_SUCCEEDED(code = SQLFetch(statement)); ++rows)
            got.push_back(RowLine(statement, columns));
        if (code == SQL_ERROR)
            got.push_back(ErrorLine(statement));
        else if (rows == 0)
            got.push_back("= none");
    }
    SQLFreeStmt(statement, SQL_CLOSE);
    if (got.empty())
        got.push_back("ok");
    return got;
}

std::string Joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    return text;
}

std::vector<std::string> QueryFiles()
{
    std::vector<std::string> files;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(support::SourcePath("tests/embedded/queries"), error))
        if (entry.path().extension() == ".sql")
            files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

class QueryFileTest : public testing::TestWithParam<std::string>
{
};

TEST_P(QueryFileTest, GivesWhatItSays)
{
    const Client client;
    const std::vector<Step> steps = ReadSteps(GetParam());
    EXPECT_FALSE(steps.empty());
    for (const Step &step : steps)
    {
        SCOPED_TRACE(GetParam() + ":" + std::to_string(step.line));
        EXPECT_FALSE(step.expected.empty()) << "a statement without an expectation";
        EXPECT_EQ(Joined(Play(client.Statement(), step.sql)), Joined(step.expected)) << step.sql;
    }
}

INSTANTIATE_TEST_SUITE_P(All, QueryFileTest, testing::ValuesIn(QueryFiles()),
                         [](const auto &info) { return std::filesystem::path(info.param).stem().string(); });

TEST(QueryFiles, AreThere)
{
    size_t statements = 0;
    for (const std::string &file : QueryFiles())
        statements += ReadSteps(file).size();
    EXPECT_GE(statements, 200u);
}

} // namespace
