// The tables of the open file as the dialect sees them, read from SQLite's own schema and kept until that changes.
#pragma once

#include "statement.h"

#include <map>
#include <optional>
#include <vector>

namespace tsql
{

struct TableColumn
{
    std::string name;
    ValueType type;
    bool nullable = true;
    bool inPrimaryKey = false;
    std::string defaultSql; // in SQLite's language, empty when there is none
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

    // Forgets what is kept when the file's schema has changed since. To be called before each statement.
    void Refresh();

    // Null when there is no such table. Good until the next Refresh.
    const Table *Find(std::string_view name);

    std::vector<std::string> Names();

    // "table.index" as SQLite has it; empty when there is none.
    std::string FindIndex(const std::string &name);

    // Throws the server's error for the constraint that has just stopped a statement. `code` is SQLite's extended
    // result code, `verb` INSERT or UPDATE.
    [[noreturn]] void RaiseConstraint(int code, const char *verb);

private:
    sqlite3 *m_db;
    std::optional<Running> m_versionQuery;
    std::int64_t m_version = -1;
    std::map<std::string, Table, std::less<>> m_tables; // by the name as it was asked for
};

// "name", for SQLite; with single quotes a text.
std::string Quoted(std::string_view name, char quote = '"');

} // namespace tsql
