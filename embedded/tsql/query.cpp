// Reading queries: sources, the select list, grouping, order, UNION.
#include "errors.h"
#include "text.h"
#include "translator.h"

namespace tsql
{

Translation Translator::SelectStatement()
{
    Query query = ReadQuery(true);
    if (m_checking)
        return {};
    SelectParts &first = query.selects[0];
    Write(query, false);
    Translation out{.action = first.variables.empty() ? Action::Rows : Action::Assign,
                    .sql = std::move(query.sql),
                    .variables = std::move(first.variables)};
    for (std::size_t i = 0; i < query.types.size(); ++i)
        out.columns.push_back(
            {std::move(first.names[i]), query.types[i].type, ShownSize(query.types[i]), query.types[i].scale});
    return out;
}

// Queries joined by UNION, with the ORDER BY of the whole.
Translator::Query Translator::ReadQuery(bool orderMatters)
{
    const auto deeper = Deeper();
    const std::size_t outer = m_select;
    const std::size_t first = m_at;
    m_subquery = true;
    Query query;
    do
    {
        if (!query.selects.empty())
            query.unions.push_back(Accept(Word::All) ? " UNION ALL " : " UNION ");
        ReadSelect(query.selects.emplace_back());
        if (!m_checking && query.selects.back().columns.size() != query.selects[0].columns.size())
            Raise(205);
    } while (Accept(Word::Union));
    SelectParts &parts = query.selects[0];
    if (Is(Word::Order))
    {
        m_select = first;
        const auto entered = Entered(&parts.scope);
        if (!m_checking && !orderMatters && parts.limit.empty())
            Raise(1033);
        query.orderBy = OrderBy(query, parts);
    }
    m_select = outer;
    for (std::size_t i = 0; !m_checking && i < parts.columns.size(); ++i)
    {
        std::vector<Fragment> branches;
        for (SelectParts &select : query.selects)
            branches.push_back(std::move(select.columns[i]));
        query.types.push_back(branches.size() > 1 ? Common(branches) : branches[0].type);
        for (std::size_t j = 0; j < branches.size(); ++j)
            query.selects[j].columns[i] = std::move(branches[j]);
    }
    return query;
}

// Columns are converted from outside: equal rows are taken together before.
void Translator::Write(Query &query, bool nested, const std::vector<ValueType> *targets) const
{
    if (m_checking)
        return;
    const bool isUnion = query.selects.size() > 1;
    for (std::size_t i = 0; i < query.selects.size(); ++i)
    {
        const SelectParts &select = query.selects[i];
        const bool wrapped = isUnion && !select.limit.empty();
        query.sql += (i > 0 ? query.unions[i - 1] : "") + std::string(wrapped ? "SELECT * FROM (SELECT " : "SELECT ");
        query.sql += select.distinct ? "DISTINCT " : "";
        for (std::size_t j = 0; j < select.columns.size(); ++j)
        {
            const bool collated = select.distinct || isUnion || nested || targets;
            query.sql += (j > 0 ? ", " : "") + (collated ? Collated(select.columns[j]) : Sql(select.columns[j]));
            if (nested || targets)
                query.sql += " AS c" + std::to_string(j + 1);
        }
        query.sql += select.tail + (isUnion ? "" : query.orderBy) + select.limit + (wrapped ? ")" : "");
    }
    query.sql += isUnion ? query.orderBy : "";
    if (!targets)
        return;
    std::string list;
    for (std::size_t i = 0; i < query.types.size(); ++i)
    {
        const Fragment column = Made("c" + std::to_string(i + 1), query.types[i]);
        list += (i > 0 ? ", " : "") + Sql(Converted(column, (*targets)[i], Conversion::Store));
    }
    query.sql = "SELECT " + list + " FROM (" + query.sql + ")";
}

// When it runs, the list is read last: by then its sources and groups are known.
void Translator::ReadSelect(SelectParts &parts)
{
    const std::size_t start = m_select = m_at;
    Expect(Word::Select);
    parts.scope.parent = m_scope;
    const auto entered = Entered(&parts.scope);
    parts.distinct = Accept(Word::Distinct);
    if (!parts.distinct)
        Accept(Word::All);
    if (Accept(Word::Top))
        parts.limit = Top();
    const std::size_t list = m_at;
    if (m_checking)
    {
        ReadList(parts);
        m_tokens[start].other = static_cast<std::uint32_t>(m_at);
    }
    m_at = m_tokens[start].other;
    if (Accept(Word::From))
        parts.tail += " FROM " + FromClause();
    if (Accept(Word::Where))
        parts.tail += " WHERE " + Condition();
    const bool groups = Is(Word::Group);
    if (groups)
        parts.tail += Grouping(parts.scope);
    parts.scope.grouped = groups || Is(Word::Having) || m_tokens[start].aggregates;
    parts.scope.aggregatesAllowed = true;
    if (Accept(Word::Having))
    {
        parts.tail += " HAVING " + Condition();
        CheckGrouped(8121);
    }
    if (m_checking)
        return;
    const std::size_t end = m_at;
    m_at = list;
    ReadList(parts);
    m_at = end;
}

// TOP n, TOP (x)
std::string Translator::Top()
{
    const bool parentheses = Accept(Word::LeftParenthesis);
    if (!parentheses && Current().kind != TokenKind::Integer)
        SyntaxError();
    const Fragment value = parentheses ? ReadValue() : Literal(Take());
    const Fragment top = Converted(value, {Type::BigInt, 0, 0}, Conversion::Store);
    if (parentheses)
        Expect(Word::RightParenthesis);
    if (top.literal && top.value.integer < 0)
        Raise(127);
    return " LIMIT " + Sql(top);
}

std::string Translator::Grouping(Scope &scope)
{
    Take();
    Expect(Word::By);
    std::string sql;
    std::vector<std::string> groups; // in force only when all have been read
    do
    {
        const Fragment group = ReadValue();
        if (group.literal)
            Raise(164);
        sql += (groups.empty() ? " GROUP BY " : ", ") + Collated(group);
        groups.push_back(group.sql);
    } while (Accept(Word::Comma));
    if (!m_checking)
        scope.groups = std::move(groups);
    return sql;
}

void Translator::CheckGrouped(int error) const
{
    if (!m_scope->ungrouped.empty())
        Raise(error, {m_scope->ungrouped});
}

void Translator::ReadList(SelectParts &parts)
{
    do
        ReadItem(parts);
    while (Accept(Word::Comma));
    if (!parts.variables.empty() && parts.variables.size() != parts.columns.size() && !m_checking)
        Raise(141);
}

// *, t.*, alias = value, @variable = value, value [[AS] alias]
void Translator::ReadItem(SelectParts &parts)
{
    std::size_t star = m_at;
    while (m_tokens[star].IsName() && m_tokens[star + 1].word == Word::Dot)
        star += 2;
    if (m_tokens[star].word == Word::Star)
    {
        const std::string qualifier = star > m_at ? Unquoted(m_tokens[star - 2]) : "";
        while (m_at <= star)
            Take();
        ReadStar(parts, qualifier);
        return;
    }
    const bool assigned = m_tokens[m_at + (Current().kind == TokenKind::End ? 0 : 1)].word == Word::Equal;
    std::string name;
    int variable = -1;
    if (assigned && IsName())
        name = TakeName();
    else if (assigned && Current().kind == TokenKind::Variable)
        variable = FindVariable(Take());
    const bool named = variable >= 0 || !name.empty();
    if (named)
        Take();
    Fragment value = ReadValue();
    CheckGrouped(8120);
    if (!named)
    {
        std::size_t last = m_at - 1; // of a column the last part of its name
        while (value.column && m_tokens[last].word == Word::RightParenthesis)
            --last;
        const std::string alias = Alias(true);
        name = !alias.empty() ? alias : value.column ? Unquoted(m_tokens[last]) : "";
    }
    if (variable >= 0)
    {
        parts.variables.push_back(variable);
        value = Converted(std::move(value), m_session.variables[variable].type, Conversion::Cast);
    }
    parts.columns.push_back(std::move(value));
    parts.names.push_back(std::move(name));
}

void Translator::ReadStar(SelectParts &parts, const std::string &qualifier)
{
    if (m_checking)
    {
        parts.columns.emplace_back();
        return;
    }
    bool found = false;
    for (const Source &source : parts.scope.sources)
    {
        if (!qualifier.empty() && Compare(source.name, qualifier) != 0)
            continue;
        found = true;
        for (std::size_t i = 0; i < source.names.size(); ++i)
        {
            Fragment column = source.ColumnAt(i);
            if (parts.scope.grouped && !parts.scope.IsGroup(column.sql))
                Raise(8120, {source.names[i]});
            parts.columns.push_back(std::move(column));
            parts.names.push_back(source.names[i]);
        }
    }
    if (!found && qualifier.empty())
        SyntaxError(m_at - 1);
    if (!found)
        Raise(4104, {qualifier + ".*"});
}

// [AS] alias; empty when there is none.
std::string Translator::Alias(bool orText)
{
    const bool as = Accept(Word::As);
    if (IsName() || (orText && Current().kind == TokenKind::Text))
        return Unquoted(Take());
    if (as)
        SyntaxError();
    return {};
}

std::string Translator::OrderBy(const Query &query, SelectParts &parts)
{
    Take();
    Expect(Word::By);
    std::string sql;
    int place = 0;
    do
    {
        ++place;
        sql += (place > 1 ? ", " : " ORDER BY ") + OrderItem(query, parts, place);
        if (Accept(Word::Desc))
            sql += " DESC";
        else
            Accept(Word::Asc);
    } while (Accept(Word::Comma));
    return sql;
}

// A position, an alias of the select list, or (but for UNION and DISTINCT) any expression over the sources.
std::string Translator::OrderItem(const Query &query, SelectParts &parts, int place)
{
    Token &first = m_tokens[m_at];
    if (m_checking)
    {
        const std::size_t start = m_at;
        ReadValue();
        first.other = static_cast<std::uint32_t>(m_at - start);
        return {};
    }
    const auto position = [&](std::size_t i)
    { return std::to_string(i + 1) + (IsText(parts.columns[i].type.type) ? " COLLATE ts" : ""); };
    const bool single = first.other == 1;
    if (single && first.IsName())
    {
        const std::string name = Unquoted(first);
        for (std::size_t i = 0; i < parts.names.size(); ++i)
            if (!parts.names[i].empty() && Compare(parts.names[i], name) == 0)
            {
                Take();
                return position(i);
            }
    }
    if (single && first.kind == TokenKind::Integer)
    {
        const std::int64_t number = Literal(Take()).value.integer;
        if (number < 1 || number > static_cast<int>(parts.columns.size()))
            Raise(108, {first.text});
        return position(static_cast<std::size_t>(number) - 1);
    }
    if (query.selects.size() > 1)
        Raise(104);
    const Fragment value = ReadValue();
    CheckGrouped(8127);
    if (value.literal)
        Raise(408, {std::to_string(place)});
    for (std::size_t i = 0; i < parts.columns.size(); ++i)
        if (parts.columns[i].sql == value.sql)
            return position(i);
    if (parts.distinct)
        Raise(145);
    return Collated(value);
}

std::string Translator::FromClause()
{
    std::string sql;
    bool joined = false;
    bool several = false;
    do
    {
        several = !sql.empty();
        std::string next = Joins(joined);
        // Joins beside others are put in parentheses; the first one when it turns out that others follow.
        const bool parentheses = joined && (several || Is(Word::Comma));
        sql += (several ? ", " : "") + (parentheses ? "(" + next + ")" : next);
    } while (Accept(Word::Comma));
    return sql;
}

// A source and what is joined to it; `joined` tells whether anything is.
std::string Translator::Joins(bool &joined)
{
    const auto deeper = Deeper();
    std::string sql = SourceClause(joined);
    for (int joins = 0;; ++joins)
    {
        const Word kind = Current().word;
        const bool outer = kind == Word::Left || kind == Word::Right || kind == Word::Full;
        if (kind != Word::Join && kind != Word::Inner && kind != Word::Cross && !outer)
            return sql;
        if (joins > 60) // as many as SQLite takes
            Raise(191);
        joined = true;
        const std::string word = outer || kind == Word::Cross ? Upper(Current().text) + " JOIN " : "JOIN ";
        if (kind != Word::Join)
            Take();
        if (outer)
            Accept(Word::Outer);
        Expect(Word::Join);
        bool nested = false;
        const std::string right = SourceClause(nested);
        sql += " " + word + (nested ? "(" + right + ")" : right);
        if (kind == Word::Cross)
            continue;
        Expect(Word::On);
        sql += " ON " + Condition();
    }
}

// table [[AS] alias], (SELECT ...) [AS] alias, (joins)
std::string Translator::SourceClause(bool &joined)
{
    joined = false;
    if (!Is(Word::LeftParenthesis))
    {
        const std::string name = TableName();
        const std::string alias = Alias(false);
        return m_checking ? "" : AddTable(name, alias.empty() ? name : alias);
    }
    Take();
    if (!Is(Word::Select))
    {
        const std::string sql = Joins(joined);
        Expect(Word::RightParenthesis);
        return sql;
    }
    Query query;
    {
        // A derived table sees what surrounds the query, not its neighbours.
        const auto entered = Entered(m_scope->parent);
        query = ReadQuery(false);
    }
    Expect(Word::RightParenthesis);
    Accept(Word::As);
    Source source;
    source.name = TakeName();
    if (m_checking)
        return {};
    source.names = query.selects[0].names;
    for (std::size_t i = 0; i < source.names.size(); ++i)
    {
        if (source.names[i].empty())
            Raise(8155, {std::to_string(i + 1), source.name});
        for (std::size_t j = 0; j < i; ++j)
            if (Compare(source.names[i], source.names[j]) == 0)
                Raise(8156, {source.names[i], source.name});
    }
    if (!query.selects[0].variables.empty())
        Raise(141);
    source.types = query.types;
    Write(query, true);
    return AddSource(std::move(source), "(" + query.sql + ")");
}

std::string Translator::AddTable(const std::string &name, const std::string &alias)
{
    Source source;
    source.name = alias;
    source.table = &FindTable(name);
    for (const TableColumn &column : source.table->columns)
    {
        source.names.push_back(column.name);
        source.types.push_back(column.type);
    }
    return AddSource(std::move(source), Quoted(source.table->name));
}

std::string Translator::AddSource(Source source, const std::string &sql)
{
    for (const Source &other : m_scope->sources)
        if (Compare(other.name, source.name) == 0)
            Raise(1013, {source.name});
    source.id = "t" + std::to_string(++m_ids);
    m_scope->sources.push_back(std::move(source));
    return sql + " AS " + m_scope->sources.back().id;
}

Fragment Translator::Source::ColumnAt(std::size_t i) const
{
    Fragment column = Made(id + "." + (table ? Quoted(names[i]) : "c" + std::to_string(i + 1)), types[i]);
    column.column = true;
    return column;
}

} // namespace tsql
