// The translator's part for INSERT, UPDATE, DELETE and the statements that make tables and indexes.
#include "errors.h"
#include "text.h"
#include "translate.h"

namespace tsql
{
namespace
{

constexpr std::size_t maxParameters = 30000; // of one statement, below SQLite's own limit

std::string ColumnList(const Table &table, const std::vector<int> &places)
{
    std::string sql;
    for (const int place : places)
        sql += (sql.empty() ? "" : ",") + Quoted(table.columns[place].name);
    return "(" + sql + ")";
}

std::string NameList(const Item *first)
{
    std::string sql;
    for (const Item *item = first; item; item = item->next)
        sql += (sql.empty() ? "" : ",") + Quoted(Unquoted(item->name));
    return "(" + sql + ")";
}

} // namespace

const Table &Translator::TargetTable(const Token &token)
{
    const std::string name = Unquoted(token);
    const Table *table = m_catalog.Find(name);
    if (!table)
        Raise(208, {name});
    return *table;
}

std::string Translator::DefaultOf(const TableColumn &column) const
{
    return column.defaultSql.empty() ? "NULL" : column.defaultSql;
}

Translation Translator::TranslateInsert(const Statement &statement)
{
    const Table &table = TargetTable(statement.table);
    std::vector<int> places;
    for (const Item *item = statement.columns; item; item = item->next)
    {
        const std::string name = Unquoted(item->name);
        const int place = table.Find(name);
        if (place < 0)
            Raise(207, {name});
        for (const int other : places)
            if (other == place)
                Raise(264, {name});
        places.push_back(place);
    }
    if (!statement.columns)
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            places.push_back(static_cast<int>(i));

    Translation out;
    out.sql = "INSERT INTO " + Quoted(table.name) + ColumnList(table, places);
    if (statement.rows)
    {
        out.sql += InsertValues(statement, table, places, out);
        return out;
    }
    std::vector<ValueType> targets;
    for (const int place : places)
        targets.push_back(table.columns[place].type);
    const Query counted = BuildQuery(*statement.select, {false, true, nullptr});
    if (!counted.variables.empty())
        Raise(141);
    if (counted.types.size() != targets.size())
        Raise(statement.columns ? (counted.types.size() < targets.size() ? 120 : 121) : 213);
    out.sql += " " + BuildQuery(*statement.select, {false, true, &targets}).sql;
    return out;
}

// Plain values become parameters, so that inserts of one shape share one prepared statement.
std::string Translator::InsertValues(const Statement &statement, const Table &table, const std::vector<int> &places,
                                     Translation &out)
{
    std::string sql;
    for (const Expr *row = statement.rows; row; row = row->next)
    {
        sql += row == statement.rows ? " VALUES (" : ",(";
        std::size_t count = 0;
        for (const Expr *value = row->first; value; value = value->next, ++count)
        {
            if (count >= places.size())
                continue;
            if (count > 0)
                sql += ',';
            const TableColumn &column = table.columns[places[count]];
            if (value->kind == ExprKind::Default)
            {
                sql += DefaultOf(column);
                continue;
            }
            Fragment fragment = Converted(Translate(*value), column.type, Conversion::Store);
            if (fragment.literal && out.parameters.size() < maxParameters)
            {
                out.parameters.push_back(std::move(fragment.value));
                sql += '?';
            }
            else
                sql += Sql(fragment);
        }
        sql += ')';
        if (count != places.size())
            Raise(!statement.columns ? 213 : count < places.size() ? 109 : 110);
    }
    return sql;
}

// The FROM and WHERE clause that find the rows of an UPDATE or DELETE; the target is one of the sources, by alias or
// name, or is added to them. `id` receives what the target is called there.
std::string Translator::TargetRows(const Statement &statement, const Table *&table, std::string &id)
{
    std::string sql;
    if (statement.from)
        sql = FromClause(statement.from);
    const std::string name = Unquoted(statement.table);
    const BoundSource *target = nullptr;
    for (const BoundSource &source : m_scope->sources)
        if (Compare(source.name, name) == 0)
            target = &source;
    for (const BoundSource &source : m_scope->sources)
        if (!target && source.table && Compare(source.table->name, name) == 0)
            target = &source;
    if (!target)
    {
        Source added;
        added.name = added.alias = statement.table;
        sql += (sql.empty() ? "" : ", ") + SourceClause(added);
        target = &m_scope->sources.back();
    }
    if (!target->table)
        Raise(208, {name});
    table = target->table;
    id = target->id;
    return sql;
}

Translation Translator::TranslateUpdate(const Statement &statement)
{
    Scope scope;
    m_scope = &scope;
    const Table *table = nullptr;
    std::string id;
    const std::string from = TargetRows(statement, table, id);
    std::vector<std::string> columns;
    std::vector<std::string> values;
    m_subquery = false;
    for (const Item *item = statement.columns; item; item = item->next)
    {
        const std::string name = Unquoted(item->name);
        const int place = table->Find(name);
        if (place < 0)
            Raise(207, {name});
        const TableColumn &column = table->columns[place];
        for (const std::string &other : columns)
            if (other == Quoted(column.name))
                Raise(264, {name});
        columns.push_back(Quoted(column.name));
        values.push_back(item->value->kind == ExprKind::Default
                             ? DefaultOf(column)
                             : Sql(Converted(Translate(*item->value), column.type, Conversion::Store)));
    }
    // With other tables or subqueries the new values are worked out first and written then, so that none of them sees
    // what the statement itself has changed.
    const bool apart = statement.from || m_subquery;
    const std::string where = statement.where ? " WHERE " + Condition(*statement.where) : std::string();
    m_scope = nullptr;

    Translation out;
    out.sql = "UPDATE " + Quoted(table->name) + (apart ? " AS target" : " AS " + id) + " SET ";
    std::string list;
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        const std::string number = "c" + std::to_string(i + 1);
        out.sql += (i > 0 ? ", " : "") + columns[i] + " = " + (apart ? "source." + number : values[i]);
        list += ", " + values[i] + " AS " + number;
    }
    out.sql += apart ? " FROM (SELECT " + id + ".rowid AS r" + list + " FROM " + from + where +
                           ") AS source WHERE target.rowid = source.r"
                     : where;
    return out;
}

Translation Translator::TranslateDelete(const Statement &statement)
{
    Scope scope;
    m_scope = &scope;
    const Table *table = nullptr;
    std::string id;
    const std::string from = TargetRows(statement, table, id);
    const std::string where = statement.where ? " WHERE " + Condition(*statement.where) : std::string();
    m_scope = nullptr;
    Translation out;
    out.sql = "DELETE FROM " + Quoted(table->name);
    out.sql +=
        statement.from ? " WHERE rowid IN (SELECT " + id + ".rowid FROM " + from + where + ")" : " AS " + id + where;
    return out;
}

Translation Translator::TranslateCreateTable(const Statement &statement)
{
    const std::string name = Unquoted(statement.table);
    if (m_catalog.Find(name))
        Raise(2714, {name});
    const auto isColumn = [&](const Token &token, const ColumnDefinition *end)
    {
        for (const ColumnDefinition *column = statement.definitions; column != end; column = column->next)
            if (Compare(Unquoted(column->name), Unquoted(token)) == 0)
                return true;
        return false;
    };
    const auto inPrimaryKey = [&](const ColumnDefinition &column)
    {
        for (const KeyDefinition *key = statement.keys; key; key = key->next)
            for (const Item *item = key->columns; item && key->primary; item = item->next)
                if (Compare(Unquoted(item->name), Unquoted(column.name)) == 0)
                    return true;
        return false;
    };
    Translation out;
    for (const ColumnDefinition *column = statement.definitions; column; column = column->next)
    {
        const std::string columnName = Unquoted(column->name);
        if (isColumn(column->name, column))
            Raise(2705, {columnName, name});
        out.sql += (out.sql.empty() ? "" : ", ") + Quoted(columnName) + " " + Declaration(column->type);
        if (IsText(column->type.type))
            out.sql += " COLLATE ts";
        if (column->notNull || inPrimaryKey(*column))
            out.sql += " NOT NULL";
        if (column->defaultValue)
            out.sql +=
                " DEFAULT (" + Sql(Converted(Translate(*column->defaultValue), column->type, Conversion::Store)) + ")";
    }
    bool primary = false;
    for (const KeyDefinition *key = statement.keys; key; key = key->next)
    {
        if (key->primary && primary)
            Raise(8110, {name});
        primary = primary || key->primary;
        for (const Item *item = key->columns; item; item = item->next)
            if (!isColumn(item->name, nullptr))
                Raise(1911, {Unquoted(item->name)});
        // A constraint without a name gets one, which errors can show.
        const std::string made = key->primary ? "PK_" + name : "UQ_" + name + "_" + Unquoted(key->columns->name);
        out.sql += ", CONSTRAINT " + Quoted(key->name.text.empty() ? made : Unquoted(key->name)) +
                   (key->primary ? " PRIMARY KEY " : " UNIQUE ") + NameList(key->columns);
    }
    out.sql = "CREATE TABLE " + Quoted(name) + " (" + out.sql + ")";
    return out;
}

// An index is named for its table in SQLite, where all indexes share one room.
Translation Translator::TranslateCreateIndex(const Statement &statement)
{
    const Table &table = TargetTable(statement.table);
    std::string list;
    for (const Item *item = statement.columns; item; item = item->next)
    {
        const int place = table.Find(Unquoted(item->name));
        if (place < 0)
            Raise(1911, {Unquoted(item->name)});
        list += (list.empty() ? "" : ",") + Quoted(table.columns[place].name);
    }
    Translation out;
    out.sql = std::string(statement.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
              Quoted(table.name + "." + Unquoted(statement.name)) + " ON " + Quoted(table.name) + "(" + list + ")";
    return out;
}

} // namespace tsql
