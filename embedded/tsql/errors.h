// The errors: one table of numbers, states and texts in the server's manner.
#pragma once

#include "session.h"

#include <initializer_list>
#include <string>
#include <string_view>

struct sqlite3;

namespace tsql
{

// Error `number` of the table, with %1, %2 ... of its text replaced by `parts`.
SqlError MakeError(int number, std::initializer_list<std::string_view> parts = {});
[[noreturn]] void Raise(int number, std::initializer_list<std::string_view> parts = {});

// Refuses what a server might take: 42000, "<what> is not supported here.", with this number.
constexpr int kNotSupported = 40510;
[[noreturn]] void Unsupported(const std::string &what);

// Throws what SQLite last said on `db` (result code `code`) as an error of the server.
[[noreturn]] void RaiseSqlite(sqlite3 *db, int code);

// The same for a constraint that a statement, `verb`, has violated.
[[noreturn]] void RaiseConstraint(sqlite3 *db, std::string_view verb);

} // namespace tsql
