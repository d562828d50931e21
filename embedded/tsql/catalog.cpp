// The tables of the open file as the dialect sees them, read from SQLite's own schema and kept until that changes.
#include "catalog.h"

#include "errors.h"
#include "statement.h"
#include "text.h"

#include <sqlite3.h>

namespace tsql
{
namespace
{

constexpr std::string_view ownPrefix = "kvembedded_";

}

int Table::Find(std::string_view column) const
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (Compare(columns[i].name, column) == 0)
            return static_cast<int>(i);
    return -1;
}

Catalog::~Catalog()
{
    sqlite3_finalize(m_versionQuery);
}

void Catalog::Refresh()
{
    if (!m_versionQuery)
        m_versionQuery = Prepare(m_db, "PRAGMA schema_version");
    const int code = sqlite3_step(m_versionQuery);
    const long long version = code == SQLITE_ROW ? sqlite3_column_int64(m_versionQuery, 0) : -1;
    sqlite3_reset(m_versionQuery);
    if (code != SQLITE_ROW)
        RaiseSqlite(m_db, code);
    if (version != m_version)
        m_tables.clear();
    m_version = version;
}

const Table *Catalog::Find(std::string_view name)
{
    const auto known = m_tables.find(name);
    if (known != m_tables.end())
        return &known->second;
    if (Compare(name.substr(0, ownPrefix.size()), ownPrefix) == 0)
        return nullptr;
    Table table;
    {
        Running query(m_db, "SELECT t.name, c.name, c.type, c.\"notnull\", c.pk, c.dflt_value FROM sqlite_schema AS t, "
                            "pragma_table_xinfo(t.name) AS c WHERE t.type = 'table' AND t.name = ?1 COLLATE ts AND "
                            "t.name NOT LIKE 'sqlite!_%' ESCAPE '!' ORDER BY c.cid");
        query.Bind(1, name);
        while (query.Step())
        {
            table.name = query.Text(0);
            table.columns.push_back({query.Text(1), ParseDeclaration(query.Text(2)), query.Integer(3) == 0,
                                     query.Integer(4) != 0, query.Text(5)});
        }
    }
    if (table.columns.empty())
        return nullptr;
    return &m_tables.emplace(std::string(name), std::move(table)).first->second;
}

std::vector<std::string> Catalog::Names()
{
    std::vector<std::string> names;
    Running query(m_db, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite!_%' ESCAPE '!' "
                        "AND name NOT LIKE 'kvembedded!_%' ESCAPE '!' ORDER BY name COLLATE ts");
    while (query.Step())
        names.push_back(query.Text(0));
    return names;
}

std::string Quoted(std::string_view name)
{
    std::string quoted = "\"";
    for (const char c : name)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted += '"';
}

} // namespace tsql
