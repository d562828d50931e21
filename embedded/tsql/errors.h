// The errors: one table of numbers, states and texts in the server's manner.
#pragma once

#include "session.h"

#include <initializer_list>
#include <string>
#include <string_view>

struct sqlite3;

namespace tsql
{

// Raises error `number` of the table, with %1, %2 ... of its text replaced by `parts`.
[[noreturn]] void Raise(int number, std::initializer_list<std::string_view> parts = {});

// Refuses what a server might take: 42000, "<what> is not supported here.", 40510.
[[noreturn]] void Unsupported(const std::string &what);

// What makes a function of SQLite fail, and RaiseSqlite throw this error.
std::string Carried(const SqlError &error);

// Throws what SQLite last said on `db` (result code `code`) of the statement `sql` as an error of the server.
[[noreturn]] void RaiseSqlite(sqlite3 *db, int code, std::string_view sql = {});

} // namespace tsql
