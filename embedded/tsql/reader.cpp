// Statements other than queries.
#include "reader.h"

#include "errors.h"

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

bool Reader::Is(std::string_view word, Place ahead) const
{
    return m_at + ahead < m_tokens.size() && m_tokens[m_at + ahead].Is(word);
}

Reader::Value Reader::Must(bool condition, Value value) const
{
    Require((value.type == "condition") == condition);
    return value;
}

// What `next` reads, once or more often, with commas between.
std::string Reader::Listed(const std::function<std::string()> &next)
{
    std::string list = next();
    while (Accept(","))
        list += ", " + next();
    return list;
}

std::string Reader::Bracketed(const std::function<std::string()> &next)
{
    Expect("(");
    const std::string list = Listed(next);
    Expect(")");
    return "(" + list + ")";
}

std::string Reader::TakeName()
{
    Require(m_tokens[m_at].IsName());
    return Unquoted(m_tokens[m_place = m_at++]);
}

TableColumn Reader::TakeColumn(const Table &table)
{
    const std::string name = TakeName();
    if (const TableColumn *const found = Find(table, name))
        return *found;
    if (m_catalog)
        Raise(207, {name});
    return {name, ""};
}

// A type, with the size of texts without one. Short texts would have to be filled up with blanks.
std::string Reader::TakeType(int size)
{
    const std::string type = Small(TakeName());
    const bool text = KindOf(type) == Kind::Text;
    if (text && Accept("("))
    {
        const std::string_view digits = m_tokens[m_at++].text;
        size = SameWord(digits, "max") ? 0 : -1;
        std::from_chars(digits.data(), digits.data() + digits.size(), size);
        Expect(")");
    }
    const bool fixed = type == "char" || type == "nchar";
    Support(TypeOf(type) != Type::None && size >= 0 && size <= 8000 && (!fixed || size == 1));
    return text && size > 0 ? type + "(" + std::to_string(size) + ")" : type;
}

Statement Reader::Read(Place at)
{
    constexpr std::pair<std::string_view, Statement (Reader::*)()> statements[] = {
        {"SELECT", &Reader::Select},     {"INSERT", &Reader::Insert},      {"UPDATE", &Reader::Change},
        {"DELETE", &Reader::Change},     {"CREATE", &Reader::Create},      {"DROP", &Reader::Drop},
        {"BEGIN", &Reader::Transaction}, {"COMMIT", &Reader::Transaction}, {"ROLLBACK", &Reader::Transaction},
        {"DECLARE", &Reader::Declare}};
    m_place = m_at = at;
    Statement statement;
    const auto *const known = std::ranges::find_if(statements, [this](const auto &one) { return Is(one.first); });
    if (known != std::end(statements))
        statement = (this->*known->second)();
    else if (Accept("IF"))
        statement = {Statement::Kind::Condition, "SELECT 1 WHERE " + Condition().sql};
    else
        Require(false);
    statement.end = m_at;
    return statement;
}

Statement Reader::Select()
{
    const Query query = ReadQuery(Use::Rows);
    Statement statement{query.variables.empty() ? Statement::Kind::Rows : Statement::Kind::Assignment, query.sql};
    statement.variables = query.variables;
    for (const Value &item : query.items)
        statement.columns.push_back({item.name, item.type.empty() ? Type::Int : TypeOf(item.type), SizeOf(item.type)});
    return statement;
}

// A value on its way into a column. Numbers become texts there by themselves, and lengths and ranges are checked there.
Reader::Value Reader::Assigned(const TableColumn &column, const Value &value) const
{
    const Kind from = KindOf(value.type);
    const Kind to = KindOf(column.type);
    const bool same = from == to && column.type != "bit" && value.type != "bigint";
    const bool fits = same || (from == Kind::Number && to == Kind::Text);
    return from == Kind::None || to == Kind::None || fits ? value : Converted(value, column.type);
}

// INSERT [INTO] table [(columns)] VALUES (values), ... or a query
Statement Reader::Insert()
{
    ++m_at;
    Accept("INTO");
    const Source table = TakeTable();
    Table targets;
    std::string columns;
    const auto target = [&]
    {
        targets.push_back(TakeColumn(table.columns));
        Support(Find(targets, targets.back().name) == &targets.back()); // named once
        return Quoted(targets.back().name);
    };
    if (Is("("))
        columns = Bracketed(target);
    else
        targets = table.columns;
    const std::string rows = Accept("VALUES") ? "VALUES " + Rows(targets) : ReadQuery(Use::Other, &targets).sql;
    return {Statement::Kind::Change, "INSERT INTO " + table.sql + " " + columns + rows, {}, {}, std::move(m_constants)};
}

// The rows behind VALUES. The values of a column are of one kind: the server would convert them to one before. The
// constants of the first row stand beside the statement, which then is the same for all rows that are sent one by one.
std::string Reader::Rows(const Table &targets)
{
    const Place first = m_at;
    Place row = first;
    std::vector<std::string> types;
    std::size_t column = 0;
    const auto value = [&]
    {
        const Token &token = m_tokens[m_at];
        const Place behind = m_at + 1;
        Value value = Operand();
        if (row == first && m_at == behind && (token.IsText() || token.kind == TokenKind::Integer))
        {
            m_constants.emplace_back(Unquoted(token), token.IsText());
            value.sql = ":" + std::to_string(m_constants.size());
        }
        const std::size_t place = column++;
        types.resize(std::max(types.size(), column));
        Common(types[place], value);
        return (place < targets.size() ? Assigned(targets[place], value) : value).sql;
    };
    const auto values = [&]
    {
        column = 0;
        row = m_at;
        return Bracketed(value);
    };
    return Listed(values);
}

// UPDATE table SET column = value, ... [WHERE condition] and DELETE [FROM] table [WHERE condition]
Statement Reader::Change()
{
    const bool update = m_tokens[m_at++].Is("UPDATE");
    if (!update)
        Accept("FROM");
    const Source table = TakeTable();
    Scope scope{nullptr, {table}};
    m_scope = &scope;
    Table written;
    const auto set = [&]
    {
        const TableColumn column = TakeColumn(table.columns);
        Expect("=");
        scope.loose = 0;
        scope.closed = true; // SQLite changes row by row, and a query would see it
        const Value value = Assigned(column, Operand());
        scope.closed = false;
        const bool moves = column.key && scope.loose > 0; // keys are checked at each row
        Support(!Find(written, column.name) && !moves);
        written.push_back(column);
        return Quoted(column.name) + " = " + value.sql;
    };
    std::string sql = (update ? "UPDATE " : "DELETE FROM ") + table.sql;
    if (update)
    {
        Expect("SET");
        sql += " SET " + Listed(set);
    }
    return {Statement::Kind::Change, sql + Where()};
}

// CREATE TABLE name (columns, PRIMARY KEY (columns)), CREATE INDEX name ON table (columns). The name of an index
// belongs to its table; in SQLite it belongs to the file.
Statement Reader::Create()
{
    ++m_at;
    if (Accept("INDEX"))
    {
        const std::string name = TakeName();
        Expect("ON");
        const Source table = TakeTable();
        return {Statement::Kind::Other, "CREATE INDEX " + Quoted(table.name + "." + name) + " ON " + table.sql +
                                            ColumnList(table.columns, false)};
    }
    Expect("TABLE");
    const std::string name = TakeName();
    if (m_catalog && !m_catalog->Find(name).empty())
        Raise(2714, {name});
    Table columns;
    const auto part = [&]
    {
        if (!Accept("PRIMARY"))
            return NewColumn(columns);
        Expect("KEY");
        return "PRIMARY KEY" + ColumnList(columns, true);
    };
    return {Statement::Kind::Other, "CREATE TABLE " + Quoted(name) + " " + Bracketed(part)};
}

// (column, ...) of an index, or of a key, whose columns have to be NOT NULL: SQLite does not see to that.
std::string Reader::ColumnList(const Table &columns, bool key)
{
    return " " + Bracketed(
                     [&]
                     {
                         const TableColumn column = TakeColumn(columns);
                         Support(!key || column.key); // see NewColumn
                         return Quoted(column.name);
                     });
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
    std::string sql = Value{column + " " + type, type}.Collated();
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
    return {Statement::Kind::Other, "DROP TABLE " + TakeTable().sql};
}

// BEGIN, COMMIT and ROLLBACK [TRAN | TRANSACTION]
Statement Reader::Transaction()
{
    const std::string word = Small(m_tokens[m_at++].text);
    const bool begin = word == "begin";
    Support(Accept("TRAN") || Accept("TRANSACTION") || !begin); // or it is a block
    return {Statement::Kind::Other, begin ? "begin immediate" : word};
}

// DECLARE @name type, ...
Statement Reader::Declare()
{
    ++m_at;
    const auto variable = [&]
    {
        const Place place = m_at++;
        const auto added = m_variables.try_emplace(Small(m_tokens[place].text), Variable{place, TakeType(1)}).first;
        Support(m_tokens[place].kind == TokenKind::Variable && added->second.declaration == place && !Is("="));
        return "";
    };
    Listed(variable);
    return {};
}

} // namespace tsql
