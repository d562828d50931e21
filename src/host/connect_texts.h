// The texts of connecting: the two connect strings, and what a failure says.
#pragma once

#include "runtime/error.h"

#include <string>

namespace host
{

// For a driver: server and database come from the host's settings. Nothing is quoted or escaped.
std::string DriverConnectString();

// For a registered data source: server and database come from it. Its name travels beside this text.
std::string DataSourceConnectString();

// The text of the message box for a connection that failed.
std::string ConnectFailureText(const runtime::Error &error);

} // namespace host
