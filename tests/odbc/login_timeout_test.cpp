// The log-in time-out is set on every connection. The driver manager's function is replaced by one that looks at it.
#ifndef _WIN32

#include "odbc/rdoConnection.h"
#include "odbc/rdoEnvironment.h"
#include "runtime/error_trap.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <vector>

namespace
{

std::vector<SQLULEN> loginTimeouts;

} // namespace

extern "C" SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value,
                                                SQLINTEGER length)
{
    static const auto original =
        reinterpret_cast<decltype(&SQLSetConnectAttrW)>(dlsym(RTLD_NEXT, "SQLSetConnectAttrW"));
    if (attribute == SQL_ATTR_LOGIN_TIMEOUT)
        loginTimeouts.push_back(reinterpret_cast<SQLULEN>(value));
    return original(connection, attribute, value, length);
}

namespace
{

TEST(LoginTimeout, IsSetOnEveryConnectionAlsoWhenThereIsNoLimit)
{
    loginTimeouts.clear(); // of other tests
    odbc::rdoEnvironment environment;
    for (const std::int16_t seconds : {0, 30})
    {
        environment.LoginTimeout = seconds;
        runtime::ErrorTrap trap;
        trap.Try([&] { environment.OpenConnection("NoSuchSource", odbc::kNeverPrompt, false, ""); });
        EXPECT_TRUE(trap.Pending());
    }
    EXPECT_EQ(loginTimeouts, (std::vector<SQLULEN>{0, 30}));
}

} // namespace

#endif
