// Rewrites a batch of T-SQL into statements of SQLite. Tokens pass through as they stand unless they must not; what is
// put before, behind or in place of a token is noted with it, so that clauses can be read in any order. Names are left
// to SQLite; their types are looked up among all tables of the statement. What SQLite would take differently, and what
// is not known, is refused.
#pragma once

#include "catalog.h"
#include "token.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tsql
{

struct Variable
{
    std::string name;
    ValueType type;
    Value value{};
};

// What is to be done with a rewritten statement.
enum class Action : std::uint8_t
{
    Rows,   // give its rows
    Assign, // SELECT @a = ...: put each row into the variables
    Set,    // SET and DECLARE: the same, without a result
    Write,  // run it and count rows
    Define,
    Branch, // IF: go on behind the branch when there is no row
    Print,
    Jump, // go on behind the ELSE part
    NoCountOn,
    NoCountOff,
    Nothing
};

struct Step
{
    Action action = Action::Define;
    std::string sql{};
    std::vector<Value> parameters{};
    std::vector<Column> columns{};        // of the rows
    int star = -1;                        // the place of * among them
    std::vector<std::string> variables{}; // those the columns are assigned to
    const char *verb = "";                // of Write, for messages
    std::optional<SqlError> error{};      // what became clear while it was rewritten and is told when its turn comes
    std::size_t first = 0;                // its first token
    std::size_t target = 0;               // of Branch and Jump: the step to go on with
    std::size_t failed = 0;               // the step to go on with after an error
    std::int64_t version = 0;             // of the schema it was made for
};

class Rewriter
{
public:
    // Raises 102 and its kin for a syntax error anywhere in the text, which must outlive this.
    Rewriter(Catalog &catalog, std::string_view batch);

    // Rewrites a step again, for the schema as it is now.
    void Again(Step &step);

    // The variable of that name; raises 137 when there is none.
    Variable &Find(std::string_view name);

    std::vector<Step> steps;
    std::vector<Variable> variables;

private:
    struct Piece // a token and what is written around it
    {
        std::string_view text;
        std::string before{};
        std::string after{};
    };
    struct ColumnName
    {
        std::string qualifier; // empty when none is written
        std::string name;
    };
    struct Operand // an expression that has been read
    {
        std::size_t first = 0; // its tokens
        std::size_t last = 0;
        ValueType type{};
        bool untyped = false; // NULL, or a name that is not known
        bool condition = false;
        bool literal = false;
        bool column = false; // a bare column, which brings its collation along
        ColumnName name{};   // of a column
    };
    struct Item // of a select list
    {
        std::string name; // empty of an expression without one
        Operand value;
        bool star = false;
    };
    struct Query
    {
        std::size_t first = 0; // its tokens
        std::size_t last = 0;
        std::vector<Item> items{};
        std::vector<std::string> variables{}; // those that the items are assigned to
        std::vector<Operand> groups{};
        bool grouped = false;
        bool distinct = false;
        bool single = false;  // gives one row whatever the tables hold
        bool special = false; // with DISTINCT, TOP, GROUP BY or UNION
        std::string limit{};  // of TOP
        std::size_t used = 0; // the first of m_used that is not in FROM or WHERE
    };
    struct Clauses;

    // Tokens
    const Token &Current() const { return m_tokens[m_at]; }
    bool Is(std::string_view word) const { return Current().Is(word); }
    bool Accept(std::string_view word);
    void Expect(std::string_view word);
    std::size_t TakeName();
    [[noreturn]] void Refuse(std::size_t at) const;
    [[noreturn]] void Refuse() const { Refuse(m_at); }
    std::string LineOf(std::size_t at) const;

    // Output
    void Replace(std::size_t at, std::string_view text) { m_pieces[at].text = text; }
    void Blank(std::size_t first, std::size_t last);
    void Wrap(const Operand &operand, const std::string &before, const std::string &after);
    void Collate(const Operand &operand) { m_pieces[operand.last].after += " COLLATE ts"; }
    void Convert(Operand &operand, const ValueType &type, Conversion how, int style = 0);
    std::string Written(std::size_t first, std::size_t last) const;

    // Statements
    void Statement();
    void If();
    Step Simple();
    void Do(Step &step);
    void Transaction(Step &step);
    void Select(Step &step);
    void Declare(Step &step);
    void Set(Step &step);
    void Assign(Step &step, const std::string &variable);
    void Insert(Step &step);
    void InsertRow(Step &step, const std::vector<TableColumn> &targets);
    void InsertQuery(const std::vector<TableColumn> &targets);
    void Update(Step &step);
    void Delete(Step &step);
    void CreateTable(Step &step);
    void CreateIndex(Step &step);
    void Drop(Step &step);
    std::vector<std::size_t> Names();
    ValueType ReadType(int defaultSize);
    int ReadNumber();
    void Later(const SqlError &error); // tells it when the statement's turn comes

    // Tables
    std::string TableName();
    const Table *AddTable(const std::string &name, const std::string &alias);
    const TableColumn *Target(const Table *table, std::size_t at);

    // Queries
    Query ReadQuery(bool outermost);
    void ReadSelect(Query &query);
    Clauses FindClauses() const;
    void ReadItem(Query &query);
    void FromClause();
    void Source();
    void Derived();
    void CheckAlias(const std::string &alias) const;
    void OrderBy(const Query &query, bool isUnion);
    bool OrderByItem(const Query &query);
    void CheckGroups(const Query &query);
    bool IsPart(const Operand &column, const Operand &group) const;
    static bool SameColumn(const ColumnName &left, const ColumnName &right);

    // Values
    Operand Expression(int level);
    Operand ReadValue();
    Operand Condition();
    Operand Prefix();
    Operand Primary();
    Operand Parentheses();
    Operand Literal();
    Operand Name();
    Operand Case();
    Operand Cast(bool convert);
    Operand Call();
    Operand Aggregate();
    Operand Choice(bool isNull);
    Operand Logical(Operand left, const Operand &right);
    Operand Arithmetic(Operand left, std::size_t at, Operand right);
    Operand Predicate(Operand left);
    void Compare(Operand &left, Operand &right);
    void CompareWith(const Operand &left, Operand &right);
    void In(const Operand &left);
    void Like(const Operand &left, std::size_t negation);
    void Mix(Operand &common, Operand &next);
    void RequireValue(const Operand &operand) const;
    void RequireCondition(const Operand &operand) const;
    Value LiteralValue(const Operand &operand) const;

    Catalog &m_catalog;
    std::string_view m_text;
    std::vector<Token> m_tokens;
    std::vector<Piece> m_pieces;
    std::size_t m_at = 0;
    std::size_t m_start = 0; // of the statement
    int m_depth = 0;

    // Of the statement that is read.
    struct Known
    {
        std::string qualifier;
        std::string name;
        ValueType type;
        int query; // the number of the SELECT it belongs to
    };
    std::vector<Known> m_columns;    // of all its tables
    std::vector<Operand> m_used;     // columns met outside of aggregates
    std::optional<SqlError> m_later; // the first that became clear
    bool m_inAggregate = false;
    bool m_inValue = false; // reading what can only be a value
    bool m_again = false;
    int m_aggregates = 0;
    int m_subqueries = 0;
    int m_query = 0; // the number of the SELECT that is read
    int m_queries = 0;
};

} // namespace tsql
