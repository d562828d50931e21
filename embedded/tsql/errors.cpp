// The errors of the dialect: one table of numbers, states and texts in the server's manner.
#include "errors.h"

#include <sqlite3.h>

#include <algorithm>

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

// Sorted by number.
constexpr Entry errors[] = {
    {102, "42000", "Line %1: Incorrect syntax near '%2'."},
    {103, "42000", "The identifier that starts with '%1' is too long. Maximum length is 128."},
    {104, "42000", "ORDER BY items must appear in the select list if the statement contains a UNION operator."},
    {105, "42000", "Line %1: Unclosed quotation mark before the character string '%2'."},
    {108, "42000", "The ORDER BY position number %1 is out of range of the number of items in the select list."},
    {109, "21S01",
     "There are more columns in the INSERT statement than values specified in the VALUES clause. The number of values "
     "in "
     "the VALUES clause must match the number of columns specified in the INSERT statement."},
    {110, "21S01",
     "There are fewer columns in the INSERT statement than values specified in the VALUES clause. The number of values "
     "in the VALUES clause must match the number of columns specified in the INSERT statement."},
    {113, "42000", "Line %1: Missing end comment mark '*/'."},
    {116, "42000",
     "Only one expression can be specified in the select list when the subquery is not introduced with EXISTS."},
    {120, "21S01",
     "The select list for the INSERT statement contains fewer items than the insert list. The number of SELECT values "
     "must match the number of INSERT columns."},
    {121, "21S01",
     "The select list for the INSERT statement contains more items than the insert list. The number of SELECT values "
     "must match the number of INSERT columns."},
    {127, "42000", "A TOP N value may not be negative."},
    {130, "42000", "Cannot perform an aggregate function on an expression containing an aggregate or a subquery."},
    {131, "42000", "The size (%1) given to the type '%2' exceeds the maximum allowed (%3)."},
    {134, "42000", "The variable name '%1' has already been declared."},
    {137, "42000", "Must declare the scalar variable \"%1\"."},
    {141, "42000",
     "A SELECT statement that assigns a value to a variable must not be combined with data-retrieval operations."},
    {145, "42000", "ORDER BY items must appear in the select list if SELECT DISTINCT is specified."},
    {147, "42000",
     "An aggregate may not appear in the WHERE clause unless it is in a subquery contained in a HAVING clause or a "
     "select list, and the column being aggregated is an outer reference."},
    {155, "42000", "'%1' is not a recognized %2 option."},
    {164, "42000", "Each GROUP BY expression must contain at least one column that is not an outer reference."},
    {168, "22003", "The floating point value '%1' is out of the range of computer representation (8 bytes)."},
    {174, "42000", "The %1 function requires %2 argument(s)."},
    {191, "42000",
     "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into smaller queries."},
    {195, "42000", "'%1' is not a recognized function name."},
    {205, "42000",
     "All queries combined using a UNION operator must have an equal number of expressions in their target lists."},
    {206, "22018", "Operand type clash: %1 is incompatible with %2"},
    {207, "42S22", "Invalid column name '%1'."},
    {208, "42S02", "Invalid object name '%1'."},
    {209, "42000", "Ambiguous column name '%1'."},
    {213, "21S01", "Column name or number of supplied values does not match table definition."},
    {220, "22003", "Arithmetic overflow error for data type %1, value = %2."},
    {232, "22003", "Arithmetic overflow error for type %1, value = %2."},
    {241, "22007", "Conversion failed when converting date and/or time from character string."},
    {242, "22007", "The conversion of a %1 data type to a datetime data type resulted in an out-of-range value."},
    {244, "22003", "The conversion of the %1 value '%2' overflowed an %3 column. Use a larger integer column."},
    {245, "22018", "Conversion failed when converting the %1 value '%2' to data type %3."},
    {248, "22003", "The conversion of the %1 value '%2' overflowed an int column. Maximum integer value exceeded."},
    {257, "42000",
     "Implicit conversion from data type %1 to %2 is not allowed. Use the CONVERT function to run this query."},
    {264, "42000", "The column name '%1' is specified more than once in the SET clause or column list of an INSERT."},
    {281, "42000", "%1 is not a valid style number when converting from datetime to a character string."},
    {402, "42000", "The data types %1 and %2 are incompatible in the %3 operator."},
    {408, "42000", "A constant expression was encountered in the ORDER BY list, position %1."},
    {506, "22019", "The invalid escape character \"%1\" was specified in a LIKE predicate."},
    {512, "21000",
     "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
     "when the subquery is used as an expression."},
    {515, "23000", "Cannot insert the value NULL into column '%1', table '%2'; column does not allow nulls. %3 fails."},
    {517, "22003", "Adding a value to a 'datetime' column caused an overflow."},
    {535, "22003",
     "The datediff function resulted in an overflow. The number of dateparts separating two date/time instances is too "
     "large."},
    {536, "42000", "Invalid length parameter passed to the %1 function."},
    {823, "HY000", "I/O error while reading or writing the database: %1."},
    {1007, "22003", "The number '%1' is out of the range for numeric representation (maximum precision 38)."},
    {1013, "42000",
     "The objects \"%1\" and \"%1\" in the FROM clause have the same exposed names. Use correlation names to "
     "distinguish "
     "them."},
    {1033, "42000",
     "The ORDER BY clause is invalid in views, inline functions, derived tables and subqueries, unless TOP is also "
     "specified."},
    {1105, "HY000", "Could not allocate space in the database because the disk is full."},
    {1222, "42000", "Lock request time out period exceeded."},
    {1911, "42000", "Column name '%1' does not exist in the target table or view."},
    {1913, "42S11", "The operation failed because an index or statistics with name '%1' already exists on table '%2'."},
    {2601, "23000", "Cannot insert duplicate key row in object 'dbo.%1' with unique index '%2'."},
    {2627, "23000", "Violation of %1 constraint '%2'. Cannot insert duplicate key in object 'dbo.%3'."},
    {2705, "42S21",
     "Column names in each table must be unique. Column name '%1' in table '%2' is specified more than once."},
    {2714, "42S01", "There is already an object named '%1' in the database."},
    {2715, "42000", "Cannot find data type %1."},
    {2716, "42000", "Cannot specify a column width on data type %1."},
    {3701, "42S02", "Cannot drop the %1 '%2', because it does not exist or you do not have permission."},
    {3902, "25000", "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {3903, "25000", "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."},
    {3906, "25000", "Failed to update database because the database is read-only."},
    {4060, "42000", "Cannot open database \"%1\" requested by the login. The login failed."},
    {4104, "42000", "The multi-part identifier \"%1\" could not be bound."},
    {4145, "42000",
     "Line %1: An expression of non-boolean type specified in a context where a condition is expected, near '%2'."},
    {8110, "42000", "Cannot add multiple PRIMARY KEY constraints to table '%1'."},
    {8114, "42000", "Error converting data type %1 to %2."},
    {8115, "22003", "Arithmetic overflow error converting %1 to data type %2."},
    {8117, "42000", "Operand data type %1 is invalid for %2 operator."},
    {8120, "42000",
     "Column '%1' is invalid in the select list because it is not contained in either an aggregate function or the "
     "GROUP "
     "BY clause."},
    {8121, "42000",
     "Column '%1' is invalid in the HAVING clause because it is not contained in either an aggregate function or the "
     "GROUP BY clause."},
    {8127, "42000",
     "Column '%1' is invalid in the ORDER BY clause because it is not contained in either an aggregate function or the "
     "GROUP BY clause."},
    {8134, "22012", "Divide by zero error encountered."},
    {8152, "22001", "String or binary data would be truncated."},
    {8155, "42000", "No column name was specified for column %1 of '%2'."},
    {8156, "42000", "The column '%1' was specified multiple times for '%2'."},
    {8623, "42000", "The query processor could not run the statement: %1."},
    {10738, "42000",
     "The number of row value expressions in the INSERT statement exceeds the maximum allowed number of 1000 row "
     "values."},
};

} // namespace

void Raise(int number, std::initializer_list<std::string_view> parts)
{
    const Entry *entry = std::lower_bound(std::begin(errors), std::end(errors), number,
                                          [](const Entry &candidate, int wanted) { return candidate.number < wanted; });
    std::string text;
    for (const char *at = entry->text; *at; ++at)
    {
        if (*at == '%')
            text += parts.begin()[*++at - '1'];
        else
            text += *at;
    }
    throw SqlError(number, entry->state, text);
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
    if (message == "integer overflow")
        Raise(8115, {"expression", "int"});
    if (message.find("too large") != std::string::npos || message.find("parser stack") != std::string::npos)
        Raise(191);
    Raise(8623, {message});
}

} // namespace tsql
