// Rewriting the statements that write and that define tables.
#include "errors.h"
#include "rewrite.h"
#include "text.h"

#include <algorithm>

namespace tsql
{
namespace
{

constexpr std::size_t maxParameters = 30000; // of one statement, below SQLite's own limit

} // namespace

// (a, b, c), with a direction behind each allowed
std::vector<std::size_t> Rewriter::Names()
{
    std::vector<std::size_t> names;
    Expect("(");
    do
    {
        names.push_back(TakeName());
        if (!Accept("DESC"))
            Accept("ASC");
    } while (Accept(","));
    Expect(")");
    return names;
}

void Rewriter::Insert(Step &step)
{
    step.action = Action::Write;
    step.verb = "INSERT";
    Expect("INSERT");
    if (!Accept("INTO"))
        m_pieces[m_at].before = "INTO ";
    const std::string name = TableName();
    const Table *const table = AddTable(name, name);
    std::vector<TableColumn> targets;
    const bool named = Is("(");
    if (named)
        for (const std::size_t at : Names())
        {
            targets.push_back(*Target(table, at));
            if (std::count_if(targets.begin(), targets.end(),
                              [&](const TableColumn &other) { return other.name == targets.back().name; }) > 1 &&
                table)
                Refuse(at);
        }
    else if (table)
        targets = table->columns;
    m_columns.clear();
    if (Is("SELECT"))
        return InsertQuery(targets);
    Expect("VALUES");
    do
        InsertRow(step, targets);
    while (Accept(","));
}

// Plain values become parameters, so that inserts of one shape share one prepared statement.
void Rewriter::InsertRow(Step &step, const std::vector<TableColumn> &targets)
{
    std::size_t count = 0;
    Expect("(");
    for (bool more = true; more; more = Accept(","), ++count)
    {
        Operand value = ReadValue();
        if (count >= targets.size())
            continue; // an error, or a table that is not there
        const ValueType &type = targets[count].type;
        bool parameter = value.literal && step.parameters.size() < maxParameters;
        try
        {
            Value constant = parameter ? LiteralValue(value) : Value();
            if (parameter && constant.kind != Value::Null && !FitsAsItIs(value.type, type))
                constant = tsql::Convert(constant, value.type, type, Conversion::Store);
            if (parameter)
                step.parameters.push_back(std::move(constant));
        }
        catch (const SqlError &)
        {
            parameter = false; // fails when the statement runs
        }
        if (!parameter)
        {
            Convert(value, type, Conversion::Store);
            continue;
        }
        Blank(value.first, value.last + 1);
        Replace(value.first, "?");
    }
    Expect(")");
    if (count != targets.size() && !m_later)
        Later(MakeError(213));
}

// What has to be converted is converted from outside: equal rows are taken together before.
void Rewriter::InsertQuery(const std::vector<TableColumn> &targets)
{
    Query query = ReadQuery(true);
    std::string names;
    std::string values;
    bool convert = false;
    const auto star = [](const Item &item) { return item.star; };
    if (std::any_of(query.items.begin(), query.items.end(), star) || !query.variables.empty())
        Unsupported("Line " + LineOf(query.first) + ": INSERT of such a SELECT");
    if (query.items.size() != targets.size() && !m_later)
        Later(MakeError(213));
    for (std::size_t i = 0; i < std::min(query.items.size(), targets.size()); ++i)
    {
        const ValueType &from = query.items[i].value.type;
        const ValueType &to = targets[i].type;
        const bool fits = query.items[i].value.untyped || FitsAsItIs(from, to);
        const std::string name = (i > 0 ? ",c" : "c") + std::to_string(i);
        names += name;
        values += fits ? name
                       : (i > 0 ? ",ts_convert(c" : "ts_convert(c") + std::to_string(i) + "," +
                             std::to_string(Pack(from)) + "," + std::to_string(Pack(to)) + ",0)";
        convert = convert || !fits;
    }
    if (convert)
        Wrap({.first = query.first, .last = query.last}, "WITH q(" + names + ") AS (",
             ") SELECT " + values + " FROM q");
}

void Rewriter::Update(Step &step)
{
    step.action = Action::Write;
    step.verb = "UPDATE";
    Expect("UPDATE");
    const std::string name = TableName();
    const Table *const table = AddTable(name, name);
    Expect("SET");
    std::vector<const TableColumn *> targets;
    do
    {
        const std::size_t at = TakeName();
        targets.push_back(Target(table, at));
        if (table && std::count(targets.begin(), targets.end(), targets.back()) > 1)
            Refuse(at);
        Expect("=");
        Operand value = ReadValue();
        // SQLite looks at keys, and at what a query finds, row by row; the server when the statement is through.
        const bool same = value.column && tsql::Compare(value.name.name, targets.back()->name) == 0;
        if (m_subqueries > 0 || (targets.back()->unique && !value.literal && !same))
            Unsupported("Line " + LineOf(at) + ": such a value for '" + targets.back()->name + "'");
        Convert(value, targets.back()->type, Conversion::Store);
    } while (Accept(","));
    if (Accept("WHERE"))
        Condition();
}

void Rewriter::Delete(Step &step)
{
    step.action = Action::Write;
    step.verb = "DELETE";
    Expect("DELETE");
    if (!Accept("FROM"))
        m_pieces[m_at].before = "FROM ";
    const std::string name = TableName();
    AddTable(name, name);
    if (Accept("WHERE"))
        Condition();
}

// Types are written as they are read back, and texts get the collation; the columns of the key are NOT NULL.
void Rewriter::CreateTable(Step &)
{
    Expect("CREATE");
    Expect("TABLE");
    const std::string table = TableName();
    if (m_catalog.Find(table))
        Later(MakeError(2714, {table}));
    Expect("(");
    std::vector<std::pair<std::string, std::size_t>> columns; // their names, and the last token of their types
    do
    {
        const bool key = Is("PRIMARY");
        std::vector<std::size_t> keys{m_at};
        if (!key)
        {
            const std::string name = Unquoted(m_tokens[TakeName()]);
            const std::size_t first = m_at;
            const ValueType type = ReadType(1);
            Blank(first, m_at);
            m_pieces[first].before = Declaration(type) + (type.IsText() ? " COLLATE ts" : "");
            columns.push_back({name, first});
        }
        while (!key && (Is("NULL") || Is("NOT")))
        {
            Accept("NOT");
            Expect("NULL");
        }
        if (!Accept("PRIMARY"))
            continue;
        Expect("KEY");
        if (const std::size_t at = m_at; Accept("CLUSTERED") || Accept("NONCLUSTERED"))
            Blank(at, m_at);
        if (key)
            keys = Names();
        for (const std::size_t at : keys)
            for (const auto &[name, last] : columns)
                if (tsql::Compare(name, Unquoted(m_tokens[at])) == 0)
                    m_pieces[last].after = " NOT NULL";
        while (!key && (Is("NULL") || Is("NOT")))
        {
            Accept("NOT");
            Expect("NULL");
        }
    } while (Accept(","));
    Expect(")");
}

// An index is named for its table in SQLite, where all indexes share one room.
void Rewriter::CreateIndex(Step &)
{
    Expect("CREATE");
    Accept("UNIQUE");
    if (const std::size_t at = m_at; Accept("CLUSTERED") || Accept("NONCLUSTERED"))
        Blank(at, m_at);
    Expect("INDEX");
    const std::size_t index = TakeName();
    Expect("ON");
    const std::string name = TableName();
    const Table *const table = AddTable(name, name);
    for (const std::size_t at : Names())
        Target(table, at);
    m_pieces[index] = {"", Quoted((table ? table->name : name) + "." + Unquoted(m_tokens[index]))};
}

void Rewriter::Drop(Step &)
{
    Expect("DROP");
    Expect("TABLE");
    const std::string name = TableName();
    if (!m_catalog.Find(name))
        Later(MakeError(3701, {"table", name}));
}

} // namespace tsql
