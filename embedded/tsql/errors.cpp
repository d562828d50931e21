// The errors: one table of numbers, states and texts in the server's manner.
#include "errors.h"

#include "prepared.h"

#include <sqlite3.h>

#include <algorithm>
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
    {109, "21S01",
     "The number of values in the VALUES clause must match the number of columns of the INSERT statement."},
    {113, "42000", "Missing end comment mark '*/'."},
    {134, "42000", "The variable name '%1' has already been declared."},
    {137, "42000", "Must declare the scalar variable \"%1\"."},
    {145, "42000", "ORDER BY items must appear in the select list if SELECT DISTINCT is specified."},
    {207, "42S22", "Invalid column name '%1'."},
    {208, "42S02", "Invalid object name '%1'."},
    {209, "42000", "Ambiguous column name '%1'."},
    {213, "21S01", "Column name or number of supplied values does not match table definition."},
    {220, "22003", "Arithmetic overflow error for data type %1, value = %2."},
    {242, "22007", "The conversion of a %1 data type to a datetime data type resulted in an out-of-range value."},
    {244, "22003", "The conversion of the %1 value '%2' overflowed an %3 column. Use a larger integer column."},
    {245, "22018", "Conversion failed when converting the %1 value '%2' to data type %3."},
    {248, "22003", "The conversion of the %1 value '%2' overflowed an int column. Maximum integer value exceeded."},
    {257, "42000",
     "Implicit conversion from data type %1 to %2 is not allowed. Use the CONVERT function to run this query."},
    {512, "21000",
     "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
     "when the subquery is used as an expression."},
    {515, "23000", "Cannot insert the value NULL into column '%1', table '%2'; column does not allow nulls. %3 fails."},
    {536, "42000", "Invalid length parameter passed to the %1 function."},
    {823, "HY000", "I/O error while reading or writing the database: %1."},
    {1105, "HY000", "Could not allocate space in the database because the disk is full."},
    {1222, "42000", "Lock request time out period exceeded."},
    {2601, "23000", "Cannot insert duplicate key row in object 'dbo.%1' with unique index '%2'."},
    {2627, "23000", "Violation of %1 constraint '%2'. Cannot insert duplicate key in object 'dbo.%3'."},
    {2714, "42S01", "There is already an object named '%1' in the database."},
    {3701, "42S02", "Cannot drop the %1 '%2', because it does not exist or you do not have permission."},
    {3906, "25000", "Failed to update database because the database is read-only."},
    {4060, "42000", "Cannot open database \"%1\" requested by the login. The login failed."},
    {4104, "42000", "The multi-part identifier \"%1\" could not be bound."},
    {8114, "42000", "Error converting data type %1 to %2."},
    {8115, "22003", "Arithmetic overflow error converting %1 to data type %2."},
    {3902, "25000", "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {3903, "25000", "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {4145, "42000",
     "An expression of non-boolean type specified in a context where a condition is expected, near '%1'."},
    {8120, "42000",
     "Column '%1' is invalid in the select list because it is not contained in either an aggregate function or the "
     "GROUP BY clause."},
    {8134, "22012", "Divide by zero error encountered."},
    {8152, "22001", "String or binary data would be truncated."},
};

} // namespace

SqlError MakeError(int number, std::initializer_list<std::string_view> parts)
{
    const Entry *const entry = std::find_if(std::begin(errors), std::end(errors),
                                            [&](const Entry &candidate) { return candidate.number == number; });
    std::string text;
    for (const char *at = entry->text; *at != '\0'; ++at)
    {
        if (*at == '%')
            text += parts.begin()[*++at - '1'];
        else
            text += *at;
    }
    return {number, entry->state, text};
}

void Raise(int number, std::initializer_list<std::string_view> parts)
{
    throw MakeError(number, parts);
}

void Unsupported(const std::string &what)
{
    throw SqlError(kNotSupported, "42000", what + " is not supported here.");
}

void RaiseSqlite(sqlite3 *db, int code)
{
    const std::string message = sqlite3_errmsg(db);
    constexpr std::pair<int, int> known[] = {{SQLITE_FULL, 1105},   {SQLITE_READONLY, 3906}, {SQLITE_BUSY, 1222},
                                             {SQLITE_LOCKED, 1222}, {SQLITE_PROTOCOL, 1222}, {SQLITE_CANTOPEN, 4060},
                                             {SQLITE_NOTADB, 4060}, {SQLITE_IOERR, 823},     {SQLITE_CORRUPT, 823}};
    if ((code & 0xff) == SQLITE_NOMEM)
        throw std::bad_alloc();
    for (const auto &[sqlite, number] : known)
        if ((code & 0xff) == sqlite)
            Raise(number, {message});
    // "near "x": syntax error", "no such table: x"
    const std::size_t colon = std::min(message.find(": "), message.size());
    if (message.starts_with("near \""))
    {
        std::string near = message.substr(6, colon - 7);
        std::erase(near, '"');
        Raise(102, {near});
    }
    constexpr std::pair<std::string_view, int> names[] = {
        {"no such table", 208}, {"no such column", 207}, {"ambiguous column name", 209}, {"incomplete input", 102}};
    for (const auto &[start, number] : names)
        if (message.starts_with(start))
            Raise(number, {std::string_view(message).substr(std::min(colon + 2, message.size()))});
    if (message.find(" values for ") != std::string::npos)
        Raise(109);
    if (message.find(" values were supplied") != std::string::npos)
        Raise(213);
    Unsupported("'" + message + "'");
}

void RaiseConstraint(sqlite3 *db, std::string_view verb)
{
    // "UNIQUE constraint failed: table.a, table.b"
    const std::string message = sqlite3_errmsg(db);
    const std::string names = message.substr(std::min(message.find(": ") + 2, message.size()));
    const std::string table = names.substr(0, names.find('.'));
    if (sqlite3_extended_errcode(db) == SQLITE_CONSTRAINT_NOTNULL)
        Raise(515, {std::string_view(names).substr(table.size() + 1), "dbo." + table, verb});
    Prepared index(db,
                   "SELECT name, origin FROM pragma_index_list(?1) AS i WHERE \"unique\" AND ?2 = "
                   "(SELECT group_concat(?1 || '.' || name, ', ') FROM pragma_index_info(i.name))",
                   {table, names});
    if (!index.Step())
        Unsupported("'" + message + "'");
    const std::string origin = index.Text(1); // c: CREATE INDEX, u: UNIQUE, pk
    if (origin == "c")
        Raise(2601, {table, std::string_view(index.Text(0)).substr(table.size() + 1)});
    const std::string column = names.substr(table.size() + 1, names.find(',') - table.size() - 1);
    const bool primary = origin == "pk";
    Raise(2627,
          {primary ? "PRIMARY KEY" : "UNIQUE KEY", primary ? "PK_" + table : "UQ_" + table + "_" + column, table});
}

} // namespace tsql
