// The types of values, statements of SQLite, and the tables of the file.
#include "catalog.h"

#include "errors.h"
#include "token.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tsql
{
namespace
{

// In the order of Type.
constexpr std::string_view types[] = {"bit",  "tinyint", "smallint", "int",      "bigint",   "float",
                                      "char", "varchar", "nchar",    "nvarchar", "datetime", ""};

} // namespace

Type TypeOf(std::string_view type)
{
    const std::string_view name = type.substr(0, type.find('('));
    const auto *const found = std::ranges::find_if(types, [&](std::string_view one) { return SameWord(one, name); });
    return static_cast<Type>(std::min(found, std::end(types) - 1) - types);
}

Kind KindOf(std::string_view type)
{
    const Type of = TypeOf(type);
    return of == Type::None       ? Kind::None
           : of <= Type::BigInt   ? Kind::Number
           : of == Type::Float    ? Kind::Real
           : of <= Type::NVarChar ? Kind::Text
                                  : Kind::Moment;
}

int SizeOf(std::string_view type)
{
    int size = 0;
    if (const std::size_t bracket = type.find('('); bracket != std::string_view::npos)
        std::from_chars(type.data() + bracket + 1, type.data() + type.size(), size);
    return size;
}

std::string_view Larger(std::string_view one, std::string_view other)
{
    return types[static_cast<int>(std::max(TypeOf(one), TypeOf(other)))];
}

Prepared::Prepared(sqlite3 *db, std::string_view sql)
{
    sqlite3_stmt *statement = nullptr;
    if (const int code = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &statement, nullptr))
        RaiseSqlite(db, code);
    m_statement.reset(statement);
    m_atEnd = statement == nullptr;
}

bool Prepared::Step()
{
    if (m_atEnd)
        return false;
    const int code = sqlite3_step(Get());
    m_atEnd = code != SQLITE_ROW && sqlite3_column_count(Get()) > 0; // or rows would come again
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        RaiseSqlite(sqlite3_db_handle(Get()), code, sqlite3_sql(Get()));
    return code == SQLITE_ROW;
}

std::string_view Prepared::Text(int column) const
{
    if (sqlite3_column_type(Get(), column) == SQLITE_FLOAT)
        return sqlite3_snprintf(sizeof m_number, m_number, "%.15g", Number(column));
    const auto *const text = reinterpret_cast<const char *>(sqlite3_column_text(Get(), column));
    return {text, text ? static_cast<std::size_t>(sqlite3_column_bytes(Get(), column)) : 0};
}

const TableColumn *Find(const Table &table, std::string_view name)
{
    const auto found = std::ranges::find_if(table, [&](const TableColumn &one) { return SameWord(one.name, name); });
    return found == table.end() ? nullptr : &*found;
}

// Forgets everything when tables have changed, by whomever. Those of SQLite's and of the driver's own are nobody's
// business.
const Table &Catalog::Find(const std::string &table)
{
    m_askVersion.Step();
    if (std::exchange(m_version, m_askVersion.Integer(0)) != m_askVersion.Integer(0))
        m_tables.clear();
    sqlite3_reset(m_askVersion.Get());
    const auto [place, isNew] = m_tables.try_emplace(table);
    if (!isNew)
        return place->second;
    Prepared columns(m_db, "SELECT name, lower(type), pk FROM pragma_table_info(?1) WHERE ?1 NOT LIKE 'sqlite[_]%' "
                           "AND ?1 NOT LIKE 'pragma[_]%' AND ?1 NOT LIKE 'kvembedded[_]%'");
    sqlite3_bind_text(columns.Get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
    while (columns.Step())
        place->second.push_back({std::string(columns.Text(0)), std::string(columns.Text(1)), columns.Integer(2) > 0});
    return place->second;
}

} // namespace tsql
