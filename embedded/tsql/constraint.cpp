// Tells which key or column a write has run against.
#include "constraint.h"

#include "catalog.h"
#include "errors.h"
#include "statement.h"

#include <sqlite3.h>

namespace tsql
{

// The message names "table.column, table.column"; which key these are says the schema.
void RaiseConstraint(sqlite3 *db, int code, const char *verb)
{
    const std::string message = sqlite3_errmsg(db);
    const std::string names = message.substr(std::min(message.find(": ") + 2, message.size()));
    const std::string table = names.substr(0, names.find('.'));
    if (code == SQLITE_CONSTRAINT_NOTNULL)
        Raise(515, {names.substr(table.size() + 1), "dbo." + table, verb});
    std::string columns;
    for (std::size_t at = 0; at < names.size();)
    {
        const std::size_t end = std::min(names.find(", ", at), names.size());
        columns +=
            (columns.empty() ? "" : ",") + Quoted(names.substr(at + table.size() + 1, end - at - table.size() - 1));
        at = end + 2;
    }
    Running schema(db, "SELECT type, name, sql FROM sqlite_schema WHERE tbl_name = ?1 ORDER BY type DESC");
    schema.Bind(1, table);
    while (schema.Step())
    {
        const std::string sql = schema.Text(2);
        const std::size_t list = sql.find("(" + columns + ")");
        if (list == std::string::npos)
            continue;
        if (schema.Text(0) == "index")
            Raise(2601, {table, schema.Text(1).substr(table.size() + 1)});
        // CONSTRAINT "name" PRIMARY KEY (columns)
        const bool primary = sql.compare(list - std::min<std::size_t>(list, 12), 12, "PRIMARY KEY ") == 0;
        const std::size_t start = sql.rfind(" CONSTRAINT \"", list) + 13;
        const std::size_t end = list - (primary ? 14 : 9);
        Raise(2627, {primary ? "PRIMARY KEY" : "UNIQUE KEY", sql.substr(start, end - start), table});
    }
    Raise(8623, {message});
}

} // namespace tsql
