// What the parser makes of a batch: statements and expressions as lists and trees in one block of memory, with views
// into the batch's text. Nothing here knows of tables; names are looked up when a statement runs.
#pragma once

#include "token.h"
#include "types.h"

#include <memory_resource>
#include <vector>

namespace tsql
{

struct Select;

enum class ExprKind : std::uint8_t
{
    Literal, // number, text or NULL: `token`
    Default, // the word DEFAULT in VALUES
    Star,    // * or t.*, `qualifier` set
    Column,  // `token`, `qualifier` set when there is one
    Variable,
    Global,
    Call, // `token` names the function, `first` its arguments
    Cast, // `first` to `type`, a style in its `next`
    Case, // `first`: pairs of condition and value, an odd last one is ELSE
    Negate,
    Complement,
    Binary,  // `token` is the operator, two operands
    Compare, // the same, a condition from here on
    And,     // any number of operands
    Or,
    Not,
    Like,     // text, pattern, escape
    Between,  // value, low, high
    InList,   // value, then the list
    InSelect, // value in `select`
    IsNull,
    Exists,
    Subquery
};

struct Expr
{
    ExprKind kind = ExprKind::Literal;
    bool negated = false;  // NOT LIKE, NOT IN ...
    bool distinct = false; // an aggregate over different values
    int depth = 1;
    int variable = 0; // which variable of the batch
    Token token;
    Token qualifier;
    Expr *first = nullptr; // the first operand; the others follow by `next`
    Expr *next = nullptr;
    Select *select = nullptr;
    ValueType type; // of a cast

    bool IsCondition() const { return kind >= ExprKind::Compare && kind <= ExprKind::Exists; }
};

struct Item // of a select list, SET list, ORDER BY list, or a column name
{
    Expr *value = nullptr;
    Token name;        // alias, or the column that is set
    int variable = -1; // the variable that is set
    bool descending = false;
    Item *next = nullptr;
};

struct Source // of a FROM clause
{
    enum Kind : std::uint8_t
    {
        Table,
        Derived,
        Join
    };
    Kind kind = Table;
    Token name; // the table
    Token alias;
    Select *derived = nullptr;
    const char *join = nullptr; // "JOIN", "LEFT JOIN" ...
    Source *left = nullptr;
    Source *right = nullptr;
    Expr *on = nullptr;
    Source *next = nullptr; // behind a comma
};

struct Select
{
    bool distinct = false;
    bool aggregates = false; // an aggregate stands in the select list or in HAVING
    bool unionAll = false;   // how it is joined to `unionNext`
    Expr *top = nullptr;
    Item *items = nullptr;
    Source *from = nullptr;
    Expr *where = nullptr;
    Expr *groupBy = nullptr;
    Expr *having = nullptr;
    Select *unionNext = nullptr;
    Item *orderBy = nullptr; // of the first select of a union: of the whole
};

struct ColumnDefinition
{
    Token name;
    ValueType type;
    bool notNull = false;
    Expr *defaultValue = nullptr;
    ColumnDefinition *next = nullptr;
};

struct KeyDefinition
{
    Token name; // of the constraint, if it has one
    bool primary = false;
    Item *columns = nullptr;
    KeyDefinition *next = nullptr;
};

enum class StatementKind : std::uint8_t
{
    Select,
    Insert,
    Update,
    Delete,
    If,
    Block, // BEGIN ... END
    SetVariable,
    SetOption,
    Print,
    CreateTable,
    DropTable,
    CreateIndex,
    DropIndex,
    BeginTransaction,
    Commit,
    Rollback
};

struct Statement
{
    StatementKind kind = StatementKind::Select;
    bool unique = false; // CREATE UNIQUE INDEX; SET NOCOUNT ON
    Token table;         // the table worked on
    Token name;          // the index
    Select *select = nullptr;
    Expr *value = nullptr;     // condition, printed or set value
    Item *columns = nullptr;   // INSERT's columns, UPDATE's assignments, an index's columns, a dropped table's names
    Expr *rows = nullptr;      // of VALUES: Call nodes whose operands are the values
    Source *from = nullptr;    // of UPDATE and DELETE
    Expr *where = nullptr;     // of UPDATE and DELETE
    int variable = -1;         // of SET
    Statement *body = nullptr; // of IF and BEGIN
    Statement *otherwise = nullptr;
    ColumnDefinition *definitions = nullptr;
    KeyDefinition *keys = nullptr;
    Statement *next = nullptr;
};

struct VariableDeclaration
{
    std::string_view name;
    ValueType type;
};

struct Batch
{
    Statement *statements = nullptr;
    std::vector<VariableDeclaration> variables;
};

// Parses a whole batch. The nodes live in `memory`, their names in `text`. Raises 102 and its kin.
void Parse(std::string_view text, std::pmr::memory_resource &memory, Batch &batch);

} // namespace tsql
