// What SQLite lacks: LIKE, the collation "ts" of texts, and these functions:
//   ts_convert(type, value)  the value in another type
//   ts_range(type, value)    the value of a calculation, which has to fit its type
//   ts_fits(type, value)     raises why a value does not fit a column of that type
//   ts_one(count)            whether there is a row; raises an error when there are more
//   ts_now(), ts_str(number), ts_upper(text)
#pragma once

struct sqlite3;

namespace tsql
{

void RegisterFunctions(sqlite3 *db);

} // namespace tsql
