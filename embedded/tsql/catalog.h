// The tables of the file, as their columns were declared.
#pragma once

#include "session.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace tsql
{

// The type of a column or of an expression. `size` as in Column.
struct ValueType
{
    Type type = Type::Int;
    int size = 0;
};

bool IsText(Type type);
bool IsInteger(Type type);
std::string_view NameOf(Type type); // as it is declared: "smallint"

// The type that a declaration names, whose length (0: max) is `size`, -1 when none is given. Nothing for types that are
// not supported.
std::optional<ValueType> FindType(std::string_view name, int size);

// The type of a declaration in the file: "varchar(50)".
ValueType DeclaredType(std::string_view declared);

struct TableColumn
{
    std::string name;
    ValueType type;
    bool key = false; // of an index that is unique
};
using Table = std::vector<TableColumn>;

class Catalog
{
public:
    explicit Catalog(sqlite3 *db) : m_db(db) {}

    // Null when there is no such table. Good until the next Refresh.
    const Table *Find(const std::string &table);

    // Forgets what it knows when the tables have changed, by whomever.
    void Refresh();

private:
    sqlite3 *m_db;
    std::map<std::string, Table> m_tables; // by name as it was asked for
    std::string m_schema;                  // SQLite's own count of changes
};

} // namespace tsql
