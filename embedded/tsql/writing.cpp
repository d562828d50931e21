// Reading INSERT, UPDATE and DELETE.
#include "errors.h"
#include "text.h"
#include "translator.h"

#include <utility>

namespace tsql
{
namespace
{

constexpr std::size_t maxParameters = 30000; // of one statement, below SQLite's own limit

std::string DefaultOf(const TableColumn &column)
{
    return column.defaultSql.empty() ? "NULL" : column.defaultSql;
}

} // namespace

// When a batch is checked, every table is one of which nothing is known.
const Table &Translator::FindTable(const std::string &name)
{
    static const Table any{"", {TableColumn()}};
    const Table *table = m_checking ? &any : m_catalog.Find(name);
    if (!table)
        Raise(208, {name});
    return *table;
}

// Notes the place of a column that is written, which must not be among `places` yet.
void Translator::AddPlace(const Table &table, const std::string &name, std::vector<int> &places) const
{
    const int place = m_checking ? 0 : table.Find(name);
    if (place < 0)
        Raise(207, {name});
    if (!m_checking && std::find(places.begin(), places.end(), place) != places.end())
        Raise(264, {name});
    places.push_back(place);
}

Translation Translator::Insert()
{
    Translation out{.action = Action::Write};
    Take();
    Accept(Word::Into);
    const Table &table = FindTable(TableName());
    const bool named = Is(Word::LeftParenthesis);
    std::vector<int> places;
    if (named)
        for (const std::string &column : ColumnNames())
            AddPlace(table, column, places);
    for (std::size_t i = 0; !named && i < table.columns.size(); ++i)
        places.push_back(static_cast<int>(i));
    out.sql = "INSERT INTO " + Quoted(table.name);
    for (std::size_t i = 0; !m_checking && i < places.size(); ++i)
        out.sql += (i > 0 ? "," : "(") + Quoted(table.columns[places[i]].name);
    out.sql += ")";
    if (Is(Word::Select))
    {
        Query query = ReadQuery(true);
        if (m_checking)
            return out;
        if (!query.selects[0].variables.empty())
            Raise(141);
        if (query.types.size() != places.size())
            Raise(!named ? 213 : query.types.size() < places.size() ? 120 : 121);
        std::vector<ValueType> targets;
        for (const int place : places)
            targets.push_back(table.columns[place].type);
        Write(query, false, &targets);
        out.sql += " " + query.sql;
        return out;
    }
    Expect(Word::Values);
    int rows = 0;
    do
    {
        if (++rows > 1000)
            Raise(10738);
        out.sql += rows == 1 ? " VALUES " : ",";
        const std::size_t count = ReadRow(table, places, out);
        if (!m_checking && count != places.size())
            Raise(!named ? 213 : count < places.size() ? 109 : 110);
    } while (Accept(Word::Comma));
    return out;
}

// (value, DEFAULT ...); gives their number. Plain values become parameters, so that inserts of one shape share one
// prepared statement.
std::size_t Translator::ReadRow(const Table &table, const std::vector<int> &places, Translation &out)
{
    std::size_t count = 0;
    Expect(Word::LeftParenthesis);
    do
    {
        const bool known = count < places.size(); // else there are too many
        const TableColumn &column = table.columns[known ? places[count] : 0];
        out.sql += count++ > 0 ? ',' : '(';
        if (Accept(Word::Default))
        {
            out.sql += DefaultOf(column);
            continue;
        }
        Fragment value = Converted(ReadValue(), column.type, Conversion::Store);
        const bool parameter = value.literal && out.parameters.size() < maxParameters;
        out.sql += parameter ? "?" : Sql(value);
        if (parameter)
            out.parameters.push_back(std::move(value.value));
    } while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    out.sql += ')';
    return count;
}

// The FROM clause that finds the rows of an UPDATE or DELETE: the target is one of its sources, by alias or name, or is
// added to them.
std::string Translator::Target(const std::string &name, Source &target)
{
    std::string sql = Accept(Word::From) ? FromClause() : "";
    if (m_checking)
        return sql;
    const Source *found = nullptr;
    for (const Source &source : m_scope->sources)
        if (Compare(source.name, name) == 0)
            found = &source;
    for (const Source &source : m_scope->sources)
        if (!found && source.table && Compare(source.table->name, name) == 0)
            found = &source;
    if (!found)
        sql += (sql.empty() ? "" : ", ") + AddTable(name, name);
    target = found ? *found : m_scope->sources.back();
    if (!target.table)
        Raise(208, {name});
    return sql;
}

// What follows SET is read behind the FROM clause, which tells what its names mean.
Translation Translator::Update()
{
    Token &start = m_tokens[m_at];
    Take();
    const std::string name = TableName();
    Expect(Word::Set);
    const std::size_t list = m_at;
    Scope scope;
    const auto entered = Entered(&scope);
    Source target;
    if (m_checking)
        target.table = &FindTable(name);
    std::vector<int> places;
    std::vector<std::string> values;
    const auto readList = [&]
    {
        do
        {
            AddPlace(*target.table, TableName(), places);
            Expect(Word::Equal);
            const TableColumn &column = target.table->columns[places.back()];
            values.push_back(Accept(Word::Default) ? DefaultOf(column)
                                                   : Sql(Converted(ReadValue(), column.type, Conversion::Store)));
        } while (Accept(Word::Comma));
    };
    if (m_checking)
    {
        readList();
        start.other = static_cast<std::uint32_t>(m_at);
    }
    m_at = start.other;
    const bool hasFrom = Is(Word::From);
    const std::string from = Target(name, target);
    const std::size_t end = m_at;
    m_subquery = false;
    if (!m_checking)
    {
        m_at = list;
        readList();
        m_at = end;
    }
    // With other tables or subqueries the new values are worked out first and written then, so that none of them sees
    // what the statement itself has changed.
    const bool apart = hasFrom || m_subquery;
    const std::string where = Accept(Word::Where) ? " WHERE " + Condition() : "";
    if (m_checking)
        return {};
    const std::string table = Quoted(target.table->name);
    if (m_rewriting)
        return {.action = Action::Update, .sql = Rewriting(target, places, values, from + where)};
    std::string assigned;
    std::string selected;
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        const std::string number = "c" + std::to_string(i + 1);
        assigned += (i > 0 ? ", " : "") + Quoted(target.table->columns[places[i]].name) + " = " +
                    (apart ? "source." + number : values[i]);
        selected += ", " + values[i] + " AS " + number;
    }
    return {.action = Action::Update,
            .sql = "UPDATE " + table + " AS " + (apart ? "target" : target.id) + " SET " + assigned +
                   (apart ? " FROM (SELECT " + target.id + ".rowid AS r" + selected + " FROM " + from + where +
                                ") AS source WHERE target.rowid = source.r"
                          : where)};
}

// The rows that `rows` finds, taken out and put back with new values.
std::string Translator::Rewriting(const Source &target, const std::vector<int> &places,
                                  const std::vector<std::string> &values, const std::string &rows)
{
    std::string names;
    std::string changed;
    for (std::size_t i = 0; i < target.names.size(); ++i)
    {
        const auto place = std::find(places.begin(), places.end(), static_cast<int>(i));
        names += "," + Quoted(target.names[i]);
        changed += "," + (place != places.end() ? values[static_cast<std::size_t>(place - places.begin())]
                                                : target.ColumnAt(i).sql);
    }
    const std::string table = Quoted(target.table->name);
    return "CREATE TEMP TABLE kvembedded_changed AS SELECT " + target.id + ".rowid AS r" + changed + " FROM " + rows +
           " GROUP BY 1; DELETE FROM " + table + " WHERE rowid IN (SELECT r FROM kvembedded_changed); INSERT INTO " +
           table + "(rowid" + names + ") SELECT * FROM kvembedded_changed; DROP TABLE kvembedded_changed";
}

Translation Translator::UpdateByRewriting()
{
    const Kept<bool> rewriting{m_rewriting, std::exchange(m_rewriting, true)};
    m_at = m_statement;
    return Statement();
}

Translation Translator::Delete()
{
    Take();
    Accept(Word::From);
    const std::string name = TableName();
    Scope scope;
    const auto entered = Entered(&scope);
    const bool hasFrom = Is(Word::From);
    Source target;
    const std::string from = Target(name, target);
    const std::string where = Accept(Word::Where) ? " WHERE " + Condition() : "";
    if (m_checking)
        return {};
    Translation out{.action = Action::Write, .sql = "DELETE FROM " + Quoted(target.table->name)};
    out.sql += hasFrom ? " WHERE rowid IN (SELECT " + target.id + ".rowid FROM " + from + where + ")"
                       : " AS " + target.id + where;
    return out;
}

} // namespace tsql
