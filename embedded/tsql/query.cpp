// Reading queries: the clauses in the order in which they give meaning to one another.
#include "errors.h"
#include "rewrite.h"
#include "text.h"

#include <algorithm>

namespace tsql
{

// Where the clauses of a SELECT begin, 0 for one that is not there.
struct Rewriter::Clauses
{
    std::size_t from = 0;
    std::size_t where = 0;
    std::size_t group = 0;
    std::size_t having = 0;
    std::size_t end = 0;

    // The end of the clause that begins at `clause`, or of the select list.
    std::size_t EndOf(std::size_t clause) const
    {
        for (const std::size_t next : {from, where, group, having})
            if (next > clause)
                return next;
        return end;
    }
};

Rewriter::Clauses Rewriter::FindClauses() const
{
    constexpr std::string_view ends[] = {")",      ";",       "UNION", "ORDER",  "SELECT", "INSERT",
                                         "UPDATE", "DELETE",  "SET",   "CREATE", "DROP",   "IF",
                                         "ELSE",   "DECLARE", "PRINT", "BEGIN",  "COMMIT", "ROLLBACK"};
    Clauses clauses;
    int depth = 0;
    std::size_t at = m_at;
    for (; m_tokens[at].kind != TokenKind::End; ++at)
    {
        const Token &token = m_tokens[at];
        const bool closes = token.Is(")") || token.Is("END");
        if (depth == 0 && (closes || std::any_of(std::begin(ends), std::end(ends),
                                                 [&](std::string_view word) { return token.Is(word); })))
            break;
        depth += closes ? -1 : token.Is("(") || token.Is("CASE") ? 1 : 0;
        for (const auto &[word, place] : {std::pair{"FROM", &clauses.from}, std::pair{"WHERE", &clauses.where},
                                          std::pair{"GROUP", &clauses.group}, std::pair{"HAVING", &clauses.having}})
            if (depth == 0 && *place == 0 && token.Is(word))
                *place = at;
    }
    clauses.end = at;
    return clauses;
}

Rewriter::Query Rewriter::ReadQuery(bool outermost)
{
    const bool inAggregate = std::exchange(m_inAggregate, false);
    const int aggregates = std::exchange(m_aggregates, 0);
    const std::size_t used = m_used.size();
    m_subqueries += outermost ? 0 : 1;
    Query query{.first = m_at};
    ReadSelect(query);
    bool isUnion = false;
    for (; Accept("UNION"); isUnion = query.special = true)
    {
        Accept("ALL");
        CheckGroups(query);
        Query next{.first = m_at};
        ReadSelect(next);
        CheckGroups(next);
        const auto star = [](const Item &item) { return item.star; };
        if (query.items.size() != next.items.size() || std::any_of(query.items.begin(), query.items.end(), star) ||
            std::any_of(next.items.begin(), next.items.end(), star) || !query.limit.empty() || !next.limit.empty())
            Unsupported("Line " + LineOf(next.first) + ": such a UNION");
        for (std::size_t i = 0; i < query.items.size(); ++i)
            Mix(query.items[i].value, next.items[i].value);
    }
    if (Is("ORDER") && (outermost || !query.limit.empty()))
        OrderBy(query, isUnion);
    if (!isUnion)
        CheckGroups(query); // with its ORDER BY
    query.last = m_at - 1;
    m_pieces[query.last].after += query.limit;
    m_inAggregate = inAggregate;
    m_aggregates = aggregates;
    m_used.resize(used);
    return query;
}

void Rewriter::ReadSelect(Query &query)
{
    Expect("SELECT");
    query.distinct = Accept("DISTINCT");
    if (!query.distinct)
        Accept("ALL");
    if (const std::size_t top = m_at; Accept("TOP"))
    {
        const bool parentheses = Accept("(");
        query.limit = " LIMIT " + std::to_string(ReadNumber());
        if (parentheses)
            Expect(")");
        Blank(top, m_at);
    }
    const std::size_t list = m_at;
    const Clauses clauses = FindClauses();
    const auto enter = [&](std::size_t clause) { m_at = clause + 1; };
    const auto leave = [&](std::size_t clause)
    {
        if (m_at != clauses.EndOf(clause))
            Refuse();
    };
    const int aggregates = std::exchange(m_aggregates, 0);
    const int outer = std::exchange(m_query, ++m_queries);
    if (clauses.from > 0)
    {
        enter(clauses.from);
        FromClause();
        leave(clauses.from);
    }
    if (clauses.where > 0)
    {
        enter(clauses.where);
        Condition();
        leave(clauses.where);
    }
    query.used = m_used.size();
    const int subqueries = m_subqueries;
    if (clauses.group > 0)
    {
        enter(clauses.group);
        Expect("BY");
        do
        {
            query.groups.push_back(ReadValue());
            if (query.groups.back().literal) // SQLite takes it for a position
                Refuse(m_at - 1);
        } while (Accept(","));
        leave(clauses.group);
    }
    m_at = list;
    do
        ReadItem(query);
    while (Accept(","));
    leave(list);
    if (clauses.having > 0)
    {
        enter(clauses.having);
        Condition();
        leave(clauses.having);
    }
    query.grouped = clauses.group > 0 || clauses.having > 0 || m_aggregates > 0;
    query.single = clauses.group == 0 && (clauses.from == 0 || m_aggregates > 0);
    query.special = query.distinct || clauses.group > 0 || !query.limit.empty();
    if (query.grouped && m_subqueries > subqueries)
        Unsupported("Line " + LineOf(list) + ": a query inside the select list of one that groups");
    m_aggregates = aggregates;
    m_query = outer;
    m_at = clauses.end;
}

// *, t.*, alias = value, @variable = value, value [[AS] alias]
void Rewriter::ReadItem(Query &query)
{
    Item &item = query.items.emplace_back();
    const bool qualified = Current().IsName() && m_tokens[m_at + 1].Is(".") && m_tokens[m_at + 2].Is("*");
    if (qualified || Is("*"))
    {
        m_at += qualified ? 3 : 1;
        item.star = true;
        return;
    }
    const std::size_t first = m_at;
    const bool assigned = Current().kind != TokenKind::End && m_tokens[m_at + 1].Is("=");
    const bool isVariable = assigned && Current().kind == TokenKind::Variable;
    const bool isAlias = assigned && Current().IsName();
    if (isVariable || isAlias)
    {
        Blank(m_at, m_at + 2);
        m_at += 2;
    }
    item.value = ReadValue();
    item.name = item.value.name.name;
    if (item.value.type.IsText() && !item.value.column)
        Collate(item.value);
    if (isVariable)
    {
        Convert(item.value, Find(m_tokens[first].text).type, Conversion::Cast);
        query.variables.push_back(std::string(m_tokens[first].text));
    }
    else if (isAlias)
    {
        item.name = Unquoted(m_tokens[first]);
        m_pieces[item.value.last].after += " AS " + Quoted(item.name);
    }
    else if (Accept("AS") || Current().IsName() || Current().IsText()) // of which a text is refused
        item.name = Unquoted(m_tokens[TakeName()]);
}

void Rewriter::FromClause()
{
    Source();
    bool comma = false;
    for (bool joins = false;;)
    {
        if (Accept(","))
        {
            comma = true;
            Source();
        }
        else
        {
            const bool outer = Accept("LEFT") || Accept("RIGHT") || Accept("FULL");
            if (outer)
                Accept("OUTER");
            const bool cross = !outer && Accept("CROSS");
            if (!outer && !cross)
                Accept("INNER");
            if (!Accept("JOIN"))
                return;
            joins = true;
            Source();
            if (!cross)
            {
                Expect("ON");
                Condition();
            }
        }
        if (joins && comma) // SQLite joins from left to right, the server the joins first
            Unsupported("Line " + LineOf(m_at) + ": JOIN beside commas");
    }
}

// table [[AS] alias], (SELECT ...) [AS] alias
void Rewriter::Source()
{
    if (Is("("))
        return Derived();
    std::size_t first = m_at;
    while (m_tokens[first].IsName() && m_tokens[first + 1].Is("."))
        first += m_tokens[first + 2].Is(".") ? 3U : 2U;
    const bool schema = first > m_at && tsql::Compare(Unquoted(m_tokens[m_at]), "INFORMATION_SCHEMA") == 0;
    const std::string name = TableName();
    const bool as = Accept("AS");
    const bool aliased = as || Current().IsName();
    const std::string alias = aliased ? Unquoted(m_tokens[TakeName()]) : name;
    CheckAlias(alias);
    if (!schema || tsql::Compare(name, "COLUMNS") != 0)
    {
        AddTable(name, alias);
        return;
    }
    Replace(first, Catalog::schemaColumnsQuery);
    m_pieces[first].after = aliased ? "" : " AS COLUMNS";
    for (const TableColumn &column : Catalog::SchemaColumns().columns)
        m_columns.push_back({alias, column.name, column.type, m_query});
}

// SQLite takes two sources of one name.
void Rewriter::CheckAlias(const std::string &alias) const
{
    for (const Known &column : m_columns)
        if (column.query == m_query && tsql::Compare(column.qualifier, alias) == 0)
            Unsupported("Line " + LineOf(m_at) + ": two sources '" + alias + "'");
}

void Rewriter::Derived()
{
    Expect("(");
    const std::size_t before = m_columns.size();
    const Query query = ReadQuery(false);
    Expect(")");
    Accept("AS");
    const std::string alias = Unquoted(m_tokens[TakeName()]);
    CheckAlias(alias);
    const std::vector<Known> inner(m_columns.begin() + static_cast<std::ptrdiff_t>(before), m_columns.end());
    m_columns.resize(before);
    for (const Item &item : query.items)
    {
        if (item.name.empty() && !item.star)
            Unsupported("Line " + LineOf(item.value.first) + ": a column without a name");
        if (std::count_if(query.items.begin(), query.items.end(),
                          [&](const Item &other) { return tsql::Compare(other.name, item.name) == 0; }) > 1)
            Unsupported("Line " + LineOf(item.value.first) + ": two columns '" + item.name + "'");
        if (!item.star)
            m_columns.push_back({alias, item.name, item.value.type, m_query});
        for (std::size_t i = 0; item.star && i < inner.size(); ++i)
            m_columns.push_back({alias, inner[i].name, inner[i].type, m_query});
    }
}

void Rewriter::OrderBy(const Query &query, bool isUnion)
{
    Expect("ORDER");
    Expect("BY");
    do
    {
        if (!OrderByItem(query))
        {
            if (isUnion)
                Unsupported("Line " + LineOf(m_at) + ": ORDER BY anything but a column of the UNION");
            const Operand value = ReadValue();
            const auto same = [&](const Item &item)
            { return item.star || (value.column && item.value.column && SameColumn(item.value.name, value.name)); };
            if (value.literal)
                Refuse(value.first);
            if (query.distinct && std::none_of(query.items.begin(), query.items.end(), same))
                Later(MakeError(145));
            if (value.type.IsText() && !value.column)
                Collate(value);
        }
        if (!Accept("DESC"))
            Accept("ASC");
    } while (Accept(","));
}

// A position or a name of the select list. False when it is another expression.
bool Rewriter::OrderByItem(const Query &query)
{
    const Token &next = m_tokens[m_at + (Current().kind == TokenKind::End ? 0 : 1)];
    if (next.kind == TokenKind::Operator && !next.Is(",") && !next.Is(")") && !next.Is(";"))
        return false;
    if (Current().kind == TokenKind::Integer)
    {
        const std::size_t at = m_at;
        const int place = ReadNumber();
        if (place < 1 || place > static_cast<int>(query.items.size()))
            Refuse(at);
        return true;
    }
    const std::string name = Current().IsName() ? Unquoted(Current()) : "";
    const auto found =
        std::count_if(query.items.begin(), query.items.end(),
                      [&](const Item &item) { return !item.name.empty() && tsql::Compare(item.name, name) == 0; });
    if (found == 0 || name.empty())
        return false;
    if (found > 1)
        Later(MakeError(209, {name}));
    ++m_at;
    return true;
}

bool Rewriter::SameColumn(const ColumnName &left, const ColumnName &right)
{
    return tsql::Compare(left.name, right.name) == 0 &&
           (left.qualifier.empty() || right.qualifier.empty() || tsql::Compare(left.qualifier, right.qualifier) == 0);
}

// SQLite takes any row's value for a column that is neither aggregated nor part of what is grouped by.
void Rewriter::CheckGroups(const Query &query)
{
    if (!query.grouped)
        return;
    for (const Item &item : query.items)
        if (item.star)
            Unsupported("Line " + LineOf(query.first) + ": * in a query that groups");
    for (std::size_t i = query.used; i < m_used.size(); ++i)
        if (std::none_of(query.groups.begin(), query.groups.end(),
                         [&](const Operand &group) { return IsPart(m_used[i], group); }))
            Later(MakeError(8120, {m_used[i].name.name}));
}

// True when the column stands in an expression of the same words as the group.
bool Rewriter::IsPart(const Operand &column, const Operand &group) const
{
    if (group.column)
        return SameColumn(column.name, group.name);
    const std::size_t length = group.last - group.first + 1;
    const auto token = [&](std::size_t at) { return m_tokens.begin() + static_cast<std::ptrdiff_t>(at); };
    for (std::size_t first = column.first - std::min(column.first, length - 1); first <= column.first; ++first)
        if (first + length < m_tokens.size() &&
            std::equal(token(group.first), token(group.last) + 1, token(first),
                       [](const Token &a, const Token &b) { return SameWord(a.text, b.text); }))
            return true;
    return false;
}

} // namespace tsql
