// What SQLite lacks: LIKE, the collation "ts" of texts, which has no regard for case and trailing blanks, and these
// functions:
//   ts_convert(type, value)  the value in another type, which it has to fit
//   ts_fits(type, value)     raises why a value does not fit a column of that type
//   ts_one(count)            whether there is a row; raises an error when there are more
//   ts_len(text), ts_str(number), ts_upper(text)
#pragma once

struct sqlite3;

namespace tsql
{

void RegisterFunctions(sqlite3 *db);

} // namespace tsql
