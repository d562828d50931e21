// Plays the query files of tests/embedded/queries through ODBC: one statement a line, and what it must give.
#include "client.h"

#include "support/escape.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace driver_tests
{
namespace
{

// How a file is written; it runs from top to bottom on a database of its own.
//   -- text         a comment, passed over like empty lines
//   any other line  a statement or batch; \r, \n and \t in it stand for the characters, \\ and \" for these
// What it gives follows, result by result:
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
            steps.push_back({number, support::Unescape(line), {}});
    }
    return steps;
}

std::string ErrorLine(SQLHSTMT statement)
{
    const std::vector<std::string> states = States(SQL_HANDLE_STMT, statement);
    std::string first = states.empty() ? "no record" : states.front();
    first.erase(std::remove_if(first.begin(), first.end(), [](char c) { return c == '(' || c == ')'; }), first.end());
    return "! " + first;
}

// Everything the statement gives, in the form of the expectations.
std::vector<std::string> Play(SQLHSTMT statement, const std::string &sql)
{
    std::vector<std::string> got;
    bool rowsBefore = false;
    SQLRETURN code = Exec(statement, sql);
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
        {
            std::string line = "=";
            for (const std::string &value : ReadRow(statement))
                line += (line == "=" ? " " : " | ") + support::Escape(value);
            got.push_back(line);
        }
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
    const char *root = std::getenv("KV_ROOT");
    std::vector<std::string> files;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(
             std::string(root != nullptr ? root : ".") + "/tests/embedded/queries", error))
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
    const OdbcSettings settings;
    Link link;
    ASSERT_TRUE(Allowed("SI", link.Connect("Driver={SQL Server};Create=yes;Database=" + settings.Path("test.db") + ";"),
                        SQL_HANDLE_DBC, link.dbc));
    const SQLHSTMT statement = link.NewStatement();
    const std::vector<Step> steps = ReadSteps(GetParam());
    EXPECT_FALSE(steps.empty());
    for (const Step &step : steps)
    {
        SCOPED_TRACE(GetParam() + ":" + std::to_string(step.line));
        EXPECT_FALSE(step.expected.empty()) << "a statement without an expectation";
        EXPECT_EQ(Joined(Play(statement, step.sql)), Joined(step.expected)) << step.sql;
    }
}

INSTANTIATE_TEST_SUITE_P(All, QueryFileTest, testing::ValuesIn(QueryFiles()),
                         [](const auto &info) { return std::filesystem::path(info.param).stem().string(); });

TEST(QueryFiles, AreThere)
{
    size_t statements = 0;
    for (const std::string &file : QueryFiles())
        statements += ReadSteps(file).size();
    EXPECT_GE(statements, 300u);
}

} // namespace
} // namespace driver_tests
