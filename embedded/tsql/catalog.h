// The tables of the open file, read from SQLite's own schema and kept until that changes.
#pragma once

#include "prepared.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tsql
{

struct TableColumn
{
    std::string name;
    ValueType type;
    bool nullable = true;
    bool inPrimaryKey = false;
    bool unique = false; // part of a key or unique index
};

struct Table
{
    std::string name;
    std::vector<TableColumn> columns;

    // The place of a column, names compared without regard to case; -1 when there is none.
    int Find(std::string_view name) const;
};

// Tables whose names begin with "kvembedded_" belong to the program itself and are not shown.
class Catalog
{
public:
    explicit Catalog(sqlite3 *db) : m_db(db) {}

    // A number that changes with the schema; forgets what is kept when it has.
    std::int64_t Version();

    // Null when there is no such table. Good until the next call of Version.
    const Table *Find(std::string_view name);

    std::vector<std::string> Names();

    // Throws the server's error for the constraint that has just stopped a statement. `code` is SQLite's extended
    // result code, `verb` INSERT or UPDATE.
    [[noreturn]] void RaiseConstraint(int code, const char *verb);

    // INFORMATION_SCHEMA.COLUMNS: its columns, and the query that gives its rows.
    static const Table &SchemaColumns();
    static const char *const schemaColumnsQuery;

private:
    sqlite3 *m_db;
    std::optional<Prepared> m_versionQuery;
    std::int64_t m_version = -1;
    std::map<std::string, Table, std::less<>> m_tables; // by the name as it was asked for
};

} // namespace tsql
