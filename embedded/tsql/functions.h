// The functions of the dialect, and the SQLite functions and the collation that the rewritten statements call.
#pragma once

#include "types.h"

#include <optional>
#include <string_view>

struct sqlite3;

namespace tsql
{

// What the functions share with the session that runs the statement.
struct FunctionState
{
    std::optional<SqlError> error; // what made the running statement fail
    std::int64_t now = 0;          // GETDATE of the running statement, 1/300 s; 0 when not asked for yet
};

struct Call;

// A function; in SQLite "ts_" stands before its name. All give NULL for NULL.
struct Function
{
    std::string_view name;
    int least; // how many arguments it must have
    // What its arguments are converted to: t text, i integer.
    std::string_view arguments;
    // T text, as national as the first argument; V varchar; I integer; D datetime; empty: not for statements.
    char result;
    Value (*call)(const Call &);
};

// By its name; null when there is none that a statement may call.
const Function *FindFunction(std::string_view name);

// Registers everything; `state` must live as long as `db`.
void RegisterFunctions(sqlite3 *db, FunctionState &state);

} // namespace tsql
