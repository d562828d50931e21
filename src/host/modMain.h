// Opening and closing the component's one database connection.
#pragma once

#include "runtime/error.h"

#include <optional>

namespace host
{

// Connects with the host's settings; at once true when connected already and the driver does not call that connection
// dead. A failure is shown in a message box and gives false; an earlier connection is then left as it is. Raises
// nothing.
bool Connect();

// Reconnects with the settings of the last Connect, in place of a connection that was lost, without a message. Gives
// the error when that fails, and leaves the lost connection in place.
std::optional<runtime::Error> Reconnect();

// Tells the user that connecting failed.
void TellConnectFailure(const runtime::Error &error);

// Closes the connection and its environment; every error is ignored.
void Disconnect();

// The same, and releases the objects: for the time when nothing of the component is in use any more.
void ReleaseConnection();

} // namespace host
