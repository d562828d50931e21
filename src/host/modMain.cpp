// The two forms of connection, and the message when connecting fails.
#include "host/modMain.h"

#include "host/General_Registry.h"
#include "host/connect_texts.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "runtime/error.h"
#include "runtime/error_trap.h"
#include "runtime/text.h"

#include <string>

namespace host
{

namespace
{

// What the connection was made with: the host may set its properties for the next opening while a window is open.
struct Target
{
    std::string dataSource; // empty: the driver form
    std::string connect;
    std::int16_t loginTimeout = 0;
};

Target s_target;

Target TargetOfSettings()
{
    if (IsDataSourceRegistered(gSQLDSN))
        return {gSQLDSN, DataSourceConnectString(), gSqlTimeout};
    return {"", DriverConnectString(), gSqlTimeout};
}

// On failure, what was connected before stays.
void OpenConnection(const Target &target)
{
    const platform::WaitCursor waiting;
    const auto environment = std::make_shared<odbc::rdoEnvironment>();
    environment->CursorDriver = odbc::kNoCursorLibrary;
    environment->LoginTimeout = target.loginTimeout;
    gConnection = environment->OpenConnection(target.dataSource, odbc::kNeverPrompt, false, target.connect);
    gEnvironment = environment;
    gConnected = true;
}

} // namespace

bool Connect()
{
    // The server may have been restarted since the last window was closed.
    if (gConnected && gConnection && gConnection->AskIfLost())
        gConnected = false;
    if (gConnected)
        return true;
    if (gSqlUserName.empty())
        gSqlUserName = "sa";
    gPassword = std::string(runtime::Trim(gPassword));
    try
    {
        const platform::WaitCursor waiting;
        platform::DoEvents();
        const Target target = TargetOfSettings();
        OpenConnection(target);
        s_target = target;
    }
    catch (...)
    {
        TellConnectFailure(runtime::CurrentError());
        return false;
    }
    return true;
}

std::optional<runtime::Error> Reconnect()
{
    try
    {
        OpenConnection(s_target);
        return std::nullopt;
    }
    catch (...)
    {
        return runtime::CurrentError();
    }
}

void TellConnectFailure(const runtime::Error &error)
{
    platform::MsgBox(ConnectFailureText(error), platform::kSystemModal);
}

void Disconnect()
{
    runtime::ErrorTrap trap;
    trap.Try([] { Connection().Close(); });
    trap.Try(
        []
        {
            if (gEnvironment)
                gEnvironment->Close();
        });
    gConnected = false;
}

void ReleaseConnection()
{
    Disconnect();
    gResultset.reset();
    gConnection.reset();
    gEnvironment.reset();
}

} // namespace host
