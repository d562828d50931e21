// Statements other than queries.
#include "reader.h"

#include "errors.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tsql
{

std::string Quoted(std::string_view name, char quote)
{
    std::string quoted(1, quote);
    for (const char c : name)
        quoted.append(c == quote ? 2 : 1, c);
    return quoted += quote;
}

std::string Small(std::string_view word)
{
    std::string small(word);
    std::ranges::transform(small, small.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return small;
}

std::string TextOf(const Token &literal)
{
    const std::string text = Unquoted(literal);
    return literal.IsNational() ? text : InCodePage(text);
}

std::string Collated(const std::string &sql, std::string_view type, bool column)
{
    return KindOf(type) == Kind::Text && !column ? sql + " COLLATE ts" : sql;
}

bool Reader::Is(std::string_view word, Place ahead) const
{
    return m_at + ahead < m_tokens.size() && m_tokens[m_at + ahead].Is(word);
}

bool Reader::Accept(std::string_view word)
{
    const bool there = Is(word);
    m_at += there ? 1 : 0;
    return there;
}

void Reader::Expect(std::string_view word)
{
    if (!Accept(word))
        Refuse(m_at);
}

std::string Reader::TakeName()
{
    if (!m_tokens[m_at].IsName())
        Refuse(m_at);
    return Unquoted(m_tokens[m_at++]);
}

Reader::Value Reader::Must(Value value, bool condition) const
{
    if (value.condition != condition)
        Refuse(m_at);
    return value;
}

// What only the tables can tell is wrong when the statement is reached.
void Reader::RaiseLate(int number, const std::string &name) const
{
    if (!m_checking)
        Raise(number, {name});
}

// [dbo.]name and its columns: none while names are not looked up.
Table Reader::TakeTable(std::string &name)
{
    name = TakeName();
    const std::string owner = Accept(".") ? std::exchange(name, TakeName()) : "dbo";
    Table table = m_checking || !SameWord(owner, "dbo") ? Table() : m_catalog.Find(name);
    if (table.empty())
        RaiseLate(208, name);
    return table;
}

TableColumn Reader::TakeColumn(const Table &table)
{
    const std::string name = TakeName();
    const auto found = std::ranges::find_if(table, [&](const TableColumn &one) { return SameWord(one.name, name); });
    if (found == table.end())
        RaiseLate(207, name);
    return found == table.end() ? TableColumn{name, ""} : *found;
}

// A type, with the size of texts without one. Short texts would have to be filled up with blanks.
std::string Reader::TakeType(int size)
{
    const Place first = m_at;
    std::string type = Small(TakeName());
    const bool text = KindOf(type) == Kind::Text;
    if (!IsType(type))
        Refuse(first);
    if (text && Accept("("))
    {
        const std::string_view digits = m_tokens[m_at++].text;
        size = SameWord(digits, "max") ? 0 : -1;
        std::from_chars(digits.data(), digits.data() + digits.size(), size);
        Expect(")");
    }
    if (size < 0 || size > 8000 || (type.ends_with("char") && type.find("var") == std::string::npos && size != 1))
        Refuse(first);
    return text && size > 0 ? type + "(" + std::to_string(size) + ")" : type;
}

Statement Reader::Read(Place &at)
{
    constexpr std::pair<std::string_view, Statement (Reader::*)()> statements[] = {
        {"SELECT", &Reader::Select},     {"INSERT", &Reader::Insert},      {"UPDATE", &Reader::Update},
        {"DELETE", &Reader::Delete},     {"CREATE", &Reader::Create},      {"DROP", &Reader::Drop},
        {"BEGIN", &Reader::Transaction}, {"COMMIT", &Reader::Transaction}, {"ROLLBACK", &Reader::Transaction},
        {"DECLARE", &Reader::Declare}};
    m_at = at;
    Statement statement;
    const auto *const known = std::ranges::find_if(statements, [this](const auto &one) { return Is(one.first); });
    if (known != std::end(statements))
        statement = (this->*known->second)();
    else if (Accept("IF"))
        statement = {Statement::Kind::Condition, "SELECT 1 WHERE " + Condition().sql};
    else if (Accept("PRINT") && m_tokens[m_at].IsText())
        statement = {Statement::Kind::Message, "SELECT " + Literal().sql};
    else if (Is("SET") && SameWord(m_tokens[m_at + 1].text, "NOCOUNT") && (Is("ON", 2) || Is("OFF", 2)))
        statement = {Statement::Kind::NoCount, Small(m_tokens[(m_at += 3) - 1].text)};
    else
        Refuse(m_at);
    at = m_at;
    return statement;
}

Statement Reader::Select()
{
    const Query query = ReadQuery(Use::Rows);
    Statement statement{query.variables.empty() ? Statement::Kind::Rows : Statement::Kind::Assignment, query.sql};
    statement.variables = query.variables;
    for (const Value &item : query.items)
        statement.columns.push_back({item.name, TypeOf(item.type), SizeOf(item.type)});
    return statement;
}

// A value on its way into a column. Numbers become texts there by themselves, and lengths and ranges are checked there.
Reader::Value Reader::Assigned(const TableColumn &column, Value value, Place at) const
{
    const Kind from = KindOf(value.type);
    const Kind to = KindOf(column.type);
    const bool cut = value.type != column.type && (column.type == "bit" || value.type == "bigint");
    const bool fits = (from == to && !cut) || (from == Kind::Number && to == Kind::Text);
    return from == Kind::None || to == Kind::None || fits ? value : Converted(value, column.type, at);
}

// INSERT [INTO] table [(columns)] VALUES (values), ... or a query
Statement Reader::Insert()
{
    const Place first = m_at++;
    Accept("INTO");
    std::string name;
    Table targets = TakeTable(name);
    std::string columns;
    if (Accept("("))
    {
        Table named;
        do
        {
            named.push_back(TakeColumn(targets));
            columns += Comma(columns) + Quoted(named.back().name);
            if (std::ranges::count(named, named.back().name, &TableColumn::name) > 1)
                Refuse(first);
        } while (Accept(","));
        Expect(")");
        columns = " (" + columns + ")";
        targets = named;
    }
    const std::string rows = Accept("VALUES") ? "VALUES " + Rows(targets) : ReadQuery(Use::Insert, &targets).sql;
    return {
        Statement::Kind::Change, "INSERT INTO " + Quoted(name) + columns + " " + rows, {}, {}, std::move(m_constants)};
}

// The rows behind VALUES. The values of a column are of one kind: the server would convert them to one before. The
// constants of the first row stand beside the statement, which then is the same for all rows that are sent one by one.
std::string Reader::Rows(const Table &targets)
{
    std::string sql;
    std::vector<std::string> types;
    do
    {
        const Place first = m_at;
        std::string row;
        std::size_t i = 0;
        Expect("(");
        do
        {
            const Token &token = m_tokens[m_at];
            const Place behind = m_at + 1;
            Value value = Operand();
            if (sql.empty() && m_at == behind && (token.IsText() || token.kind == TokenKind::Integer))
            {
                m_constants.push_back(token);
                value.sql = ":" + std::to_string(m_constants.size());
            }
            types.resize(std::max(types.size(), i + 1));
            Common(types[i], value, first);
            row += Comma(row) + (i < targets.size() ? Assigned(targets[i], value, first) : value).sql;
            ++i;
        } while (Accept(","));
        Expect(")");
        if (i != targets.size() && !m_checking)
            Refuse(first - 1);
        sql += Comma(sql) + ("(" + row + ")");
    } while (Accept(","));
    return sql;
}

// UPDATE table SET column = value, ... [WHERE condition]
Statement Reader::Update()
{
    const Place first = m_at++;
    Scope scope;
    m_scope = &scope;
    std::string name;
    const Table table = TakeTable(name);
    scope.sources.push_back({Small(name), table});
    Expect("SET");
    std::string sets;
    std::vector<std::string> written;
    do
    {
        const TableColumn column = TakeColumn(table);
        if (!Is("="))
            Refuse(m_at);
        ++m_at;
        scope.columns.clear();
        scope.closed = true; // SQLite changes row by row, and a query would see it
        const Value value = Assigned(column, Operand(), first);
        scope.closed = false;
        const bool itself = value.column && SameWord(Unquoted(m_tokens[m_at - 1]), column.name);
        if (std::ranges::count(written, column.name) > 0 || (column.key && !scope.columns.empty() && !itself))
            Refuse(first); // keys are checked at each row
        written.push_back(column.name);
        sets += Comma(sets) + Quoted(column.name) + " = " + value.sql;
    } while (Accept(","));
    return {Statement::Kind::Change, "UPDATE " + Quoted(name) + " SET " + sets + Where()};
}

// DELETE [FROM] table [WHERE condition]
Statement Reader::Delete()
{
    ++m_at;
    Accept("FROM");
    Scope scope;
    m_scope = &scope;
    std::string name;
    const Table table = TakeTable(name);
    scope.sources.push_back({Small(name), table});
    return {Statement::Kind::Change, "DELETE FROM " + Quoted(name) + Where()};
}

std::string Reader::Where()
{
    return Accept("WHERE") ? " WHERE " + Condition().sql : "";
}

// CREATE TABLE name (columns, PRIMARY KEY (columns)), CREATE INDEX name ON table (columns). The name of an index
// belongs to its table; in SQLite it belongs to the file.
Statement Reader::Create()
{
    ++m_at;
    const bool index = Accept("INDEX");
    if (!index)
        Expect("TABLE");
    const std::string name = TakeName();
    std::string table;
    std::string sql;
    if (index)
    {
        Expect("ON");
        const Table columns = TakeTable(table);
        return {Statement::Kind::Definition,
                "CREATE INDEX " + Quoted(table + "." + name) + " ON " + Quoted(table) + ColumnList(columns, false)};
    }
    if (!m_checking && !m_catalog.Find(name).empty())
        Raise(2714, {name});
    Expect("(");
    Table columns;
    do
    {
        sql += Comma(sql);
        if (Accept("PRIMARY"))
        {
            Expect("KEY");
            sql += "PRIMARY KEY" + ColumnList(columns, true);
        }
        else
            sql += NewColumn(columns);
    } while (Accept(","));
    Expect(")");
    return {Statement::Kind::Definition, "CREATE TABLE " + Quoted(name) + " (" + sql + ")"};
}

// (column, ...) of an index, or of a key, whose columns have to be NOT NULL: SQLite does not see to that.
std::string Reader::ColumnList(const Table &columns, bool key)
{
    std::string sql;
    Expect("(");
    do
    {
        const TableColumn column = TakeColumn(columns);
        if (key && !column.key) // see NewColumn
            Refuse(m_at - 1);
        sql += Comma(sql) + Quoted(column.name);
    } while (Accept(","));
    Expect(")");
    return " (" + sql + ")";
}

// Lengths and ranges become checks, since SQLite keeps what does not fit; ts_fits knows the error. `key` of a column
// stands for NOT NULL.
std::string Reader::NewColumn(Table &columns)
{
    const std::string name = TakeName();
    const std::string type = TakeType(1);
    const std::string column = Quoted(name);
    const std::string size = std::to_string(SizeOf(type));
    std::string fits;
    if (type == "tinyint" || type == "smallint")
        fits = column + " BETWEEN " + (type == "tinyint" ? "0 AND 255" : "-32768 AND 32767");
    else if (size != "0")
        fits = "length(" + column + (type.find("var") != std::string::npos ? ") <= " : ") = ") + size;
    std::string sql = column + " " + type + (KindOf(type) == Kind::Text ? " COLLATE ts" : "");
    if (!fits.empty())
        sql += " CHECK (" + fits + " OR ts_fits('" + type + "', " + column + "))";
    columns.push_back({name, type});
    while (Is("PRIMARY") || Is("NOT") || Is("NULL"))
    {
        const bool primary = Accept("PRIMARY");
        columns.back().key = primary || Accept("NOT");
        sql += primary ? " PRIMARY KEY NOT NULL" : columns.back().key ? " NOT NULL" : "";
        Expect(primary ? "KEY" : "NULL");
    }
    return sql;
}

Statement Reader::Drop()
{
    ++m_at;
    Expect("TABLE");
    std::string name;
    TakeTable(name);
    return {Statement::Kind::Definition, "DROP TABLE " + Quoted(name)};
}

// BEGIN, COMMIT and ROLLBACK [TRAN | TRANSACTION]
Statement Reader::Transaction()
{
    const std::string word = Small(m_tokens[m_at++].text);
    if (!Accept("TRAN") && !Accept("TRANSACTION") && word == "begin")
        Refuse(m_at - 1); // a block
    return {Statement::Kind::Transaction, word == "begin" ? "begin immediate" : word};
}

// DECLARE @name type, ... A statement may be read more than once.
Statement Reader::Declare()
{
    do
    {
        const Place place = ++m_at;
        if (m_tokens[m_at++].kind != TokenKind::Variable)
            Refuse(place);
        const Variable variable{TakeType(1), place};
        if (m_variables.try_emplace(Small(m_tokens[place].text), variable).first->second.place != place || Is("="))
            Refuse(place);
    } while (Is(","));
    return {};
}

} // namespace tsql
