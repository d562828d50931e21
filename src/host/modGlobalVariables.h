// The one set of values that a host's property sets fill and the rest of the component reads.
#pragma once

#include "odbc/rdoConnection.h"
#include "odbc/rdoEnvironment.h"
#include "odbc/rdoResultset.h"
#include "runtime/ref.h"

#include <cstdint>
#include <memory>
#include <string>

namespace host
{

class clsConfig;

// Set by the host through clsConfig; there is one set of them per loaded component.
inline std::int16_t gUserID = 0;
inline std::int32_t gPartitionID = 0;
inline std::int16_t gDebugMode = 0; // kept for the host; nothing reads it
inline std::string gLogFile;        // kept for the host; nothing reads it
inline std::string gSqlServerName;
inline std::string gPassword;
inline std::string gSqlUserName;
inline std::string gSqlDbName;
inline std::string gSQLDSN;
inline std::int16_t gSqlTimeout = 0; // seconds a log-in may take
inline std::string gZentraINIFile;

// The configuration object created last.
extern runtime::Ref<clsConfig> gConfig;

// From the site INI file.
inline std::string gNetworkRootDir;
inline bool gIniTagMixedCaseHeadings = false;
inline bool gIniTagKnownHeadings = false;

// The component's one connection, and the result set that routines use in turn.
inline std::shared_ptr<odbc::rdoEnvironment> gEnvironment;
inline std::shared_ptr<odbc::rdoConnection> gConnection;
inline bool gConnected = false;
inline std::shared_ptr<odbc::rdoResultset> gResultset;

// The open connection. Error 91 when there is none.
odbc::rdoConnection &Connection();

} // namespace host
