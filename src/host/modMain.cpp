// The two forms of connection, and what the person is told when neither comes about.
#include "host/modMain.h"

#include "host/General_Registry.h"
#include "host/connect_texts.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "runtime/error.h"
#include "runtime/error_trap.h"
#include "runtime/text.h"

namespace host
{

namespace
{

void OpenConnection()
{
    platform::DoEvents();
    gEnvironment = std::make_shared<odbc::rdoEnvironment>();
    gEnvironment->CursorDriver = odbc::kNoCursorLibrary;
    gEnvironment->LoginTimeout = gSqlTimeout;
    if (!IsDataSourceRegistered(gSQLDSN))
        gConnection = gEnvironment->OpenConnection("", odbc::kNeverPrompt, false, DriverConnectString());
    else
        gConnection = gEnvironment->OpenConnection(gSQLDSN, odbc::kNeverPrompt, false, DataSourceConnectString());
}

} // namespace

bool Connect()
{
    if (gConnected)
        return true;
    if (gSqlUserName.empty())
        gSqlUserName = "sa";
    gPassword = std::string(runtime::Trim(gPassword));
    try
    {
        const platform::WaitCursor waiting;
        OpenConnection();
    }
    catch (...)
    {
        platform::MsgBox(ConnectFailureText(runtime::CurrentError()), platform::kSystemModal);
        return false;
    }
    gConnected = true;
    return true;
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

} // namespace host
