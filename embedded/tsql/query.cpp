// Queries: SELECT in all its places.
#include "reader.h"

#include "errors.h"

#include <algorithm>
#include <utility>

namespace tsql
{
namespace
{

// A view of the server's own, of which the columns that tell the widths of tables are known.
constexpr const char *columnsView =
    "(SELECT m.name COLLATE ts AS TABLE_NAME, p.name COLLATE ts AS COLUMN_NAME, "
    "substr(p.type, 1, instr(p.type || '(', '(') - 1) COLLATE ts AS DATA_TYPE, "
    "CASE WHEN p.type LIKE '%char(%' THEN CAST(substr(p.type, instr(p.type, '(') + 1) AS INTEGER) "
    "WHEN p.type LIKE '%char' THEN -1 END AS CHARACTER_MAXIMUM_LENGTH "
    "FROM sqlite_schema AS m, pragma_table_info(m.name) AS p WHERE m.type = 'table' AND m.name NOT LIKE "
    "'kvembedded[_]%')";

} // namespace

// SELECT ... [UNION ALL SELECT ...]
Reader::Query Reader::ReadQuery(Use use, const Table *targets)
{
    Require(!m_scope || !m_scope->closed);
    Query query = ReadSelect(use, targets, nullptr);
    while (Accept("UNION"))
    {
        Expect("ALL");
        const Query next = ReadSelect(use, targets, &query);
        query.sql += " UNION ALL " + next.sql;
        Support(use != Use::Value && query.variables.empty() && next.variables.empty());
        for (std::size_t i = 0; i < std::min(query.items.size(), next.items.size()); ++i)
            Common(query.items[i].type, next.items[i]);
    }
    const std::size_t variables = query.variables.size();
    Support(variables == 0 || (variables == query.items.size() && use == Use::Rows));
    return query;
}

// One SELECT, with ORDER BY behind the last one. `first`: of a UNION, when this is another one.
Reader::Query Reader::ReadSelect(Use use, const Table *targets, const Query *first)
{
    Scope scope{m_scope};
    m_scope = &scope;
    Query query;
    Expect("SELECT");
    const bool distinct = Accept("DISTINCT");
    // The types of columns come from what stands behind the list.
    const Place list = m_at;
    const Place listEnd = m_at = ListEnd();
    std::string rest = From();
    rest += Where();
    rest += GroupBy();
    const Place behind = std::exchange(m_at, list);
    do
        ReadItem(query, targets);
    while (Accept(","));
    Require(m_at == listEnd);
    m_at = behind;
    // Beside aggregates and groups, SQLite takes a column from any row, and of several rows that are one value the
    // first.
    const bool grouped = !scope.groups.empty();
    Support(!m_catalog || scope.loose == 0 || (!grouped && !scope.aggregated));
    Support(use != Use::Value || (!grouped && !distinct));
    for (const Value &item : query.items)
    {
        const bool single = use == Use::Value && !scope.aggregated;
        query.sql += query.sql.empty() ? (distinct ? "SELECT DISTINCT " : "SELECT ") : ", ";
        query.sql += single ? "CASE WHEN ts_one(count(*)) THEN max(" + item.Collated() + ") END" : item.Collated();
        if (use == Use::Table && !item.name.empty())
            query.sql += " AS " + Quoted(item.name);
    }
    query.sql += rest;
    if (use == Use::Rows && Accept("ORDER"))
        query.sql += OrderBy(first ? *first : query, first != nullptr, distinct || grouped || scope.aggregated);
    m_scope = scope.outer;
    return query;
}

// FROM source, source ... or FROM source [INNER | LEFT [OUTER]] JOIN source ON condition ...
std::string Reader::From()
{
    if (!Accept("FROM"))
        return "";
    std::string sql = " FROM " + ReadSource();
    if (Is(","))
        while (Accept(","))
            sql += ", " + ReadSource();
    else
        while (Is("JOIN") || Is("INNER") || Is("LEFT"))
        {
            const bool left = Accept("LEFT");
            Accept(left ? "OUTER" : "INNER");
            Expect("JOIN");
            sql += (left ? " LEFT JOIN " : " JOIN ") + ReadSource();
            Expect("ON");
            sql += " ON " + Condition().sql;
        }
    return sql;
}

// The first word that no list has, outside of brackets and CASE.
Reader::Place Reader::ListEnd() const
{
    int depth = 0;
    for (Place at = m_at;; ++at)
    {
        const Token &token = m_tokens[at];
        const bool inList = token.kind != TokenKind::Keyword || token.Is("AS") || token.Is("NULL") || token.Is("END");
        depth += token.Is("(") || token.Is("CASE") ? 1 : token.Is(")") || token.Is("END") ? -1 : 0;
        if (token.kind == TokenKind::End || depth < 0 || (depth == 0 && (token.Is(";") || !inList)))
            return at;
    }
}

// *, [name =] value, @variable = value, value [AS] [name]
void Reader::ReadItem(Query &query, const Table *targets)
{
    if (Is("*") && !targets)
    {
        for (const Source &source : m_scope->sources)
            for (const TableColumn &column : source.columns)
            {
                const std::string sql = Quoted(source.name) + "." + Quoted(column.name);
                m_scope->loose += std::ranges::count(m_scope->groups, sql) == 0 ? 1 : 0;
                query.items.push_back({sql, column.type, column.name});
            }
        ++m_at;
        Support(!m_catalog || !query.items.empty());
        return query.items.empty() ? query.items.push_back({"NULL"}) : void();
    }
    const bool assigned = Is("=", 1);
    const bool variable = assigned && m_tokens[m_at].kind == TokenKind::Variable;
    if (variable)
        query.variables.push_back(Literal().sql);
    const std::string name = assigned && !variable ? TakeName() : "";
    m_at += assigned ? 1 : 0;
    Value item = Operand();
    if (targets && query.items.size() < targets->size())
        item = Assigned((*targets)[query.items.size()], item);
    if (variable)
        item = Converted(item, m_variables.at(query.variables.back()).type);
    else if (assigned || Accept("AS") || m_tokens[m_at].IsName())
        item.name = assigned ? name : TakeName();
    query.items.push_back(std::move(item));
}

// A table, or a query in brackets, which sees nothing of what stands beside it; with another name or without.
std::string Reader::ReadSource()
{
    Source source;
    if (Accept("("))
    {
        Scope *const scope = std::exchange(m_scope, m_scope->outer);
        const Query query = ReadQuery(Use::Table);
        m_scope = scope;
        Expect(")");
        source.sql = "(" + query.sql + ")";
        for (const Value &item : query.items)
        {
            Support(!m_catalog || (!item.name.empty() && !Find(source.columns, item.name)));
            source.columns.push_back({item.name, item.type});
        }
    }
    else
        source = TakeTable();
    if (Accept("AS") || source.name.empty() || m_tokens[m_at].IsName())
        source.name = Small(TakeName());
    Support(std::ranges::count(m_scope->sources, source.name, &Source::name) == 0);
    m_scope->sources.push_back(source);
    return source.sql + " AS " + Quoted(source.name);
}

// [dbo.]name or INFORMATION_SCHEMA.COLUMNS
Reader::Source Reader::TakeTable()
{
    std::string name = TakeName();
    const std::string owner = Accept(".") ? std::exchange(name, TakeName()) : "dbo";
    if (SameWord(owner, "INFORMATION_SCHEMA") && SameWord(name, "COLUMNS"))
        return {"columns",
                columnsView,
                {{"TABLE_NAME", "nvarchar(128)"},
                 {"COLUMN_NAME", "nvarchar(128)"},
                 {"DATA_TYPE", "nvarchar(128)"},
                 {"CHARACTER_MAXIMUM_LENGTH", "int"}}};
    const bool known = m_catalog && SameWord(owner, "dbo");
    const Source source{Small(name), Quoted(name), known ? m_catalog->Find(name) : Table()};
    if (m_catalog && source.columns.empty())
        Raise(208, {name});
    return source;
}

// GROUP BY and HAVING
std::string Reader::GroupBy()
{
    m_scope->loose = 0;
    if (!Accept("GROUP"))
        return "";
    Expect("BY");
    const auto group = [&]
    {
        m_scope->loose = 0;
        const Value value = Operand();
        Support(!m_catalog || m_scope->loose > 0); // SQLite takes a number for a place in the list
        m_scope->groups.push_back(value.sql);
        return value.Collated();
    };
    const std::string sql = " GROUP BY " + Listed(group);
    m_scope->loose = 0;
    return Accept("HAVING") ? sql + " HAVING " + Condition().sql : sql;
}

// Names of items, as whose places in the list SQLite is told them, and columns.
std::string Reader::OrderBy(const Query &query, bool compound, bool listed)
{
    Expect("BY");
    std::vector<std::string> keys;
    const auto next = [&]
    {
        const std::string name = m_tokens[m_at].IsName() && !Is(".", 1) ? Unquoted(m_tokens[m_at]) : ".";
        const auto same = [&](const Value &item) { return SameWord(item.name, name); };
        auto found = std::ranges::find_if(query.items, same);
        const bool named = found != query.items.end();
        std::string key = named ? TakeName() : ColumnValue().sql;
        if (!named)
            found = std::ranges::find(query.items, key, &Value::sql);
        const bool inList = found != query.items.end();
        if (inList)
            key = std::to_string(found - query.items.begin() + 1);
        const bool twice = std::ranges::count_if(query.items, same) > 1 || std::ranges::count(keys, key) > 0;
        Support(!m_catalog || (!twice && (named || (!compound && (inList || !listed)))));
        keys.push_back(key);
        const bool down = !Accept("ASC") && Accept("DESC");
        return key + (down ? " DESC" : "");
    };
    return " ORDER BY " + Listed(next);
}

} // namespace tsql
