// The errors: one table of numbers, states and texts in the server's manner.
#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_context;

namespace tsql
{

// A diagnostic in the server's manner: 208, "42S02", "Invalid object name 'x'.".
struct SqlError : std::runtime_error
{
    SqlError(int itsNumber, std::string_view itsState, const std::string &text)
        : std::runtime_error(text), number(itsNumber), state(itsState)
    {
    }

    int number;        // the server's own error number (native error), 0 when there is none
    std::string state; // SQLSTATE, five characters
};

// Raises error `number` of the table, with %1, %2 ... of its text replaced by `parts`.
[[noreturn]] void Raise(int number, std::initializer_list<std::string_view> parts = {});

// Refuses what a server might take: 42000, "<what> is not supported here.", 40510.
[[noreturn]] void Unsupported(const std::string &what);

// Makes the function of SQLite that runs fail with the exception that is being handled, which RaiseSqlite throws again.
void FailFunction(sqlite3_context *context);

// Throws what SQLite last said on `db` (result code `code`) of the statement `sql` as an error of the server.
[[noreturn]] void RaiseSqlite(sqlite3 *db, int code, std::string_view sql = {});

} // namespace tsql
