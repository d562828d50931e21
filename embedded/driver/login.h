// Users and passwords, kept with the database in a table of the driver's own.
#pragma once

#include "tsql/session.h"

#include <string>

namespace driver
{

// Adds a user to a database, which from then on refuses everybody it does not know.
void AddUser(tsql::Session &session, const std::string &user, const std::string &password);

// True when the database has no users at all, or has this one with this password. User names are compared without
// regard to case.
bool MayLogIn(tsql::Session &session, const std::string &user, const std::string &password);

} // namespace driver
