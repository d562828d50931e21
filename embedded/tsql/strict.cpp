// What SQLite would take, or take differently, and the server would not.
#include "rewrite.h"

#include "errors.h"

#include <algorithm>

namespace tsql
{

// The tables behind FROM: each is known, and no two have the same name there.
void Rewriter::Sources(Place from)
{
    const std::initializer_list<std::string_view> next = {",", "JOIN", "WHERE", "GROUP", "HAVING", "ORDER", "UNION"};
    std::vector<std::string> names;
    bool comma = false;
    bool join = false;
    for (Place at = from; at == from || Is(at, ",") || Is(at, "JOIN"); at = Find(at + 1, next))
    {
        comma = comma || Is(at, ",");
        join = join || Is(at, "JOIN");
        const bool joined = Is(at, "JOIN") && !Is(at - 1, "CROSS");
        if (joined != Is(Find(at + 1, {"ON", ",", "JOIN", "WHERE", "GROUP", "HAVING", "ORDER", "UNION"}), "ON"))
            RefuseToken(m_tokens, at, true);
        const Place open = at + 1;
        Place name = IsSubquery(open) ? m_partner[open] : Source(open);
        if (IsSubquery(open))
            m_derived.push_back(open);
        const Place alias = name + (Is(name + 1, "AS") ? 2 : 1);
        if (alias < m_last && m_tokens[alias].IsName())
            name = alias;
        else if (IsSubquery(open))
            RefuseToken(m_tokens, std::min(alias, m_last - 1), true);
        m_roles[name] = Role::Source;
        names.push_back(Small(Unquoted(m_tokens[name])));
    }
    m_sources.insert(m_sources.end(), names.begin(), names.end());
    if ((comma && join) || Repeats(names)) // a JOIN binds closer than a comma there
        Refuse(from);
}

// The name of a table, behind its owner.
Rewriter::Place Rewriter::Source(Place at)
{
    const bool owned = Is(at + 1, ".");
    const Place name = owned ? at + 2 : at;
    if (name >= m_last || !m_tokens[name].IsName())
        RefuseToken(m_tokens, std::min(name, m_last - 1), true);
    const bool view = owned && SameWord(m_tokens[at].text, "INFORMATION_SCHEMA");
    const std::string table = Unquoted(m_tokens[name]);
    if (!view && ((owned && !SameWord(Unquoted(m_tokens[at]), "dbo")) || !m_catalog.Find(table)))
        Raise(208, {table});
    m_view = m_view || view;
    m_roles[at] = m_roles[name] = Role::Source;
    return name;
}

bool Rewriter::Repeats(std::vector<std::string> names)
{
    std::ranges::sort(names);
    return std::ranges::adjacent_find(names) != names.end();
}

// Columns in ORDER BY: of the list when it is DISTINCT, and each once.
void Rewriter::Ordering(Place select, const std::vector<Column> &columns, bool distinct)
{
    const Place order = Find(select + 1, {"ORDER"});
    if (!Is(order, "ORDER"))
        return;
    if (Open(select) != m_first)
        Refuse(order);
    std::vector<std::string> names;
    for (Place at = order + 1; at < m_last && (Is(at, "BY") || Is(at, ",")); ++at)
    {
        at += Is(at + 2, ".") ? 3 : 1;
        if (at >= m_last || (!m_tokens[at].IsName() && m_tokens[at].kind != TokenKind::Integer))
            Refuse(std::min(at, m_last - 1));
        names.push_back(Small(Unquoted(m_tokens[at])));
        m_roles[at] = Role::Order;
        const bool listed = std::ranges::any_of(columns, [&](const Column &column)
                                                { return column.name == "*" || Small(column.name) == names.back(); });
        if (distinct && m_tokens[at].IsName() && !listed)
            Raise(145);
        at += Is(at + 1, "ASC") || Is(at + 1, "DESC") ? 1 : 0;
        if (at + 1 < m_last && !Is(at + 1, ","))
            Refuse(at + 1);
    }
    if (Repeats(names))
        Refuse(order);
}

// Names that nothing has, and words of conditions where none stands. SQLite takes the name of an item for a column.
void Rewriter::Leftovers()
{
    for (Place at = m_first; at < m_last; ++at)
    {
        const Token &token = m_tokens[at];
        if (m_roles[at] != Role::None || IsOmitted(at))
            continue;
        if (Is(at, "(") && !IsCall(at - 1) && !IsSubquery(at) && !Is(at - 1, "IN") && Is(Find(at + 1, {","}), ",") &&
            !(Is(m_first, "INSERT") && Open(at) == m_first))
            Refuse(at); // a row as a value
        for (const char *const word : {"=", "<", ">", "<>", "!=", "<=", ">=", "LIKE", "IN", "IS", "AND", "OR", "NOT"})
            if (token.Is(word))
                RefuseToken(m_tokens, at, true);
        if (!token.IsName() || IsCall(at))
            continue;
        const std::string name = Unquoted(token);
        if (Is(at + 1, ".") && std::ranges::find(m_sources, Small(name)) == m_sources.end())
            Raise(4104, {name + "." + std::string(m_tokens[at + 2].text)});
        if (Is(at + 1, ".") || Is(at - 1, ".") || IsAlias(at) || m_view || IsColumn(name))
            continue;
        const bool derived = std::ranges::any_of(m_derived,
                                                 [&](Place open)
                                                 {
                                                     for (Place inner = open; inner < m_partner[open]; ++inner)
                                                         if (inner != at && SameWord(Unquoted(m_tokens[inner]), name))
                                                             return true;
                                                     return false;
                                                 });
        if (!derived)
            Raise(207, {name});
    }
}

bool Rewriter::IsColumn(std::string_view name) const
{
    return std::ranges::any_of(m_tables,
                               [&](const Table *table) {
                                   return std::ranges::any_of(*table, [&](const TableColumn &column)
                                                              { return SameWord(column.name, name); });
                               });
}

// The bracket or CASE around a place; the first token when there is none.
Rewriter::Place Rewriter::Open(Place at) const
{
    while (at > m_first)
    {
        --at;
        if (Is(at, "(") || Is(at, "CASE"))
            return at;
        if ((Is(at, ")") || Is(at, "END")) && m_partner[at] < at)
            at = m_partner[at];
    }
    return m_first;
}

// UPDATE table SET column = value, ... [WHERE]. SQLite changes row by row and checks keys at each.
void Rewriter::Update()
{
    const Place name = Source(m_first + 1);
    const std::string target = Unquoted(m_tokens[name]);
    const Place end = Find(name + 1, {"WHERE"});
    m_sources.push_back(Small(target));
    if (!Is(name + 1, "SET"))
        Refuse(name + 1);
    if (const Place from = Find(name, {"FROM"}); from < m_last)
        Refuse(from);
    std::vector<std::string> columns;
    for (Place at = name + 2, next; at < end; at = next + 1)
    {
        next = std::min(Find(at, {","}), end);
        if (!m_tokens[at].IsName() || !Is(at + 1, "=") || at + 2 >= next)
            RefuseToken(m_tokens, std::min(at + 1, m_last - 1), true);
        m_roles[at + 1] = Role::Condition;
        columns.push_back(Small(Unquoted(m_tokens[at])));
        for (Place inner = at + 2; inner < next; ++inner)
            if (m_tokens[inner].IsName() && SameWord(Unquoted(m_tokens[inner]), target) && !Is(inner + 1, "."))
                Refuse(inner);
        const TableColumn &column = ColumnOf(target, at);
        if (column.key && next > at + 3)
            Refuse(at);
        Assign(column.type, at + 2, next);
    }
    if (Repeats(columns))
        Refuse(name + 1);
}

// A value for a column. Texts that are to be numbers are converted, since SQLite knows more forms of numbers.
void Rewriter::Assign(const ValueType &column, Place value, Place end)
{
    const std::optional<ValueType> type = TypeOfValue(value, end);
    if (type && type->type == Type::Float && column.type != Type::Float)
        Refuse(value);
    if (!type || IsText(column.type) == IsText(type->type))
    {
        if (type && (column.type == Type::DateTime) != (type->type == Type::DateTime))
            Refuse(value);
        if (type && column.type == Type::Bit && type->type != Type::Bit)
            m_pieces[value].insert(0, ConvertTo(column)), m_pieces[end - 1] += ")";
        return;
    }
    if (type->type == Type::DateTime || (column.type == Type::DateTime && !IsText(type->type)))
        Refuse(value);
    if (column.type == Type::Float)
        Refuse(value);
    if (IsInteger(column.type))
        m_pieces[value].insert(0, ConvertTo(column)), m_pieces[end - 1] += ")";
}

const TableColumn &Rewriter::ColumnOf(const std::string &table, Place name)
{
    const Table &columns = *m_catalog.Find(table);
    const std::string wanted = Unquoted(m_tokens[name]);
    const auto found =
        std::ranges::find_if(columns, [&](const TableColumn &one) { return SameWord(one.name, wanted); });
    if (found == columns.end())
        Raise(207, {wanted});
    return *found;
}

// INSERT [INTO] table [(columns)]. Gives what stands behind it.
Rewriter::Place Rewriter::InsertHeader()
{
    Place at = m_first;
    m_pieces[at++] = "INSERT INTO";
    Omit(at, at + (Is(at, "INTO") ? 1 : 0));
    at += Is(at, "INTO") ? 1 : 0;
    const Place name = Source(at);
    const std::string table = TakeName(at);
    std::vector<Place> columns;
    if (Accept(at, "("))
    {
        do
        {
            columns.push_back(at);
            TakeName(at);
        } while (Accept(at, ","));
        Expect(at, ")");
    }
    m_roles[name] = Role::Source;
    m_insert = {table, columns, at};
    return at;
}

// Behind the header of INSERT: the values of each row, or a query whose columns are of the kinds of the table's.
void Rewriter::Insert(const std::string &table, const std::vector<Place> &names, Place behind)
{
    std::vector<ValueType> types;
    std::vector<std::string> given;
    for (const Place name : names)
    {
        types.push_back(ColumnOf(table, name).type);
        given.push_back(Small(Unquoted(m_tokens[name])));
        m_roles[name] = Role::Source;
    }
    if (Repeats(given))
        Refuse(m_first);
    if (names.empty())
        for (const TableColumn &column : *m_catalog.Find(table))
            types.push_back(column.type);
    if (Is(behind, "SELECT"))
    {
        m_targets = types;
        return;
    }
    if (!Is(behind, "VALUES"))
        RefuseToken(m_tokens, std::min(behind, m_last - 1), true);
    for (Place row = behind + 1; Is(row, "("); row = m_partner[row] + 2)
    {
        std::size_t i = 0;
        for (Place at = row + 1, next; at < m_partner[row] && i < types.size(); at = next + 1)
        {
            next = std::min(Find(at, {","}), m_partner[row]);
            Assign(types[i++], at, next);
        }
    }
}

// Columns and functions behind GROUP BY, as they are written; SQLite takes a number for a place in the list.
std::vector<std::string> Rewriter::Groups(Place group) const
{
    std::vector<std::string> groups;
    const Place end = Find(group, {"HAVING", "ORDER", "UNION"});
    for (Place at = group + 1; at < end; ++at)
    {
        at += Is(at + 2, ".") ? 3 : 1;
        const Place last = IsCall(at) ? m_partner[at + 1] : at;
        if (last >= end || !m_tokens[at].IsName() || (last + 1 < end && !Is(last + 1, ",")))
            Refuse(std::min(last, m_last - 1));
        groups.push_back(IsCall(at) ? Written(at, last) : Small(Unquoted(m_tokens[at])));
        at = last;
    }
    return groups;
}

std::string Rewriter::Written(Place first, Place last) const
{
    std::string text;
    for (; first <= last; ++first)
        text += Small(m_tokens[first].text) + " ";
    return text;
}

// Beside aggregates and GROUP BY, SQLite takes a column from any row. True when the query gives one row by itself.
bool Rewriter::Grouping(Place select, Place listEnd, const std::vector<Column> &columns) const
{
    const Place group = Find(select + 1, {"GROUP", "HAVING", "ORDER", "UNION"});
    const Place order = Find(group, {"ORDER", "UNION"});
    const Place end = Find(order, {"UNION"});
    const Place having = Find(group, {"HAVING", "ORDER", "UNION"});
    const std::vector<std::string> groups = Is(group, "GROUP") ? Groups(group) : std::vector<std::string>();
    std::vector<std::string> bare;
    bool grouped = Is(group, "GROUP") || Is(having, "HAVING");
    for (Place at = select + 1; at < end; at = at + 1 == listEnd ? having : at + 1)
    {
        const bool aggregate = IsCall(at) && IsAny(m_tokens[at].text, {"COUNT", "SUM", "MIN", "MAX"});
        grouped = grouped || aggregate;
        const std::string name = m_tokens[at].IsName() ? Small(Unquoted(m_tokens[at])) : "*";
        const bool alias = at >= order && std::ranges::any_of(columns, [&](const Column &column)
                                                              { return Small(column.name) == name; });
        if (IsCall(at) && std::ranges::find(groups, Written(at, m_partner[at + 1])) != groups.end())
            at = m_partner[at + 1];
        else if (aggregate || IsSubquery(at))
            at = m_partner[at + (IsSubquery(at) ? 0 : 1)];
        else if (m_tokens[at].IsName() ? !Is(at + 1, ".") && !IsCall(at) && !IsOmitted(at) && !IsAlias(at) && !alias
                                       : Is(at, "*") && at < listEnd && !IsSign(at))
            bare.push_back(name);
    }
    for (const std::string &name : bare)
        if (grouped && std::ranges::find(groups, name) == groups.end())
            Raise(8120, {name});
    return grouped && !Is(group, "GROUP");
}

// A name that stands behind a value, with AS or without.
bool Rewriter::IsAlias(Place at) const
{
    const Token &before = m_tokens[at - 1];
    return before.Is("AS") || before.Is(")") || before.Is("END") || before.IsName() || before.IsText() ||
           before.kind == TokenKind::Integer;
}

} // namespace tsql
