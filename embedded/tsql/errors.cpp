// The errors: one table of numbers, states and texts in the server's manner.
#include "errors.h"

#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace tsql
{
namespace
{

struct Entry
{
    int number;
    const char *state;
    const char *text;
};

constexpr Entry errors[] = {
    {102, "42000", "Incorrect syntax near '%1'."},
    {105, "42000", "Unclosed quotation mark before the character string '%1'."},
    {137, "42000", "Must declare the scalar variable \"%1\"."},
    {207, "42S22", "Invalid column name '%1'."},
    {208, "42S02", "Invalid object name '%1'."},
    {220, "22003", "Arithmetic overflow error for data type %1, value = %2."},
    {242, "22007", "The conversion of a %1 data type to a datetime data type resulted in an out-of-range value."},
    {245, "22018", "Conversion failed when converting the %1 value '%2' to data type %3."},
    {248, "22003", "The conversion of the %1 value '%2' overflowed an int column. Maximum integer value exceeded."},
    {512, "21000",
     "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
     "when the subquery is used as an expression."},
    {515, "23000", "Cannot insert the value NULL into column '%1', table '%2'; column does not allow nulls. %3 fails."},
    {823, "HY000", "I/O error while reading or writing the database: %1."},
    {1105, "HY000", "Could not allocate space in the database because the disk is full."},
    {1222, "42000", "Lock request time out period exceeded."},
    {2627, "23000", "Violation of PRIMARY KEY constraint 'PK_%1'. Cannot insert duplicate key in object 'dbo.%1'."},
    {2714, "42S01", "There is already an object named '%1' in the database."},
    {3906, "25000", "Failed to update database because the database is read-only."},
    {4060, "42000", "Cannot open database \"%1\" requested by the login. The login failed."},
    {8115, "22003", "Arithmetic overflow error converting %1 to data type %2."},
    {8152, "22001", "String or binary data would be truncated."},
};

thread_local std::exception_ptr failure; // of a function, on its way through SQLite

} // namespace

void Raise(int number, std::initializer_list<std::string_view> parts)
{
    const Entry *const entry = std::ranges::find(errors, number, &Entry::number);
    std::string text;
    for (const char *at = entry->text; *at != '\0'; ++at)
        if (*at == '%')
            text += parts.begin()[*++at - '1'];
        else
            text += *at;
    throw SqlError(number, entry->state, text);
}

void Unsupported(const std::string &what)
{
    throw SqlError(40510, "42000", what + " is not supported here.");
}

void FailFunction(sqlite3_context *context)
{
    failure = std::current_exception();
    sqlite3_result_error(context, "", 0);
}

void RaiseSqlite(sqlite3 *db, int code, std::string_view sql)
{
    if (failure)
        std::rethrow_exception(std::exchange(failure, nullptr));
    const std::string message = sqlite3_errmsg(db);
    if ((code & 0xff) == SQLITE_NOMEM)
        throw std::bad_alloc();
    constexpr std::pair<int, int> known[] = {{SQLITE_FULL, 1105},   {SQLITE_READONLY, 3906}, {SQLITE_BUSY, 1222},
                                             {SQLITE_LOCKED, 1222}, {SQLITE_PROTOCOL, 1222}, {SQLITE_CANTOPEN, 4060},
                                             {SQLITE_NOTADB, 4060}, {SQLITE_IOERR, 823},     {SQLITE_CORRUPT, 823}};
    for (const auto &[sqlite, number] : known)
        if ((code & 0xff) == sqlite)
            Raise(number, {message});
    // "UNIQUE constraint failed: table.a, table.b"
    const std::string_view names = std::string_view(message).substr(std::min(message.find(": ") + 2, message.size()));
    const std::string table(names.substr(0, names.find('.')));
    if (sqlite3_extended_errcode(db) == SQLITE_CONSTRAINT_NOTNULL)
        Raise(515, {names.substr(table.size() + 1), "dbo." + table, sql.starts_with("UPDATE") ? "UPDATE" : "INSERT"});
    if ((code & 0xff) == SQLITE_CONSTRAINT)
        Raise(2627, {table});
    Unsupported("'" + message + "'");
}

} // namespace tsql
