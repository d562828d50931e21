// Tells which key or column a write has run against.
#pragma once

struct sqlite3;

namespace tsql
{

// Throws the server's error for the constraint that has just stopped a statement. `code` is SQLite's extended result
// code, `verb` INSERT or UPDATE.
[[noreturn]] void RaiseConstraint(sqlite3 *db, int code, const char *verb);

} // namespace tsql
