// Reads a statement and writes it in SQLite's language as it goes. What is not in the grammar here is refused, and so
// is what SQLite would take differently from the server.
#pragma once

#include "catalog.h"
#include "token.h"

#include <functional>

namespace tsql
{

struct Variable
{
    std::size_t declaration; // token
    std::string type;
    std::unique_ptr<sqlite3_value, decltype(&sqlite3_value_free)> value{nullptr, sqlite3_value_free}; // null for NULL
};
using Variables = std::map<std::string, Variable>; // by name in small letters

using Constants = std::vector<std::pair<std::string, bool>>; // texts, and (false) numbers

// A statement in SQLite's language.
struct Statement
{
    enum class Kind : std::uint8_t
    {
        Rows,       // SELECT
        Assignment, // SELECT that sets variables
        Change,     // INSERT, UPDATE, DELETE
        Condition,  // IF: gives a row when it holds
        Other       // CREATE, DROP; BEGIN, COMMIT, ROLLBACK; DECLARE
    };
    Kind kind = Kind::Other;
    std::string sql = {};                    // empty when there is nothing to run
    std::vector<Column> columns = {};        // of Rows
    std::vector<std::string> variables = {}; // of Assignment, one a column
    Constants constants = {};                // which stand in it as :1, :2 ...
    std::size_t end = 0;                     // the token behind it
};

class Reader
{
public:
    // Without a catalog, tables and columns may have any name and type: what does not depend on them is checked.
    Reader(const std::vector<Token> &tokens, Variables &variables, Catalog *catalog)
        : m_tokens(tokens), m_variables(variables), m_catalog(catalog)
    {
    }

    // Reads the statement at a token, or IF and its condition. Throws SqlError.
    Statement Read(std::size_t at);

private:
    using Place = std::size_t; // of a token
    struct Value               // or a condition
    {
        std::string sql;
        std::string type = {}; // "condition" for one
        std::string name = {}; // of an item of a list

        // With the collation: SQLite compares texts that are no columns byte by byte.
        std::string Collated() const { return KindOf(type) == Kind::Text ? sql + " COLLATE ts" : sql; }
    };
    struct Source // of rows
    {
        std::string name; // in small letters
        std::string sql;
        Table columns;
    };
    struct Scope // the names that a query sees
    {
        Scope *outer = nullptr;
        std::vector<Source> sources = {};
        std::vector<std::string> groups = {}; // of GROUP BY
        std::size_t loose = 0;                // columns that stand neither in a group nor in an aggregate
        bool aggregated = false;              // an aggregate was there
        bool closed = false;                  // no queries and no columns of outer ones
    };
    struct Query
    {
        std::string sql;
        std::vector<Value> items;
        std::vector<std::string> variables;
    };
    enum class Use : std::uint8_t // of a query
    {
        Rows,
        Table,
        Value, // in brackets
        Other
    };

    // reader.cpp: statements, and what all read with
    Statement Select();
    Statement Insert();
    Statement Change();
    Statement Create();
    Statement Drop();
    Statement Transaction();
    Statement Declare();
    std::string Rows(const Table &targets);
    std::string NewColumn(Table &columns);
    std::string ColumnList(const Table &columns, bool key);
    std::string Where() { return Accept("WHERE") ? " WHERE " + Condition().sql : ""; }
    Value Assigned(const TableColumn &column, const Value &value) const;
    TableColumn TakeColumn(const Table &table);
    Source TakeTable();
    std::string TakeType(int size);
    std::string TakeName();
    bool Is(std::string_view word, Place ahead = 0) const;
    bool Accept(std::string_view word) { return Is(word) && ++m_at > 0; }
    void Expect(std::string_view word) { Require(Accept(word)); }
    void Require(bool holds) const { holds ? void() : RefuseToken(m_tokens, m_at); }    // of the next token
    void Support(bool holds) const { holds ? void() : RefuseToken(m_tokens, m_place); } // of what has been read
    Value Must(bool condition, Value value) const;
    std::string Listed(const std::function<std::string()> &next);
    std::string Bracketed(const std::function<std::string()> &next);

    // query.cpp
    Query ReadQuery(Use use, const Table *targets = nullptr);
    Query ReadSelect(Use use, const Table *targets, const Query *first);
    std::string From();
    Place ListEnd() const;
    void ReadItem(Query &query, const Table *targets);
    std::string ReadSource();
    std::string GroupBy();
    std::string OrderBy(const Query &query, bool compound, bool listed);

    // expression.cpp
    Value Condition() { return Must(true, Logic("OR")); }
    Value Operand() { return Must(false, Sum()); }
    Value Logic(std::string_view word);
    Value Comparison();
    std::string List(const Value &left);
    Value Sum();
    Value Primary();
    Value Literal();
    Value Brackets();
    Value Case();
    Value ColumnValue();
    Value Call();
    Value Argument(char kind, Value &call);
    Value Conversion(bool cast);
    void Match(Value &left, Value &right) const;
    Value Beside(const Value &other, const Value &value) const;
    Value Converted(const Value &value, std::string_view type) const;
    void Common(std::string &type, const Value &value) const;

    const std::vector<Token> &m_tokens;
    Variables &m_variables;
    Catalog *const m_catalog;
    Place m_at = 0;
    Place m_place = 0;        // of the statement, value or name that was begun last
    Scope *m_scope = nullptr; // the innermost
    int m_depth = 0;          // of values in values
    Constants m_constants;
};

std::string Quoted(std::string_view name, char quote = '"');
std::string Small(std::string_view word); // ASCII letters made small

} // namespace tsql
