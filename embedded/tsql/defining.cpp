// Reading CREATE and DROP of tables and indexes.
#include "errors.h"
#include "text.h"
#include "translator.h"

#include <utility>

namespace tsql
{
namespace
{

std::string QuotedList(const std::vector<std::string> &names)
{
    std::string sql;
    for (const std::string &name : names)
        sql += (sql.empty() ? "" : ",") + Quoted(name);
    return "(" + sql + ")";
}

bool Contains(const std::vector<std::string> &names, const std::string &wanted)
{
    return std::any_of(names.begin(), names.end(), [&](const auto &name) { return Compare(name, wanted) == 0; });
}

} // namespace

struct Translator::Definition
{
    struct Key
    {
        std::string name;
        bool primary = false;
        std::vector<std::string> columns;
    };
    std::string name;
    std::vector<std::string> columns;
    std::vector<std::string> types; // of the columns, with what follows them
    std::vector<Key> keys;
};

// (a, b, c), a direction behind each allowed
std::vector<std::string> Translator::ColumnNames()
{
    std::vector<std::string> names;
    Expect(Word::LeftParenthesis);
    do
    {
        names.push_back(TakeName());
        if (!Accept(Word::Desc))
            Accept(Word::Asc);
    } while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    return names;
}

Translation Translator::CreateTable()
{
    Definition table;
    table.name = TableName();
    if (!m_checking && m_catalog.Find(table.name))
        Raise(2714, {table.name});
    Expect(Word::LeftParenthesis);
    do
    {
        if (Is(Word::RightParenthesis) && !table.columns.empty())
            break; // a comma may stand behind the last column
        if (!ReadKey(table, ""))
            ReadColumn(table);
    } while (Accept(Word::Comma));
    Expect(Word::RightParenthesis);
    if (table.columns.empty())
        SyntaxError();
    if (m_checking)
        return {};

    std::string keys;
    std::vector<std::string> primary;
    for (const Definition::Key &key : table.keys)
    {
        if (key.primary && !primary.empty())
            Raise(8110, {table.name});
        for (const std::string &column : key.columns)
            if (!Contains(table.columns, column))
                Raise(1911, {column});
        if (key.primary)
            primary = key.columns;
        // A constraint without a name gets one, which errors can show.
        const std::string made = key.primary ? "PK_" + table.name : "UQ_" + table.name + "_" + key.columns[0];
        keys += ", CONSTRAINT " + Quoted(key.name.empty() ? made : key.name) +
                (key.primary ? " PRIMARY KEY " : " UNIQUE ") + QuotedList(key.columns);
    }
    std::string sql;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        sql += (i > 0 ? ", " : "") + Quoted(table.columns[i]) + " " + table.types[i] +
               (Contains(primary, table.columns[i]) ? " NOT NULL" : "");
    return {.action = Action::Define, .sql = "CREATE TABLE " + Quoted(table.name) + " (" + sql + keys + ")"};
}

// name type [NULL | NOT NULL | DEFAULT x | key]...
void Translator::ReadColumn(Definition &table)
{
    const std::string name = TakeName();
    const ValueType type = TypeName(1);
    if (!m_checking && Contains(table.columns, name))
        Raise(2705, {name, table.name});
    std::string text = Declaration(type) + (IsText(type.type) ? " COLLATE ts" : "");
    for (;;)
    {
        if (Accept(Word::Not))
        {
            Expect(Word::Null);
            text += " NOT NULL";
        }
        else if (Accept(Word::Default))
            text += " DEFAULT (" + Sql(Converted(SumValue(), type, Conversion::Store)) + ")";
        else if (!ReadKey(table, name) && !Accept(Word::Null))
            break;
    }
    table.columns.push_back(name);
    table.types.push_back(std::move(text));
}

// [CONSTRAINT name] PRIMARY KEY | UNIQUE [CLUSTERED | NONCLUSTERED] (columns); the columns are `column` alone when it
// stands there. False when no key follows.
bool Translator::ReadKey(Definition &table, const std::string &column)
{
    const bool named = Accept(Word::Constraint);
    Definition::Key key{named ? TakeName() : "", Is(Word::Primary), {column}};
    if (!Is(Word::Primary) && !Is(Word::Unique))
    {
        if (named)
            SyntaxError();
        return false;
    }
    Take();
    if (key.primary)
        Expect(Word::Key);
    if (!Accept(Word::Clustered))
        Accept(Word::Nonclustered);
    if (column.empty())
        key.columns = ColumnNames();
    table.keys.push_back(std::move(key));
    return true;
}

// An index is named for its table in SQLite, where all indexes share one room.
Translation Translator::CreateIndex()
{
    const bool unique = Accept(Word::Unique);
    if (!Accept(Word::Clustered))
        Accept(Word::Nonclustered);
    Expect(Word::Index);
    const std::string name = TakeName();
    Expect(Word::On);
    const std::string tableName = TableName();
    std::vector<std::string> columns = ColumnNames();
    if (m_checking)
        return {};
    const Table &table = FindTable(tableName);
    for (std::string &column : columns)
    {
        const int place = table.Find(column);
        if (place < 0)
            Raise(1911, {column});
        column = table.columns[place].name;
    }
    if (!m_catalog.FindIndex(tableName + "." + name).empty())
        Raise(1913, {name, table.name});
    return {.action = Action::Define,
            .sql = std::string(unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") + Quoted(table.name + "." + name) +
                   " ON " + Quoted(table.name) + QuotedList(columns)};
}

Translation Translator::DropTables()
{
    std::string sql;
    do
    {
        const std::string name = TableName();
        const Table *table = m_checking ? nullptr : m_catalog.Find(name);
        if (!m_checking && !table)
            Raise(3701, {"table", name});
        sql += table ? "DROP TABLE " + Quoted(table->name) + ";" : "";
    } while (Accept(Word::Comma));
    return {.action = Action::Define, .sql = std::move(sql)};
}

// DROP INDEX table.index, or DROP INDEX index ON table
Translation Translator::DropIndex()
{
    Expect(Word::Index);
    std::string name = TakeName();
    std::string table;
    while (Accept(Word::Dot))
        table = std::exchange(name, TakeName());
    if (table.empty())
    {
        Expect(Word::On);
        table = TableName();
    }
    const std::string shown = table + "." + name;
    const std::string index = m_checking ? shown : m_catalog.FindIndex(shown);
    if (index.empty())
        Raise(3701, {"index", shown});
    return {.action = Action::Define, .sql = "DROP INDEX " + Quoted(index)};
}

} // namespace tsql
