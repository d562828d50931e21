// Opening and closing the component's one database connection.
#pragma once

namespace host
{

// Connects with the host's settings; at once true when connected already. A failure is shown in a message box and gives
// false. Raises nothing.
bool Connect();

// Closes the connection and its environment; every error is ignored.
void Disconnect();

} // namespace host
