// What SQLite lacks: functions, LIKE, and the collations of texts and of moments.
#pragma once

#include "session.h"

#include <optional>

struct sqlite3;

namespace tsql
{

// What made the running statement fail, as a function of it has told.
using FunctionError = std::optional<SqlError>;

// Registers everything; `error` must live as long as `db`.
void RegisterFunctions(sqlite3 *db, FunctionError &error);

} // namespace tsql
