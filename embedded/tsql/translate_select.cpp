// The translator's part for queries: sources, the select list, grouping, order, UNION.
#include "errors.h"
#include "text.h"
#include "translate.h"

namespace tsql
{

// One SELECT of a union, translated as far as it can be without the others.
struct Translator::BoundSelect
{
    Scope scope;
    std::vector<Fragment> columns;
    std::vector<std::string> names;
    std::vector<int> variables;
    std::string tail;    // FROM ... HAVING
    std::string orderBy; // of a select alone
    std::string limit;
};

// Makes a scope the current one for a block.
class Translator::Entered
{
public:
    Entered(Translator &translator, Scope *scope) : m_translator(translator), m_outer(translator.m_scope)
    {
        translator.m_scope = scope;
    }
    ~Entered() { m_translator.m_scope = m_outer; }
    Entered(const Entered &) = delete;
    Entered &operator=(const Entered &) = delete;

private:
    Translator &m_translator;
    Scope *m_outer;
};

Translation Translator::TranslateSelect(const Select &select)
{
    Query query = BuildQuery(select, {false, true, nullptr});
    Translation out;
    out.sql = std::move(query.sql);
    out.variables = std::move(query.variables);
    for (std::size_t i = 0; i < query.names.size(); ++i)
    {
        const ValueType &type = query.types[i];
        const bool sized = IsText(type.type) || type.type == Type::Decimal;
        out.columns.push_back({std::move(query.names[i]), type.type, sized ? type.size : 0, type.scale});
    }
    out.assigns = !out.variables.empty();
    return out;
}

Translation Translator::TranslateValue(const Expr &expr, const ValueType &type)
{
    Translation out;
    out.sql = "SELECT " + Sql(Converted(Translate(expr), type, Conversion::Cast));
    return out;
}

Translation Translator::TranslateCondition(const Expr &expr)
{
    Translation out;
    out.sql = "SELECT 1 WHERE " + Condition(expr);
    return out;
}

Translator::Query Translator::BuildQuery(const Select &first, const Use &use)
{
    if (first.orderBy && !use.orderMatters && !first.top)
        Raise(1033);
    m_subquery = true;
    const bool isUnion = first.unionNext != nullptr;
    if (use.targets && (isUnion || first.distinct))
        return ConvertedQuery(first, use);
    std::vector<BoundSelect> selects;
    for (const Select *select = &first; select; select = select->unionNext)
    {
        BoundSelect &bound = selects.emplace_back();
        bound.scope.parent = m_scope;
        const Entered entered(*this, &bound.scope);
        Bind(*select, bound);
        if (bound.columns.size() != selects[0].columns.size())
            Raise(205);
        if (!isUnion && select->orderBy)
        {
            bound.orderBy = OrderClause(*select, bound);
        }
    }

    Query query;
    query.names = selects[0].names;
    query.variables = selects[0].variables;
    query.oneRow =
        !isUnion && ((selects[0].scope.grouped && !first.groupBy) || !first.from || selects[0].limit == " LIMIT 1");
    for (std::size_t i = 0; i < query.names.size(); ++i)
    {
        std::vector<Fragment> branch;
        for (const BoundSelect &bound : selects)
            branch.push_back(bound.columns[i]);
        query.types.push_back(Common(branch).type);
        for (std::size_t j = 0; j < selects.size(); ++j)
        {
            if (isUnion)
                selects[j].columns[i] = std::move(branch[j]);
            if (use.targets)
                selects[j].columns[i] = Converted(selects[j].columns[i], (*use.targets)[i], Conversion::Store);
        }
    }

    const Select *select = &first;
    for (BoundSelect &bound : selects)
    {
        const bool collate = select->distinct || isUnion || use.nested;
        std::string sql = select->distinct ? "SELECT DISTINCT " : "SELECT ";
        for (std::size_t i = 0; i < bound.columns.size(); ++i)
        {
            sql += (i > 0 ? ", " : "") + (collate ? Collated(bound.columns[i]) : Sql(bound.columns[i]));
            if (use.nested)
                sql += " AS c" + std::to_string(i + 1);
        }
        sql += bound.tail + bound.orderBy + bound.limit;
        if (isUnion && !bound.limit.empty())
            sql = "SELECT * FROM (" + sql + ")";
        query.sql += sql;
        if (select->unionNext)
            query.sql += select->unionAll ? " UNION ALL " : " UNION ";
        select = select->unionNext;
    }
    if (isUnion && first.orderBy)
        query.sql += OrderClause(first, selects[0]);
    return query;
}

// A query that takes equal rows together does so before its columns are converted.
Translator::Query Translator::ConvertedQuery(const Select &select, const Use &use)
{
    Query query = BuildQuery(select, {true, use.orderMatters, nullptr});
    std::string list;
    for (std::size_t i = 0; i < query.types.size(); ++i)
    {
        Fragment fragment;
        fragment.sql = "c" + std::to_string(i + 1);
        fragment.type = query.types[i];
        list += (i > 0 ? ", " : "") + Sql(Converted(std::move(fragment), (*use.targets)[i], Conversion::Store));
    }
    query.sql = "SELECT " + list + " FROM (" + query.sql + ")";
    return query;
}

void Translator::Bind(const Select &select, BoundSelect &bound)
{
    Scope &scope = bound.scope;
    if (select.top)
    {
        const Fragment top = Converted(Translate(*select.top), {Type::BigInt, 0, 0}, Conversion::Store);
        if (top.literal && top.value.integer < 0)
            Raise(127);
        bound.limit = " LIMIT " + Sql(top);
    }
    if (select.from)
        bound.tail += " FROM " + FromClause(select.from);
    if (select.where)
        bound.tail += " WHERE " + Condition(*select.where);
    std::vector<std::string> groups;
    for (const Expr *group = select.groupBy; group; group = group->next)
    {
        const Fragment fragment = Translate(*group);
        if (fragment.literal)
            Raise(164);
        bound.tail += (groups.empty() ? " GROUP BY " : ", ") + Collated(fragment);
        groups.push_back(fragment.sql);
    }
    scope.groups = std::move(groups);
    scope.grouped = select.groupBy || select.having || select.aggregates;
    scope.aggregatesAllowed = true;
    if (select.having)
    {
        bound.tail += " HAVING " + Condition(*select.having);
        CheckGrouped(8121);
    }
    for (const Item *item = select.items; item; item = item->next)
        BindItem(*item, bound);
    if (!bound.variables.empty() && bound.variables.size() != bound.columns.size())
        Raise(141);
}

void Translator::CheckGrouped(int error)
{
    if (!m_scope->ungrouped.empty())
        Raise(error, {m_scope->ungrouped});
}

void Translator::BindItem(const Item &item, BoundSelect &bound)
{
    if (item.value->kind == ExprKind::Star)
    {
        const std::string qualifier = Unquoted(item.value->qualifier);
        bool found = false;
        for (const BoundSource &source : bound.scope.sources)
        {
            if (!qualifier.empty() && Compare(source.name, qualifier) != 0)
                continue;
            found = true;
            bound.columns.insert(bound.columns.end(), source.columns.begin(), source.columns.end());
            bound.names.insert(bound.names.end(), source.columnNames.begin(), source.columnNames.end());
            if (bound.scope.grouped)
                for (std::size_t i = 0; i < source.columns.size(); ++i)
                    if (!bound.scope.IsGroup(source.columns[i].sql))
                        Raise(8120, {source.columnNames[i]});
        }
        if (!found)
            Raise(qualifier.empty() ? 102 : 4104, {qualifier.empty() ? "1" : qualifier + ".*", "*"});
        return;
    }
    Fragment fragment = Translate(*item.value);
    CheckGrouped(8120);
    std::string name = !item.name.text.empty()                ? Unquoted(item.name)
                       : item.value->kind == ExprKind::Column ? Unquoted(item.value->token)
                                                              : std::string();
    if (item.variable >= 0)
    {
        bound.variables.push_back(item.variable);
        fragment = Converted(std::move(fragment), m_session.declarations[item.variable].type, Conversion::Cast);
    }
    bound.columns.push_back(std::move(fragment));
    bound.names.push_back(std::move(name));
}

std::string Translator::OrderClause(const Select &select, BoundSelect &bound)
{
    std::string sql;
    int place = 0;
    for (const Item *item = select.orderBy; item; item = item->next)
    {
        ++place;
        sql += (place > 1 ? ", " : " ORDER BY ") + OrderItem(select, *item, place, bound);
        if (item->descending)
            sql += " DESC";
    }
    return sql;
}

// A position, an alias of the select list, or (but for UNION and DISTINCT) any expression over the sources.
std::string Translator::OrderItem(const Select &select, const Item &item, int place, BoundSelect &bound)
{
    const auto position = [&](std::size_t i)
    { return std::to_string(i + 1) + (IsText(bound.columns[i].type.type) ? " COLLATE ts" : ""); };
    const Expr &value = *item.value;
    if (value.kind == ExprKind::Column && value.qualifier.text.empty())
    {
        const std::string name = Unquoted(value.token);
        for (std::size_t i = 0; i < bound.names.size(); ++i)
            if (!bound.names[i].empty() && Compare(bound.names[i], name) == 0)
                return position(i);
    }
    if (value.kind == ExprKind::Literal && value.token.kind == TokenKind::Integer)
    {
        const Fragment number = Translate(value);
        if (number.value.integer < 1 || number.value.integer > static_cast<int>(bound.columns.size()))
            Raise(108, {value.token.text});
        return position(static_cast<std::size_t>(number.value.integer) - 1);
    }
    if (select.unionNext)
        Raise(104);
    const Fragment fragment = Translate(value);
    CheckGrouped(8127);
    if (fragment.literal)
        Raise(408, {std::to_string(place)});
    for (std::size_t i = 0; i < bound.columns.size(); ++i)
        if (bound.columns[i].sql == fragment.sql)
            return position(i);
    if (select.distinct)
        Raise(145);
    return Collated(fragment);
}

std::string Translator::FromClause(const Source *first)
{
    std::string sql;
    for (const Source *source = first; source; source = source->next)
    {
        const bool parentheses = source->kind == Source::Join && (source != first || source->next);
        sql += (source == first ? "" : ", ") + std::string(parentheses ? "(" : "") + SourceClause(*source) +
               (parentheses ? ")" : "");
    }
    return sql;
}

std::string Translator::SourceClause(const Source &source)
{
    if (source.kind == Source::Join)
    {
        std::string sql = SourceClause(*source.left) + " " + source.join + " ";
        const bool parentheses = source.right->kind == Source::Join;
        sql += (parentheses ? "(" : "") + SourceClause(*source.right) + (parentheses ? ")" : "");
        return source.on ? sql + " ON " + Condition(*source.on) : sql;
    }
    BoundSource bound;
    bound.name = Unquoted(source.alias);
    bound.id = "t" + std::to_string(++m_ids);
    const auto addColumn = [&](const std::string &name, const std::string &sql, const ValueType &type)
    {
        bound.columnNames.push_back(name);
        Fragment &fragment = bound.columns.emplace_back();
        fragment.sql = bound.id + "." + sql;
        fragment.type = type;
        fragment.column = true;
    };
    std::string sql;
    if (source.kind == Source::Table)
    {
        const Table &table = TargetTable(source.name);
        bound.table = &table;
        for (const TableColumn &column : table.columns)
            addColumn(column.name, Quoted(column.name), column.type);
        sql = Quoted(table.name);
    }
    else
    {
        Query query;
        {
            // A derived table sees what surrounds the query, not its neighbours.
            const Entered entered(*this, m_scope->parent);
            query = BuildQuery(*source.derived, {true, false, nullptr});
        }
        for (std::size_t i = 0; i < query.names.size(); ++i)
        {
            if (query.names[i].empty())
                Raise(8155, {std::to_string(i + 1), bound.name});
            for (std::size_t j = 0; j < i; ++j)
                if (Compare(query.names[i], query.names[j]) == 0)
                    Raise(8156, {query.names[i], bound.name});
            addColumn(query.names[i], "c" + std::to_string(i + 1), query.types[i]);
        }
        if (!query.variables.empty())
            Raise(141);
        sql = "(" + query.sql + ")";
    }
    sql += " AS " + bound.id;
    AddSource(std::move(bound));
    return sql;
}

void Translator::AddSource(BoundSource source)
{
    for (const BoundSource &other : m_scope->sources)
        if (Compare(other.name, source.name) == 0)
            Raise(1013, {source.name});
    m_scope->sources.push_back(std::move(source));
}

} // namespace tsql
