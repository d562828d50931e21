// The tables of the open file, read from SQLite's own schema and kept until that changes.
#include "catalog.h"

#include "errors.h"
#include "text.h"

#include <sqlite3.h>

#include <algorithm>

namespace tsql
{
namespace
{

// The tables that are shown.
#define OWN_TABLES                                                                                                     \
    "t.type = 'table' AND t.name NOT LIKE 'sqlite!_%' ESCAPE '!' AND t.name NOT LIKE 'kvembedded!_%' ESCAPE '!'"

} // namespace

const char *const Catalog::schemaColumnsQuery =
    "(SELECT t.name COLLATE ts AS TABLE_NAME, c.name COLLATE ts AS COLUMN_NAME, c.cid + 1 AS ORDINAL_POSITION, "
    "CASE c.\"notnull\" WHEN 0 THEN 'YES' ELSE 'NO' END COLLATE ts AS IS_NULLABLE, "
    "substr(c.type, 1, instr(c.type || '(', '(') - 1) COLLATE ts AS DATA_TYPE, "
    "CASE WHEN c.type LIKE '%char(%' THEN CAST(substr(c.type, instr(c.type, '(') + 1) AS integer) "
    "WHEN c.type LIKE '%char' THEN -1 END AS CHARACTER_MAXIMUM_LENGTH "
    "FROM sqlite_schema AS t, pragma_table_xinfo(t.name) AS c WHERE " OWN_TABLES ")";

const Table &Catalog::SchemaColumns()
{
    constexpr ValueType name{Type::NVarChar, 128};
    static const Table table{"COLUMNS",
                             {{"TABLE_NAME", name},
                              {"COLUMN_NAME", name},
                              {"ORDINAL_POSITION", {Type::Int}},
                              {"IS_NULLABLE", {Type::VarChar, 3}},
                              {"DATA_TYPE", name},
                              {"CHARACTER_MAXIMUM_LENGTH", {Type::Int}}}};
    return table;
}

int Table::Find(std::string_view column) const
{
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const TableColumn &candidate) { return Compare(candidate.name, column) == 0; });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

std::int64_t Catalog::Version()
{
    if (!m_versionQuery)
        m_versionQuery.emplace(m_db, "PRAGMA schema_version");
    m_versionQuery->Reset(); // of one that has failed
    m_versionQuery->Step();
    const std::int64_t version = m_versionQuery->Integer(0);
    m_versionQuery->Reset();
    if (version != m_version)
        m_tables.clear();
    return m_version = version;
}

const Table *Catalog::Find(std::string_view name)
{
    const auto known = m_tables.find(name);
    if (known != m_tables.end())
        return &known->second;
    Table table;
    Prepared query(
        m_db,
        "SELECT t.name, c.name, c.type, c.\"notnull\", c.pk, EXISTS (SELECT 1 FROM pragma_index_list(t.name) "
        "AS l, pragma_index_info(l.name) AS i WHERE l.\"unique\" AND i.cid = c.cid) FROM sqlite_schema AS t, "
        "pragma_table_xinfo(t.name) AS c WHERE t.name = ?1 COLLATE ts AND " OWN_TABLES " ORDER BY c.cid",
        {name});
    while (query.Step())
    {
        table.name = query.Text(0);
        table.columns.push_back({query.Text(1), ParseDeclaration(query.Text(2)), query.Integer(3) == 0,
                                 query.Integer(4) != 0, query.Integer(5) != 0});
    }
    return table.columns.empty() ? nullptr : &m_tables.emplace(std::string(name), std::move(table)).first->second;
}

std::vector<std::string> Catalog::Names()
{
    std::vector<std::string> names;
    Prepared query(m_db, "SELECT name FROM sqlite_schema AS t WHERE " OWN_TABLES " ORDER BY name COLLATE ts");
    while (query.Step())
        names.push_back(query.Text(0));
    return names;
}

// SQLite's message names "table.column, table.column"; which key these are tell its pragmas.
void Catalog::RaiseConstraint(int code, const char *verb)
{
    const std::string message = sqlite3_errmsg(m_db);
    const std::string columns = message.substr(std::min(message.find(": ") + 2, message.size()));
    const std::string table = columns.substr(0, columns.find('.'));
    if (code == SQLITE_CONSTRAINT_NOTNULL)
        Raise(515, {std::string_view(columns).substr(table.size() + 1), "dbo." + table, verb});
    Prepared keys(m_db,
                  "SELECT l.origin, l.name FROM pragma_index_list(?1) AS l WHERE l.\"unique\" AND (SELECT "
                  "group_concat(?1 || '.' || i.name, ', ') FROM pragma_index_info(l.name) AS i) = ?2",
                  {table, columns});
    if (!keys.Step())
        Unsupported("'" + message + "'");
    if (keys.Text(0) == "pk")
        Raise(2627, {"PRIMARY KEY", "PK_" + table, table});
    Raise(2601, {table, keys.Text(1).substr(table.size() + 1)}); // an index is named table.index
}

} // namespace tsql
