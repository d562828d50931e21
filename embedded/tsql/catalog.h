// The types of values, statements of SQLite, and the tables of the file.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tsql
{

enum class Type : std::uint8_t
{
    Bit,
    TinyInt,
    SmallInt,
    Int,
    BigInt,
    Float,
    Char,
    VarChar,
    NChar,
    NVarChar,
    DateTime,
    None // of NULL, and of what is not known; no column of a result has it
};

enum class Kind : std::uint8_t
{
    None,
    Number, // an integer
    Real,
    Text,
    Moment
};

// A type is named as it is declared: "smallint", "varchar(50)"; a text without a length is a long one, or its length is
// not known. None is the empty name.
Type TypeOf(std::string_view type); // None also for another name
Kind KindOf(std::string_view type);
int SizeOf(std::string_view type);                                     // of a text
std::string_view Larger(std::string_view one, std::string_view other); // of one kind, without a length

// What a column of a result is. A text of unknown length, or a long one, has the size 0.
struct Column
{
    std::string name; // UTF-8; empty for an unnamed expression
    Type type = Type::Int;
    int size = 0; // characters for texts, else 0
};

// A prepared statement of SQLite. Values are those of the row Step went to, columns are counted from 0.
class Prepared
{
public:
    Prepared() = default; // without rows
    Prepared(sqlite3 *db, std::string_view sql);

    sqlite3_stmt *Get() const { return m_statement.get(); }

    // Goes to the next row. False at the end. Throws SqlError when the row cannot be made (conversion, overflow).
    bool Step();

    bool IsNull(int column) const { return sqlite3_column_type(Get(), column) == SQLITE_NULL; }
    std::int64_t Integer(int column) const { return sqlite3_column_int64(Get(), column); } // Bit to BigInt
    double Number(int column) const { return sqlite3_column_double(Get(), column); }       // Float
    // UTF-8, any type: the server's conversion to text; empty for NULL. Good until the next Step or Text.
    std::string_view Text(int column) const;

private:
    std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> m_statement{nullptr, sqlite3_finalize};
    bool m_atEnd = true;
    mutable char m_number[32]; // what Text gave of a float
};

struct TableColumn
{
    std::string name;
    std::string type;
    bool key = false; // of the primary key
};
using Table = std::vector<TableColumn>;
const TableColumn *Find(const Table &table, std::string_view name); // null when it has none of that name

class Catalog
{
public:
    explicit Catalog(sqlite3 *db) : m_db(db), m_askVersion(db, "PRAGMA schema_version") {}

    const Table &Find(const std::string &table); // empty when there is none; good until the next call

private:
    sqlite3 *m_db;
    Prepared m_askVersion; // SQLite's own count of changes
    std::int64_t m_version = -1;
    std::map<std::string, Table> m_tables; // by name as it was asked for
};

} // namespace tsql
