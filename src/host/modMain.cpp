// The two forms of connection, and what the person is told when neither comes about.
#include "host/modMain.h"

#include "host/General_Registry.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "runtime/error.h"
#include "runtime/error_trap.h"
#include "runtime/text.h"

namespace host
{

namespace
{

// Server and database come from the host; nothing is quoted or escaped.
std::string DriverConnectString()
{
    return "UID=" + gSqlUserName + ";PWD=" + gPassword + ";Database=" + gSqlDbName + ";Server=" + gSqlServerName +
           ";Driver={SQL Server};DSN='';APP=KVHEADERS.DLL;";
}

// Server and database come from the data source.
std::string DataSourceConnectString()
{
    return "UID=" + gSqlUserName + ";PWD=" + gPassword + ";APP=KVHEADERS.DLL;";
}

void OpenConnection()
{
    platform::CurrentDesktop().DoEvents();
    gEnvironment = std::make_shared<odbc::rdoEnvironment>();
    gEnvironment->CursorDriver = odbc::kNoCursorLibrary;
    gEnvironment->LoginTimeout = gSqlTimeout;
    if (!IsDataSourceRegistered(gSQLDSN))
        gConnection = gEnvironment->OpenConnection("", odbc::kNeverPrompt, false, DriverConnectString());
    else
        gConnection = gEnvironment->OpenConnection(gSQLDSN, odbc::kNeverPrompt, false, DataSourceConnectString());
}

std::string FailureText(const runtime::Error &error)
{
    const std::string number = std::to_string(error.Number());
    if (error.Number() == runtime::kGeneralDatabaseFailure)
        return error.Description() + "\r\n" + number + "\r\n" + "SQL Timeout, Please try again.";
    // The last line names another library and shows no string; both are meant so.
    return "Err.Description= " + error.Description() + "\r\n" + "Err.Number " + number + "\r\n" +
           "ADO connection String ";
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
        platform::MsgBox(FailureText(runtime::CurrentError()), platform::kSystemModal);
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
