// Queries: SELECT in all its places.
#include "reader.h"

#include <algorithm>
#include <utility>

namespace tsql
{
namespace
{

// A view of the server's own, of which the columns that tell the widths of tables are known.
constexpr std::string_view columnsView =
    "(SELECT m.name COLLATE ts AS TABLE_NAME, p.name COLLATE ts AS COLUMN_NAME, "
    "substr(p.type, 1, instr(p.type || '(', '(') - 1) COLLATE ts AS DATA_TYPE, "
    "CASE WHEN p.type LIKE '%char(%' THEN CAST(substr(p.type, instr(p.type, '(') + 1) AS INTEGER) "
    "WHEN p.type LIKE '%char' THEN -1 END AS CHARACTER_MAXIMUM_LENGTH "
    "FROM sqlite_schema AS m, pragma_table_info(m.name) AS p WHERE m.type = 'table' AND m.name NOT LIKE "
    "'kvembedded[_]%')";

bool Contains(const std::vector<std::string> &list, const std::string &one)
{
    return std::ranges::find(list, one) != list.end();
}

} // namespace

// SELECT ... [UNION ALL SELECT ...]
Reader::Query Reader::ReadQuery(Use use, const Table *targets)
{
    const Place first = m_at;
    if (m_scope && m_scope->closed)
        Refuse(first);
    Query query = ReadSelect(use, targets, nullptr);
    while (Accept("UNION"))
    {
        const bool all = Accept("ALL");
        const Query next = ReadSelect(use, targets, &query);
        query.sql += " UNION ALL " + next.sql;
        if (!all || use == Use::Value || !query.variables.empty() || !next.variables.empty() ||
            (!m_checking && query.items.size() != next.items.size()))
            Refuse(first);
        for (std::size_t i = 0; i < query.items.size() && !m_checking; ++i)
            Common(query.items[i].type, next.items[i], first);
    }
    const bool single = use == Use::Value || use == Use::List;
    const std::size_t wanted = targets ? targets->size() : single ? 1 : query.items.size();
    const bool mixed = !query.variables.empty() && (query.variables.size() != query.items.size() || use != Use::Rows);
    if (mixed || (query.items.size() != wanted && !m_checking))
        Refuse(first);
    return query;
}

// One SELECT, with ORDER BY behind the last one. `first`: of a UNION, when this is another one.
Reader::Query Reader::ReadSelect(Use use, const Table *targets, const Query *first)
{
    Scope scope{m_scope};
    m_scope = &scope;
    Query query;
    Expect("SELECT");
    query.listed = Accept("DISTINCT");
    const std::string select = query.listed ? "SELECT DISTINCT " : "SELECT ";
    // The types of columns come from what stands behind the list.
    const Place list = m_at;
    const Place listEnd = m_at = ListEnd();
    std::string rest = From();
    const Place behind = std::exchange(m_at, list);
    scope.columns.clear();
    scope.aggregates = true;
    do
        ReadItem(query, targets);
    while (Accept(","));
    if (m_at != listEnd)
        Refuse(m_at);
    scope.aggregates = false;
    m_at = behind;
    rest += Where();
    rest += GroupBy(query);
    const bool single = use == Use::Value && !scope.aggregated; // one row at most; SQLite would take the first
    for (const Value &item : query.items)
    {
        const std::string sql = Collated(item.sql, item.type, item.column);
        query.sql += Comma(query.sql) + (single ? "CASE WHEN ts_one(count(*)) THEN max(" + sql + ") END" : sql);
        if (use == Use::Table && !item.name.empty())
            query.sql += " AS " + Quoted(item.name);
    }
    query.sql = select + query.sql + rest;
    if (Is("ORDER") && use != Use::Rows)
        Refuse(m_at);
    if (Accept("ORDER"))
        query.sql += OrderBy(first ? *first : query, first != nullptr);
    m_scope = scope.outer;
    return query;
}

// FROM source [, source | [INNER | LEFT [OUTER]] JOIN source ON condition] ...
std::string Reader::From()
{
    if (!Accept("FROM"))
        return "";
    std::string sql = " FROM " + ReadSource();
    for (;;)
    {
        if (Accept(","))
        {
            sql += ", " + ReadSource();
            continue;
        }
        const bool left = Accept("LEFT");
        if (!Accept(left ? "OUTER" : "INNER") && !left && !Is("JOIN"))
            return sql;
        Expect("JOIN");
        sql += (left ? " LEFT JOIN " : " JOIN ") + ReadSource();
        Expect("ON");
        sql += " ON " + Condition().sql;
    }
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
    const Place first = m_at;
    if (Is("*") && !targets)
    {
        ++m_at;
        for (const Source &source : m_scope->sources)
            for (const TableColumn &column : source.columns)
            {
                const std::string sql = Quoted(source.name) + "." + Quoted(column.name);
                query.items.push_back({sql, column.type, false, true, column.name, {sql}});
            }
        if (query.items.empty() && !m_checking)
            Refuse(first);
        return query.items.empty() ? query.items.push_back({"NULL"}) : void();
    }
    const bool assigned = Is("=", 1);
    const bool variable = assigned && m_tokens[m_at].kind == TokenKind::Variable;
    if (variable)
        query.variables.push_back(Literal().sql);
    std::string name = assigned && !variable ? TakeName() : "";
    m_at += assigned ? 1 : 0;
    Value item = Operand();
    if (targets && query.items.size() < targets->size())
        item = Assigned((*targets)[query.items.size()], item, first);
    if (variable)
        item = Converted(item, m_variables.at(query.variables.back()).type, first);
    else if (!assigned && (Accept("AS") || m_tokens[m_at].IsName()))
        name = TakeName();
    else if (!assigned && item.column)
        name = Unquoted(m_tokens[m_at - 1]);
    item.name = name;
    item.columns = std::exchange(m_scope->columns, {});
    query.items.push_back(std::move(item));
}

// A table, or a query in brackets, which sees nothing of what stands beside it; with another name or without.
std::string Reader::ReadSource()
{
    const Place first = m_at;
    std::string sql;
    std::string name;
    Source source;
    if (Accept("("))
    {
        Scope *const scope = std::exchange(m_scope, m_scope->outer);
        const Query query = ReadQuery(Use::Table);
        m_scope = scope;
        Expect(")");
        sql = "(" + query.sql + ")";
        for (const Value &item : query.items)
            source.columns.push_back({item.name, item.type});
    }
    else if (SameWord(m_tokens[m_at].text, "INFORMATION_SCHEMA") && SameWord(m_tokens[m_at + 2].text, "COLUMNS"))
    {
        m_at += 3;
        sql = columnsView;
        name = "COLUMNS";
        for (const char *const column : {"TABLE_NAME", "COLUMN_NAME", "DATA_TYPE"})
            source.columns.push_back({column, "nvarchar(128)"});
        source.columns.push_back({"CHARACTER_MAXIMUM_LENGTH", "int"});
    }
    else
    {
        source.columns = TakeTable(name);
        sql = Quoted(name);
    }
    if (Accept("AS") || name.empty() || m_tokens[m_at].IsName())
        name = TakeName();
    source.name = Small(name);
    if (std::ranges::find(m_scope->sources, source.name, &Source::name) != m_scope->sources.end())
        Refuse(first);
    m_scope->sources.push_back(std::move(source));
    return sql + " AS " + Quoted(Small(name));
}

// GROUP BY and HAVING. Beside aggregates and groups, SQLite takes a column from any row.
std::string Reader::GroupBy(Query &query)
{
    std::string sql;
    std::vector<std::string> groups;
    const Place first = m_at;
    m_scope->columns.clear();
    while (groups.empty() ? Accept("GROUP") : Accept(","))
    {
        if (groups.empty())
            Expect("BY");
        const Value value = Operand();
        if (std::exchange(m_scope->columns, {}).empty()) // SQLite takes a number for a place in the list
            Refuse(first);
        sql += (groups.empty() ? " GROUP BY " : ", ") + Collated(value.sql, value.type, value.column);
        groups.push_back(value.sql);
    }
    m_scope->aggregates = !groups.empty();
    if (m_scope->aggregates && Accept("HAVING"))
        sql += " HAVING " + Condition().sql;
    m_scope->aggregates = false;
    std::vector<std::string> used = std::exchange(m_scope->columns, {});
    for (const Value &item : query.items)
        if (!Contains(groups, item.sql))
            used.insert(used.end(), item.columns.begin(), item.columns.end());
    const bool grouped = m_scope->aggregated || !groups.empty();
    if (grouped && !m_checking && !std::ranges::all_of(used, [&](auto &one) { return Contains(groups, one); }))
        Refuse(first - 1);
    query.listed = query.listed || grouped;
    return sql;
}

// Names of items and places in the list, as which SQLite is told them, and columns.
std::string Reader::OrderBy(const Query &query, bool compound)
{
    Expect("BY");
    std::string sql;
    do
    {
        const Token &token = m_tokens[m_at];
        const bool name = token.IsName() && !Is(".", 1);
        const bool place = token.kind == TokenKind::Integer;
        std::string key(token.text);
        const auto same = [&](const Value &item) { return name && SameWord(item.name, Unquoted(token)); };
        auto found = std::ranges::find_if(query.items, same);
        if (std::ranges::count_if(query.items, same) > 1 || (compound && !name && !place))
            Refuse(m_at);
        if (place || found != query.items.end())
            ++m_at;
        else
        {
            key = ColumnValue().sql;
            found = std::ranges::find(query.items, key, &Value::sql);
            if (found == query.items.end() && (compound || query.listed) && !m_checking)
                Refuse(m_at - 1);
        }
        if (!place && found != query.items.end())
            key = std::to_string(found - query.items.begin() + 1);
        sql += (sql.empty() ? " ORDER BY " : ", ") + key + (Accept("DESC") ? " DESC" : "");
        Accept("ASC");
    } while (Accept(","));
    return sql;
}

} // namespace tsql
