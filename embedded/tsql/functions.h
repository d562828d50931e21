// What SQLite lacks: LIKE, the collation "ts" of texts, and these functions:
//   ts_convert(type, value)  the value in another type
//   ts_range(type, value)    the value of a calculation, which has to fit its type
//   ts_fits(type, value)     raises why a value does not fit a column of that type
//   ts_one(count)            whether there is a row; raises an error when there are more
//   ts_len(text), ts_str(number), ts_upper(text)
#pragma once

#include <string_view>

struct sqlite3;

namespace tsql
{

void RegisterFunctions(sqlite3 *db);

// Moments are texts of one form, in the file and in SQLite's hands: "2003-02-11 08:15:30.500".
struct DateTime
{
    int year, month, day, hour, minute, second;
    int nanosecond;
};
DateTime MomentOf(std::string_view text);

} // namespace tsql
