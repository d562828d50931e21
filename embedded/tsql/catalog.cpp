// The tables of the open file as the dialect sees them, read from SQLite's own schema and kept until that changes.
#include "catalog.h"

#include "errors.h"
#include "text.h"

#include <sqlite3.h>

namespace tsql
{
namespace
{

// The tables that are shown.
constexpr const char *ownTables = "t.type = 'table' AND t.name NOT LIKE 'sqlite!_%' ESCAPE '!' AND "
                                  "t.name NOT LIKE 'kvembedded!_%' ESCAPE '!'";

} // namespace

int Table::Find(std::string_view column) const
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (Compare(columns[i].name, column) == 0)
            return static_cast<int>(i);
    return -1;
}

void Catalog::Refresh()
{
    if (!m_versionQuery)
        m_versionQuery.emplace(m_db, "PRAGMA schema_version");
    m_versionQuery->Reset(); // of one that has failed
    m_versionQuery->Step();
    const std::int64_t version = m_versionQuery->Integer(0);
    m_versionQuery->Reset();
    if (version != m_version)
        m_tables.clear();
    m_version = version;
}

const Table *Catalog::Find(std::string_view name)
{
    const auto known = m_tables.find(name);
    if (known != m_tables.end())
        return &known->second;
    Table table;
    Running query(m_db, std::string("SELECT t.name, c.name, c.type, c.\"notnull\", c.pk, c.dflt_value FROM "
                                    "sqlite_schema AS t, pragma_table_xinfo(t.name) AS c WHERE t.name = ?1 COLLATE ts "
                                    "AND ") +
                            ownTables + " ORDER BY c.cid");
    const Value wanted = TextValue(std::string(name));
    query.Bind(1, wanted);
    while (query.Step())
    {
        table.name = query.Text(0);
        table.columns.push_back({query.Text(1), ParseDeclaration(query.Text(2)), query.Integer(3) == 0,
                                 query.Integer(4) != 0, query.Text(5)});
    }
    return table.columns.empty() ? nullptr : &m_tables.emplace(std::string(name), std::move(table)).first->second;
}

std::vector<std::string> Catalog::Names()
{
    std::vector<std::string> names;
    Running query(m_db,
                  std::string("SELECT name FROM sqlite_schema AS t WHERE ") + ownTables + " ORDER BY name COLLATE ts");
    while (query.Step())
        names.push_back(query.Text(0));
    return names;
}

std::string Catalog::FindIndex(const std::string &name)
{
    Running query(m_db,
                  "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql NOT NULL AND name = ?1 COLLATE ts");
    const Value wanted = TextValue(name);
    query.Bind(1, wanted);
    return query.Step() ? query.Text(0) : std::string();
}

// SQLite's message names "table.column, table.column"; which key these are says the schema.
void Catalog::RaiseConstraint(int code, const char *verb)
{
    const std::string message = sqlite3_errmsg(m_db);
    const std::string names = message.substr(std::min(message.find(": ") + 2, message.size()));
    const std::string table = names.substr(0, names.find('.'));
    if (code == SQLITE_CONSTRAINT_NOTNULL)
        Raise(515, {names.substr(table.size() + 1), "dbo." + table, verb});
    std::string columns;
    for (std::size_t at = 0; at < names.size();)
    {
        const std::size_t end = std::min(names.find(", ", at), names.size());
        const std::size_t start = at + table.size() + 1;
        columns += (columns.empty() ? "" : ",") + Quoted(names.substr(start, end - start));
        at = end + 2;
    }
    Running schema(m_db, "SELECT type, name, sql FROM sqlite_schema WHERE tbl_name = ?1 ORDER BY type DESC");
    const Value wanted = TextValue(table);
    schema.Bind(1, wanted);
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

std::string Quoted(std::string_view name, char quote)
{
    std::string quoted(1, quote);
    for (const char c : name)
        quoted.append(c == quote ? 2 : 1, c);
    return quoted += quote;
}

} // namespace tsql
