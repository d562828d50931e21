// Reads a statement and writes it in SQLite's language as it goes. What is not in the grammar here is refused, and so
// is what SQLite would take differently from the server.
#pragma once

#include "catalog.h"
#include "token.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tsql
{

struct Variable
{
    std::string type;
    std::size_t place; // of its declaration
};
using Variables = std::map<std::string, Variable>; // by name in small letters

// A statement in SQLite's language.
struct Statement
{
    enum class Kind : std::uint8_t
    {
        Rows,        // SELECT
        Assignment,  // SELECT that sets variables
        Change,      // INSERT, UPDATE, DELETE
        Definition,  // CREATE, DROP
        Condition,   // IF: gives a row when it holds
        Message,     // PRINT
        NoCount,     // SET NOCOUNT ON or OFF
        Transaction, // BEGIN, COMMIT, ROLLBACK
        Declaration
    };
    Kind kind = Kind::Declaration;
    std::string sql;
    std::vector<Column> columns = {};        // of Rows
    std::vector<std::string> variables = {}; // of Assignment, one a column
    std::vector<Token> constants = {};       // numbers and texts, which stand in it as :1, :2 ...
};

class Reader
{
public:
    // `checking`: names are not looked up yet, and types are not known; all else that is wrong is told.
    Reader(const std::vector<Token> &tokens, Catalog &catalog, Variables &variables, bool checking)
        : m_tokens(tokens), m_catalog(catalog), m_variables(variables), m_checking(checking)
    {
    }

    // Reads the statement at a token, or IF and its condition, and goes behind it. Throws SqlError.
    Statement Read(std::size_t &at);

private:
    using Place = std::size_t; // of a token
    struct Value               // or a condition
    {
        std::string sql;
        std::string type = {};
        bool condition = false;
        bool column = false;                   // by itself
        std::string name = {};                 // of an item of a list
        std::vector<std::string> columns = {}; // that an item uses outside of aggregates
    };
    struct Source // behind FROM
    {
        std::string name; // in small letters
        Table columns;
    };
    struct Scope // the names that a query sees
    {
        Scope *outer = nullptr;
        std::vector<Source> sources = {};
        std::vector<std::string> columns = {}; // that it has used outside of aggregates
        bool aggregates = false;               // may stand here
        bool aggregated = false;               // one was there
        bool closed = false;                   // no queries and no columns of outer ones
    };
    struct Query
    {
        std::string sql;
        std::vector<Value> items;
        std::vector<std::string> variables;
        bool listed = false; // DISTINCT or grouped: it is sorted by its items alone
    };
    enum class Use : std::uint8_t // of a query
    {
        Rows,
        Insert,
        Table,
        List,  // of IN
        Value, // in brackets
        Test   // EXISTS
    };

    // reader.cpp: statements, and what all read with
    Statement Select();
    Statement Insert();
    Statement Update();
    Statement Delete();
    Statement Create();
    Statement Drop();
    Statement Transaction();
    Statement Declare();
    std::string Rows(const Table &targets);
    std::string NewColumn(Table &columns);
    std::string ColumnList(const Table &columns, bool key);
    std::string Where();
    Value Assigned(const TableColumn &column, Value value, Place at) const;
    TableColumn TakeColumn(const Table &table);
    Table TakeTable(std::string &name);
    std::string TakeType(int size);
    std::string TakeName();
    bool Is(std::string_view word, Place ahead = 0) const;
    bool Accept(std::string_view word);
    void Expect(std::string_view word);
    [[noreturn]] void Refuse(Place at) const { RefuseToken(m_tokens, at); }
    Value Must(Value value, bool condition) const;
    void RaiseLate(int number, const std::string &name) const;

    // query.cpp
    Query ReadQuery(Use use, const Table *targets = nullptr);
    Query ReadSelect(Use use, const Table *targets, const Query *first);
    std::string From();
    Place ListEnd() const;
    void ReadItem(Query &query, const Table *targets);
    std::string ReadSource();
    std::string GroupBy(Query &query);
    std::string OrderBy(const Query &query, bool compound);

    // expression.cpp
    Value Condition() { return Must(Logic("OR"), true); }
    Value Operand() { return Must(Sum(), false); }
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
    Value Aggregate(const std::string &name);
    Value Conversion(const std::string &name);
    Value Beside(const Value &other, Value value, Place at) const;
    Value Converted(const Value &value, std::string_view type, Place at) const;
    void Common(std::string &type, const Value &value, Place at) const;

    const std::vector<Token> &m_tokens;
    Catalog &m_catalog;
    Variables &m_variables;
    const bool m_checking;
    Place m_at = 0;
    Scope *m_scope = nullptr; // the innermost
    int m_depth = 0;          // of values in values
    std::vector<Token> m_constants;
};

std::string TextOf(const Token &literal); // what the server makes of it
std::string Quoted(std::string_view name, char quote = '"');
std::string Small(std::string_view word); // ASCII letters made small

// Goes on a list: nothing in front of the first of its members, a comma in front of any other.
inline const char *Comma(const std::string &list)
{
    return list.empty() ? "" : ", ";
}

// With the collation: SQLite compares texts that are no columns byte by byte.
std::string Collated(const std::string &sql, std::string_view type, bool column);

} // namespace tsql
