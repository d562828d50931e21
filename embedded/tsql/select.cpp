// Select lists, and what follows from them.
#include "rewrite.h"

#include "errors.h"

#include <algorithm>
#include <utility>

namespace tsql
{

// TOP n, which stands at the end in SQLite. Gives what is behind it.
Rewriter::Place Rewriter::Top(Place select, Place top, Rewritten &result)
{
    const Place number = top + (Is(top + 1, "(") ? 2 : 1);
    const Place behind = Is(top + 1, "(") ? m_partner[top + 1] + 1 : number + 1;
    if (select != m_first || (Is(top + 1, "(") && !Is(number + 1, ")")) || behind > m_last ||
        m_tokens[number].kind != TokenKind::Integer || Find(top, {"UNION"}) < m_last)
        Refuse(top);
    result.limit = "LIMIT " + std::string(m_tokens[number].text);
    Omit(top, behind);
    return behind;
}

// The items of a list: SQLite has no `name = value`, and calls columns without a name in its own way.
void Rewriter::SelectList(Place select, Rewritten &result)
{
    const bool outermost = result.columns.empty() && select == m_first;
    Rewritten inner;
    Rewritten &into = outermost ? result : inner;
    Place first = select + 1;
    const bool distinct = Is(first, "DISTINCT");
    first += distinct || Is(first, "ALL") ? 1 : 0;
    if (Is(first, "TOP"))
        first = Top(select, first, result);
    const Place end = Find(first, {"FROM", "WHERE", "GROUP", "HAVING", "UNION", "ORDER"});
    for (Place item = first, next; item <= end; item = next + 1)
    {
        next = std::min(Find(item, {","}), end);
        if (next == item || Is(next - 1, "+") || Is(next - 1, "-"))
            RefuseToken(m_tokens, next == item ? item : next - 1, true);
        Item(item, next, into);
    }
    Together(select, into.columns, result);
    Ordering(select, into.columns, distinct);
    if (!into.variables.empty() && (into.variables.size() != into.columns.size() || !outermost))
        Refuse(select);
    const bool aggregated = Grouping(select, end, into.columns);
    const bool inBrackets = select > m_first + 1 && Is(select - 1, "(");
    const Place before = inBrackets ? select - 2 : select;
    const bool table = inBrackets && std::ranges::find(m_derived, select - 1) != m_derived.end();
    if (table)
    {
        std::vector<std::string> names;
        for (const Column &column : into.columns)
            names.push_back(Small(column.name));
        if (Repeats(names) || std::ranges::find(names, "") != names.end())
            Refuse(select);
    }
    if (!inBrackets || table || Is(before, "IN") || Is(before, "EXISTS"))
        return;
    if (distinct || into.columns.size() != 1 || Is(Find(end, {"UNION"}), "UNION"))
        Refuse(select);
    if (!aggregated)
        Single(select, end);
    if (const auto type = TypeFrom(select + 1); type && IsText(type->type))
        m_pieces[m_partner[select - 1]].insert(1, " COLLATE ts");
}

// The queries of a UNION have types in common; those of INSERT ... SELECT have the kinds of the columns.
void Rewriter::Together(Place select, const std::vector<Column> &columns, Rewritten &result)
{
    const Place open = Open(select);
    std::vector<std::optional<ValueType>> list = std::exchange(m_list, {});
    if (const auto before = m_lists.find(open); before != m_lists.end())
    {
        if (before->second.size() != list.size())
            Refuse(select);
        for (std::size_t i = 0; i < list.size(); ++i)
        {
            list[i] = Common(before->second[i], list[i], select);
            if (open == m_first && list[i] && i < result.columns.size())
                result.columns[i].type = list[i]->type, result.columns[i].size = list[i]->size;
        }
    }
    m_lists[open] = list;
    if (m_targets.empty() || open != m_first)
        return;
    if (list.size() != m_targets.size() ||
        std::ranges::any_of(columns, [](const Column &one) { return one.name == "*"; }))
        Refuse(select);
    for (std::size_t i = 0; i < list.size(); ++i)
        if (!IsText(m_targets[i].type) || !list[i] || !IsInteger(list[i]->type)) // an integer becomes its digits
            Common(list[i], m_targets[i], select);
}

// [name =] value, value [AS] [name]
void Rewriter::Item(Place first, Place end, Rewritten &result)
{
    const bool named = m_tokens[first].IsName() || m_tokens[first].kind == TokenKind::Variable;
    const bool assigned = named && Is(first + 1, "=") && first + 2 < end;
    const Place value = assigned ? first + 2 : first;
    std::string name;
    std::string alias;
    if (assigned && m_tokens[first].kind == TokenKind::Variable)
        AssignTo(first, value, end, result);
    else if (assigned && m_tokens[first].IsName())
        alias = Unquoted(m_tokens[first]);
    else if (value + 1 == end || Is(end - 2, ".") || (m_tokens[end - 1].IsName() && IsAlias(end - 1)))
        name =
            m_tokens[end - 1].IsName() || Is(end - 1, "*") ? Unquoted(m_tokens[end - 1]) : ""; // a column or an alias
    if (assigned)
        Omit(first, value);
    const std::optional<ValueType> type = TypeOfValue(value, end);
    if (IsWide(value))
        Refuse(value); // a decimal
    m_list.push_back(type);
    const ValueType known = type.value_or(ValueType());
    if (!alias.empty())
        m_pieces[end - 1] += " AS " + Quoted(alias);
    result.columns.push_back({alias.empty() ? std::move(name) : std::move(alias), known.type, known.size});
}

// @variable = value: converted to the variable's type.
void Rewriter::AssignTo(Place variable, Place value, Place end, Rewritten &result)
{
    const std::string name = Small(m_tokens[variable].text);
    const auto known = m_variables.find(name);
    if (known == m_variables.end())
        Raise(137, {name});
    m_pieces[value].insert(0, ConvertTo(known->second));
    m_pieces[end - 1] += ")";
    result.variables.push_back(name);
}

// The beginning of a conversion.
std::string Rewriter::ConvertTo(const ValueType &type)
{
    return "ts_convert(" + std::to_string(static_cast<int>(type.type)) + "," + std::to_string(type.size) + ",";
}

// A query that stands for a value may give one row; SQLite would take the first.
void Rewriter::Single(Place select, Place end)
{
    m_pieces[select] += " ts_single(";
    m_pieces[end - 1] += ")";
}

} // namespace tsql
