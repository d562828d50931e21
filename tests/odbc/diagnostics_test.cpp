// Which diagnostic record is shown, and under which number.
#include "odbc/diagnostics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

constexpr std::int32_t kGeneral = -2147467259;

struct Case
{
    const char *name;
    std::vector<odbc::Record> records;
    std::int32_t connectNumber; // a statement's error always has the other one
    const char *description;
};

void PrintTo(const Case &c, std::ostream *out)
{
    *out << c.name;
}

class Diagnostics : public testing::TestWithParam<Case>
{
};

TEST_P(Diagnostics, GiveOneError)
{
    const runtime::Error statement = odbc::ToError(GetParam().records);
    EXPECT_EQ(statement.Number(), 40002);
    EXPECT_EQ(statement.Description(), GetParam().description);
    const runtime::Error connect = odbc::ToConnectError(GetParam().records);
    EXPECT_EQ(connect.Number(), GetParam().connectNumber);
    EXPECT_EQ(connect.Description(), GetParam().description);
}

INSTANTIATE_TEST_SUITE_P(
    Records, Diagnostics,
    testing::Values(
        Case{"one", {{"42S02", "Invalid object name 'x'."}}, 40002, "42S02: Invalid object name 'x'."},
        Case{"general", {{"HY000", "Busy"}}, kGeneral, "HY000: Busy"},
        Case{"loginTimeoutBesideGeneral",
             {{"HYT00", "Login timeout expired"}, {"08001", "Unable to connect to data source"}},
             kGeneral,
             "HYT00: Login timeout expired"},
        Case{"generalFirst",
             {{"08001", "Unable to connect to data source"}, {"28000", "Login failed for user 'x'."}},
             40002,
             "28000: Login failed for user 'x'."},
        Case{"generalAlone", {{"08001", "Unable to connect"}}, kGeneral, "08001: Unable to connect"},
        Case{"communicationLink",
             {{"08S01", "Communication link failure"}},
             kGeneral,
             "08S01: Communication link failure"},
        Case{"queryTimeout", {{"HYT01", "Timeout"}}, kGeneral, "HYT01: Timeout"},
        Case{"warningBeforeError", {{"01000", "Warning"}, {"22003", "Overflow"}}, 40002, "22003: Overflow"},
        Case{"warningBeforeGeneral", {{"01000", "Warning"}, {"08001", "No"}}, kGeneral, "08001: No"},
        Case{"warningAlone", {{"01000", "Can't open lib"}}, 40002, "01000: Can't open lib"},
        Case{"firstOfEquals", {{"42000", "one"}, {"42S22", "two"}}, 40002, "42000: one"},
        Case{"unknownSource", {{"IM002", "Data source name not found"}}, 40002, "IM002: Data source name not found"},
        Case{"none", {}, kGeneral, "HY000: The driver gave no reason."},
        Case{"namesInBrackets",
             {{"22001", "[Microsoft][ODBC SQL Server Driver][SQL Server]String or binary data would be truncated."}},
             40002,
             "22001: String or binary data would be truncated."},
        Case{"blanksBehindTheNames", {{"42000", "[a] [b] text [c]"}}, 40002, "42000: text [c]"},
        Case{"nothingButNames", {{"42000", "[a][b]"}}, 40002, "42000: [a][b]"},
        Case{"anOpenBracket", {{"42000", "[a][b"}}, 40002, "42000: [b"}),
    [](const auto &info) { return info.param.name; });

TEST(LossOfAConnection, ClassEightTellsOfALossWhereverItStands)
{
    EXPECT_TRUE(odbc::TellOfLoss({{"HY000", ""}, {"08S01", ""}}));
    EXPECT_FALSE(odbc::TellOfLoss({{"01000", ""}, {"HY000", ""}, {"42008", ""}}));
    EXPECT_FALSE(odbc::TellOfLoss({}));
}

} // namespace
