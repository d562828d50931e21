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
    std::int32_t number;
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
    const runtime::Error error = odbc::ToError(GetParam().records);
    EXPECT_EQ(error.Number(), GetParam().number);
    EXPECT_EQ(error.Description(), GetParam().description);
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
        Case{"none", {}, kGeneral, "HY000: The driver gave no reason."}),
    [](const auto &info) { return info.param.name; });

} // namespace
