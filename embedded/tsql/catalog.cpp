// The tables of the file, as their columns were declared.
#include "catalog.h"

#include "prepared.h"
#include "token.h"

#include <algorithm>
#include <charconv>

namespace tsql
{
namespace
{

struct NamedType
{
    std::string_view name;
    Type type;
};
constexpr NamedType types[] = {
    {"bit", Type::Bit},       {"tinyint", Type::TinyInt},   {"smallint", Type::SmallInt}, {"int", Type::Int},
    {"bigint", Type::BigInt}, {"float", Type::Float},       {"char", Type::Char},         {"varchar", Type::VarChar},
    {"nchar", Type::NChar},   {"nvarchar", Type::NVarChar}, {"datetime", Type::DateTime},
};

} // namespace

bool IsText(Type type)
{
    return type >= Type::Char && type <= Type::NVarChar;
}

bool IsInteger(Type type)
{
    return type <= Type::BigInt;
}

std::string_view NameOf(Type type)
{
    return std::ranges::find(types, type, &NamedType::type)->name;
}

std::optional<ValueType> FindType(std::string_view name, int size)
{
    const auto found = std::ranges::find_if(types, [&](const NamedType &type) { return SameWord(type.name, name); });
    if (found == std::end(types) || (size >= 0 && !IsText(found->type)) || size > 8000)
        return std::nullopt;
    return ValueType{found->type, !IsText(found->type) ? 0 : size < 0 ? 1 : size};
}

ValueType DeclaredType(std::string_view declared)
{
    const std::size_t bracket = std::min(declared.find('('), declared.size());
    ValueType type = FindType(declared.substr(0, declared.find_first_of(" (")), -1).value_or(ValueType());
    type.size = 0;
    if (bracket < declared.size())
        std::from_chars(declared.data() + bracket + 1, declared.data() + declared.size(), type.size);
    return type;
}

const Table *Catalog::Find(const std::string &table)
{
    const auto [place, isNew] = m_tables.try_emplace(table);
    if (isNew)
    {
        Prepared columns(
            m_db,
            "SELECT name, type, EXISTS (SELECT * FROM pragma_index_list(?1) AS i, pragma_index_info(i.name) AS c "
            "WHERE i.\"unique\" AND c.name = t.name) FROM pragma_table_info(?1) AS t "
            "WHERE ?1 NOT LIKE 'sqlite[_]%' AND ?1 NOT LIKE 'pragma[_]%'",
            {table});
        while (columns.Step())
        {
            place->second.push_back({columns.Text(0), DeclaredType(columns.Text(1)), columns.Text(2) == "1"});
        }
    }
    return place->second.empty() ? nullptr : &place->second;
}

void Catalog::Refresh()
{
    Prepared version(m_db, "PRAGMA schema_version");
    version.Step();
    if (std::string now = version.Text(0); now != m_schema)
    {
        m_schema = std::move(now);
        m_tables.clear();
    }
}

} // namespace tsql
