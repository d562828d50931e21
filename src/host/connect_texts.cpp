// Building the connect strings and the failure text from the host's settings.
#include "host/connect_texts.h"

#include "host/modGlobalVariables.h"

namespace host
{

std::string DriverConnectString()
{
    return "UID=" + gSqlUserName + ";PWD=" + gPassword + ";Database=" + gSqlDbName + ";Server=" + gSqlServerName +
           ";Driver={SQL Server};DSN='';APP=KVHEADERS.DLL;";
}

std::string DataSourceConnectString()
{
    return "UID=" + gSqlUserName + ";PWD=" + gPassword + ";APP=KVHEADERS.DLL;";
}

std::string ConnectFailureText(const runtime::Error &error)
{
    const std::string number = std::to_string(error.Number());
    if (error.Number() == runtime::kGeneralDatabaseFailure)
        return error.Description() + "\r\n" + number + "\r\n" + "SQL Timeout, Please try again.";
    // The last line names another library and shows no string; both are intentional.
    return "Err.Description= " + error.Description() + "\r\n" + "Err.Number " + number + "\r\n" +
           "ADO connection String ";
}

} // namespace host
