// The SQLite functions and the collation that the translated statements call.
#pragma once

#include "session.h"

#include <cstdint>
#include <optional>

struct sqlite3;

namespace tsql
{

// What the functions share with the session that runs the statement.
struct FunctionState
{
    std::optional<SqlError> error; // what made the running statement fail
    std::int64_t now = 0;          // GETDATE of the running statement, 1/300 s; 0 when not asked for yet
};

// Registers everything; `state` must live as long as `db`.
void RegisterFunctions(sqlite3 *db, FunctionState &state);

} // namespace tsql
