// Turns a parsed statement into SQLite's language: looks names up, gives every expression a type, and writes out the
// conversions that follow from the types. Done anew each time a statement runs, so variables are plain values here.
#pragma once

#include "ast.h"
#include "catalog.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tsql
{

// An expression in SQLite's language that needs no parentheses around it.
struct Fragment
{
    std::string sql; // of a literal it is made from `value` when it is needed
    ValueType type;
    bool literal = false;
    bool untyped = false; // the word NULL
    bool column = false;  // a bare column: it carries the collation itself
    bool joined = false;  // texts joined, in parentheses
    int terms = 0;        // of a sum of integers, a call of ts_sum
    Value value;          // of a literal
};

inline Fragment Literal(Value value, const ValueType &type)
{
    Fragment fragment;
    fragment.type = type;
    fragment.literal = true;
    fragment.value = std::move(value);
    return fragment;
}

inline Fragment Made(std::string sql, const ValueType &type)
{
    Fragment fragment;
    fragment.sql = std::move(sql);
    fragment.type = type;
    return fragment;
}

// What the session knows and statements ask for.
struct SessionValues
{
    std::vector<VariableDeclaration> declarations;
    std::vector<Value> variables;
    std::int64_t rowCount = 0; // @@ROWCOUNT
    int error = 0;             // @@ERROR
    int transactions = 0;      // @@TRANCOUNT
};

struct Translation
{
    std::string sql;
    std::vector<Value> parameters;
    std::vector<Column> columns;
    std::vector<int> variables; // those the columns are assigned to; empty when the columns are a result
    bool assigns = false;
};

class Translator
{
public:
    Translator(Catalog &catalog, const SessionValues &session) : m_catalog(catalog), m_session(session) {}

    Translation TranslateSelect(const Select &select);
    Translation TranslateInsert(const Statement &statement);
    Translation TranslateUpdate(const Statement &statement);
    Translation TranslateDelete(const Statement &statement);
    Translation TranslateCreateTable(const Statement &statement);
    Translation TranslateCreateIndex(const Statement &statement);

    // SELECT of one value, converted to `type`; of a condition, as 1 or 0.
    Translation TranslateValue(const Expr &expr, const ValueType &type);
    Translation TranslateCondition(const Expr &expr);

private:
    struct BoundSource
    {
        std::string name; // the alias
        std::string id;   // what it is called in SQLite's language
        std::vector<std::string> columnNames;
        std::vector<Fragment> columns;
        const Table *table = nullptr; // null for a derived table
    };
    struct Scope
    {
        Scope *parent = nullptr;
        std::vector<BoundSource> sources;
        std::vector<std::string> groups; // what is grouped by
        std::string ungrouped;           // a column met outside of what is grouped by
        bool grouped = false;
        bool aggregatesAllowed = false;
        bool inAggregate = false;

        bool IsGroup(const std::string &sql) const
        {
            return std::find(groups.begin(), groups.end(), sql) != groups.end();
        }
    };
    // How a query is used, which decides what is written around its list.
    struct Use
    {
        bool nested = false; // its columns are named c1, c2 ...
        bool orderMatters = false;
        const std::vector<ValueType> *targets = nullptr; // what its columns are converted to
    };
    struct Query
    {
        std::string sql;
        std::vector<std::string> names;
        std::vector<ValueType> types;
        std::vector<int> variables;
        bool oneRow = false; // can give no more than one row
    };
    struct BoundSelect;
    class Entered;

    // Expressions
    Fragment Translate(const Expr &expr);
    Fragment TranslateAny(const Expr &expr);
    std::string Condition(const Expr &expr);
    std::string ConditionAny(const Expr &expr);
    std::string JoinConditions(const std::vector<std::string> &parts, std::size_t first, std::size_t last,
                               const char *word) const;
    Fragment TranslateLiteral(const Expr &expr) const;
    Fragment TranslateGlobal(const Expr &expr) const;
    Fragment TranslateColumn(const Expr &expr);
    Fragment TranslateCast(const Expr &expr);
    Fragment TranslateCase(const Expr &expr);
    Fragment TranslateNegate(const Expr &expr);
    Fragment TranslateBinary(const Expr &expr);
    Fragment Arithmetic(const Token &operation, Fragment left, Fragment right) const;
    Fragment TranslateSubquery(const Expr &expr);
    Fragment TranslateCall(const Expr &expr);
    Fragment TranslateAggregate(const Expr &expr, int which);
    Fragment TranslateChoice(const Expr &expr, const std::string &name);
    std::vector<Fragment> TranslateAll(const Expr *first);
    std::string Compared(const char *operation, const Fragment &left, const Fragment &right) const;
    Fragment Common(std::vector<Fragment> &fragments) const;
    Fragment Converted(Fragment fragment, const ValueType &type, Conversion how, int style = -1) const;
    Fragment CheckedResult(const std::string &sql, Type from, const ValueType &type) const;
    std::string Sql(const Fragment &fragment) const;
    std::string Collated(const Fragment &fragment) const;

    // SELECT
    Query BuildQuery(const Select &select, const Use &use);
    Query ConvertedQuery(const Select &select, const Use &use);
    void Bind(const Select &select, BoundSelect &bound);
    void BindItem(const Item &item, BoundSelect &bound);
    std::string FromClause(const Source *source);
    std::string SourceClause(const Source &source);
    std::string OrderClause(const Select &select, BoundSelect &bound);
    std::string OrderItem(const Select &select, const Item &item, int place, BoundSelect &bound);
    void CheckGrouped(int error);
    void AddSource(BoundSource source);

    // Writing
    const Table &TargetTable(const Token &token);
    std::string InsertValues(const Statement &statement, const Table &table, const std::vector<int> &places,
                             Translation &out);
    std::string TargetRows(const Statement &statement, const Table *&table, std::string &id);
    std::string DefaultOf(const TableColumn &column) const;

    Catalog &m_catalog;
    const SessionValues &m_session;
    Scope *m_scope = nullptr;
    int m_ids = 0;
    int m_depth = 0; // of expressions inside one another
    static constexpr int maxDepth = 1200;
    bool m_subquery = false; // a query has been translated
};

} // namespace tsql
